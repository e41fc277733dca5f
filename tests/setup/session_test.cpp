// The dialogs of the Options and Tools menus as they open, and what each says, saves and shows.
#include "support/program_test.h"

namespace marlune {
namespace {

struct SetupSession : ProgramTest {
    SetupSession() { setConfigFolder(folder.path); }

    // The settings that differ from those of a fresh program.
    std::string settings() const {
        std::string text;
        const auto tell = [&text](const std::string& name, int value, int was) {
            if (value != was) text += name + " " + std::to_string(value) + " ";
        };
        const auto tellAll = [&](const char* name, const auto& values, const auto& were) {
            for (std::size_t i = 0; i < values.size(); ++i)
                tell(name + std::to_string(i), values[i], were[i]);
        };
        tellAll("controller", config.outputController, fresh.outputController);
        tellAll("note", config.drumNoteDefault, fresh.drumNoteDefault);
        tellAll("channel", config.moduleChannel, fresh.moduleChannel);
        tellAll("base", config.moduleBaseNote, fresh.moduleBaseNote);
        tellAll("velocity", config.moduleVelocity, fresh.moduleVelocity);
        tellAll("map", config.controllerMap, fresh.controllerMap);
        tell("control", config.controlChannel, fresh.controlChannel);
        tell("select", config.selectBase, fresh.selectBase);
        tell("step", config.stepBase, fresh.stepBase);
        tell("phrase", config.phraseChannel, fresh.phraseChannel);
        tell("in", config.midiInDevice, fresh.midiInDevice);
        tell("out", config.midiOutDevice, fresh.midiOutDevice);
        tell("sync", config.syncOutDevice, fresh.syncOutDevice);
        tell("offset", config.syncOffset, fresh.syncOffset);
        tell("bar", config.statusBarVisible, fresh.statusBarVisible);
        return text;
    }

    // The same of the file.
    std::string saved() const {
        const auto bytes = readBytes(folder.file("marlune.cfg"));
        if (bytes.size() != sizeof config) return "none";
        const GlobalConfig now = config;
        std::memcpy(&config, bytes.data(), sizeof config);
        std::string text = settings();
        config = now;
        return text;
    }

    GlobalConfig fresh = config;
};

// Channels on which the input takes notes, controllers and note-offs, and the system messages.
std::string open() {
    std::string text;
    for (const int status : {0x90, 0xB0, 0x80, 0xF0}) {
        for (int s = status; s < status + 16; ++s)
            if (!MIDIIn1.isBlocked(s)) text += " " + std::to_string(s - status + 1);
        text += ",";
    }
    return text;
}

TEST_F(SetupSession, OutputDialog) {
    expectSession(program, R"(
dialog b1:
menu mnuOptionsMidiControl: Midi Output (Sequencer): {103A Bassline ( Cutoff[12]4 Res[13]4 Env Amp[14]4
    Decay[15]4 Ctrl 1[16]4 Accent[17]4 ) ( Midi Channel[1]4 Velocity[100]4 Base Note[36]4 ) } {103B Bassline (
    Cutoff[12]4 Res[13]4 Env Amp[14]4 Decay[15]4 Ctrl 1[16]4 Accent[17]4 ) ( Midi Channel[2]4 Velocity[100]4 Base
    Note[36]4 ) } {109 Dummer 'Level' ( Bass [-1]4 Snare[-1]4 Clap[-1]4 CHat1[-1]4 CHat2[-1]4 OHat[-1]4 Drum
    1[-1]4 Accent[-1]4 ) Midi Channel[10]4 } {Drum Note Defaults ( Note#[36]4 Note#[38]4 Note#[39]4 Note#[42]4
    Note#[44]4 Note#[46]4 Note#[48]4 ) } ( !OK xCancel )
dialog 0=1 1=2 2=3 3=4 4=5 5=6 6=3 7=40 8=50 b1:
menu mnuOptionsMidiControl: Midi Output (Sequencer): {103A Bassline ( Cutoff[12]4 Res[13]4 Env Amp[14]4
    Decay[15]4 Ctrl 1[16]4 Accent[17]4 ) ( Midi Channel[1]4 Velocity[100]4 Base Note[36]4 ) } {103B Bassline (
    Cutoff[12]4 Res[13]4 Env Amp[14]4 Decay[15]4 Ctrl 1[16]4 Accent[17]4 ) ( Midi Channel[2]4 Velocity[100]4 Base
    Note[36]4 ) } {109 Dummer 'Level' ( Bass [-1]4 Snare[-1]4 Clap[-1]4 CHat1[-1]4 CHat2[-1]4 OHat[-1]4 Drum
    1[-1]4 Accent[-1]4 ) Midi Channel[10]4 } {Drum Note Defaults ( Note#[36]4 Note#[38]4 Note#[39]4 Note#[42]4
    Note#[44]4 Note#[46]4 Note#[48]4 ) } ( !OK xCancel )
dialog 5=71 6=3 7=40 8=50 14=72 15=4 16=41 17=51 18=80 25=81 26=12 27=30 33=31 b0:
menu mnuOptionsMidiControl: DefineController32(0,12) (1,13) (2,14) (3,15) (4,16) (5,71) (6,12) (7,13) (8,14)
    (9,15) (10,16) (11,72) (12,80) DefineController32(13..18,-1) (19,81) Set103Chan32(0,2) (1,3)
    Set109Chan32(2,11) Set103NoteOffset32(0,50) (1,51) Set103Vel32(0,40) (1,41) | Midi Output (Sequencer): {103A
    Bassline ( Cutoff[12]4 Res[13]4 Env Amp[14]4 Decay[15]4 Ctrl 1[16]4 Accent[17]4 ) ( Midi Channel[1]4
    Velocity[100]4 Base Note[36]4 ) } {103B Bassline ( Cutoff[12]4 Res[13]4 Env Amp[14]4 Decay[15]4 Ctrl 1[16]4
    Accent[17]4 ) ( Midi Channel[2]4 Velocity[100]4 Base Note[36]4 ) } {109 Dummer 'Level' ( Bass [-1]4
    Snare[-1]4 Clap[-1]4 CHat1[-1]4 CHat2[-1]4 OHat[-1]4 Drum 1[-1]4 Accent[-1]4 ) Midi Channel[10]4 } {Drum Note
    Defaults ( Note#[36]4 Note#[38]4 Note#[39]4 Note#[42]4 Note#[44]4 Note#[46]4 Note#[48]4 ) } ( !OK xCancel )
dialog b0:
menu mnuOptionsMidiControl: DefineController32(0,12) (1,13) (2,14) (3,15) (4,16) (5,71) (6,12) (7,13) (8,14)
    (9,15) (10,16) (11,72) (12,80) DefineController32(13..18,-1) (19,81) Set103Chan32(0,2) (1,3)
    Set109Chan32(2,11) Set103NoteOffset32(0,50) (1,51) Set103Vel32(0,40) (1,41) | Midi Output (Sequencer): {103A
    Bassline ( Cutoff[12]4 Res[13]4 Env Amp[14]4 Decay[15]4 Ctrl 1[16]4 Accent[71]4 ) ( Midi Channel[3]4
    Velocity[40]4 Base Note[50]4 ) } {103B Bassline ( Cutoff[12]4 Res[13]4 Env Amp[14]4 Decay[15]4 Ctrl 1[16]4
    Accent[72]4 ) ( Midi Channel[4]4 Velocity[41]4 Base Note[51]4 ) } {109 Dummer 'Level' ( Bass [80]4 Snare[-1]4
    Clap[-1]4 CHat1[-1]4 CHat2[-1]4 OHat[-1]4 Drum 1[-1]4 Accent[81]4 ) Midi Channel[12]4 } {Drum Note Defaults (
    Note#[30]4 Note#[38]4 Note#[39]4 Note#[42]4 Note#[44]4 Note#[46]4 Note#[31]4 ) } ( !OK xCancel )
)");
    EXPECT_EQ(settings(),
              "controller5 71 controller11 72 controller12 80 controller19 81 note0 30 note6 31 "
              "channel0 2 channel1 3 channel2 11 base0 50 base1 51 velocity0 40 velocity1 41 ");
    EXPECT_EQ(saved(), settings());
}

TEST_F(SetupSession, InputDialog) {
    expectSession(program, R"(
dialog b1:
menu mnuOptionsMidiInput: Midi Input (Control): {103A Bassline Continuous Control ( Cutoff[12]4 Res[13]4 Env
    Amp[14]4 Decay[15]4 Ctrl 1[16]4 Accent[17]4 ) } {103B Bassline Continuous Control ( Cutoff[18]4 Res[19]4 Env
    Amp[20]4 Decay[21]4 Ctrl 1[22]4 Accent[23]4 ) } {109 Dummer Continuous Control 'Level' ( Bass [24]4
    Snare[25]4 Clap[26]4 CHat1[27]4 CHat2[28]4 OHat[29]4 Drum 1[30]4 Accent[31]4 ) } ( {Control Global Midi
    Channel[1]4 } {MIDI Pattern Edit Select Base[60]4 Step Base[36]4 } {Phrase Channel Midi Channel[1]4 } ) ( !OK
    xCancel )
dialog 0=71 19=72 20=5 21=61 22=35 23=7 b0:
menu mnuOptionsMidiInput: Midi Input (Control): {103A Bassline Continuous Control ( Cutoff[12]4 Res[13]4 Env
    Amp[14]4 Decay[15]4 Ctrl 1[16]4 Accent[17]4 ) } {103B Bassline Continuous Control ( Cutoff[18]4 Res[19]4 Env
    Amp[20]4 Decay[21]4 Ctrl 1[22]4 Accent[23]4 ) } {109 Dummer Continuous Control 'Level' ( Bass [24]4
    Snare[25]4 Clap[26]4 CHat1[27]4 CHat2[28]4 OHat[29]4 Drum 1[30]4 Accent[31]4 ) } ( {Control Global Midi
    Channel[1]4 } {MIDI Pattern Edit Select Base[60]4 Step Base[36]4 } {Phrase Channel Midi Channel[1]4 } ) ( !OK
    xCancel )
dialog b0:
menu mnuOptionsMidiInput: Midi Input (Control): {103A Bassline Continuous Control ( Cutoff[71]4 Res[13]4 Env
    Amp[14]4 Decay[15]4 Ctrl 1[16]4 Accent[17]4 ) } {103B Bassline Continuous Control ( Cutoff[18]4 Res[19]4 Env
    Amp[20]4 Decay[21]4 Ctrl 1[22]4 Accent[23]4 ) } {109 Dummer Continuous Control 'Level' ( Bass [24]4
    Snare[25]4 Clap[26]4 CHat1[27]4 CHat2[28]4 OHat[29]4 Drum 1[30]4 Accent[72]4 ) } ( {Control Global Midi
    Channel[5]4 } {MIDI Pattern Edit Select Base[61]4 Step Base[35]4 } {Phrase Channel Midi Channel[7]4 } ) ( !OK
    xCancel )
)");
    EXPECT_EQ(settings(), "map12 -1 map31 -1 map71 0 map72 19 control 4 select 61 step 35 phrase 6 ");
    EXPECT_EQ(saved(), settings());
    EXPECT_EQ(open(), " 1 2 7 10, 5,, 9 15,");
}

TEST_F(SetupSession, DeviceDialogAndLabels) {
    config.syncOffset = 3;
    expectSession(program, R"(
dialog b1:
menu mnuOptionsMidiSetup: MIDI Setup: {MIDI In Device <0 of Device 0 Device 1> } {MIDI Out Device Sequencer Out
    (with Sync)<0 of Device 0 Device 1> Sync Only<0 of Device 0 Device 1> Playback Delay(+/-4ticks)[3]4 } ( !OK
    xCancel )
dialog l0=1 l1=1 l2=0 0=-2 b0:
menu mnuOptionsMidiSetup: CloseMidiPort32() CloseSyncPort32() SetSyncOffset32(-2) CloseMidiPort32()
    CloseSyncPort32() OpenSyncPort32(0) OpenMidiPort32(1) SetSyncOffset32(-2) SendShortMessage32(159,1,0) | MIDI
    Setup: {MIDI In Device <0 of Device 0 Device 1> } {MIDI Out Device Sequencer Out (with Sync)<0 of Device 0
    Device 1> Sync Only<0 of Device 0 Device 1> Playback Delay(+/-4ticks)[3]4 } ( !OK xCancel )
dialog b1:
menu mnuOptionsMidiSetup: MIDI Setup: {MIDI In Device <1 of Device 0 Device 1> } {MIDI Out Device Sequencer Out
    (with Sync)<1 of Device 0 Device 1> Sync Only<0 of Device 0 Device 1> Playback Delay(+/-4ticks)[-2]4 } ( !OK
    xCancel )
dialog 0=Bite 19=Last b1:
menu mnuOtpionsCustomize: UserTitle(0)="Bite" UserTitle(19)="Last" | Label Customize: {103A ( Cutoff[Cutoff]8
    Res[Res]8 Env Amp[Env.Amt]8 Decay[Decay]8 Ctrl 1[Ctrl.1]8 Accent[Accent]8 ) } {103B ( Cutoff[Cutoff]8
    Res[Res]8 Env Amp[Env.Amt]8 Decay[Decay]8 Ctrl 1[Ctrl.1]8 Accent[Accent]8 ) } {109 ( BDrum[BDrum]8
    Snare[Snare]8 Clap[Clap]8 ClHt1[ClHt1]8 ClHt2[ClHt2]8 OpHat[OpHat]8 Loop[Loop]8 Accent[Accent]8 ) } ( Default
    !OK xCancel )
dialog b0:
menu mnuOtpionsCustomize: Label Customize: {103A ( Cutoff[Bite]8 Res[Res]8 Env Amp[Env.Amt]8 Decay[Decay]8 Ctrl
    1[Ctrl.1]8 Accent[Accent]8 ) } {103B ( Cutoff[Cutoff]8 Res[Res]8 Env Amp[Env.Amt]8 Decay[Decay]8 Ctrl
    1[Ctrl.1]8 Accent[Accent]8 ) } {109 ( BDrum[BDrum]8 Snare[Snare]8 Clap[Clap]8 ClHt1[ClHt1]8 ClHt2[ClHt2]8
    OpHat[OpHat]8 Loop[Loop]8 Accent[Last]8 ) } ( Default !OK xCancel )
dialog b2:
menu mnuOtpionsCustomize: Label Customize: {103A ( Cutoff[Cutoff]8 Res[Res]8 Env Amp[Env.Amt]8 Decay[Decay]8 Ctrl
    1[Ctrl.1]8 Accent[Accent]8 ) } {103B ( Cutoff[Cutoff]8 Res[Res]8 Env Amp[Env.Amt]8 Decay[Decay]8 Ctrl
    1[Ctrl.1]8 Accent[Accent]8 ) } {109 ( BDrum[BDrum]8 Snare[Snare]8 Clap[Clap]8 ClHt1[ClHt1]8 ClHt2[ClHt2]8
    OpHat[OpHat]8 Loop[Loop]8 Accent[Accent]8 ) } ( Default !OK xCancel )
menu mnuStatusBarEnable:
)");
    EXPECT_EQ(settings() + "saved " + saved(), "in 1 out 1 offset -2 bar 0 saved in 1 out 1 offset -2 ");
    EXPECT_EQ(open(), " 1 2 10, 1,, 9 15,");
}

TEST_F(SetupSession, Memorizer) {
    config.phraseChannel = 4;
    openMidiDevices();
    test::Session session(program);
    session.verbs["map"] = [&](int note, int, int) {
        const NoteMapEntry& entry = project.noteMap[note];
        program.shell.passing.push_back(entry.mapUsed ? "used" : "free");
        for (int m = 0; m < kModules; ++m)
            program.shell.passing.push_back(std::to_string(entry.mapBank[m]) + "/" +
                                            std::to_string(entry.mapPatt[m]));
    };
    std::vector<std::string> states;
    const auto state = [&states] {
        std::string text = memorizer.currMidiMessageText.text;
        for (int m = 0; m < kModules; ++m)
            text += std::string(memorizer.pattMap[m].checked ? " [x]" : " [ ]") +
                    (memorizer.pattMap[m].enabled ? "" : "off") + memorizer.currMapped[m].text;
        states.push_back(text + (memorizer.StoreButton.enabled ? " store" : "") +
                         (memorizer.EditButton.enabled ? " edit" : "") + (MIDIIn1.isOpen() ? "" : " rests") +
                         "\n");
    };
    selPatt(1, 4);
    bankClick(2, 3);
    program.shell.modal = {[&](Form& form) {
        state();
        program.midi(0x95, 50, 100); // another channel
        state();
        for (const unsigned char key : {'1', 'S', 'E'}) form.Form_KeyDown(key);
        state();
        program.midi(0x94, 50, 100);
        state();
        for (const unsigned char key : {'2', '3', '3', '2', '2'}) form.Form_KeyDown(key);
        state();
        form.Form_KeyDown('S');
        state();
        form.Form_KeyDown('1');
        program.midi(0x94, 51, 100);
        state();
        program.midi(0x94, 50, 100);
        form.Form_KeyDown('E');
        state();
        program.midi(0x94, 51, 100);
        for (const unsigned char key : {'3', 'S'}) form.Form_KeyDown(key);
        state();
        for (const int key : {27, int{'L'}, int{'l'}, 13, int{'X'}})
            states.push_back(form.Form_KeyDown(key) ? "t" : "-");
    }};
    session.tell("- click startStopButton 0");
    expectSession(session, R"(
menu mnuToolsLearn: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) | startStopButton=0
    | run0 undo1 changed1
map 50: used -1/-1 0/4 3/0
map 51: free -1/-1 -1/-1 -1/-1
midi 94 32 1: SetNextGroup32(1,0) SetCurrGroup32(1,0) SetNextPatt32(1,4) SetCurrPatt32(1,4) SetNextGroup32(2,3)
    SetCurrGroup32(2,3) SetNextPatt32(2,0) SetCurrPatt32(2,0) | changed1
midi 94 33 1:
dialog:
menu mnuToolsLearn: 1039R Memorizer: ( 'Note(Chan)' 'NONE' ) ( 103A [ ] off 'NONE' ) ( 103B [ ] off 'NONE' ) (
    109 [ ] off 'NONE' ) ( Store off Edit off )
)");
    std::string text = "\n";
    for (const std::string& each : states) text += each;
    EXPECT_EQ(text, R"(
NONE [ ]offNONE [ ]offNONE [ ]offNONE
NONE [ ]offNONE [ ]offNONE [ ]offNONE
NONE [x]offNONE [ ]offNONE [ ]offNONE
50(5) [ ]NONE [ ]NONE [ ]NONE store
50(5) [ ]NONE [x]1 - 5 [ ]NONE store
50(5) [ ]offNONE [x]off1 - 5 [ ]offNONE edit
51(5) [ ]NONE [ ]NONE [ ]NONE store
NONE [ ]NONE [x]NONE [ ]NONE store rests
50(5) [ ]offNONE [x]off1 - 5 [x]off4 - 1 edit
tttt-)");
}

} // namespace
} // namespace marlune
