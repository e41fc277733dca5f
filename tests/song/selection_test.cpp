#include "support/program_test.h"

namespace marlune {
namespace {

using Cue = ProgramTest;
using DigitDrag = ProgramTest;
using LoopPoint = ProgramTest;

// One selection in each state: what it says, and where the module's current and cued digits stand after it.
struct SelectionRow {
    bool song, running, recording;
    const char* pattCalls;
    const char* bankCalls;
    int now, next; // frames after pattern 3, then bank 2
};

TEST(Selection, CuesRecordsOrTakesEffectByState) {
    const SelectionRow rows[] = {
        {false, true, false, "SetNextPatt32(1,3)", "SetNextGroup32(1,2)", 0, 19},
        {false, false, false, "SetNextPatt32(1,3) SetCurrPatt32(1,3)",
         "SetNextGroup32(1,2) SetCurrGroup32(1,2)", 19, 19},
        {true, true, true, "song(2 A1>A1@2 A1>A4@2 A1>A1@2)", "song(2 A1>A1@2 A1>C4@2 A1>A1@2)", 0, 19},
        {true, false, true, "song(0 A1>A1@0 A4>A1@0 A1>A1@0)", "song(0 A1>A1@0 C4>A1@0 A1>A1@0)", 19, 0},
        {true, true, false, "", "", 0, 0},
        {true, false, false, "", "", 0, 0},
    };
    for (const SelectionRow& row : rows) {
        TestProgram program;
        if (row.song) Check1_Click();
        if (row.recording) recButton_Click();
        if (row.running) {
            playButton();
            program.play(2);
        }
        program.calls();
        selPatt(1, 3);
        EXPECT_EQ(program.calls(), row.pattCalls);
        bankClick(1, 2);
        EXPECT_EQ(program.calls(), row.bankCalls);
        EXPECT_EQ(shownFrame(Control::DigitPatt, 2), row.now) << row.pattCalls;
        EXPECT_EQ(shownFrame(Control::DigitPatt, 3), row.next) << row.pattCalls;
        const int bar = row.running ? 16 : 0;
        EXPECT_EQ(barBank(1, bar) * 8 + barPatt(1, bar), row.recording ? 19 : 0);
        EXPECT_EQ(recordingState->barRecording[1], row.recording);
    }
}

TEST_F(Cue, ArrivesWhenItsOwnPatternWraps) {
    project.bass[0].patterns[0][0].loopEnd = 5;
    editLoop(0, 0);
    playButton();
    program.play(2);
    selPatt(0, 2);
    selPatt(2, 1);
    program.play(4);
    EXPECT_EQ(project.bass[0].currPatt, 0); // its last step sounds
    program.play(1);
    EXPECT_EQ(project.bass[0].currPatt, 2);
    program.play(9);
    EXPECT_EQ(project.drum.currPatt, 0);
    program.play(1);
    EXPECT_EQ(project.drum.currPatt, 1);
    EXPECT_EQ(shownFrame(Control::DigitPatt, 4), 1);
    EXPECT_EQ(shownText(Control::LoopPt, 0), "16");
}

TEST_F(Cue, OfTheLastBarIsTheFirstWhichAChoiceReachesFromTheLastStepOnly) {
    setBar(0, 0, 1, 1);
    Check1_Click();
    moveSongForward(999, true, true);
    recButton_Click();
    playButton();
    EXPECT_EQ(shownFrame(Control::DigitPatt, 1), 9); // bar 1 follows
    program.play(15);
    program.calls();
    selPatt(0, 4); // there is no bar behind
    EXPECT_EQ(program.calls() + test::joined(program.shell.passing), "Bar 1000 is the last.");
    EXPECT_EQ(barPatt(0, 15999) * 10 + barPatt(0, 0), 1);
    program.play(1);
    EXPECT_EQ(shownText(Control::timeDisplay, 0), "1000");
    selPatt(0, 4); // the last sixteenth: what comes is bar 1
    program.play(1);
    EXPECT_EQ(shownText(Control::timeDisplay, 0), "1");
    EXPECT_EQ(shownFrame(Control::DigitPatt, 0), 12);
    EXPECT_EQ(barPatt(0, 0), 4);
}

TEST_F(DigitDrag, PassesThroughThePatternsAndStartsFromTheCueWhilePlaying) {
    editingState.write().projectDirty = false;
    program.drag(Control::DigitPatt, 2, 2000, 2000 - 1100 * 4.0 / 7 - 1, 8);
    EXPECT_EQ(project.bass[1].currPatt, 4);
    EXPECT_EQ(editingState->editSel, 1);
    EXPECT_FALSE(editingState->projectDirty); // a drag leaves the mark alone, a key sets it
    playButton();
    program.play(1);
    selPatt(1, 6);
    panelPointer(Control::DigitPatt, 2, {.y = 500});
    panelPointer(Control::DigitPatt, 2, {.action = PointerAction::move, .y = 500});
    EXPECT_EQ(project.bass[1].nextPatt, 6);
    panelWheel(Control::DigitPatt, 3, +5);
    EXPECT_EQ(project.bass[1].nextPatt, 7);
}

TEST_F(LoopPoint, IsShownFromOneAndStoredFromZero) {
    program.calls();
    program.drag(Control::LoopPt, 2, 1000, 1000 + 300);
    EXPECT_EQ(shownText(Control::LoopPt, 2), "12"); // 16 + 1 - 5
    EXPECT_EQ(project.drum.patterns[0][0].loopEnd, 11);
    EXPECT_EQ(program.calls(), "Set109Loop32(0,0,11)");
    const struct {
        int loopEnd, delta, result;
    } rows[] = {{0, -1, 0}, {15, 1, 15}, {1, -1, 0}, {7, 100, 15}, {7, -100, 0}};
    for (const auto& row : rows) {
        project.bass[0].patterns[0][0].loopEnd = row.loopEnd;
        editLoop(0, row.delta);
        EXPECT_EQ(project.bass[0].patterns[0][0].loopEnd, row.result);
    }
    program.click(Control::LoopPt, 0); // no movement: re-sends
    EXPECT_EQ(project.bass[0].patterns[0][0].loopEnd, 0);
    panelWheel(Control::LoopPt, 0, 3);
    EXPECT_EQ(shownText(Control::LoopPt, 0), "4");
}

} // namespace
} // namespace marlune
