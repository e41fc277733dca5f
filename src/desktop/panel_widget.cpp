#include "desktop/panel_widget.h"

#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "commands/panel_events.h"
#include "desktop/control_words.h"

namespace marlune {

namespace {

constexpr double kTwips = 15; // to a panel pixel
constexpr int kWheelStep = 120;
constexpr int kRingReach = 5;

// Lower ends of the rows that the eye reads from left to right, plate by plate.
constexpr std::array<int, 10> kRowEnds{160, 221, 250, 277, 315, 400, 465, 526, 560, 583};

Placement inTwips(const PanelRect& r) {
    const auto twips = [](int pixels) { return static_cast<int>(pixels * kTwips); };
    return {twips(r.x), twips(r.y), twips(r.width), twips(r.height)};
}

PanelRect inPixels(const Placement& at) {
    const auto pixels = [](int twips) { return static_cast<int>(std::lround(twips / kTwips)); };
    return {pixels(at.left), pixels(at.top), pixels(at.width), pixels(at.height)};
}

std::vector<const PlacedControl*> makeTabStops() {
    constexpr std::array<int, 4> kPlateOrder{1, 2, 3, 0}; // the strip stands on top
    std::vector<const PlacedControl*> stops;
    for (const PlacedControl& c : placedControls())
        if (isTabStop(c)) stops.push_back(&c);
    const auto place = [&](const PlacedControl* c) {
        const int middle = c->rect.y + c->rect.height / 2;
        const auto row = std::upper_bound(kRowEnds.begin(), kRowEnds.end(), middle) - kRowEnds.begin();
        return std::array{kPlateOrder[c->module], static_cast<int>(row), c->rect.x, c->rect.y};
    };
    std::sort(stops.begin(), stops.end(),
              [&](const PlacedControl* a, const PlacedControl* b) { return place(a) < place(b); });
    return stops;
}

} // namespace

PanelWidget::PanelWidget(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(QStringLiteral("Front panel"));
    takeLooks();
    setZoom(100);
}

void PanelWidget::takeLooks() {
    shown_.clear();
    for (const Piece& piece : panelPieces()) shown_.push_back(lookOf(piece, state_, touch_));
}

const std::vector<const PlacedControl*>& PanelWidget::tabStops() {
    static const std::vector<const PlacedControl*> kStops = makeTabStops();
    return kStops;
}

void PanelWidget::setZoom(int percent) {
    places_.clear();
    zoom_ = percent;
    setFixedSize(static_cast<int>(std::lround(size_.width() * percent / 100.0)),
                 static_cast<int>(std::lround(size_.height() * percent / 100.0)));
    update();
}

// --- places

Placement PanelWidget::form() const {
    return inTwips({0, 0, size_.width(), size_.height()});
}

void PanelWidget::placeForm(const Placement& at) {
    const PanelRect rect = inPixels(at);
    size_ = {rect.width, rect.height};
    setZoom(zoom_);
}

Placement PanelWidget::control(Control control, int index) const {
    return inTwips(placedControl(control, index)->rect);
}

void PanelWidget::placeControl(Control control, int index, const Placement& at) {
    const PanelRect rect = inPixels(at);
    if (rect == placedControl(control, index)->rect) return;
    marlune::placeControl(control, index, rect);
    layOutPieces();
    takeLooks();
    update();
}

// --- showing

void PanelWidget::showFrame(Control control, int index, int frame) {
    state_.setFrame(control, index, frame);
    refresh();
}

void PanelWidget::showText(Control control, int index, const std::string& text) {
    state_.setText(control, index, text);
    refresh();
}

void PanelWidget::showLamp(int step, bool lit) {
    state_.lamps[step] = lit;
    refresh();
}

void PanelWidget::showEnabled(Control control, int index, bool enabled) {
    state_.setEnabled(control, index, enabled);
    refresh();
}

void PanelWidget::showState(const PanelState& state) {
    state_ = state;
    refresh();
}

void PanelWidget::showDerived(const std::array<std::array<StepMark, 16>, 2>& marks,
                              const std::array<std::uint8_t, 16>& ghost,
                              const std::array<short, 20>& values) {
    if (state_.marks == marks && state_.ghost == ghost && state_.values == values) return;
    state_.marks = marks;
    state_.ghost = ghost;
    state_.values = values;
    refresh();
}

void PanelWidget::place(double scale) {
    if (sprites_.scale() == scale && !places_.empty()) return;
    sprites_.setScale(scale);
    const double ratio = devicePixelRatioF();
    places_.clear();
    for (const Piece& piece : panelPieces()) {
        const DeviceRect area = deviceRect(piece, scale);
        places_.push_back(
            QRectF(area.x / ratio, area.y / ratio, area.width / ratio, area.height / ratio).toAlignedRect());
    }
}

void PanelWidget::refresh() {
    const std::span<const Piece> pieces = panelPieces();
    place(zoom_ / 100.0 * devicePixelRatioF());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        Look look = lookOf(pieces[i], state_, touch_);
        if (look == shown_[i]) continue;
        shown_[i] = std::move(look);
        update(places_[i]);
    }
    updateBubble();
    tellFocusValue();
}

void PanelWidget::updateBubble() {
    Bubble now = bubbleOf(state_, touch_);
    if (now == bubble_) return;
    const double k = zoom_ / 100.0;
    for (const PanelRect& r : {bubble_.rect, now.rect})
        update(QRectF((r.x - 1) * k, (r.y - 1) * k, (r.width + 2) * k, (r.height + 4) * k).toAlignedRect());
    bubble_ = std::move(now);
}

void PanelWidget::tellFocusValue() {
    const QString now = touch_.focus != nullptr ? controlValue(*touch_.focus, state_) : QString();
    if (now == focusValue_) return;
    focusValue_ = now;
    if (touch_.focus != nullptr) emit focusValueChanged();
}

void PanelWidget::paintEvent(QPaintEvent* event) {
    const double ratio = devicePixelRatioF();
    place(zoom_ / 100.0 * ratio);
    QPainter painter(this);
    painter.scale(1 / ratio, 1 / ratio); // device pixels from here on: pictures are copied, never stretched
    const std::span<const Piece> pieces = panelPieces();
    for (const QRect& part : event->region()) { // one rectangle at a time: a plain clip is copied fastest
        painter.setClipRect(
            QRectF(part.x() * ratio, part.y() * ratio, part.width() * ratio, part.height() * ratio)
                .toAlignedRect());
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const Look& look = shown_[i];
            if (look.art == Art::halo && !look.is(kLit)) continue;
            if (part.intersects(places_[i])) sprites_.draw(painter, pieces[i], look);
        }
    }
    painter.setClipping(false);
    if (touch_.focus != nullptr && hasFocus()) paintFocusRing(painter, touch_.focus->rect, sprites_.scale());
    paintBubble(painter, bubble_, sprites_.scale());
}

// --- pointer

QPointF PanelWidget::panelPoint(QPointF widgetPoint) const {
    return widgetPoint * 100.0 / zoom_;
}

const PlacedControl* PanelWidget::reachable(QPointF point) const {
    const PlacedControl* control = controlAt(point.x(), point.y());
    return control != nullptr && state_.isEnabled(control->control, control->index) ? control : nullptr;
}

void PanelWidget::press(QMouseEvent* event, bool second) {
    if (event->button() == heldButton_) abandonPress();
    if (heldButton_ != Qt::NoButton) return; // a second button during a drag changes nothing
    keys_.flushBefore(event->timestamp());
    setFocusControl(nullptr);
    const QPointF at = panelPoint(event->position());
    const PlacedControl* control = reachable(at);
    const bool pair = second && control == lastPressed_;
    lastPressed_ = control;
    if (control == nullptr) return;
    heldButton_ = event->button();
    heldPair_ = pair;
    lastY_ = at.y() * kTwips;
    touch_.pressed = control;
    refresh();
    // The handler may let events run, the release among them: nothing is read after this call.
    panelPointer(
        control->control, control->index,
        {PointerAction::press, event->button() == Qt::LeftButton, at.y() * kTwips,
         event->modifiers().testFlag(Qt::ShiftModifier), pair, true,
         event->modifiers().testFlag(Qt::AltModifier), event->modifiers().testFlag(Qt::ControlModifier)});
}

void PanelWidget::mousePressEvent(QMouseEvent* event) {
    press(event, false);
}

void PanelWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    press(event, true);
}

void PanelWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = panelPoint(event->position());
    if (heldButton_ != Qt::NoButton && !event->buttons().testFlag(heldButton_)) abandonPress();
    if (heldButton_ == Qt::NoButton) {
        setHover(reachable(at));
        return;
    }
    const PlacedControl* control = touch_.pressed;
    lastY_ = at.y() * kTwips;
    panelPointer(control->control, control->index,
                 {PointerAction::move, heldButton_ == Qt::LeftButton, at.y() * kTwips,
                  event->modifiers().testFlag(Qt::ShiftModifier), false, reachable(at) == control});
}

void PanelWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != heldButton_) return;
    const QPointF at = panelPoint(event->position());
    const PlacedControl* control = touch_.pressed;
    heldButton_ = Qt::NoButton;
    touch_.pressed = nullptr;
    setHover(reachable(at));
    refresh();
    panelPointer(control->control, control->index,
                 {PointerAction::release, event->button() == Qt::LeftButton, at.y() * kTwips,
                  event->modifiers().testFlag(Qt::ShiftModifier), heldPair_, touch_.hover == control});
}

// A release that went elsewhere, as where a dialog came up under the pressed button.
void PanelWidget::abandonPress() {
    if (heldButton_ == Qt::NoButton) return;
    const PlacedControl* control = touch_.pressed;
    const bool left = heldButton_ == Qt::LeftButton;
    heldButton_ = Qt::NoButton;
    touch_.pressed = nullptr;
    refresh();
    panelPointer(control->control, control->index,
                 {PointerAction::release, left, lastY_, false, false, false});
}

void PanelWidget::setHover(const PlacedControl* control) {
    if (control == touch_.hover) return;
    touch_.hover = control;
    if (control != nullptr && isTurned(control->control) && control->control != Control::Offset109)
        setCursor(Qt::SizeVerCursor);
    else
        unsetCursor();
    refresh();
}

void PanelWidget::leaveEvent(QEvent* /*event*/) {
    setHover(nullptr);
}

void PanelWidget::wheelEvent(QWheelEvent* event) {
    keys_.flushBefore(event->timestamp());
    const QPointF point = panelPoint(event->position());
    const PlacedControl* control = reachable(point);
    // The tempo display takes no pointer; the wheel over it turns the knob beside it.
    const PanelRect& tempo = placedControl(Control::tempoBPM, 0)->rect;
    const bool bare = control == nullptr || control->control == Control::tapTempo;
    if (bare && QRectF(tempo.x, tempo.y, tempo.width, tempo.height).contains(point))
        control = placedControl(Control::knobTempo, 0);
    if (control != wheelControl_) wheelAngle_ = 0;
    wheelControl_ = control;
    const QPoint angle = event->angleDelta(); // Alt turns the axes round
    wheelAngle_ += angle.y() != 0 ? angle.y() : angle.x();
    const int steps = wheelAngle_ / kWheelStep;
    wheelAngle_ -= steps * kWheelStep;
    event->accept();
    if (control != nullptr && steps != 0) panelWheel(control->control, control->index, steps);
}

bool PanelWidget::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        showTip(static_cast<QHelpEvent*>(event)->pos());
        return true;
    }
    return QWidget::event(event);
}

// Below the panel, or above it where the screen ends: over no control, so that a tip neither covers what the
// pointer goes to nor takes its click.
void PanelWidget::showTip(QPoint at) {
    constexpr QPoint kOwnOffset(2, 16); // which the toolkit adds
    constexpr int kAway = 4;
    constexpr int kTipHeight = 30;
    const PlacedControl* control = reachable(panelPoint(at));
    if (control == nullptr) {
        QToolTip::hideText();
        return;
    }
    const double k = zoom_ / 100.0;
    const PanelRect& r = control->rect;
    const QRect area = QRectF(r.x * k, r.y * k, r.width * k, r.height * k).toAlignedRect();
    const int below = height() + kAway;
    const bool room = mapToGlobal(QPoint(0, below + kTipHeight)).y() < screen()->availableGeometry().bottom();
    const int y = room ? below : -kTipHeight - kAway;
    QToolTip::showText(mapToGlobal(QPoint(area.left(), y) - kOwnOffset), controlTip(*control), this, area);
}

// --- keyboard

void PanelWidget::setFocusControl(const PlacedControl* control) {
    if (control == touch_.focus) return;
    updateRing();
    touch_.focus = control;
    updateRing();
    emit focusControlChanged();
}

void PanelWidget::updateRing() {
    if (touch_.focus == nullptr) return;
    const PanelRect& r = touch_.focus->rect;
    const double k = zoom_ / 100.0;
    update(QRectF((r.x - kRingReach) * k, (r.y - kRingReach) * k, (r.width + 2 * kRingReach) * k,
                  (r.height + 2 * kRingReach) * k)
               .toAlignedRect()
               .adjusted(-1, -1, 1, 1));
}

bool PanelWidget::focusNextPrevChild(bool next) {
    if (isHidden()) return false; // the toolkit looks for another place when the panel is put away
    const auto& stops = tabStops();
    const auto at = std::find(stops.begin(), stops.end(), touch_.focus);
    const std::ptrdiff_t count = std::ssize(stops);
    std::ptrdiff_t place = at != stops.end() ? at - stops.begin() : next ? -1 : count;
    do {
        place += next ? 1 : -1;
        if (place < 0 || place >= count) place = next ? 0 : count - 1; // round and round
    } while (!state_.isEnabled(stops[place]->control, stops[place]->index));
    setFocusControl(stops[place]);
    return true;
}

// Up, Down and F2 while a control has the focus. False when the key means something else.
bool PanelWidget::keyOnFocus(const QKeyEvent& event) {
    const PlacedControl* control = touch_.focus;
    if (control == nullptr || (event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
    const bool arrow = event.key() == Qt::Key_Up || event.key() == Qt::Key_Down;
    if (!arrow && event.key() != Qt::Key_F2) return false;
    if (arrow && isTurned(control->control))
        panelWheel(control->control, control->index, event.key() == Qt::Key_Up ? 1 : -1);
    else if (!event.isAutoRepeat())
        panelPress(control->control, control->index);
    return true;
}

void PanelWidget::keyPressEvent(QKeyEvent* event) {
    if (!keyOnFocus(*event) && !keys_.press(*event)) event->ignore();
}

void PanelWidget::keyReleaseEvent(QKeyEvent* event) {
    keys_.release(*event);
}

void PanelWidget::focusOutEvent(QFocusEvent* event) {
    updateRing();
    QWidget::focusOutEvent(event);
    keys_.flush();
    abandonPress();
    panelFocusLost();
}

} // namespace marlune
