#include "support/program_test.h"

namespace marlune {
namespace {

using ModeSwitch = ProgramTest;

TEST_F(ModeSwitch, ThereAndBackLeavesThePatternsAndTheTempo) {
    test::setBassSteps(0, "C D! E^ F_ G A -");
    project.bass[1].patterns[0][0].loopEnd = 6;
    editLoop(1, 0);
    selPatt(2, 3);
    const ProjectRecord before = project;
    setBar(0, 0, 2, 1);
    program.click(Control::Check1);
    EXPECT_EQ(project.bass[0].currBank, 2);
    editLoop(0, -5); // of a pattern that isn't the image's current one
    editLoop(1, -2);
    project.knobValue[3] = 99;
    Form_KeyDown(222, 0); // raises the patch
    Form_KeyDown(221, 0); // tempo + 10
    program.click(Control::Check1);
    EXPECT_EQ(project.tempo, 150);
    ProjectRecord after = project;
    after.tempo = before.tempo;
    EXPECT_EQ(std::memcmp(after.bass.data(), before.bass.data(), sizeof before.bass), 0);
    EXPECT_EQ(std::memcmp(&after.drum, &before.drum, sizeof before.drum), 0);
    EXPECT_EQ(project.knobValue[3], before.knobValue[3]);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(ModeSwitch, TakesPositionPatternsAndKnobsFromTheSong) {
    songPosition.write().songTick = 35;
    songPosition.write().moduleStep[2] = 7;
    knobTrack[4][39] = 88;
    setBar(1, 32, 1, 1);
    setBar(1, 48, 1, 2);
    program.calls();
    Check1_Click();
    EXPECT_EQ(songPosition->songTick, 39);
    EXPECT_EQ(program.calls().substr(0, 75),
              "SetSong32(-1) song(39 A1>A1@7 B2>B3@7 A1>A1@7) PrepareController32(4,88) Pr");
    EXPECT_EQ(shownFrame(Control::DigitPatt, 2) * 100 + shownFrame(Control::DigitPatt, 3), 910);
    EXPECT_TRUE(shownEnabled(Control::timeDisplay, 0));
    for (const Control c : {Control::Check1, Control::RecButton, Control::FwdStep, Control::ResetButton}) {
        EXPECT_EQ(shownFrame(c, 0), 1);
    }
    program.doubleClick(Control::Check1); // goes and comes back
    EXPECT_TRUE(songPosition->songMode);
}

TEST_F(ModeSwitch, WorksWhilePlaying) {
    setBar(0, 16, 1, 1);
    setBar(0, 32, 1, 1);
    selPatt(0, 5);
    playButton();
    program.play(20);
    Form_KeyDown('2', 0); // a cue that must not come through in song mode
    Check1_Click();
    program.play(40);
    EXPECT_EQ(project.bass[0].currBank * 8 + project.bass[0].currPatt,
              barBank(0, songPosition->songTick - 1) * 8 + barPatt(0, songPosition->songTick - 1));
    Check1_Click();
    program.play(40);
    EXPECT_EQ(project.bass[0].currPatt, 5);
    EXPECT_EQ(program.copyDifference(), "");
}

} // namespace
} // namespace marlune
