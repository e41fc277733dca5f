#include "desktop/score_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <map>
#include <utility>

#include "desktop/score_window.h"

namespace marlune {

namespace {

class WindowAccessible;

constexpr int kWholeGroup = -1;

// A group, or one of its cells.
class CellAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    CellAccessible(WindowAccessible* owner, ScoreWindow* window, int group, int cell)
        : owner_(owner), window_(window), group_(group), cell_(cell) {}

    [[nodiscard]] bool isValid() const override {
        return group_ < window_->spokenGroups() && cell_ < window_->spokenGroup(group_).cells;
    }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override { return window_->window()->windowHandle(); }
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = 0; i < childCount(); ++i)
            if (child(i)->rect().contains(x, y)) return child(i);
        return nullptr;
    }
    [[nodiscard]] int childCount() const override {
        return cell_ == kWholeGroup && !isSingle() ? window_->spokenGroup(group_).cells : 0;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* wanted) const override {
        for (int i = 0; i < childCount(); ++i)
            if (child(i) == wanted) return i;
        return -1;
    }

    [[nodiscard]] QString text(QAccessible::Text which) const override {
        if (which != QAccessible::Name) return {};
        return isCell() ? spoken().name : window_->spokenGroup(group_).name;
    }
    void setText(QAccessible::Text /*which*/, const QString& /*text*/) override {}
    [[nodiscard]] QRect rect() const override {
        QRect area = spoken().rect;
        for (int i = 1; !isCell() && i < window_->spokenGroup(group_).cells; ++i)
            area |= window_->spokenCell(group_, i).rect;
        return area.translated(window_->mapToGlobal(QPoint(0, 0)));
    }
    [[nodiscard]] QAccessible::Role role() const override {
        if (window_->spokenGroup(group_).readOnly) return QAccessible::StatusBar;
        if (!isCell()) return QAccessible::Grouping;
        switch (spoken().role) {
            case SpokenRole::slider: return QAccessible::Slider;
            case SpokenRole::scrollBar: return QAccessible::ScrollBar;
            default: return QAccessible::Button;
        }
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        if (!isCell() || window_->spokenGroup(group_).readOnly) {
            state.readOnly = isCell();
            return state;
        }
        const SpokenCell cell = spoken();
        state.focusable = true;
        state.focused = cell.focused && window_->hasFocus();
        state.disabled = cell.disabled;
        state.selected = cell.selected;
        state.selectable = true;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    [[nodiscard]] QStringList actionNames() const override {
        if (!isCell() || window_->spokenGroup(group_).readOnly) return {};
        return {pressAction(), setFocusAction()};
    }
    void doAction(const QString& action) override {
        if (!isCell()) return;
        if (action == pressAction()) window_->pressSpoken(group_, firstCell());
        if (action == setFocusAction()) window_->focusSpoken(group_, firstCell());
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

  private:
    // A group of one cell is that cell.
    [[nodiscard]] bool isSingle() const { return window_->spokenGroup(group_).cells == 1; }
    [[nodiscard]] bool isCell() const { return cell_ != kWholeGroup || isSingle(); }
    [[nodiscard]] int firstCell() const { return cell_ == kWholeGroup ? 0 : cell_; }
    [[nodiscard]] SpokenCell spoken() const { return window_->spokenCell(group_, firstCell()); }

    WindowAccessible* owner_;
    ScoreWindow* window_;
    int group_, cell_;
};

class WindowAccessible final : public QAccessibleWidget {
  public:
    explicit WindowAccessible(ScoreWindow* window)
        : QAccessibleWidget(window, QAccessible::Grouping), window_(window) {
        QObject::connect(window, &ScoreWindow::spokenFocusMoved, window,
                         [this] { tell(QAccessible::Focus); });
        QObject::connect(window, &ScoreWindow::spokenFocusChanged, window,
                         [this] { tell(QAccessible::NameChanged); });
        QObject::connect(window, &ScoreWindow::announced, window, [this] { announce(); });
    }
    ~WindowAccessible() override {
        for (const auto& [place, id] : cells_) QAccessible::deleteAccessibleInterface(id);
    }
    WindowAccessible(const WindowAccessible&) = delete;
    WindowAccessible& operator=(const WindowAccessible&) = delete;

    QAccessibleInterface* cell(int group, int cell) {
        const auto [at, isNew] = cells_.try_emplace({group, cell}, 0);
        if (isNew)
            at->second =
                QAccessible::registerAccessibleInterface(new CellAccessible(this, window_, group, cell));
        return QAccessible::accessibleInterface(at->second);
    }

    [[nodiscard]] int childCount() const override { return window_->spokenGroups(); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) return nullptr;
        return const_cast<WindowAccessible*>(this)->cell(index, kWholeGroup); // made when first asked for
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* wanted) const override {
        for (int i = 0; i < childCount(); ++i)
            if (child(i) == wanted) return i;
        return -1;
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = 0; i < childCount(); ++i)
            if (child(i)->rect().contains(x, y)) return child(i);
        return nullptr;
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        for (int group = 0; group < childCount(); ++group) {
            const int cells = window_->spokenGroup(group).cells;
            for (int i = 0; i < cells; ++i) {
                if (!window_->spokenCell(group, i).focused) continue;
                return cells == 1 ? child(group) : child(group)->child(i);
            }
        }
        return nullptr;
    }

  private:
    void tell(QAccessible::Event what) const {
        QAccessibleInterface* focused = focusChild();
        if (focused == nullptr) return;
        QAccessibleEvent event(focused, what);
        QAccessible::updateAccessibility(&event);
    }
    // The status bar is the last group.
    void announce() const {
        for (const QAccessible::Event what : {QAccessible::NameChanged, QAccessible::Alert}) {
            QAccessibleEvent event(child(childCount() - 1), what);
            QAccessible::updateAccessibility(&event);
        }
    }

    ScoreWindow* window_;
    std::map<std::pair<int, int>, QAccessible::Id> cells_;
};

QAccessibleInterface* CellAccessible::parent() const {
    return cell_ == kWholeGroup ? static_cast<QAccessibleInterface*>(owner_)
                                : owner_->cell(group_, kWholeGroup);
}

QAccessibleInterface* CellAccessible::child(int index) const {
    return index >= 0 && index < childCount() ? owner_->cell(group_, index) : nullptr;
}

} // namespace

QAccessibleInterface* scoreAccessible(QObject* object) {
    auto* window = qobject_cast<ScoreWindow*>(object);
    return window != nullptr ? new WindowAccessible(window) : nullptr;
}

} // namespace marlune
