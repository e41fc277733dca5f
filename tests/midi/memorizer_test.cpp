#include "support/program_test.h"

namespace marlune {
namespace {

std::string stateOf(const marluneSnapShot& form) {
    std::string text = form.currMidiMessageText.text;
    for (int m = 0; m < kModules; ++m) {
        text += std::string(" ") + (form.pattMap[m].enabled ? "" : "-") +
                (form.pattMap[m].checked ? "x" : "o") + form.currMapped[m].text;
    }
    return text + (form.StoreButton.enabled ? " store" : "") + (form.EditButton.enabled ? " edit" : "") +
           (MIDIIn1.isOpen() ? "" : " closed");
}

TEST(Memorizer, GoesThroughItsFourStates) {
    TestProgram program;
    selPatt(1, 3);
    bankClick(2, 2);
    program.shell.modal = {[&](Form& form) {
        auto& dialog = static_cast<marluneSnapShot&>(form);
        EXPECT_TRUE(project.learnMode);
        EXPECT_EQ(stateOf(dialog), "NONE -oNONE -oNONE -oNONE");
        dialog.Form_KeyDown('1'); // disabled: flips the box, and the click does nothing
        EXPECT_EQ(dialog.currMapped[0].text, "NONE");
        program.midi(0x90, 60, 64);
        EXPECT_EQ(stateOf(dialog), "60(1) oNONE oNONE oNONE store");
        dialog.Form_KeyDown('2');
        dialog.Form_KeyDown('3');
        EXPECT_EQ(stateOf(dialog), "60(1) oNONE x1 - 4 x3 - 1 store");
        dialog.Form_KeyDown('S');
        EXPECT_EQ(stateOf(dialog), "60(1) -oNONE -x1 - 4 -x3 - 1 edit");
        dialog.Form_KeyDown('E');
        EXPECT_EQ(stateOf(dialog), "NONE oNONE xNONE xNONE store closed");
        dialog.Form_KeyDown('2');
        dialog.Form_KeyDown('3');
        dialog.Form_KeyDown('S'); // no box: the note is unmapped
        EXPECT_EQ(stateOf(dialog), "60(1) oNONE oNONE oNONE store");
        program.midi(0x90, 0, 64); // note 0 is a note
        dialog.Form_KeyDown('2');
        dialog.Form_KeyDown('S');
        dialog.EditButton_Click(); // and closes while editing
        dialog.Form_KeyDown(27);
        EXPECT_FALSE(dialog.visible());
    }};
    mnuToolsLearn_Click();
    EXPECT_FALSE(project.learnMode);
    EXPECT_TRUE(MIDIIn1.isOpen());
    EXPECT_FALSE(project.noteMap[60].mapUsed);
    EXPECT_TRUE(project.noteMap[0].mapUsed);
}

TEST(Phrases, SwitchTheirModulesAndLeaveTheOthers) {
    TestProgram program;
    config.phraseChannel = 2;
    NoteMapEntry& entry = project.noteMap[50];
    entry.mapBank[1] = 3;
    entry.mapPatt[1] = 6;
    entry.mapUsed = true;
    remoteNoteSnapShot(50, 1); // not the phrase channel
    EXPECT_EQ(project.bass[1].currPatt, 0);
    project.learnMode = true; // as only a file brings it: without its dialog it has no effect
    remoteNoteSnapShot(50, 2);
    EXPECT_EQ(project.bass[1].currBank * 8 + project.bass[1].currPatt, 30);
    EXPECT_EQ(project.bass[0].currPatt + project.drum.currPatt, 0);
    Check1_Click();
    recButton_Click();
    remoteNoteSnapShot(50, 2);
    EXPECT_TRUE(barRecording[1] && !barRecording[0]);
}

} // namespace
} // namespace marlune
