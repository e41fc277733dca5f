#include "support/program_test.h"

namespace marlune {
namespace {

// Holds a button for so many ms, in the time of the test.
void hold(TestProgram& program, Control button, int ms) {
    program.shell.after(ms, [button] { panelPointer(button, 0, {.action = PointerAction::release}); });
    panelPointer(button, 0, {.action = PointerAction::press});
}

TEST(Navigation, AShortPressMovesOnceAndALongOneRepeats) {
    TestProgram program;
    hold(program, Control::nextButton, 10);
    EXPECT_EQ(songTick, 0); // pattern mode
    Check1_Click();
    songTick = 160;
    hold(program, Control::nextButton, 50);
    EXPECT_EQ(songTick, 176);
    hold(program, Control::prevButton, 50);
    EXPECT_EQ(songTick, 160);
    const int from = songTick;
    hold(program, Control::FwdStep, 1000); // 200 ms flash, 138 ms wait, then one each 69 ms
    const int moved = 1 + (1000 - 338) / 70 + 1;
    EXPECT_NEAR(songTick - from, moved, 1);
    EXPECT_EQ(shownFrame(Control::FwdStep, 0), 1);
    const int before = songTick;
    hold(program, Control::RwdStep, 600);
    EXPECT_LT(songTick, before - 3);
}

TEST(Navigation, TheClickAfterAReleaseDoesNothingAndADoubleClickMovesTwo) {
    TestProgram program;
    Check1_Click();
    hold(program, Control::nextButton, 20); // press, release and the click behind it
    EXPECT_EQ(songTick, 16);
    navigation_DblClick(Winding::next);
    EXPECT_EQ(songTick, 48);
    navigation_Click(Winding::previous);
    EXPECT_EQ(songTick, 32);
}

TEST(Navigation, HoldingAtTheEndStaysThere) {
    TestProgram program;
    Check1_Click();
    songTick = 15980;
    hold(program, Control::nextButton, 900);
    EXPECT_EQ(songTick, 15999);
    EXPECT_EQ(shownText(Control::timeDisplay, 0), "1000");
}

TEST(Navigation, WindingHaltsTheTimerAndPlaysOnFromThere) {
    TestProgram program;
    Check1_Click();
    windRate = 7;
    playButton();
    program.play(5);
    program.shell.after(60, [&] {
        EXPECT_EQ(timerInterval(), 0);
        EXPECT_TRUE(transportRunning);
        panelPointer(Control::nextButton, 0, {.action = PointerAction::release});
    });
    panelPointer(Control::nextButton, 0, {.action = PointerAction::press});
    EXPECT_EQ(songTick, 16 * 8);
    EXPECT_EQ(timerInterval(), 107);
    program.calls();
    program.play(3);
    EXPECT_EQ(songTick, 16 * 8 + 3);
    StopPlay();
}

TEST(Navigation, StepsStopPlaybackAndTakeTheBarOver) {
    TestProgram program;
    setBar(0, 16, 2, 6);
    Check1_Click();
    playButton();
    program.play(3);
    songTick = 15;
    hold(program, Control::FwdStep, 10);
    EXPECT_FALSE(transportRunning);
    EXPECT_EQ(songTick, 16);
    EXPECT_EQ(project.bass[0].currBank * 8 + project.bass[0].currPatt, 22);
    EXPECT_EQ(shownText(Control::microDisplay, 0), "[ 1/16]");
}

TEST(Navigation, ResetStopsRewindsAndDisarms) {
    TestProgram program;
    setBar(1, 0, 1, 1);
    Check1_Click();
    songTick = 333;
    recButton_Click();
    playButton();
    program.play(2);
    program.click(Control::ResetButton);
    EXPECT_FALSE(transportRunning || recordOn);
    EXPECT_EQ(songTick, 0);
    EXPECT_EQ(project.bass[1].currPatt, 1);
    EXPECT_EQ(shownFrame(Control::ResetButton, 0), 1);
    EXPECT_EQ(shownFrame(Control::RecButton, 0), 1);
}

TEST(Navigation, AModeSwitchWhileAButtonIsHeldEndsTheWinding) {
    TestProgram program;
    Check1_Click();
    playButton();
    program.shell.after(500, Check1_Click);
    hold(program, Control::nextButton, 5000);
    EXPECT_LT(TestProgram::now(), 1000U + 2000U);
    EXPECT_FALSE(songMode);
    panelPointer(Control::nextButton, 0, {.action = PointerAction::release});
    EXPECT_GT(timerInterval(), 0); // the music goes on
    StopPlay();
}

TEST(Navigation, RepeatedStepsDoNotWaitInsideEachOther) {
    TestProgram program;
    Check1_Click();
    int depth = 0, deepest = 0;
    for (int i = 0; i < 50; ++i) {
        program.shell.after(30 * i, [&] {
            deepest = std::max(deepest, ++depth);
            navigation_Click(Winding::stepForward);
            --depth;
        });
    }
    program.shell.waitForEvents(5);
    while (TestProgram::now() < 4000) program.shell.waitForEvents(5);
    EXPECT_EQ(songTick, 50);
    EXPECT_LE(deepest, 2);
    panelPointer(Control::FwdStep, 0, {.action = PointerAction::release, .inside = false});
    navigation_Click(Winding::stepForward); // no click came with that release: this is another press
    EXPECT_EQ(songTick, 51);
}

TEST(Navigation, ClosingTheWindowWhileAButtonIsHeldIsSafe) {
    TestProgram program;
    Check1_Click();
    program.shell.after(300, [] { programClosing = true; });
    panelPointer(Control::nextButton, 0, {.action = PointerAction::press});
    EXPECT_TRUE(programClosing); // it came back without a release
}

} // namespace
} // namespace marlune
