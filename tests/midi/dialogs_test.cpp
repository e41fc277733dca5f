#include "support/program_test.h"

namespace marlune {
namespace {

TEST(OutputDialog, RepairsItsEntriesOnOk) {
    const struct {
        const char *mapping, *channel, *velocity, *base;
        int mapped, channelStored, velocityStored, baseStored;
    } rows[] = {{"abc", "", "", "", 14, 0, 0, 0},
                {"-5", "0", "-1", "92", -1, 0, 0, 91},
                {"200", "99", "200", "-4", 127, 15, 127, 0},
                {"-1", "16", "127", "91", -1, 15, 127, 91},
                {"0", "7x", "12.5", "36", 0, 6, 12, 36}};
    for (const auto& row : rows) {
        TestProgram program;
        program.shell.modal = {[&](Form& form) {
            auto& dialog = static_cast<marluneOptionsMidiOutput&>(form);
            EXPECT_EQ(dialog.chan[2].text, "10");
            dialog.newMapping[2].text = row.mapping;
            dialog.chan[1].text = row.channel;
            dialog.vel[0].text = row.velocity;
            dialog.offset[1].text = row.base;
            dialog.noteNum[3].text = "300";
            program.calls();
            dialog.cmdOK_Click();
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

TEST(InputDialog, RepairsRefusesAndInverts) {
    const auto entering = [](const std::function<void(marluneOptionsMidiInput&)>& fill) {
        return [fill](Form& form) {
            auto& dialog = static_cast<marluneOptionsMidiInput&>(form);
            fill(dialog);
            dialog.cmdOK_Click();
        };
    };
    TestProgram program;
    program.shell.modal = {entering([](auto& d) { d.newMapping[3].text = "12"; })};
    mnuOptionsMidiInput_Click();
    EXPECT_EQ(program.shell.boxes, std::vector<std::string>{"Duplicate Controller assignments not allowed"});
    EXPECT_EQ(knobOfController(15), 3); // nothing has changed

    program.shell.modal = {entering([](auto& d) {
        d.newMapping[0].text = "";    // keeps 12
        d.newMapping[1].text = "200"; // 127
        d.newMapping[2].text = "-3";  // 0
        d.newMapping[3].text = "015"; // is not the text "15"
        d.chan.text = "17";
        d.pOff[0].text = "0";
        d.pOff[1].text = "112";
        d.pTriggChan.text = "x";
    })};
    mnuOptionsMidiInput_Click();
    EXPECT_EQ(knobOfController(12), 0);
    EXPECT_EQ(knobOfController(127), 1);
    EXPECT_EQ(knobOfController(0), 2);
    EXPECT_EQ(knobOfController(13), -1);
    EXPECT_EQ(config.controlChannel, 15);
    EXPECT_EQ(config.selectBase, 1);
    EXPECT_EQ(config.stepBase, 111);
    EXPECT_EQ(config.phraseChannel, 0);
    EXPECT_TRUE(MIDIIn1.isBlocked(0xB0));
    EXPECT_FALSE(MIDIIn1.isBlocked(0xBF));

    program.shell.modal = {entering([](auto& d) {
        d.newMapping[4].text = "12";
        d.newMapping[0].text = "012"; // the later knob owns the controller
    })};
    mnuOptionsMidiInput_Click();
    EXPECT_EQ(knobOfController(12), 4);
    program.shell.modal = {entering([](auto& d) { EXPECT_EQ(d.newMapping[0].text, ""); })};
    mnuOptionsMidiInput_Click(); // a knob without a controller stays without
    EXPECT_EQ(program.shell.boxes.size(), 1U);
}

TEST(InputDialog, LearnsAControllerFromAnyChannelInAnyState) {
    TestProgram program;
    playButton(); // and the transport runs meanwhile
    program.shell.modal = {[&](Form& form) {
        auto& dialog = static_cast<marluneOptionsMidiInput&>(form);
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
        dialog.describe(finder);
        program.midi(0xB5, 40, 1);
        finder.seventh(); // the focus: what moved before doesn't count
        dialog.Form_Timer();
        EXPECT_EQ(dialog.newMapping[7].text, "19");
        program.midi(0xB7, 99, 64); // a blocked channel
        dialog.Form_Timer();
        EXPECT_EQ(dialog.newMapping[7].text, "99");
        dialog.cmdOK_Click();
    }};
    mnuOptionsMidiInput_Click();
    EXPECT_EQ(knobOfController(99), 7);
    StopPlay();
}

TEST(SetupDialog, ChoosesDevicesAndLimitsTheOffset) {
    const struct {
        const char* text;
        int offset;
    } rows[] = {{"9", 4}, {"-9", -4}, {"abc", 2}, {"-2.5", -2}};
    for (const auto& row : rows) {
        TestProgram program;
        const TemporaryFolder folder;
        setConfigFolder(folder.path);
        config.syncOffset = 2;
        program.shell.modal = {[&](Form& form) {
            auto& dialog = static_cast<MIDISetupForm&>(form);
            EXPECT_EQ(dialog.ComboMidiOut.items.size(), 2U);
            EXPECT_EQ(dialog.syncOffsetCheck.text, "2");
            dialog.ComboMidiOut.selected = 1;
            dialog.syncOffsetCheck.text = row.text;
            program.calls();
            dialog.cmdOK_Click();
        }};
        mnuOptionsMidiSetup_Click();
        EXPECT_EQ(config.midiOutDevice, 1);
        EXPECT_EQ(config.syncOffset, row.offset) << row.text;
        EXPECT_NE(program.calls().find("OpenMidiPort32(1)"), std::string::npos);
        // What was chosen is saved with the next occasion, not with this OK.
        EXPECT_EQ(test::readBytes(folder.file("marlune.cfg"))[496], 0);
    }
}

TEST(SetupDialog, FitsIndicesToTheListsAndNeedsDevices) {
    TestProgram program;
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

TEST(CustomizeDialog, RenamesTheKnobsOnOkOnly) {
    TestProgram program;
    program.shell.modal = {[](Form& form) {
                               auto& dialog = static_cast<Customize&>(form);
                               dialog.Text1[2].text = "Wah";
                               dialog.cmdCancel_Click();
                           },
                           [](Form& form) {
                               auto& dialog = static_cast<Customize&>(form);
                               EXPECT_EQ(dialog.Text1[2].text, "Env.Amt");
                               dialog.Text1[1].text = "gone";
                               dialog.Command1_Click();
                               dialog.Text1[0].text = "Wow";
                               dialog.cmdOK_Click();
                           }};
    mnuOtpionsCustomize_Click();
    mnuOtpionsCustomize_Click();
    EXPECT_EQ(knobLabel[1], "Res");
    EXPECT_EQ(shownText(Control::UserTitle, 0), "Wow");
}

} // namespace
} // namespace marlune
