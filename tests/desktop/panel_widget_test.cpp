// What the user does with the pointer and the keys arrives at the right control.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

#include "desktop/control_words.h"
#include "desktop/desktop_support.h"
#include "desktop/panel_widget.h"

namespace marlune {
namespace {

class PanelWidgetTest : public testing::Test {
  protected:
    PanelWidgetTest() {
        panel.showState(patternMoment());
        panel.show();
        panel.setFocus();
        QTest::qWait(1);
        takeEvents();
    }

    // A point of the control that no other control covers, on the widget at its zoom.
    [[nodiscard]] QPoint pointOf(Control control, int index) const {
        const PlacedControl& c = *placedControl(control, index);
        for (const double fy : {0.5, 0.9, 0.08, 0.97})
            for (const double fx : {0.5, 0.05, 0.95, 0.25}) {
                const QPoint at((QPointF(c.rect.x + c.rect.width * fx, c.rect.y + c.rect.height * fy) *
                                 panel.zoom() / 100.0)
                                    .toPoint());
                if (controlAt(at.x() * 100.0 / panel.zoom(), at.y() * 100.0 / panel.zoom()) == &c) return at;
            }
        return {-1, -1};
    }
    void mouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers keys = {}) {
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
        QMouseEvent event(type, at, panel.mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button,
                          held, keys);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(&panel, &event);
    }
    void key(int qtKey, bool press, bool repeat, Qt::KeyboardModifiers held = {}, quint64 at = 0) {
        QKeyEvent event(press ? QEvent::KeyPress : QEvent::KeyRelease, qtKey, held, QString(), repeat);
        event.setTimestamp(at);
        QCoreApplication::sendEvent(&panel, &event);
    }

    PanelWidget panel;
    quint64 time = 0; // of the pointer's events
};

TEST_F(PanelWidgetTest, AClickReachesTheControlUnderItAtEveryZoom) {
    const auto click = [](const std::string& where) { return "press:" + where + " release:" + where; };
    for (const int zoom : {50, 100, 125, 300}) {
        panel.setZoom(zoom);
        for (const PlacedControl& c : placedControls()) {
            if (!c.interactive) continue;
            const QPoint at = pointOf(c.control, c.index);
            ASSERT_GE(at.x(), 0) << controlInfo(c.control).name << c.index;
            QTest::mouseClick(&panel, Qt::LeftButton, Qt::NoModifier, at);
            const std::string where = std::string(controlInfo(c.control).name) + "(" +
                                      std::to_string(c.index) + ")@" +
                                      std::to_string(std::lround(at.y() * 1500.0 / zoom));
            EXPECT_EQ(takeEvents(), click(where)) << zoom;
            QTest::qWait(0);
        }
    }
}

TEST_F(PanelWidgetTest, ADragKeepsItsControlAndTellsTheHeldButtonAndShift) {
    mouse(QEvent::MouseButtonPress, {232, 195}, Qt::LeftButton);
    mouse(QEvent::MouseMove, {500, -20}, Qt::LeftButton, Qt::ShiftModifier);
    mouse(QEvent::MouseButtonPress, {500, 300}, Qt::RightButton);
    mouse(QEvent::MouseButtonRelease, {500, 300}, Qt::LeftButton);
    mouse(QEvent::MouseMove, {500, 300}, Qt::NoButton);
    EXPECT_EQ(takeEvents(),
              "press:knobSprite(0)@2925 move:knobSprite(0)@-300,fine,outside "
              "release:knobSprite(0)@4500,outside");
    mouse(QEvent::MouseButtonPress, {232, 195}, Qt::LeftButton);
    panel.clearFocus(); // a dialog comes, the release goes to it
    mouse(QEvent::MouseMove, {232, 100}, Qt::NoButton);
    EXPECT_EQ(takeEvents(), "press:knobSprite(0)@2925 release:knobSprite(0)@2925,outside focusLost");
    panel.showEnabled(Control::knobSprite, 0, false); // answers nothing
    QTest::mouseClick(&panel, Qt::LeftButton, Qt::NoModifier, {232, 195});
    EXPECT_EQ(takeEvents(), "");
}

TEST_F(PanelWidgetTest, TheSecondPressOfAFastPairIsAPressAndSaysSo) {
    const QPoint at = pointOf(Control::up, 0);
    const std::string where = "up(0)@" + std::to_string(at.y() * 15);
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                    QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease})
        mouse(type, at, Qt::LeftButton);
    EXPECT_EQ(takeEvents(), "press:" + where + " release:" + where + " press:" + where +
                                ",second release:" + where + ",second");
}

TEST_F(PanelWidgetTest, AtStartAllStaysInPlaceAndAMovedControlIsSeenAndHitThere) {
    const QImage before = panel.grab().toImage();
    setPanelForm(&panel);
    GraphicModeAdjust();
    setPanelForm(nullptr);
    EXPECT_EQ(panel.grab().toImage(), before);
    const Placement home = panel.control(Control::knobTempo, 0);
    EXPECT_EQ(controlAt(560, 200), nullptr);
    panel.placeControl(Control::knobTempo, 0, {540 * 15, 180 * 15, home.width, home.height});
    EXPECT_EQ(controlAt(560, 200), placedControl(Control::knobTempo, 0));
    EXPECT_NE(panel.grab().toImage().pixel(567, 207), before.pixel(567, 207));
    panel.placeControl(Control::knobTempo, 0, home);
    EXPECT_EQ(panel.grab().toImage(), before);
}

TEST_F(PanelWidgetTest, TheWheelIsCollectedToWholeSteps) {
    const auto turn = [&](Control control, int index, int angle) {
        const QPoint at = pointOf(control, index);
        QWheelEvent event(at, panel.mapToGlobal(at), {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&panel, &event);
    };
    for (const int angle : {60, 60, -360, 90, 40}) turn(Control::LoopPt, 1, angle);
    EXPECT_EQ(takeEvents(), "wheel:LoopPt(1)+1 wheel:LoopPt(1)-3 wheel:LoopPt(1)+1");
    turn(Control::swing, 0, 120); // within the tempo display, which belongs to the knob
    turn(Control::tapTempo, 0, 120);
    EXPECT_EQ(takeEvents(), "wheel:swing(0)+1 wheel:knobTempo(0)+1");
}

TEST_F(PanelWidgetTest, HoldingAKeyRepeatsWindingAndTempoOnly) {
    for (const int held : {Qt::Key_Space, Qt::Key_PageUp, Qt::Key_Q, Qt::Key_Plus}) {
        key(held, true, false);
        for (int i = 0; i < 2; ++i) key(held, false, true), key(held, true, true);
        key(held, false, false);
    }
    key(Qt::Key_Control, true, false);
    EXPECT_EQ(takeEvents(), "down32/0 up32 down33/0 down33/0 down33/0 up33 down81/0 up81 down17/2");
    panel.clearFocus();
    EXPECT_EQ(takeEvents(), "focusLost");
}

// A release is told a moment later, lest it be half of a repeat; a click in that moment comes after it.
TEST_F(PanelWidgetTest, WhatWasLetGoBeforeAClickIsNotHeldInIt) {
    const QPoint at = pointOf(Control::knobSprite, 0);
    struct Case {
        int key;
        quint64 click; // ms behind the release
        const char* told;
    };
    for (const auto& [code, behind, told] : {Case{Qt::Key_Control, 1, "down17/2 up17 press"},
                                             {Qt::Key_Shift, 14, "down16/1 up16 press"},
                                             {Qt::Key_Q, 6, "down81/0 up81 press"},
                                             {Qt::Key_Q, 2, "down81/0 press"}}) {
        key(code, true, false, {}, 1000);
        key(code, false, false, {}, 1100);
        time = 1100 + behind;
        mouse(QEvent::MouseButtonPress, at, Qt::LeftButton);
        EXPECT_EQ(takeEvents().substr(0, std::strlen(told)), told) << behind;
        mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton);
        QTest::qWait(20);
        takeEvents();
    }
}

TEST_F(PanelWidgetTest, TabReachesEveryControlByNameAndUpDownF2WorkIt) {
    std::vector<const PlacedControl*> reached;
    QStringList names;
    for (std::size_t i = 0; i < PanelWidget::tabStops().size(); ++i) {
        QTest::keyClick(&panel, Qt::Key_Tab);
        reached.push_back(panel.focusControl());
        names << controlName(*panel.focusControl(), panel.state());
        EXPECT_FALSE(controlTip(*panel.focusControl()).isEmpty()) << names.last().toStdString();
    }
    EXPECT_EQ(reached, PanelWidget::tabStops());
    EXPECT_EQ(names.removeDuplicates(), 0);
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&panel);
    ASSERT_EQ(access->childCount(), static_cast<int>(reached.size()) + 16); // and what only shows
    EXPECT_EQ(access->child(0)->text(QAccessible::Name), names[0]);
    EXPECT_EQ(access->child(0)->text(QAccessible::Value), "pattern");
    const auto at = std::find(reached.begin(), reached.end(), placedControl(Control::LoopPt, 1));
    QAccessibleInterface* loop = access->child(static_cast<int>(at - reached.begin()));
    EXPECT_EQ(loop->valueInterface()->currentValue().toInt(), 16);
    takeEvents();
    loop->valueInterface()->setCurrentValue(12);
    EXPECT_EQ(takeEvents(), "wheel:LoopPt(1)-4");

    panel.setFocusControl(placedControl(Control::knobSprite, 7));
    for (const int k : {Qt::Key_Up, Qt::Key_Down, Qt::Key_F2})
        QTest::keyClick(&panel, static_cast<Qt::Key>(k));
    panel.setFocusControl(placedControl(Control::bank109, 2));
    for (const int k : {Qt::Key_Up, Qt::Key_F2}) QTest::keyClick(&panel, static_cast<Qt::Key>(k));
    EXPECT_EQ(takeEvents(),
              "wheel:knobSprite(7)+1 up38 wheel:knobSprite(7)-1 up40 key:knobSprite(7) "
              "key:bank109(2) up38 key:bank109(2)");
}

} // namespace
} // namespace marlune
