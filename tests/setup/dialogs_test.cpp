#include "support/program_test.h"

namespace marlune {
namespace {

using SetupDialog = ProgramTest;

TEST_F(SetupDialog, ChoosesDevicesAndLimitsTheOffset) {
    const struct {
        const char* text;
        int offset;
    } rows[] = {{"9", 4}, {"-9", -4}, {"abc", 2}, {"-2.5", -2}};
    for (const auto& row : rows) {
        setConfigFolder(folder.path);
        config.syncOffset = 2;
        config.midiOutDevice = 0;
        program.shell.modal = {[&](Form&) {
            EXPECT_EQ(midiSetupForm.ComboMidiOut.items.size(), 2U);
            EXPECT_EQ(midiSetupForm.syncOffsetCheck.text, "2");
            midiSetupForm.ComboMidiOut.selected = 1;
            midiSetupForm.syncOffsetCheck.text = row.text;
            program.calls();
            midiSetupForm.cmdOK_Click();
        }};
        mnuOptionsMidiSetup_Click();
        EXPECT_EQ(config.midiOutDevice, 1);
        EXPECT_EQ(config.syncOffset, row.offset) << row.text;
        EXPECT_NE(program.calls().find("OpenMidiPort32(1)"), std::string::npos);
        // What was chosen is saved with the next occasion, not with this OK.
        EXPECT_EQ(test::readBytes(folder.file("marlune.cfg"))[496], 0);
    }
}

TEST_F(SetupDialog, FitsIndicesToTheListsAndNeedsDevices) {
    config.midiOutDevice = 5;
    config.syncOutDevice = -1;
    listMidiDevices();
    EXPECT_EQ(config.midiOutDevice, 1);
    EXPECT_EQ(midiSetupForm.ComboSyncOut.selected, -1);
    program.devices.devices = 0;
    mnuOptionsMidiSetup_Click();
    EXPECT_EQ(
        program.shell.boxes.back(),
        "Warning: No MIDI Drivers Installed!\nMarlune 200q requires at least one MIDI Driver. \nPlease exit "
        "Marlune and install a MIDI Driver.");
}

TEST_F(SetupDialog, ADeviceThatWasAwayIsOpenedWhenItComes) {
    program.devices.devices = 0;
    closeMidiDevices();
    EXPECT_FALSE(openMidiDevices());
    openMissingDevices();
    EXPECT_FALSE(MIDIIn1.isOpen());
    program.devices.devices = 2;
    program.wire();
    openMissingDevices();
    EXPECT_TRUE(MIDIIn1.isOpen());
    playButton();
    program.play(1);
    EXPECT_NE(program.wire().find("90 24"), std::string::npos);
    playButton();
    program.calls();
    openMissingDevices();
    EXPECT_EQ(program.calls(), ""); // all are open
    closeMidiDevices();
    openMissingDevices();
    EXPECT_FALSE(MIDIIn1.isOpen()); // closed on purpose
}

} // namespace
} // namespace marlune
