#include "support/program_test.h"

namespace marlune {
namespace {

// Opens the copy dialog, enters and presses OK.
void copyBars(TestProgram& program, const char* count, bool knobs) {
    program.shell.modal = {[=](Form&) {
        patternCopyForm.Text1.text = count;
        patternCopyForm.Check1.checked = knobs;
        patternCopyForm.Command1_Click();
    }};
    mnuEditCut_Click();
}

using SongClipboard = ProgramTest;
using BarKnobs = SongModeTest;
using Tools = ProgramTest;

TEST_F(SongClipboard, CopiesBarsAndKnobsAndStopsAtTheEnd) {
    Check1_Click();
    setEditSel(1);
    for (int i = 0; i < 10; ++i) setBar(1, 16 * i, i % 4, i % 8);
    for (int t = 0; t < 160; ++t) knobTrack[7][t] = static_cast<std::uint8_t>(t % 128);
    copyBars(program, "10", true);
    EXPECT_EQ(program.shell.status, "SONG COPY: ( 103B Patterns and knobs ) from BAR 1 thru 10 .");
    setBar(1, 0, 3, 3); // a later change doesn't reach the clipboard
    songPosition.write().songTick = 16 * 995;
    setEditSel(0);
    mnuEditPaste_Click();
    EXPECT_EQ(barPatt(0, 16 * 996) * 10 + barBank(0, 16 * 999), 10);
    EXPECT_EQ(barPatt(0, 16 * 995), 0);
    EXPECT_EQ(knobTrack[1][16 * 995 + 5], 5);
    EXPECT_EQ(knobTrack[1][15999], 79);
    EXPECT_EQ(project.knobValue[1], 0);
    EXPECT_EQ(knobTrack[7][16 * 995], 0); // its own row is left alone
    songPosition.write().songTick = 16 * 998;
    copyBars(program, "5", false);
    EXPECT_EQ(program.shell.status, "SONG COPY: ( 103A Patterns ) from BAR 999 thru 1000 .");
    EXPECT_EQ(songClipboard.write().copyKnobLast, 0);
    copyBars(program, "many", false);
    EXPECT_EQ(program.shell.boxes.back(), "Enter the number of Bars to copy (1 to 1000)");
    program.shell.modal = {[](Form& form) {
        EXPECT_EQ(form.caption, "Copy Pattern [103A]");
        EXPECT_EQ(patternCopyForm.Text1.text, "2");
    }};
    mnuEditCut_Click();
}

TEST_F(SongClipboard, AfterACopyInPatternModeHoldsItsStartState) {
    setBar(0, 0, 2, 2);
    mnuEditCut_Click();
    Check1_Click();
    EXPECT_TRUE(menuState(Menu::mnuEditPaste).enabled);
    mnuEditPaste_Click();
    EXPECT_EQ(barBank(0, 0) + barPatt(0, 0), 0);
}

TEST_F(BarKnobs, DontMixModuleKinds) {
    setEditSel(2);
    mnuEditPastePattern_Click(); // before any copy: zeros for the drums
    EXPECT_EQ(knobTrack[12][0] + knobTrack[19][15], 0);
    EXPECT_EQ(knobTrack[12][16], 100);
    setEditSel(0);
    for (int t = 0; t < 16; ++t) knobTrack[3][t] = static_cast<std::uint8_t>(t);
    mnuEditCopyPattern_Click();
    setEditSel(2);
    mnuEditPastePattern_Click();
    EXPECT_EQ(knobTrack[15][5], 0);
    setEditSel(1);
    songPosition.write().songTick = 40;
    mnuEditPastePattern_Click();
    EXPECT_EQ(knobTrack[9][16 * 2 + 13], 13);
    EXPECT_EQ(project.knobValue[9], 8); // the knob follows at once
}

TEST_F(Tools, ClearInitializeAndRebuild) {
    test::setBassSteps(0, "G! G^ G_");
    project.bass[0].patterns[0][0].patch = 3;
    mnuToolsClear_Click();
    EXPECT_FALSE(project.bass[0].patterns[0][0].steps[0].noteOn);
    mnuToolsInit_Click();
    EXPECT_TRUE(project.bass[0].patterns[0][0].steps[15].noteOn);
    EXPECT_EQ(project.bass[0].patterns[0][0].patch, 3);
    setEditSel(2);
    project.drum.patterns[0][0].drumNote[2] = 99;
    mnuToolsClear_Click();
    EXPECT_EQ(project.drum.patterns[0][0].drumNote[2], 99);
    mnuToolsInit_Click();
    EXPECT_EQ(project.drum.patterns[0][0].drumNote[2], 39);
    EXPECT_EQ(program.copyDifference(), "");

    project.knobValue[5] = 44;
    project.drum.currPatt = 6;
    knobTrack[5][0] = 1;
    Check1_Click(); // the panel's knobs now follow the track
    songPosition.write().songTick = 35;
    recordingState.write().recordOn = true;
    mnuToolsInitBarfromPatt_Click();
    EXPECT_EQ(knobTrack[5][32] * 10000 + knobTrack[5][47] * 100 + knobTrack[5][48], 444400);
    EXPECT_EQ(barPatt(2, 32) * 10 + barPatt(2, 48), 60);
    EXPECT_EQ(songPosition->songTick, 32);
    EXPECT_FALSE(recordingState->recordOn);
    mnuToolsInitSongfromPatt_Click();
    EXPECT_EQ(knobTrack[5][15999] + barPatt(2, 15999), 50);
    EXPECT_EQ(songPosition->songTick, 0);
    mnuToolsInit_Click(); // Initialize Song
    EXPECT_EQ(knobTrack[5][77] * 1000 + knobTrack[13][77], 100);
    EXPECT_EQ(barPatt(2, 999), 6);
}

TEST_F(Tools, CalculateDelaysAndTranspositions) {
    marluneCalculator form;
    form.load();
    EXPECT_EQ(form.Text3.text + " " + form.Label4.text + " " + form.Label7.text, "140 1712 0");
    const struct {
        const char *from, *to, *result;
    } rows[] = {
        {"120", "130", "+ 1.39"}, {"130", "120", "- 1.39"}, {"120", "240", "+ 12"}, {"99", "99", "0"}};
    for (const auto& row : rows) {
        form.Text3.text = row.from;
        form.Text4.text = row.to;
        form.Command2_Click();
        EXPECT_EQ(form.Label7.text, row.result);
    }
    form.Text4.text = "fast";
    form.Text2.text = "";
    form.Command1_Click();
    form.Command2_Click();
    EXPECT_EQ(form.Label4.text + form.Label7.text, "17120");
}

} // namespace
} // namespace marlune
