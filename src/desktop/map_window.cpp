#include "desktop/map_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QSettings>
#include <QTouchEvent>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace marlune {

namespace {

constexpr int kWheelStep = 120;
constexpr int kRefusalMs = 4000;
constexpr int kTitleBar = 40;
constexpr int kLeastWidth = 840;
constexpr int kLeastHeight = 520;
constexpr double kLeastScale = 0.75;
constexpr double kMostScale = 3;

constexpr int kCtrl = Qt::ControlModifier;
constexpr int kShift = Qt::ShiftModifier;

struct KeyRow {
    int key;
    int modifiers; // Qt::KeyboardModifier
    MapKey means;
    bool repeats;
};
constexpr std::array kKeys{
    KeyRow{Qt::Key_Left, 0, MapKey::left, true},
    KeyRow{Qt::Key_Right, 0, MapKey::right, true},
    KeyRow{Qt::Key_Left, kCtrl, MapKey::farLeft, true},
    KeyRow{Qt::Key_Right, kCtrl, MapKey::farRight, true},
    KeyRow{Qt::Key_Left, kShift, MapKey::extendLeft, true},
    KeyRow{Qt::Key_Right, kShift, MapKey::extendRight, true},
    KeyRow{Qt::Key_Left, kCtrl | kShift, MapKey::extendFarLeft, true},
    KeyRow{Qt::Key_Right, kCtrl | kShift, MapKey::extendFarRight, true},
    KeyRow{Qt::Key_Up, 0, MapKey::up, true},
    KeyRow{Qt::Key_Down, 0, MapKey::down, true},
    KeyRow{Qt::Key_Return, 0, MapKey::press, false},
    KeyRow{Qt::Key_Enter, 0, MapKey::press, false},
    KeyRow{Qt::Key_Escape, 0, MapKey::escape, false},
    KeyRow{Qt::Key_End, 0, MapKey::end, false},
    KeyRow{Qt::Key_A, kCtrl | kShift, MapKey::selectToEnd, false},
    KeyRow{Qt::Key_V, kCtrl | kShift, MapKey::selectPointer, false},
    KeyRow{Qt::Key_P, kCtrl | kShift, MapKey::paintPointer, false},
    KeyRow{Qt::Key_E, kCtrl | kShift, MapKey::erasePointer, false},
    KeyRow{Qt::Key_F, kCtrl | kShift, MapKey::follow, false},
    KeyRow{Qt::Key_C, kCtrl, MapKey::copy, false},
    KeyRow{Qt::Key_V, kCtrl, MapKey::paste, true},
    KeyRow{Qt::Key_Insert, kCtrl, MapKey::insert, false},
    KeyRow{Qt::Key_Delete, 0, MapKey::remove, false},
    KeyRow{Qt::Key_Backspace, 0, MapKey::init, false},
    KeyRow{Qt::Key_Z, kCtrl, MapKey::undo, true},
    KeyRow{Qt::Key_Z, kCtrl | kShift, MapKey::redo, true},
};

const KeyRow* rowOf(const QKeyEvent& event) {
    const int modifiers = static_cast<int>((event.modifiers() & ~Qt::KeypadModifier).toInt());
    const auto* row = std::find_if(kKeys.begin(), kKeys.end(), [&](const KeyRow& k) {
        return k.key == event.key() && k.modifiers == modifiers;
    });
    return row != kKeys.end() ? row : nullptr;
}

MapButton buttonOf(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton: return MapButton::left;
        case Qt::RightButton: return MapButton::right;
        case Qt::MiddleButton: return MapButton::middle;
        default: return MapButton::other;
    }
}

} // namespace

MapWindow::MapWindow() : ScoreWindow("map") {
    setWindowTitle(QStringLiteral("Song Map - Marlune 200Q"));
    setAccessibleName(QStringLiteral("Song Map"));
    setMinimumSize(kLeastWidth, kLeastHeight);
    desk_.view.knobs = {0};
    takeState();
    for (int m = 0; m < kModules; ++m) desk_.paint[m] = state_.current[m];
    refusalEnd_.setSingleShot(true);
    connect(&refusalEnd_, &QTimer::timeout, this, [this] {
        refusal_.clear();
        refresh();
    });
}

// --- size: the window's room goes to the time line and to the knob lanes

double MapWindow::scale() const {
    const double fits = std::min(width() / kMapWidth, height() / kMapHeight);
    return std::clamp(std::min(zoomWanted_, fits), kLeastScale, kMostScale);
}

Box MapWindow::content() const {
    const double k = scale();
    return {0, 0, std::max(kMapWidth, std::floor(width() / k + 0.01)),
            std::max(kMapHeight, std::floor(height() / k + 0.01))};
}

void MapWindow::setZoom(int percent) {
    const QSize room = screen()->availableGeometry().size() - QSize(0, kTitleBar);
    const Box before = content();
    const double most = std::min(room.width() / kMapWidth, room.height() / kMapHeight);
    zoomWanted_ = std::clamp(std::min(percent / 100.0, most), kLeastScale, kMostScale);
    if (!isFullScreen())
        resize(std::min(room.width(), static_cast<int>(std::lround(before.width * zoomWanted_))),
               std::min(room.height(), static_cast<int>(std::lround(before.height * zoomWanted_))));
    forgetShown();
    refresh();
}

void MapWindow::remember(QSettings& settings) const {
    ScoreWindow::remember(settings);
    settings.beginGroup(QStringLiteral("map"));
    settings.setValue(QStringLiteral("zoom"), zoomWanted_);
    settings.setValue(QStringLiteral("barWidth"), desk_.view.ppb);
    settings.setValue(QStringLiteral("first"), desk_.view.first);
    settings.setValue(QStringLiteral("dock"), desk_.view.dock);
    settings.setValue(QStringLiteral("folding"), desk_.view.folding);
    settings.setValue(QStringLiteral("follow"), desk_.follow);
    QStringList knobs;
    for (const int knob : desk_.view.knobs) knobs << QString::number(knob);
    settings.setValue(QStringLiteral("knobs"), knobs.join(QChar(' ')));
    settings.endGroup();
}

void MapWindow::recall(QSettings& settings) {
    resize(static_cast<int>(kMapWidth), static_cast<int>(kMapHeight));
    settings.beginGroup(QStringLiteral("map"));
    const auto value = [&](const char* key, const QVariant& otherwise) {
        return settings.value(QString::fromLatin1(key), otherwise);
    };
    MapView& view = desk_.view;
    zoomWanted_ = std::clamp(value("zoom", 1.0).toDouble(), kLeastScale, kMostScale);
    const double ppb = value("barWidth", kFirstBarWidth).toDouble();
    view.ppb = *std::min_element(kBarWidths.begin(), kBarWidths.end(),
                                 [&](double a, double b) { return std::abs(a - ppb) < std::abs(b - ppb); });
    view.dock = value("dock", true).toBool();
    view.folding = value("folding", true).toBool();
    desk_.follow = value("follow", true).toBool();
    view.knobs.clear();
    for (const QString& word :
         value("knobs", QStringLiteral("0")).toString().split(QChar(' '), Qt::SkipEmptyParts)) {
        const int knob = word.toInt();
        if (knob >= 0 && knob < kKnobs && (view.knobs.empty() || knob > view.knobs.back()))
            view.knobs.push_back(knob);
    }
    const int first = value("first", 0).toInt();
    settings.endGroup();
    recallGeometry(settings);
    takeState();
    scrollTo(view, first);
}

QRect MapWindow::placeOf(const MapSpot& spot) const {
    return widgetRect(cellBox(state_, desk_, spot));
}

QPoint MapWindow::pointOf(double x, double y) const {
    return widgetRect({x, y, 0.01, 0.01}).topLeft();
}

Box MapWindow::focusBox() const {
    const MapSpot& at = cursor_.spot();
    return at.part == MapPart::none ? Box{} : cellBox(state_, desk_, at);
}

// --- what is shown

void MapWindow::takeState() {
    const auto names = state_.knobNames;
    state_ = readMap();
    MapView& view = desk_.view;
    if (!named_ || state_.knobNames != names) {
        view.chipTexts = chipTexts(state_.knobNames);
        named_ = true;
    }
    const Box size = content();
    view.width = size.width;
    view.height = size.height;
    view.end = state_.end;
    scrollTo(view, view.first);
    if (!hand_.dragging()) followPlayhead(desk_, state_);
}

Scene MapWindow::scene() {
    takeState();
    show_.zoom = zoom();
    show_.held = hand_.held();
    const bool keyboard = cursor_.spot().part != MapPart::none;
    show_.status =
        mapStatus(state_, desk_, keyboard ? MapSpot{} : show_.hover, show_.hoverTick, refusal_.toStdString());
    if (keyboard && !show_.status.refusal) show_.status.left = mapPlaceName(state_, desk_, cursor_.spot());
    return mapScene(state_, desk_, show_);
}

void MapWindow::setDesk(const MapDesk& desk) {
    const auto texts = desk_.view.chipTexts;
    desk_ = desk;
    desk_.view.chipTexts = texts;
    takeState();
    refresh();
}

// --- what gestures leave to the window

void MapWindow::follow(MapWish wish) {
    const std::string sentence = hand_.takeRefusal();
    const bool told = !sentence.empty();
    if (told) {
        refusal_ = QString::fromStdString(sentence);
        refusalEnd_.start(kRefusalMs);
        emit refused(refusal_);
    }
    if (wish == MapWish::zoom) {
        const auto* next = std::upper_bound(kZooms.begin(), kZooms.end(), zoom());
        const int before = zoom();
        setZoom(next != kZooms.end() ? *next : 100);
        if (zoom() == before) setZoom(100); // no larger one fits the screen
    } else if (wish == MapWish::dock) {
        desk_.view.dock = !desk_.view.dock;
        cursor_.drop();
    }
    refresh();
    tellCursor();
    if (told) emit announced();
}

void MapWindow::putCursor(const MapSpot& spot) {
    cursor_.put(spot);
    refresh();
    tellCursor();
}

// --- for assistive tools

MapSpot MapWindow::spokenSpot(int group, int cell) const {
    return cellOf(desk_, mapGroups(state_, desk_)[static_cast<std::size_t>(group)], cell);
}

int MapWindow::spokenGroups() const {
    return static_cast<int>(mapGroups(state_, desk_).size()) + 1;
}

SpokenGroup MapWindow::spokenGroup(int group) const {
    if (group == spokenGroups() - 1) return {QStringLiteral("Status"), 1, true};
    const MapSpot first = mapGroups(state_, desk_)[static_cast<std::size_t>(group)];
    return {QString::fromStdString(mapGroupName(state_, desk_, first)), cellsOf(state_, desk_, first)};
}

SpokenCell MapWindow::spokenCell(int group, int cell) const {
    if (group == spokenGroups() - 1) {
        const std::string words =
            show_.status.left + (show_.status.left.empty() ? "" : "  ") + show_.status.right;
        return {QString::fromStdString(words), placeOf({MapPart::statusBar})};
    }
    const MapSpot spot = spokenSpot(group, cell);
    SpokenCell spoken{QString::fromStdString(mapPlaceName(state_, desk_, spot)), placeOf(spot)};
    spoken.focused = cursor_.spot() == spot;
    spoken.disabled = !mapPlaceAwake(state_, desk_, spot);
    spoken.selected = spoken.name.contains(QStringLiteral(", selected")) ||
                      spoken.name.contains(QStringLiteral(", current"));
    if (spot.part == MapPart::knobLane) spoken.role = SpokenRole::slider;
    if (spot.part == MapPart::overviewFrame) spoken.role = SpokenRole::scrollBar;
    return spoken;
}

void MapWindow::pressSpoken(int group, int cell) {
    if (group >= spokenGroups() - 1) return;
    MapCursor at;
    at.put(spokenSpot(group, cell));
    follow(at.press(state_, desk_, hand_));
}

void MapWindow::focusSpoken(int group, int cell) {
    if (group < spokenGroups() - 1) putCursor(spokenSpot(group, cell));
}

void MapWindow::tellCursor() {
    const MapSpot& at = cursor_.spot();
    const QString name =
        at.part == MapPart::none ? QString() : QString::fromStdString(mapPlaceName(state_, desk_, at));
    const bool moved = at != toldSpot_;
    const bool renamed = name != toldName_;
    toldSpot_ = at;
    toldName_ = name;
    if (at.part == MapPart::none) return;
    if (moved)
        emit spokenFocusMoved();
    else if (renamed)
        emit spokenFocusChanged();
}

// --- pointer

MapPress MapWindow::pressAt(const QPointF& point, Qt::KeyboardModifiers with) const {
    const QPointF at = contentAt(point);
    MapPress how;
    how.shift = with.testFlag(Qt::ShiftModifier);
    how.ctrl = with.testFlag(Qt::ControlModifier);
    how.x = at.x();
    how.y = at.y();
    return how;
}

void MapWindow::hoverAt(QPointF point) {
    const QPointF at = contentAt(point);
    show_.hover = mapSpotAt(desk_.view, at.x(), at.y());
    show_.hoverTick = tickAtX(desk_.view, at.x());
    const bool digits = show_.hover.part == MapPart::selectionFirst ||
                        show_.hover.part == MapPart::selectionLast ||
                        show_.hover.part == MapPart::selectionCount;
    if (digits && desk_.selection.any())
        setCursor(Qt::SizeVerCursor);
    else if (show_.hover.part == MapPart::overviewFrame && show_.hover.column > 0)
        setCursor(Qt::SizeHorCursor);
    else
        unsetCursor();
}

void MapWindow::press(const QMouseEvent& event, bool second) {
    if (heldButton_ != Qt::NoButton) return; // a second button during a drag changes nothing
    heldButton_ = event.button();
    cursor_.drop();
    hoverAt(event.position());
    MapPress how = pressAt(event.position(), event.modifiers());
    how.button = buttonOf(event.button());
    how.second = second;
    // What is pressed may let events run, the release among them: nothing is taken from the event after this.
    follow(hand_.press(show_.hover, how));
}

void MapWindow::mousePressEvent(QMouseEvent* event) {
    keys_.flushBefore(event->timestamp());
    press(*event, false);
}

void MapWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    press(*event, true);
}

void MapWindow::mouseMoveEvent(QMouseEvent* event) {
    if (heldButton_ != Qt::NoButton && !event->buttons().testFlag(heldButton_)) {
        heldButton_ = Qt::NoButton; // the release went elsewhere
        hand_.release();
    }
    const QPointF at = contentAt(event->position());
    if (hand_.dragging()) hand_.move(at.x(), at.y());
    hoverAt(event->position());
    follow(MapWish::nothing);
}

void MapWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != heldButton_) return;
    heldButton_ = Qt::NoButton;
    hand_.release();
    hoverAt(event->position());
    follow(MapWish::nothing);
}

void MapWindow::leaveEvent(QEvent* /*event*/) {
    show_.hover = {};
    refresh();
}

void MapWindow::wheelEvent(QWheelEvent* event) {
    const QPoint angle = event->angleDelta();
    wheelAngle_ += angle.y() != 0 ? angle.y() : angle.x();
    const int steps = wheelAngle_ / kWheelStep;
    wheelAngle_ -= steps * kWheelStep;
    event->accept();
    if (steps == 0) return;
    const MapPress how = pressAt(event->position(), event->modifiers());
    hand_.wheel(mapSpotAt(desk_.view, how.x, how.y), steps, how);
    hoverAt(event->position());
    follow(MapWish::nothing);
}

// --- fingers: one acts where it is lifted, two scroll and zoom

bool MapWindow::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::ShortcutOverride: // what the menus mean by these keys is meant of the map here
            if (rowOf(*static_cast<QKeyEvent*>(event)) == nullptr) break;
            event->accept();
            return true;
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd: touch(*static_cast<QTouchEvent*>(event)); return true;
        case QEvent::TouchCancel:
            finger_ = {};
            refresh();
            return true;
        default: break;
    }
    return ScoreWindow::event(event);
}

void MapWindow::touch(const QTouchEvent& touch) {
    if (touch.type() == QEvent::TouchBegin) oneFinger_ = true;
    if (touch.pointCount() != 1) {
        const double x = (contentAt(touch.points().at(0).position()).x() +
                          contentAt(touch.points().at(1).position()).x()) /
                         2;
        const int bars = oneFinger_ ? 0 : static_cast<int>((fingersX_ - x) / desk_.view.ppb);
        if (oneFinger_ || bars != 0) fingersX_ = x;
        if (bars != 0) {
            scrollTo(desk_.view, desk_.view.first + bars);
            desk_.follow = false;
        }
        oneFinger_ = false; // until all are lifted
    }
    pinch(touch);
    const MapPress how = pressAt(touch.points().constFirst().position(), {});
    const MapSpot spot = mapSpotAt(desk_.view, how.x, how.y);
    finger_ = oneFinger_ && touch.type() != QEvent::TouchEnd ? spot : MapSpot{};
    cursor_.drop();
    if (touch.type() == QEvent::TouchEnd && oneFinger_)
        follow(hand_.click(spot, how));
    else
        refresh();
}

Box MapWindow::fingerBox() const {
    switch (finger_.part) {
        case MapPart::paletteSlot:
        case MapPart::selectionModule:
        case MapPart::knobChips: return spotBox(desk_.view, finger_);
        default: return {};
    }
}

// --- keyboard

void MapWindow::keyPressEvent(QKeyEvent* event) {
    if (const KeyRow* row = rowOf(*event)) {
        if (event->isAutoRepeat() && !row->repeats) return;
        follow(cursor_.key(row->means, state_, desk_, hand_));
        return;
    }
    if (!keys_.press(*event)) event->ignore();
    refresh();
}

bool MapWindow::focusNextPrevChild(bool next) {
    cursor_.key(next ? MapKey::nextGroup : MapKey::previousGroup, state_, desk_, hand_);
    refresh();
    tellCursor();
    return true;
}

void MapWindow::focusOutEvent(QFocusEvent* event) {
    heldButton_ = Qt::NoButton;
    hand_.release();
    ScoreWindow::focusOutEvent(event);
}

} // namespace marlune
