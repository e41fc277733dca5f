// A freshly started program with its Pattern Sheet on a screen of memory, driven by real events.
#pragma once

#include <QTest>

#include "desktop/sheet_window.h"
#include "score/saved_patterns.h"
#include "score/step_edits.h"
#include "support/program_test.h"

namespace marlune {

struct SheetTest : ProgramTest {
    SheetTest() {
        noteSavedPatterns();
        clearUndoHistory();
        window.resize(1120, 520);
        window.show();
    }

    static SheetSpot at(SheetPart part, int module, int column = 0, int row = 0) {
        return {part, module, column, row};
    }
    [[nodiscard]] QPoint pointOf(const SheetSpot& spot) const { return window.placeOf(spot).center(); }

    void click(const SheetSpot& spot, Qt::KeyboardModifiers with = {},
               Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&window, button, with, pointOf(spot));
        settle();
    }
    void drag(const std::vector<SheetSpot>& way, Qt::MouseButton button = Qt::LeftButton, bool drop = true) {
        QTest::mousePress(&window, button, {}, pointOf(way.front()));
        for (const SheetSpot& spot : way) moveTo(pointOf(spot), button);
        if (drop) QTest::mouseRelease(&window, button, {}, pointOf(way.back()));
        settle();
    }
    void moveTo(QPoint point, Qt::MouseButton held) {
        QMouseEvent event(QEvent::MouseMove, point, window.mapToGlobal(point), Qt::NoButton, held, {});
        QApplication::sendEvent(&window, &event);
    }
    void wheel(const SheetSpot& spot, int notches, Qt::KeyboardModifiers with = {}) {
        const QPointF point = pointOf(spot);
        QWheelEvent event(point, window.mapToGlobal(point), {}, {0, 120 * notches}, Qt::NoButton, with,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&window, &event);
        settle();
    }
    void key(Qt::Key code, Qt::KeyboardModifiers with = {}) {
        QTest::keyClick(&window, code, with);
        settle();
    }
    // The program comes to rest.
    void settle() {
        noteSavedPatterns();
        window.refresh();
    }
    // A bass step as text: "A^!", "C-".
    static std::string step(int module, int s) {
        const BassStep& b = currentBass(module).steps[s];
        std::string text = noteName(b.note);
        if (!b.noteOn) text += "-";
        if (b.up) text += "^";
        if (b.down) text += "_";
        if (b.accent) text += "!";
        return text;
    }
    static std::string steps(int module, int from, int to) {
        std::string text;
        for (int s = from; s <= to; ++s) text += (text.empty() ? "" : " ") + step(module, s);
        return text;
    }

    SheetWindow window;
};

} // namespace marlune
