// Start, File New and the end of the program, told whole.
#include "commands/reset_program.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using Sessions = ProgramTest;

template <typename Values>
std::string list(const char* name, const Values& values) {
    std::string text = std::string(name) + ":";
    for (auto at = values.begin(); at != values.end();) { // "5*3" for three fives
        const auto end = std::find_if(at, values.end(), [at](const auto& v) { return int{v} != int{*at}; });
        text += " " + std::to_string(int{*at}) + (end - at > 1 ? "*" + std::to_string(end - at) : "");
        at = end;
    }
    return text + "\n";
}

TEST_F(Sessions, StartAndEnd) {
    setConfigFolder(folder.path);
    config.syncOffset = 3;
    MDIForm_Unload(); // saves
    EXPECT_EQ(MIDIIn1.isOpen(), false);
    EXPECT_TRUE(transportState->programClosing);
    for (int k = 0; k < kKnobs; ++k) config.controllerMap[100 + k] = 3;
    resetProgram();
    setConfigFolder(folder.path);
    program.calls();
    program.shown();
    test::Session session(program);
    session.marksAnew = false;
    std::string panels;
    session.verbs["start"] = [&](int, int, int) {
        StartupHooks hooks;
        hooks.randomSeed = 9;
        hooks.showMainWindow = [&] { panels += program.shell.panel ? "panel " : "window "; };
        hooks.showSplash = [&](bool on) { panels += on ? "splash " : "gone "; };
        hooks.configured = [&] {
            panels += program.shell.panel ? "panel " : "hidden ";
            config.midiInDevice = config.midiOutDevice = 9; // beyond the list
        };
        startupMain("", hooks);
    };
    session.verbs["end"] = [](int, int, int) { MDIForm_Unload(); };
    expectSession(session, R"(
start: StopMarluneTimer32() SetMarluneHwnd32(-1) Set103Chan32(0,0) (1,1) Set109Chan32(2,9)
    Set103StoredChan32(0,0) (1,1) Set103NoteOffset32(0,36) (1,36) Set103Vel32(0,100) (1,100)
    DefineController32(0,12) (1,13) (2,14) (3,15) (4,16) (5,17) (6,12) (7,13) (8,14) (9,15) (10,16) (11,17)
    DefineController32(12..19,-1) pattern(109 A1) pattern(103B D8) Set103Vel32(0,100) (1,100)
    Set103NoteOffset32(0,36) (1,36) Set103Chan32(0,0) (1,1) Set109Chan32(2,9) DefineController32(0,12) (1,13)
    (2,14) (3,15) (4,16) (5,17) (6,12) (7,13) (8,14) (9,15) (10,16) (11,17) DefineController32(12..19,-1)
    SetSyncOffset32(3) SetSong32(0) patterns(0 A1>A1@0 A1>A1@0 A1>A1@0) position(0) CloseMidiPort32()
    CloseSyncPort32() OpenSyncPort32(0) OpenMidiPort32(1) SetSyncOffset32(3) SendShortMessage32(159,1,0)
    CloseMidiPort32() CloseSyncPort32() OpenSyncPort32(0) OpenMidiPort32(1) SetSyncOffset32(3)
    SendShortMessage32(159,1,0) SetController32(0..11,0) SetController32(12..19,100) | knobSprite(0..11)=0
    knobSprite(12..19)=42 SelEditPicture(0)=0 edit(0>1: 0 16) LEDBar(2)=0 edit(1>2: 0 16) knobTempo=26
    tempoBPM="140" edit(2>0: 16 0) UserTitle(0)="Cutoff" UserTitle(1)="Res" UserTitle(2)="Env.Amt"
    UserTitle(3)="Decay" UserTitle(4)="Ctrl.1" UserTitle(5)="Accent" UserTitle(6)="Cutoff" UserTitle(7)="Res"
    UserTitle(8)="Env.Amt" UserTitle(9)="Decay" UserTitle(10)="Ctrl.1" UserTitle(11)="Accent"
    UserTitle(12)="BDrum" UserTitle(13)="Snare" UserTitle(14)="Clap" UserTitle(15)="ClHt1" UserTitle(16)="ClHt2"
    UserTitle(17)="OpHat" UserTitle(18)="Loop" UserTitle(19)="Accent" timeDisplay="1" microDisplay=""
    startStopButton=0 playSongButton=0 RecButton=0 stopButton=0 Check1=0 ResetButton=0 prevButton=0 nextButton=0
    RwdStep=0 FwdStep=0 timeDisplay disabled microDisplay disabled sel109(0..7)=0 DigitPatt(0)=0 keys(0)=0
    accent(0)=0 down(0)=0 up(0)=0 step103(0)=0 LoopPt(0)="16" PatchID(0)="NONE" DigitPatt(1)=0 DigitPatt(2)=0
    keys(1)=0 accent(1)=0 down(1)=0 up(1)=0 step103(1)=0 LoopPt(1)="16" PatchID(1)="NONE" DigitPatt(3)=0
    DigitPatt(4)=0 sel109(0)=1 lamp(0..15)=off Offset109(0)="36" Offset109(1)="38" Offset109(2)="39"
    Offset109(3)="42" Offset109(4)="44" Offset109(5)="46" Offset109(6)="48" LoopPt(2)="16" DigitPatt(5)=0 |
    tempo=140 knobs 12..19=100 103A A1..103A D8 {C*16} 103B A1..103B D8 {C*16} 109 A1..109 D8 {drums}
    track12..track19 1..16000=100
menu mnuToolsRNotes: Set103Note32(0,0,0,0,0) (0,0,0,1,5) (0,0,0,2,7) (0,0,0,3,6) (0,0,0,4,6) (0,0,0,5,0)
    (0,0,0,6,2) (0,0,0,7,4) (0,0,0,8,2) (0,0,0,9,0) (0,0,0,10,3) (0,0,0,11,11) (0,0,0,12,5) (0,0,0,13,2)
    (0,0,0,14,3) (0,0,0,15,2) | undo1 changed1 103A A1 {C F G F#*2 C D E D C D# B F D D# D}
menu mnuToolsRAccents: Set103Accent32(0,0,0,0,0) (0,0,0,1,0) (0,0,0,2,0) (0,0,0,3,0) (0,0,0,4,0) (0,0,0,5,0)
    (0,0,0,6,-1) (0,0,0,7,0) (0,0,0,8,-1) (0,0,0,9,-1) (0,0,0,10,0) (0,0,0,11,-1) (0,0,0,12,-1) (0,0,0,13,-1)
    (0,0,0,14,-1) (0,0,0,15,0) | undo2 103A A1 {C F G F#*2 C D! E D! C! D# B! F! D! D#! D}
menu mnuEditPaste:
key 49: SetNextPatt32(0,0) SetCurrPatt32(0,0)
key 75: SetNextPatt32(2,7) SetCurrPatt32(2,7) | DigitPatt(5)=7 DigitPatt(4)=7
key 186: Set103Patch32(0,0,0,-1)
click startStopButton 0: SetController32(0..11,0) SetController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) position(0) patterns(0 A1>A1@0 A1>A1@0 A8>A8@0) StartMarluneTimer32(17,0)
    HoldTicks32(0) | startStopButton=1 | status "Accented steps of 103A are silent: turn up the Accent knob,
    which stands at 0." | run1
end: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) CloseMidiPort32()
    CloseSyncPort32() | startStopButton=0 | run0
)");
    EXPECT_EQ(panels, "panel splash panel gone "); // the panel of the run before is hidden behind the splash
    EXPECT_EQ(config.midiInDevice * 10 + config.midiOutDevice, 11);
}

TEST_F(Sessions, FileNew) {
    for (int p = 0; p < kBanks * kPatterns; ++p) {
        for (BassModule& bass : project.bass) {
            BassPattern& pattern = bass.patterns[p / kPatterns][p % kPatterns];
            for (BassStep& s : pattern.steps) {
                s.note = 5;
                s.up = s.down = s.accent = s.slide = true;
            }
            pattern.steps[3].noteOn = false;
            pattern.loopEnd = pattern.patch = 3;
        }
        DrumPattern& drums = project.drum.patterns[p / kPatterns][p % kPatterns];
        drums.drumOn[15].fill(kDrumHit);
        drums.loopEnd = 4;
        drums.drumNote.fill(1);
    }
    for (auto& bars : barTrack) bars.fill({3, 3});
    for (auto& track : knobTrack) track.fill(7);
    for (int k = 0; k < kKnobs; ++k) project.knobValue[k] = 9;
    for (NoteMapEntry& entry : project.noteMap) entry = {};
    config = {};
    for (BassModule& bass : project.bass) bass.storedChannel = bass.baseNote = bass.baseVelocity = 0;
    project.tempo = 99;
    knobLabel[3] = "mine";
    pushAllPatterns(0, 1, 2);
    refreshAll();
    setEditSel(2);
    mnuEditCut_Click();
    program.calls();
    program.shown();
    expectSession(program, R"(
menu mnuFileNew: Set103Chan32(0,0) (1,1) Set109Chan32(2,9) Set103StoredChan32(0,0) (1,1) Set103NoteOffset32(0,36)
    (1,36) Set103Vel32(0,100) (1,100) DefineController32(0,12) (1,13) (2,14) (3,15) (4,16) (5,17) (6,12) (7,13)
    (8,14) (9,15) (10,16) (11,17) DefineController32(12..19,-1) pattern(109 A1) pattern(103B D8)
    SetController32(0..11,0) SetController32(12..19,100) position(0) SetController32(0..11,0)
    SetController32(12..19,100) SetController32(0..11,0) SetController32(12..19,100) | edit(2>0: 16 0) keys(0)=0
    accent(0)=0 down(0)=0 up(0)=0 LoopPt(0)="16" PatchID(0)="NONE" keys(1)=0 accent(1)=0 down(1)=0 up(1)=0
    LoopPt(1)="16" PatchID(1)="NONE" lamp(15)=off Offset109(0)="36" Offset109(1)="38" Offset109(2)="39"
    Offset109(3)="42" Offset109(4)="44" Offset109(5)="46" Offset109(6)="48" LoopPt(2)="16" knobSprite(0..11)=0
    knobSprite(12..19)=42 | edit0 tempo=140 knobs 0..11=0 12..19=100 103A A1..103A D8 {C*16} 103B A1..103B D8
    {C*16} 109 A1..109 D8 {drums} bars 103A 1..1000=A1 bars 103B 1..1000=A1 bars 109 1..1000=A1 track0..track11
    1..16000=0 track12..track19 1..16000=100
menu mnuEditUndo; menu mnuEditPaste:
)");
    EXPECT_EQ(knobLabel[3], "Decay");
    const NoteMapEntry& entry = project.noteMap[127];
    std::string stored = std::to_string(project.fileTag) + " " + std::to_string(entry.mapUsed) +
                         list("", entry.mapBank) + list("", entry.mapPatt);
    for (const BassModule& bass : project.bass)
        stored += std::to_string(bass.storedChannel) + " " + std::to_string(bass.baseNote) + " " +
                  std::to_string(bass.baseVelocity) + " " +
                  std::to_string(bass.patterns[2][2].steps[3].slide) + "\n";
    EXPECT_EQ(stored, "91 0: -1*3\n: -1*3\n0 36 100 1\n1 36 100 1\n");
    EXPECT_EQ(list("out", config.outputController) + list("map", config.controllerMap) +
                  list("channels", config.moduleChannel) + list("bases", config.moduleBaseNote) +
                  list("velocities", config.moduleVelocity) + list("notes", config.drumNoteDefault) +
                  std::to_string(config.selectBase) + " " + std::to_string(config.stepBase) + " " +
                  std::to_string(config.reservedNote0) + " " + std::to_string(config.reservedNote1) + " " +
                  std::to_string(config.reservedNote2) + " " + std::to_string(config.controlChannel),
              R"(out: 12 13 14 15 16 17 12 13 14 15 16 17 -1*8
map: -1*12 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 -1*96
channels: 0 1 9
bases: 36*2
velocities: 100*2
notes: 36 38 39 42 44 46 48
60 36 74 59 73 0)");
}

TEST_F(Sessions, FileNewInSongMode) {
    test::Session session(program);
    session.marksAnew = false;
    config.syncOffset = 2;
    program.shell.answers = {BoxAnswer::no, BoxAnswer::cancel};
    expectSession(session, R"(
- song; click RecButton 0; key 33; drag knobSprite 3 100; down 17 2
menu mnuFileNew: pattern(103A A1) pattern(103B A1) pattern(109 A1) SetSong32(0) patterns(16 A1>A1@0 A1>A1@0
    A1>A1@0) SetController32(0..11,0) SetController32(12..19,100) Set103Chan32(0,0) (1,1) Set109Chan32(2,9)
    Set103StoredChan32(0,0) (1,1) Set103NoteOffset32(0,36) (1,36) Set103Vel32(0,100) (1,100)
    DefineController32(0,12) (1,13) (2,14) (3,15) (4,16) (5,17) (6,12) (7,13) (8,14) (9,15) (10,16) (11,17)
    DefineController32(12..19,-1) pattern(109 A1) pattern(103B D8) SetController32(0..11,0)
    SetController32(12..19,100) position(0) SetController32(0..11,0) SetController32(12..19,100)
    SetController32(0..11,0) SetController32(12..19,100) | timeDisplay disabled microDisplay disabled
    knobSprite(3)=0 Check1=0 ResetButton=0 prevButton=0 nextButton=0 RwdStep=0 FwdStep=0 stopButton=0
    playSongButton=0 RecButton=0 timeDisplay="1" | [Save changes to untitled.mlp before closing ? ] | tick0 song0
    rec0 ctrl0 undo0 changed0 knobs 3=0 track3 17=0
- song
menu mnuFileNew: [Save changes to untitled.mlp before closing ? ]
)");
}

} // namespace
} // namespace marlune
