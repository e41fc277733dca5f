#include "desktop/sheet_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QSettings>
#include <QTouchEvent>
#include <QWheelEvent>
#include <algorithm>
#include <array>

namespace marlune {

namespace {

constexpr int kWheelStep = 120;
constexpr int kRefusalMs = 4000;

struct KeyRow {
    int key;
    int modifiers; // Qt::KeyboardModifier
    SheetKey means;
    bool repeats;
};
constexpr std::array kKeys{
    KeyRow{Qt::Key_Left, 0, SheetKey::left, true},
    KeyRow{Qt::Key_Right, 0, SheetKey::right, true},
    KeyRow{Qt::Key_Up, 0, SheetKey::up, true},
    KeyRow{Qt::Key_Down, 0, SheetKey::down, true},
    KeyRow{Qt::Key_Home, 0, SheetKey::firstStep, false},
    KeyRow{Qt::Key_End, 0, SheetKey::lastStep, false},
    KeyRow{Qt::Key_Return, 0, SheetKey::press, false},
    KeyRow{Qt::Key_Enter, 0, SheetKey::press, false},
    KeyRow{Qt::Key_Return, Qt::ShiftModifier, SheetKey::accent, false},
    KeyRow{Qt::Key_Enter, Qt::ShiftModifier, SheetKey::accent, false},
    KeyRow{Qt::Key_Up, Qt::ShiftModifier, SheetKey::octaveUp, false},
    KeyRow{Qt::Key_Down, Qt::ShiftModifier, SheetKey::octaveDown, false},
    KeyRow{Qt::Key_Up, Qt::ControlModifier, SheetKey::noteUp, true},
    KeyRow{Qt::Key_Down, Qt::ControlModifier, SheetKey::noteDown, true},
    KeyRow{Qt::Key_Left, Qt::ControlModifier, SheetKey::moveLeft, true},
    KeyRow{Qt::Key_Right, Qt::ControlModifier, SheetKey::moveRight, true},
    KeyRow{Qt::Key_Delete, 0, SheetKey::clear, false},
    KeyRow{Qt::Key_Escape, 0, SheetKey::escape, false},
};

SheetButton buttonOf(Qt::MouseButton button) {
    if (button == Qt::LeftButton) return SheetButton::left;
    return button == Qt::RightButton ? SheetButton::right : SheetButton::other;
}

} // namespace

SheetWindow::SheetWindow() : ScoreWindow("sheet") {
    setWindowTitle(QStringLiteral("Pattern Sheet - Marlune 200Q"));
    setAccessibleName(QStringLiteral("Pattern Sheet"));
    state_ = readSheet();
    refusalEnd_.setSingleShot(true);
    connect(&refusalEnd_, &QTimer::timeout, this, [this] {
        refusal_.clear();
        refresh();
    });
}

Scene SheetWindow::scene() {
    state_ = readSheet();
    show_.zoom = zoom();
    show_.held = hand_.held();
    const bool keyboard = cursor_.spot().part != SheetPart::none;
    show_.status = sheetStatus(state_, keyboard ? cursor_.spot() : show_.hover, refusal_.toStdString());
    return sheetScene(state_, show_);
}

void SheetWindow::setForm(SheetForm form) {
    if (form == show_.form) return;
    hand_.release();
    const int percent = zoom();
    show_.form = form;
    show_.hover = {};
    cursor_.drop();
    contentChanged(percent);
}

void SheetWindow::remember(QSettings& settings) const {
    ScoreWindow::remember(settings);
    settings.setValue(QStringLiteral("sheet/compact"), form() == SheetForm::compact);
}

void SheetWindow::recall(QSettings& settings) {
    show_.form =
        settings.value(QStringLiteral("sheet/compact")).toBool() ? SheetForm::compact : SheetForm::wide;
    ScoreWindow::recall(settings);
}

QRect SheetWindow::placeOf(const SheetSpot& spot) const {
    if (spot.part == SheetPart::loopGrip)
        return widgetRect(loopGripBox(show_.form, spot.module, state_.modules[spot.module].length));
    return widgetRect(sheetBox(show_.form, spot.part, spot.module, spot.column, spot.row));
}

Box SheetWindow::focusBox() const {
    const SheetSpot& at = cursor_.spot();
    if (at.part == SheetPart::none) return {};
    return sheetBox(show_.form, at.part, at.module, at.column, at.row);
}

// --- what gestures leave to the window

void SheetWindow::follow(SheetWish wish) {
    const std::string sentence = hand_.takeRefusal();
    const bool told = !sentence.empty();
    if (told) {
        refusal_ = QString::fromStdString(sentence);
        refusalEnd_.start(kRefusalMs);
        emit refused(refusal_);
    }
    switch (wish) {
        case SheetWish::zoomIn: stepZoom(1); break;
        case SheetWish::zoomOut: stepZoom(-1); break;
        case SheetWish::zoomBack: setZoom(100); break;
        case SheetWish::compact:
            setForm(form() == SheetForm::wide ? SheetForm::compact : SheetForm::wide);
            break;
        default: break;
    }
    refresh();
    tellCursor();
    if (told) emit announced();
}

void SheetWindow::click(const SheetSpot& spot) {
    follow(hand_.click(spot));
}

void SheetWindow::putCursor(const SheetSpot& spot) {
    cursor_.put(spot);
    refresh();
    tellCursor();
}

// --- for assistive tools

// Rolls have a cell for each step, the other grids one for each place.
SheetSpot SheetWindow::spokenSpot(int group, int cell) const {
    SheetSpot spot = sheetGroups(view())[static_cast<std::size_t>(group)];
    const Grid grid = sheetGrid(show_.form, spot.part, spot.module);
    spot.column = cell % grid.columns;
    spot.row = spot.part == SheetPart::roll ? kTopNote - state_.modules[spot.module].steps[spot.column].note
                                            : cell / grid.columns;
    return spot;
}

int SheetWindow::spokenGroups() const {
    return static_cast<int>(sheetGroups(view()).size()) + 1;
}

SpokenGroup SheetWindow::spokenGroup(int group) const {
    if (group == spokenGroups() - 1) return {QStringLiteral("Status"), 1, true};
    const SheetSpot first = spokenSpot(group, 0);
    const Grid grid = sheetGrid(show_.form, first.part, first.module);
    const int rows = first.part == SheetPart::roll ? 1 : grid.rows;
    return {QString::fromStdString(sheetGroupName(state_, first)), grid.columns * rows};
}

SpokenCell SheetWindow::spokenCell(int group, int cell) const {
    if (group == spokenGroups() - 1) {
        const std::string words =
            show_.status.left + (show_.status.left.empty() ? "" : "  ") + show_.status.right;
        return {QString::fromStdString(words), placeOf({SheetPart::statusBar, 0, 0, 0})};
    }
    const SheetSpot spot = spokenSpot(group, cell);
    const SheetSpot& at = cursor_.spot();
    SpokenCell spoken{QString::fromStdString(sheetPlaceName(state_, spot)), placeOf(spot)};
    spoken.focused = at.part == spot.part && at.module == spot.module && at.column == spot.column &&
                     (at.row == spot.row || spot.part == SheetPart::roll);
    spoken.disabled = !sheetPlaceAwake(state_, spot);
    spoken.selected = spoken.name.contains(QStringLiteral(", selected")) ||
                      spoken.name.contains(QStringLiteral(", current"));
    return spoken;
}

void SheetWindow::pressSpoken(int group, int cell) {
    if (group < spokenGroups() - 1) click(spokenSpot(group, cell));
}

void SheetWindow::focusSpoken(int group, int cell) {
    if (group < spokenGroups() - 1) putCursor(spokenSpot(group, cell));
}

void SheetWindow::tellCursor() {
    const SheetSpot& at = cursor_.spot();
    const QString name =
        at.part == SheetPart::none ? QString() : QString::fromStdString(sheetPlaceName(state_, at));
    const bool moved = at != toldSpot_;
    const bool renamed = name != toldName_;
    toldSpot_ = at;
    toldName_ = name;
    if (at.part == SheetPart::none) return;
    if (moved)
        emit spokenFocusMoved();
    else if (renamed)
        emit spokenFocusChanged();
}

// --- pointer

void SheetWindow::hoverAt(QPointF point) {
    const QPointF at = contentAt(point);
    show_.hover = sheetSpotAt(view(), at.x(), at.y());
    const bool turned = show_.hover.part == SheetPart::loop || show_.hover.part == SheetPart::loopGrip;
    if (turned && state_.mayEdit())
        setCursor(show_.hover.part == SheetPart::loop ? Qt::SizeVerCursor : Qt::SizeHorCursor);
    else
        unsetCursor();
}

void SheetWindow::mousePressEvent(QMouseEvent* event) {
    if (heldButton_ != Qt::NoButton) return; // a second button during a drag changes nothing
    keys_.flushBefore(event->timestamp());
    heldButton_ = event->button();
    cursor_.drop();
    hoverAt(event->position());
    const QPointF at = contentAt(event->position());
    const SheetPress how{buttonOf(event->button()), event->modifiers().testFlag(Qt::ControlModifier), at.y()};
    // What is pressed may let events run, the release among them: nothing is taken from the event after this.
    follow(hand_.press(show_.hover, how));
}

void SheetWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void SheetWindow::mouseMoveEvent(QMouseEvent* event) {
    if (heldButton_ != Qt::NoButton && !event->buttons().testFlag(heldButton_)) {
        heldButton_ = Qt::NoButton; // the release went elsewhere
        hand_.release();
    }
    const QPointF at = contentAt(event->position());
    if (hand_.dragging()) hand_.move(view(), at.x(), at.y());
    hoverAt(event->position());
    follow(SheetWish::nothing);
}

void SheetWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != heldButton_) return;
    heldButton_ = Qt::NoButton;
    hand_.release();
    hoverAt(event->position());
    follow(SheetWish::nothing);
}

void SheetWindow::leaveEvent(QEvent* /*event*/) {
    show_.hover = {};
    refresh();
}

void SheetWindow::wheelEvent(QWheelEvent* event) {
    const QPoint angle = event->angleDelta();
    wheelAngle_ += angle.y() != 0 ? angle.y() : angle.x();
    const int steps = wheelAngle_ / kWheelStep;
    wheelAngle_ -= steps * kWheelStep;
    event->accept();
    if (steps == 0) return;
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        stepZoom(steps > 0 ? 1 : -1);
        return;
    }
    const QPointF at = contentAt(event->position());
    hand_.wheel(sheetSpotAt(view(), at.x(), at.y()), steps, event->modifiers().testFlag(Qt::ShiftModifier));
    follow(SheetWish::nothing);
}

// --- fingers: one acts where it is lifted, two zoom

bool SheetWindow::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd: touch(*static_cast<QTouchEvent*>(event)); return true;
        case QEvent::TouchCancel:
            finger_ = {};
            refresh();
            return true;
        default: return ScoreWindow::event(event);
    }
}

void SheetWindow::touch(const QTouchEvent& touch) {
    if (touch.type() == QEvent::TouchBegin) oneFinger_ = true;
    if (touch.pointCount() != 1) oneFinger_ = false; // until all are lifted
    pinch(touch);
    const QPointF at = contentAt(touch.points().constFirst().position());
    const SheetSpot spot = sheetSpotAt(view(), at.x(), at.y());
    finger_ = oneFinger_ && touch.type() != QEvent::TouchEnd ? spot : SheetSpot{};
    cursor_.drop();
    if (touch.type() == QEvent::TouchEnd && oneFinger_)
        follow(hand_.click(spot, {SheetButton::left, false, at.y()}));
    else
        refresh();
}

Box SheetWindow::fingerBox() const {
    const bool small = finger_.part >= SheetPart::stepCap && finger_.part != SheetPart::none;
    return small ? sheetBox(show_.form, finger_.part, finger_.module, finger_.column, finger_.row) : Box{};
}

// --- keyboard

bool SheetWindow::sheetKey(const QKeyEvent& event) {
    const int modifiers = static_cast<int>((event.modifiers() & ~Qt::KeypadModifier).toInt());
    const auto* row = std::find_if(kKeys.begin(), kKeys.end(), [&](const KeyRow& k) {
        return k.key == event.key() && k.modifiers == modifiers;
    });
    if (row == kKeys.end()) return false;
    if (event.isAutoRepeat() && !row->repeats) return cursor_.spot().part != SheetPart::none;
    SheetWish wish = SheetWish::nothing;
    if (!cursor_.key(row->means, view(), hand_, wish)) return false;
    follow(wish);
    return true;
}

void SheetWindow::keyPressEvent(QKeyEvent* event) {
    if (!sheetKey(*event) && !keys_.press(*event)) event->ignore();
    refresh();
}

bool SheetWindow::focusNextPrevChild(bool next) {
    SheetWish wish = SheetWish::nothing;
    cursor_.key(next ? SheetKey::nextGroup : SheetKey::previousGroup, view(), hand_, wish);
    refresh();
    tellCursor();
    return true;
}

void SheetWindow::focusOutEvent(QFocusEvent* event) {
    heldButton_ = Qt::NoButton;
    hand_.release();
    ScoreWindow::focusOutEvent(event);
}

} // namespace marlune
