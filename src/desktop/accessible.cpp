#include "desktop/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <algorithm>
#include <cmath>
#include <memory>

#include "commands/panel_events.h"
#include "desktop/control_words.h"
#include "desktop/panel_widget.h"
#include "desktop/score_accessible.h"

namespace marlune {

namespace {

class ControlAccessible final : public QAccessibleInterface,
                                public QAccessibleActionInterface,
                                public QAccessibleValueInterface {
  public:
    ControlAccessible(PanelWidget* panel, const PlacedControl& control) : panel_(panel), control_(control) {}

    [[nodiscard]] bool isValid() const override { return true; }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override { return panel_->window()->windowHandle(); }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(panel_);
    }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    [[nodiscard]] QString text(QAccessible::Text which) const override {
        switch (which) {
            case QAccessible::Name: return controlName(control_, panel_->state());
            case QAccessible::Value: return controlValue(control_, panel_->state());
            case QAccessible::Description: { // the one text that every tool gets
                const QString value = controlValue(control_, panel_->state());
                return value.isEmpty() ? controlTip(control_)
                                       : value + QStringLiteral("; ") + controlTip(control_);
            }
            case QAccessible::Help: return controlTip(control_);
            default: return {};
        }
    }
    void setText(QAccessible::Text /*which*/, const QString& /*text*/) override {}

    [[nodiscard]] QRect rect() const override {
        const double k = panel_->zoom() / 100.0;
        const PanelRect& r = control_.rect;
        return QRectF(r.x * k, r.y * k, r.width * k, r.height * k)
            .toAlignedRect()
            .translated(panel_->mapToGlobal(QPoint(0, 0)));
    }
    [[nodiscard]] QAccessible::Role role() const override {
        if (isReadOnly(control_)) return QAccessible::StaticText;
        return isTurned(control_.control) ? QAccessible::Dial : QAccessible::Button;
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.focusable = !isReadOnly(control_);
        state.readOnly = isReadOnly(control_);
        state.focused = panel_->focusControl() == &control_ && panel_->hasFocus();
        state.disabled = !panel_->state().isEnabled(control_.control, control_.index);
        const QString value = controlValue(control_, panel_->state());
        state.checkable = value == u"on" || value == u"off";
        state.checked = value == u"on";
        state.selected = value == u"selected";
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
        if (type == QAccessible::ValueInterface && range())
            return static_cast<QAccessibleValueInterface*>(this);
        return nullptr;
    }

    [[nodiscard]] QVariant currentValue() const override { return range()->value; }
    [[nodiscard]] QVariant minimumValue() const override { return range()->minimum; }
    [[nodiscard]] QVariant maximumValue() const override { return range()->maximum; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }
    void setCurrentValue(const QVariant& wanted) override {
        const double away = (wanted.toDouble() - range()->value) * range()->perUnit;
        if (const int steps = static_cast<int>(std::lround(away)); steps != 0)
            panelWheel(control_.control, control_.index, steps);
    }

    [[nodiscard]] QStringList actionNames() const override {
        if (isReadOnly(control_)) return {};
        if (isTurned(control_.control)) return {increaseAction(), decreaseAction(), setFocusAction()};
        return {pressAction(), setFocusAction()};
    }
    void doAction(const QString& action) override {
        if (action == increaseAction()) panelWheel(control_.control, control_.index, 1);
        if (action == decreaseAction()) panelWheel(control_.control, control_.index, -1);
        if (action == pressAction()) panelPress(control_.control, control_.index);
        if (action == setFocusAction()) panel_->setFocusControl(&control_);
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

  private:
    [[nodiscard]] std::optional<ControlRange> range() const {
        return controlRange(control_, panel_->state());
    }

    PanelWidget* panel_;
    const PlacedControl& control_;
};

class PanelAccessible final : public QAccessibleWidget {
  public:
    explicit PanelAccessible(PanelWidget* panel) : QAccessibleWidget(panel, QAccessible::Grouping) {
        for (const PlacedControl* stop : PanelWidget::tabStops()) add(panel, *stop);
        for (const PlacedControl& control : placedControls())
            if (isReadOnly(control)) add(panel, control);
        QObject::connect(panel, &PanelWidget::focusControlChanged, panel, [this] { tellFocus(); });
        QObject::connect(panel, &PanelWidget::focusValueChanged, panel, [this] { tellValue(); });
    }
    ~PanelAccessible() override {
        for (const QAccessible::Id id : controls_) QAccessible::deleteAccessibleInterface(id);
    }
    PanelAccessible(const PanelAccessible&) = delete;
    PanelAccessible& operator=(const PanelAccessible&) = delete;

    [[nodiscard]] int childCount() const override { return static_cast<int>(controls_.size()); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) return nullptr;
        return QAccessible::accessibleInterface(controls_[static_cast<std::size_t>(index)]);
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* wanted) const override {
        for (int i = 0; i < childCount(); ++i)
            if (child(i) == wanted) return i;
        return -1;
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = childCount() - 1; i >= 0; --i)
            if (child(i)->rect().contains(x, y)) return child(i);
        return nullptr;
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        for (int i = 0; i < childCount(); ++i)
            if (child(i)->state().focused) return child(i);
        return nullptr;
    }

  private:
    void add(PanelWidget* panel, const PlacedControl& control) {
        controls_.push_back(QAccessible::registerAccessibleInterface(new ControlAccessible(panel, control)));
    }
    void tellValue() const {
        QAccessibleInterface* focused = focusChild();
        if (focused == nullptr) return;
        if (QAccessibleValueInterface* value = focused->valueInterface()) {
            QAccessibleValueChangeEvent event(focused, value->currentValue());
            QAccessible::updateAccessibility(&event);
        }
        QAccessibleEvent event(focused, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
    void tellFocus() const {
        QAccessibleInterface* focused = focusChild();
        if (focused == nullptr) return;
        QAccessibleEvent event(focused, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }

    std::vector<QAccessible::Id> controls_;
};

QAccessibleInterface* panelFactory(const QString& /*className*/, QObject* object) {
    auto* panel = qobject_cast<PanelWidget*>(object);
    return panel != nullptr ? new PanelAccessible(panel) : scoreAccessible(object);
}

} // namespace

void installPanelAccessibility() {
    static const bool kDone = [] {
        QAccessible::installFactory(panelFactory);
        return true;
    }();
    static_cast<void>(kDone);
}

} // namespace marlune
