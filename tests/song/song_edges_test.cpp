// Conversations at the edges: the last sixteenth of a bar, a button that is held, a drag over a pattern
// change.
#include <set>

#include "files/export_driver.h"
#include "panel/key_slider.h"
#include "panel/shown_state.h"
#include "project/pattern_push.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using SongEdges = SongModeTest;
using PatternEdges = ProgramTest;

std::string digits() {
    std::string text;
    for (int i = 0; i < 2 * kModules; ++i) {
        const int frame = shownFrame(Control::DigitPatt, i);
        text += (i > 0 ? " " : "") + std::string(1, static_cast<char>('A' + frame / 8)) +
                std::to_string(frame % 8 + 1);
    }
    return text;
}

void press(Control control, int index, double y = 1000) {
    panelPointer(control, index, {.action = PointerAction::press, .y = y});
}
void release(Control control, int index, double y = 1000) {
    panelPointer(control, index, {.action = PointerAction::release, .y = y});
}

TEST_F(SongEdges, AChoiceInTheLastSixteenthIsWrittenWhereItSoundsAndStays) {
    recButton_Click();
    playButton();
    program.play(16);
    selPatt(0, 5);
    bankClick(1, 2);
    EXPECT_EQ(digits(), "A1 A6 A1 C1 A1 A1");
    program.play(40);
    for (int bar = 0; bar < 5; ++bar) {
        const bool recorded = bar >= 1 && bar <= 4;
        EXPECT_EQ(barPatt(0, 16 * bar) * 10 + barBank(1, 16 * bar), recorded ? 52 : 0) << bar;
    }
    EXPECT_EQ(digits(), "A6 A6 C1 C1 A1 A1");
}

TEST_F(SongEdges, AMereClickOnADigitRecordsNothingAndDragAndWheelStartAlike) {
    setBar(0, 16, 1, 4);
    recButton_Click();
    playButton();
    program.play(3);
    press(Control::DigitPatt, 1);
    release(Control::DigitPatt, 1);
    EXPECT_FALSE(recordingState->barRecording[0]);
    EXPECT_EQ(numberDrag().value, 4); // of the bar that follows
    editingState.write().projectDirty = false;
    panelWheel(Control::DigitPatt, 1, +1);
    EXPECT_EQ(barPatt(0, 16) + 10 * barBank(0, 16), 15);
    EXPECT_TRUE(editingState->projectDirty);
}

TEST_F(SongEdges, WindingEndsWhereItIsShownAtTheTempoOfTheLastReset) {
    for (int bar = 0; bar < 20; ++bar) setBar(2, 16 * bar, 0, bar % 8);
    Form_KeyDown(221, 0); // tempo 150; the song was reset at 140
    playButton();
    program.play(16 * 9 + 4);
    program.calls();
    program.shell.after(250, [] { release(Control::prevButton, 0); });
    press(Control::prevButton, 0);
    const std::string calls = program.calls();
    EXPECT_NE(calls.find("SetMarluneTempo32(140)"), std::string::npos);
    const int bar = shownNumber(Control::timeDisplay, 0) - 1;
    EXPECT_TRUE(calls.substr(calls.rfind("song(")).starts_with("song(" + std::to_string(16 * bar) + " "));
    program.play(1);
    EXPECT_EQ(digits().substr(12, 2), "A" + std::to_string(bar % 8 + 1));
    EXPECT_EQ(shownNumber(Control::timeDisplay, 0), bar + 1);

    program.shell.after(300, [] { Form_KeyDown(32, 0); }); // Space stops, and ends the winding
    const std::uint32_t before = TestProgram::now();
    press(Control::nextButton, 0);
    EXPECT_LT(TestProgram::now() - before, 700U);
    EXPECT_FALSE(transportState->transportRunning);
    EXPECT_EQ(timerInterval(), 0);
}

TEST_F(SongEdges, WhatIsShownIsRightAfterEveryEventAtRest) {
    setBar(1, 32, 3, 3);
    const auto shown = [] {
        return shownText(Control::timeDisplay, 0) + shownText(Control::microDisplay, 0) + " " + digits();
    };
    playButton();
    program.play(32);
    EXPECT_EQ(shown(), "2 A1 A1 A1 D4 A1 A1");
    startStopButton_Click(); // what comes is the next bar
    EXPECT_EQ(shown(), "3 A1 A1 D4 A1 A1 A1");
    navigation_Click(Winding::stepForward);
    EXPECT_EQ(shown(), "3[ 2/16] A1 A1 D4 A1 A1 A1");
    Check1_Click();
    EXPECT_EQ(shown(), "3 A1 A1 A1 A1 A1 A1");
    Check1_Click();
    EXPECT_EQ(shown(), "3[ 2/16] A1 A1 D4 A1 A1 A1");
    exportForm.Form_Activate();
    EXPECT_EQ(exportForm.Label2.text, "[ Starting at Bar:3  ]");
    // One routine brings all of it up to date, however wrong it was.
    program.shown();
    resetShownState();
    refreshAll();
    refreshTransport();
    std::set<std::string> controls;
    for (const std::string& text : program.view.shown)
        controls.insert(text.substr(0, text.find_first_of("(=")));
    for (const char* name : {"DigitPatt", "LEDBar", "timeDisplay", "microDisplay", "SelEditPicture", "keys",
                             "step103", "LoopPt", "PatchID", "knobSprite", "lamp", "sel109", "Offset109"})
        EXPECT_EQ(controls.count(name), 1U) << name;
}

TEST_F(SongEdges, TakingBackARecordedKnobEndsItsRecording) {
    recButton_Click();
    program.drag(Control::knobSprite, 2, 1000, 400);
    EXPECT_TRUE(recordingState->knobRecording[2]);
    menuClicked(Menu::mnuEditUndo);
    EXPECT_FALSE(recordingState->knobRecording[2]);
    EXPECT_EQ(knobTrack[2][0] + project.knobValue[2], 0);
}

TEST_F(PatternEdges, ADragEditsThePatternOnWhichItBegan) {
    project.bass[0].patterns[0][0].loopEnd = 3;
    project.bass[0].patterns[0][1].loopEnd = 9;
    project.bass[0].patterns[0][1].patch = 44;
    for (int p = 0; p < 2; ++p) pushPatternToEngine(0, 0, p);
    refreshAll();
    playButton();
    program.play(1);
    Form_KeyDown('2', 0);
    for (const Control control : {Control::LoopPt, Control::PatchID}) {
        press(control, 0);
        program.play(12); // pattern 2 plays
        panelPointer(control, 0, {.action = PointerAction::move, .y = 800});
        release(control, 0, 800);
        EXPECT_EQ(shownText(control, 0), control == Control::LoopPt ? "10" : "44");
        if (control == Control::PatchID) break;
        Form_KeyDown('1', 0);
        program.play(16);
        Form_KeyDown('2', 0);
    }
    EXPECT_EQ(project.bass[0].patterns[0][0].loopEnd, 7); // 4 + 1 and 200 of 900 twips on
    EXPECT_EQ(project.bass[0].patterns[0][1].loopEnd, 9);
    EXPECT_EQ(project.bass[0].patterns[0][1].patch, 44);
    EXPECT_GE(project.bass[0].patterns[0][0].patch, 10);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(PatternEdges, AJamLeavesTheSongWhereItStandsAndFileNewKeepsWhatIsSelected) {
    Check1_Click();
    moveSongForward(4, true, true);
    Check1_Click();
    playButton();
    program.play(45);
    EXPECT_EQ(songPosition->songTick, 64 + 45 % 16);
    Check1_Click(); // the bar goes on from the place that is due
    program.play(1);
    EXPECT_EQ(songPosition->playedTick, 64 + 45 % 16);
    Check1_Click();
    playButton();
    selPatt(1, 6);
    bankClick(2, 3);
    step103Click(0, 9);
    sel109Drum(5);
    program.shell.answers = {BoxAnswer::no};
    mnuFileNew_Click();
    EXPECT_EQ(digits(), "A1 A1 A7 A7 D1 D1");
    EXPECT_EQ(project.bass[0].selStep * 10 + project.drum.selDrum, 95);
    EXPECT_EQ(songPosition->songTick, 0);
    EXPECT_EQ(shownText(Control::timeDisplay, 0), "1");
}

} // namespace
} // namespace marlune
