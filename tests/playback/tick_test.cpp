#include "support/program_test.h"

namespace marlune {
namespace {

TEST(EngineLink, UnpacksStepsAndFollowsPatternsAndCues) {
    TestProgram program;
    transportRunning = true;
    engineWndProc(0, kTickMessage, 77, 0x0F3A);
    EXPECT_EQ(moduleStep[0] * 10000 + moduleStep[1] * 100 + moduleStep[2], 10 * 10000 + 3 * 100 + 15);
    EXPECT_EQ(songTick, 77);
    engineWndProc(0, kPatternMessage + 1, 2, 5);
    EXPECT_EQ(moduleStep[1], 0);
    EXPECT_EQ(shownFrame(Control::DigitPatt, 2), 21);
    moduleStep[1] = 7;
    engineWndProc(0, kPatternMessage + 1, 2, 5); // the same again
    EXPECT_EQ(moduleStep[1], 7);
    songMode = true;
    engineWndProc(0, kPatternMessage + 1, 0, 0);
    EXPECT_EQ(moduleStep[1], 7);
    engineWndProc(0, kCueMessage + 2, 3, 7);
    EXPECT_EQ(shownFrame(Control::DigitPatt, 5), 31);
    EXPECT_EQ(project.drum.nextPatt, 0);
    transportRunning = false;
    engineWndProc(0, kTickMessage, 9, 0);
    EXPECT_EQ(songTick, 9);
}

TEST(Timer, PlacesTheComponentWhenItStartsAndOnlyReTimesWhileItRuns) {
    TestProgram program;
    runTimerAt(140);
    EXPECT_EQ(program.calls(),
              "SetMarluneTempo32(140) SetCurrGroup32(0,0) SetCurrPatt32(0,0) SetCurrGroup32(1,0) "
              "SetCurrPatt32(1,0) "
              "SetCurrGroup32(2,0) SetCurrPatt32(2,0) StartMarluneTimer32(17,0)");
    runTimerAt(40);
    EXPECT_EQ(program.calls(), "SetMarluneTempo32(40) SetMarluneTimerInterval32(62,0)");
    QuenTimer(0);
    EXPECT_EQ(program.calls(), "StopMarluneTimer32()");
}

TEST(Tick, OfTheSongFeedsTheNextBarAndTheNextKnobs) {
    TestProgram program;
    setBar(0, 16, 1, 2);
    setBar(2, 32, 3, 3);
    knobTrack[0][1] = 10;
    knobTrack[0][17] = 20;
    Check1_Click();
    playButton();
    EXPECT_NE(program.calls().find("SetNextBarPatt32(0,2) SetNextBarGroup32(0,1)"), std::string::npos);
    program.play(1);
    EXPECT_EQ(program.calls().find("SetNextBarPatt32(0,2)"), 0U); // once more with the first message
    EXPECT_EQ(project.knobValue[0], 10);                          // of the following tick
    program.play(15);
    EXPECT_EQ(shownText(Control::timeDisplay, 0), "2");
    program.play(1);
    EXPECT_EQ(project.bass[0].currBank * 8 + project.bass[0].currPatt, 10);
    EXPECT_EQ(project.knobValue[0], 20);
    EXPECT_EQ(shownFrame(Control::DigitPatt, 5), 27); // what the drums play in the bar after
    StopPlay();
}

TEST(Tick, KnobAtATickSoundsWithItsStep) {
    TestProgram program;
    for (int t = 0; t < 64; ++t) knobTrack[5][t] = static_cast<std::uint8_t>(t + 1); // accents of 103A
    test::setBassSteps(0, "C! C! C! C! C! C! C! C! C! C! C! C! C! C! C! C!");
    Check1_Click();
    program.wire();
    playButton();
    program.play(33);
    const std::string wire = program.wire();
    for (const int t : {0, 1, 15, 16, 32}) {
        char pair[40];
        std::snprintf(pair, sizeof pair, "b0 11 %02x", t + 1);
        EXPECT_NE(wire.find(pair), std::string::npos) << t;
        std::snprintf(pair, sizeof pair, "90 24 %02x", t + 1);
        EXPECT_NE(wire.find(pair), std::string::npos) << t;
    }
    EXPECT_LT(wire.find("b0 11 11"), wire.find("90 24 11"));
    StopPlay();
}

TEST(Tick, DisplayBeyondTheBudgetIsSkippedAndDataIsNot) {
    TestProgram program;
    playButton();
    program.play(1);
    drawBudgetMs = 0;
    const int lamp = shownFrame(Control::LEDBar, 1);
    program.midi(0xB0, 12, 77);
    program.calls();
    program.play(1);
    EXPECT_EQ(shownFrame(Control::LEDBar, 1), lamp);
    EXPECT_EQ(shownFrame(Control::knobSprite, 0), 0);
    EXPECT_EQ(program.calls(), "PrepareController32(0,77)");
    drawBudgetMs = 53;
    program.play(1);
    EXPECT_EQ(shownFrame(Control::LEDBar, 1), 2);
    StopPlay();
}

TEST(Tick, TakesATempoChangeAtTheNextTick) {
    TestProgram program;
    playButton();
    program.play(1);
    program.calls();
    Form_KeyDown(221, 0); // ]
    EXPECT_EQ(program.calls(), "");
    program.play(1);
    EXPECT_EQ(program.calls(), "SetMarluneTempo32(150) SetMarluneTimerInterval32(16,0)");
    EXPECT_EQ(drawBudgetMs, 50);
    StopPlay();
}

TEST(Tick, RecordingKnobsOverwriteTheTrackFromTheTouchOn) {
    TestProgram program;
    for (int t = 0; t < 100; ++t) knobTrack[1][t] = knobTrack[2][t] = static_cast<std::uint8_t>(t);
    Check1_Click();
    recButton_Click();
    playButton();
    program.play(4);
    program.drag(Control::knobSprite, 1, 1000, 1000 - 300);
    const int value = project.knobValue[1];
    program.play(8);
    EXPECT_EQ(knobTrack[1][3], 3);
    for (const int t : {4, 6, 11, 12}) EXPECT_EQ(knobTrack[1][t], value) << t;
    EXPECT_EQ(knobTrack[1][13], 13);
    EXPECT_EQ(knobTrack[2][8], 8); // untouched knobs follow
    startStopButton_Click();
    EXPECT_FALSE(recordOn);
    EXPECT_FALSE(knobRecording[1]);

    Form_KeyDown(36, 0);
    playButton();
    program.play(8);
    EXPECT_EQ(project.knobValue[1], value); // plays back what was recorded
    StopPlay();
}

TEST(Tick, ARecordedChoiceIsCopiedOnBarByBar) {
    TestProgram program;
    Check1_Click();
    recButton_Click();
    playButton();
    program.play(3);
    program.drag(Control::DigitPatt, 0, 1000, 1000 - 1100 * 3.0 / 7 - 2, 1);
    panelPointer(Control::bank109, 2, {});
    EXPECT_EQ(barPatt(0, 16), 3);
    program.play(16 * 3);
    for (const int bar : {1, 2, 3, 4}) {
        EXPECT_EQ(barPatt(0, 16 * bar), 3) << bar;
        EXPECT_EQ(barBank(2, 16 * bar), 2) << bar;
    }
    EXPECT_EQ(barPatt(0, 16 * 5), 0);
    EXPECT_EQ(project.bass[0].currPatt, 3);
    EXPECT_EQ(program.copyDifference(), "");
    StopPlay();
}

} // namespace
} // namespace marlune
