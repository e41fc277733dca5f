#include <gmock/gmock.h>

#include "support/program_test.h"

namespace marlune {
namespace {

using Tick = ProgramTest;

TEST_F(Tick, OfTheSongFeedsTheNextBarAndTheNextKnobs) {
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
    EXPECT_EQ(shownText(Control::timeDisplay, 0), "1"); // its last step sounds
    program.play(1);
    EXPECT_EQ(shownText(Control::timeDisplay, 0), "2");
    EXPECT_EQ(project.bass[0].currBank * 8 + project.bass[0].currPatt, 10);
    EXPECT_EQ(project.knobValue[0], 20);
    EXPECT_EQ(shownFrame(Control::DigitPatt, 5), 27); // what the drums play in the bar after
}

TEST_F(Tick, KnobAtATickSoundsWithItsStep) {
    for (int t = 0; t < 64; ++t) knobTrack[5][t] = static_cast<std::uint8_t>(t + 1); // accents of 103A
    test::setBassSteps(0, "C! C! C! C! C! C! C! C! C! C! C! C! C! C! C! C!");
    Check1_Click();
    program.wire();
    playButton();
    program.play(33);
    const std::string wire = program.wire();
    for (const std::string value : {"01", "02", "10", "11", "21"}) {
        EXPECT_NE(wire.find("90 24 " + value), std::string::npos) << value;
        EXPECT_LT(wire.find("b0 11 " + value), wire.find("90 24 " + value)) << value;
    }
}

TEST_F(Tick, DisplayBeyondTheBudgetIsSkippedAndDataIsNot) {
    playButton();
    program.play(1);
    program.view.costMs = 54; // half a step at tempo 140 is 53 ms: the first lamp uses it up
    const int lamp = shownFrame(Control::LEDBar, 1);
    program.midi(0xB0, 12, 77);
    program.calls();
    program.play(1);
    EXPECT_EQ(shownFrame(Control::LEDBar, 1), lamp);
    EXPECT_EQ(shownFrame(Control::knobSprite, 0), 0);
    EXPECT_EQ(program.calls(), "PrepareController32(0,77)");
    program.view.costMs = 0;
    program.play(1);
    EXPECT_EQ(shownFrame(Control::LEDBar, 1), 2);
}

TEST_F(Tick, TakesATempoChangeWithoutPlacingTheComponentAnew) {
    playButton();
    EXPECT_THAT(program.calls(),
                testing::HasSubstr("SetMarluneTempo32(140) position(0) "
                                   "patterns(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0)"));
    program.play(1);
    program.calls();
    Form_KeyDown(221, 0); // ]
    EXPECT_EQ(program.calls(), "");
    program.play(1);
    EXPECT_EQ(program.calls(), "SetMarluneTempo32(150) SetMarluneTimerInterval32(16,0)");
}

TEST_F(Tick, RecordingKnobsOverwriteTheTrackFromTheTouchOn) {
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
    EXPECT_FALSE(recordingState->recordOn);
    EXPECT_FALSE(recordingState->knobRecording[1]);

    Form_KeyDown(36, 0);
    playButton();
    program.play(8);
    EXPECT_EQ(project.knobValue[1], value); // plays back what was recorded
}

TEST_F(Tick, ARecordedChoiceIsCopiedOnBarByBar) {
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
}

} // namespace
} // namespace marlune
