// A freshly started program in song mode with its Song Map on a screen of memory, driven by real events.
#pragma once

#include <QTest>

#include "desktop/map_window.h"
#include "score/record_marks.h"
#include "support/program_test.h"

namespace marlune {

struct MapTest : SongModeTest {
    MapTest() {
        clearUndoHistory();
        window.resize(1120, 620);
        window.show();
        settle();
    }

    // A place on the time line: bar counted from 0, with a part of it; lane 0..2.
    [[nodiscard]] QPoint inLane(int lane, double bar) const {
        const Box box = mapBox(window.desk().view, MapPart::lane, 0, 0, lane);
        return window.pointOf(barX(window.desk().view, bar), box.middleY());
    }
    [[nodiscard]] QPoint inRuler(double bar) const {
        return window.pointOf(barX(window.desk().view, bar),
                              mapBox(window.desk().view, MapPart::ruler).middleY());
    }
    [[nodiscard]] QPoint inKnob(int row, int tick, int value) const {
        const Box box = mapBox(window.desk().view, MapPart::knobLane, 0, 0, row);
        return window.pointOf(songX(window.desk().view, tick) + 0.4, yOfValue(box, value));
    }
    [[nodiscard]] QPoint place(const MapSpot& spot) const { return window.placeOf(spot).center(); }

    void click(QPoint at, Qt::KeyboardModifiers with = {}, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&window, button, with, at);
        settle();
    }
    void click(const MapSpot& spot, Qt::KeyboardModifiers with = {}) { click(place(spot), with); }
    void drag(const std::vector<QPoint>& way, Qt::MouseButton button = Qt::LeftButton, bool drop = true) {
        QTest::mousePress(&window, button, {}, way.front());
        for (const QPoint& point : way) {
            QMouseEvent event(QEvent::MouseMove, point, window.mapToGlobal(point), Qt::NoButton, button, {});
            QApplication::sendEvent(&window, &event);
        }
        if (drop) QTest::mouseRelease(&window, button, {}, way.back());
        settle();
    }
    void wheel(QPoint at, int notches, Qt::KeyboardModifiers with = {}) {
        QWheelEvent event(at, window.mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, with,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&window, &event);
        settle();
    }
    void key(Qt::Key code, Qt::KeyboardModifiers with = {}) {
        QTest::keyClick(&window, code, with);
        settle();
    }
    void pointer(MapPointer wanted) { click(MapSpot{MapPart::pointerMode, 0, static_cast<int>(wanted)}); }
    // The program comes to rest.
    void settle() {
        noteRecordMarks();
        window.refresh();
    }
    [[nodiscard]] std::string selected() const {
        const MapSelection& s = window.desk().selection;
        if (!s.any()) return "none";
        std::string text = std::to_string(s.bars.first + 1) + "-" + std::to_string(s.bars.end()) + " ";
        for (int m = 0; m < kModules; ++m) text += s.lanes.modules[m] ? 'x' : '.';
        return text + (s.lanes.knobs ? 'k' : '.');
    }
    [[nodiscard]] std::string told() const { return window.shows().status.left; }
    static std::string bars(int module, int first, int count) {
        std::string text;
        for (int bar = first; bar < first + count; ++bar)
            text += (text.empty() ? "" : " ") + barName(barTrack[module][bar]);
        return text;
    }
    [[nodiscard]] static int bar() { return barOf(songPosition->songTick); }

    MapWindow window;
};

} // namespace marlune
