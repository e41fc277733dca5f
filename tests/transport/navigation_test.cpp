#include "support/program_test.h"

namespace marlune {
namespace {

using SongMoves = SongModeTest;

TEST_F(SongMoves, KnowTheFollowersAndStepsAtTheEdges) {
    setBar(0, 998 * 16, 1, 2);
    setNextBar(0, 998 * 16 + 5, 3, 4);
    setBar(0, 0, 2, 6);
    EXPECT_EQ(nextBarPatt(0, 15999), 6); // as it is played: bar 1 follows bar 1000
    setNextBar(0, 15999, 2, 2);
    EXPECT_EQ(barBank(0, 15999) * 10 + barPatt(0, 0), 36);
    // A pattern that stays runs on through the bar lines.
    for (int bar = 4; bar <= 6; ++bar) setBar(1, 16 * bar, 0, 5);
    EXPECT_EQ(moduleStepAtTick(1, 6 * 16, 12), 8);
    EXPECT_EQ(moduleStepAtTick(1, 7 * 16 + 3, 12), 3);
    EXPECT_EQ(moduleStepAtTick(2, 15999, 16), 15); // one run down to bar 0
    EXPECT_EQ(moduleStepAtTick(2, 15999, 7), 15999 % 7);
}

TEST_F(SongMoves, SnapToBarsAndStopAtTheEnds) {
    const struct {
        void (*move)(int count, bool byBars, bool keepRecord);
        int from, count, to;
    } rows[] = {{moveSongForward, 37, 1, 48},
                {moveSongBack, 37, 1, 16},
                {moveSongBack, 70, 5, 0},
                {moveSongForward, 15990, 8, 15999}};
    for (const auto& row : rows) {
        songPosition.write().songTick = row.from;
        row.move(row.count, true, true);
        EXPECT_EQ(songPosition->songTick, row.to) << row.from;
    }
    EXPECT_EQ(shownText(Control::timeDisplay, 0), "1000");
    EXPECT_EQ(shownText(Control::microDisplay, 0), "[ 16/16]"); // the end isn't a bar line
    moveSongBack(0, true, true);
    EXPECT_EQ(shownText(Control::microDisplay, 0), "");
    songPosition.write().songTick = 20;
    recordingState.write().recordOn = true;
    moveSongForward(1, false, false);
    EXPECT_EQ(shownText(Control::microDisplay, 0), "[ 6/16]");
    EXPECT_FALSE(recordingState->recordOn);
}

TEST_F(SongMoves, TakeThePatternsAndKnobsOfThePlace) {
    setBar(0, 32, 1, 3);
    setBar(0, 48, 2, 4);
    project.bass[0].patterns[1][3].loopEnd = 2;
    knobTrack[7][33] = 55;
    program.calls();
    moveSongForward(33, false, true);
    EXPECT_EQ(songPosition->moduleStep[0], 1);
    EXPECT_EQ(project.knobValue[7], 55);
    EXPECT_EQ(shownFrame(Control::DigitPatt, 1), 20);
    EXPECT_EQ(program.calls(), "song(33 B4>C5@1 A1>A1@1 A1>A1@1) PrepareController32(7,55)");
    rewindSong();
    EXPECT_EQ(project.bass[0].currPatt, 0);
    EXPECT_EQ(program.calls(), "song(0 A1>A1@0 A1>A1@0 A1>A1@0) PrepareController32(7,0)");
}

struct Navigation : SongModeTest {
    // For so many ms, in the time of the test.
    void hold(Control button, int ms) {
        program.shell.after(ms, [button] { panelPointer(button, 0, {.action = PointerAction::release}); });
        panelPointer(button, 0, {.action = PointerAction::press});
    }
};

TEST_F(Navigation, AShortPressMovesOnceAndALongOneRepeats) {
    Check1_Click();
    hold(Control::nextButton, 10);
    EXPECT_EQ(songPosition->songTick, 0); // pattern mode
    Check1_Click();
    songPosition.write().songTick = 160;
    hold(Control::nextButton, 50);
    EXPECT_EQ(songPosition->songTick, 176);
    hold(Control::prevButton, 50);
    EXPECT_EQ(songPosition->songTick, 160);
    hold(Control::FwdStep, 1000); // 200 ms flash, 138 ms wait, then one each 69 ms
    const int moved = 1 + (1000 - 338) / 70 + 1;
    EXPECT_NEAR(songPosition->songTick, 160 + moved, 1);
    EXPECT_EQ(shownFrame(Control::FwdStep, 0), 1);
    hold(Control::RwdStep, 600);
    EXPECT_LT(songPosition->songTick, 160 + 8);
    songPosition.write().songTick = 15980;
    hold(Control::nextButton, 900);
    EXPECT_EQ(songPosition->songTick, 15999);
}

TEST_F(Navigation, TheClickAfterAReleaseDoesNothingAndADoubleClickMovesTwo) {
    hold(Control::nextButton, 20); // press, release and the click behind it
    EXPECT_EQ(songPosition->songTick, 16);
    navigation_DblClick(Winding::next);
    EXPECT_EQ(songPosition->songTick, 48);
    navigation_Click(Winding::previous);
    EXPECT_EQ(songPosition->songTick, 32);
}

TEST_F(Navigation, WindingHaltsTheTimerAndPlaysOnAndAStepStops) {
    songPosition.write().windRate = 7;
    playButton();
    program.play(5);
    program.shell.after(60, [&] {
        EXPECT_EQ(timerInterval(), 0);
        EXPECT_TRUE(transportState->transportRunning);
        panelPointer(Control::nextButton, 0, {.action = PointerAction::release});
    });
    panelPointer(Control::nextButton, 0, {.action = PointerAction::press});
    EXPECT_EQ(songPosition->songTick, 16 * 8);
    EXPECT_EQ(timerInterval(), 107);
    program.play(3);
    EXPECT_EQ(songPosition->songTick, 16 * 8 + 3);
    hold(Control::FwdStep, 10); // a step ends the playing
    EXPECT_FALSE(transportState->transportRunning);
    EXPECT_EQ(songPosition->songTick, 16 * 8 + 4);
}

TEST_F(Navigation, ResetStopsRewindsAndDisarms) {
    setBar(1, 0, 1, 1);
    songPosition.write().songTick = 333;
    recButton_Click();
    playButton();
    program.play(2);
    program.click(Control::ResetButton);
    EXPECT_FALSE(transportState->transportRunning || recordingState->recordOn);
    EXPECT_EQ(songPosition->songTick, 0);
    EXPECT_EQ(project.bass[1].currPatt, 1);
    EXPECT_EQ(shownFrame(Control::ResetButton, 0), 1);
    EXPECT_EQ(shownFrame(Control::RecButton, 0), 1);
}

TEST_F(Navigation, AModeSwitchWhileAButtonIsHeldEndsTheWinding) {
    playButton();
    program.shell.after(500, Check1_Click);
    hold(Control::nextButton, 5000);
    EXPECT_LT(TestProgram::now(), 1000U + 2000U);
    EXPECT_FALSE(songPosition->songMode);
    panelPointer(Control::nextButton, 0, {.action = PointerAction::release});
    EXPECT_GT(timerInterval(), 0); // the music goes on
}

TEST_F(Navigation, RepeatedStepsDoNotWaitInsideEachOther) {
    int depth = 0, deepest = 0;
    for (int i = 0; i < 50; ++i) {
        program.shell.after(30 * i, [&] {
            deepest = std::max(deepest, ++depth);
            navigation_Click(Winding::stepForward);
            --depth;
        });
    }
    while (TestProgram::now() < 4000) program.shell.waitForEvents(5);
    EXPECT_EQ(songPosition->songTick, 50);
    EXPECT_LE(deepest, 2);
    panelPointer(Control::FwdStep, 0, {.action = PointerAction::release, .inside = false});
    navigation_Click(Winding::stepForward); // no click came with that release: this is another press
    EXPECT_EQ(songPosition->songTick, 51);
}

TEST_F(Navigation, ClosingTheWindowWhileAButtonIsHeldIsSafe) {
    program.shell.after(300, [] { transportState.write().programClosing = true; });
    panelPointer(Control::nextButton, 0, {.action = PointerAction::press});
    EXPECT_TRUE(transportState->programClosing); // it came back without a release
}

} // namespace
} // namespace marlune
