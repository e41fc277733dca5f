#include "support/program_test.h"

namespace marlune {
namespace {

using OutputDialog = ProgramTest;
using InputDialog = ProgramTest;
using SetupDialog = ProgramTest;

TEST_F(OutputDialog, RepairsItsEntriesOnOk) {
    const struct {
        const char *mapping, *channel, *velocity, *base;
        int mapped, channelStored, velocityStored, baseStored;
    } rows[] = {{"abc", "", "", "", 14, 0, 0, 0},
                {"-5", "0", "-1", "92", -1, 0, 0, 91},
                {"200", "99", "200", "-4", 127, 15, 127, 0},
                {"-1", "16", "127", "91", -1, 15, 127, 91},
                {"0", "7x", "12.5", "36", 0, 6, 12, 36}};
    for (const auto& row : rows) {
        program.shell.modal = {[&](Form&) {
            EXPECT_EQ(midiOutputForm.chan[2].text, "10");
            midiOutputForm.newMapping[2].text = row.mapping;
            midiOutputForm.chan[1].text = row.channel;
            midiOutputForm.vel[0].text = row.velocity;
            midiOutputForm.offset[1].text = row.base;
            midiOutputForm.noteNum[3].text = "300";
            program.calls();
            midiOutputForm.cmdOK_Click();
        }};
        mnuOptionsMidiControl_Click();
        EXPECT_EQ(config.outputController[2], row.mapped) << row.mapping;
        EXPECT_EQ(config.moduleChannel[1], row.channelStored) << row.channel;
        EXPECT_EQ(config.moduleVelocity[0], row.velocityStored) << row.velocity;
        EXPECT_EQ(config.moduleBaseNote[1], row.baseStored) << row.base;
        EXPECT_EQ(config.drumNoteDefault[3], 127);
        EXPECT_NE(program.calls().find("DefineController32(2," + std::to_string(row.mapped) + ")"),
                  std::string::npos);
    }
}

TEST_F(InputDialog, RepairsRefusesAndInverts) {
    marluneOptionsMidiInput& d = midiInputForm;
    const auto enter = [&](const std::function<void()>& entries) {
        program.shell.modal = {[&](Form&) {
            entries();
            d.cmdOK_Click();
        }};
        mnuOptionsMidiInput_Click();
    };
    enter([&] { d.newMapping[3].text = "12"; });
    EXPECT_EQ(program.shell.boxes, std::vector<std::string>{"Duplicate Controller assignments not allowed"});
    EXPECT_EQ(knobOfController(15), 3); // nothing has changed

    enter([&] {
        d.newMapping[0].text = "";    // keeps 12
        d.newMapping[1].text = "200"; // 127
        d.newMapping[2].text = "-3";  // 0
        d.newMapping[3].text = "015"; // is not the text "15"
        d.chan.text = "17";
        d.pOff[0].text = "0";
        d.pOff[1].text = "112";
        d.pTriggChan.text = "x";
    });
    const std::pair<int, int> knobs[] = {{12, 0}, {127, 1}, {0, 2}, {13, -1}};
    for (const auto& [controller, knob] : knobs) EXPECT_EQ(knobOfController(controller), knob) << controller;
    EXPECT_EQ(config.controlChannel, 15);
    EXPECT_EQ(config.selectBase, 1);
    EXPECT_EQ(config.stepBase, 111);
    EXPECT_EQ(config.phraseChannel, 0);
    EXPECT_TRUE(MIDIIn1.isBlocked(0xB0) && !MIDIIn1.isBlocked(0xBF));

    enter([&] {
        d.newMapping[4].text = "12";
        d.newMapping[0].text = "012"; // the later knob owns the controller
    });
    EXPECT_EQ(knobOfController(12), 4);
    enter([&] { EXPECT_EQ(d.newMapping[0].text, ""); }); // a knob without a controller stays without
    EXPECT_EQ(program.shell.boxes.size(), 1U);
}

TEST_F(InputDialog, LearnsAControllerFromAnyChannelInAnyState) {
    playButton(); // and the transport runs meanwhile
    program.shell.modal = {[&](Form&) {
        struct FocusFinder final : FormBuilder {
            FormEvent seventh;
            int count = 0;
            void textBox(const std::string&, TextBox&, int, FormEvent gotFocus) override {
                if (count++ == 7) seventh = gotFocus;
            }
            void beginFrame(const std::string&) override {}
            void endFrame() override {}
            void beginRow() override {}
            void endRow() override {}
            void label(const Label&) override {}
            void digitsBox(const std::string&, TextBox&, int) override {}
            void checkBox(CheckBox&, FormEvent) override {}
            void comboBox(const std::string&, ComboBox&) override {}
            void progressBar(ProgressBar&) override {}
            void button(Button&, Role, FormEvent) override {}
        } finder;
        midiInputForm.describe(finder);
        program.midi(0xB5, 40, 1);
        finder.seventh(); // the focus: what moved before doesn't count
        midiInputForm.Form_Timer();
        EXPECT_EQ(midiInputForm.newMapping[7].text, "19");
        program.midi(0xB7, 99, 64); // a blocked channel
        midiInputForm.Form_Timer();
        EXPECT_EQ(midiInputForm.newMapping[7].text, "99");
        midiInputForm.cmdOK_Click();
    }};
    mnuOptionsMidiInput_Click();
    EXPECT_EQ(knobOfController(99), 7);
}

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
