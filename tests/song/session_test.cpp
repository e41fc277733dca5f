// The mode switch and the choices of patterns, as whole sessions.
#include "panel/editing.h"
#include "song/song_reset.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using SongSession = ProgramTest;

// Which entries of the menus are not as their rows begin.
std::string menus() {
    std::string text;
    for (const MenuRow& row : menuRows()) {
        if (row.kind == MenuKind::menu || row.id == Menu::separator) continue;
        if (row.kind == MenuKind::entry && !menuHasCommand(row.id))
            text += std::string("no command: ") + row.name + "\n";
        const MenuState& state = menuState(row.id);
        const std::string own = (state.caption == row.caption ? "" : " " + state.caption) +
                                (state.visible ? "" : " hidden") + (state.enabled ? "" : " off") +
                                (state.checked ? " checked" : "");
        if (!own.empty()) text += std::string(row.name) + own + "\n";
    }
    return text;
}

TEST_F(SongSession, MenusOfEachMode) {
    const std::string pattern =
        "mnuEditCopyPattern hidden off\nmnuEditPastePattern hidden off\nmnuEditUndo off\n"
        "mnuEditRedo off\nmnuToolsSongRandom off\n";
    const std::string bars = "mnuToolsInitBarfromPatt hidden\nmnuToolsInitSongfromPatt hidden\n";
    const std::string bar = "mnuStatusBarEnable checked\n";
    const std::string song = R"(mnuEditCut Copy Pattern
mnuEditPaste Paste Pattern
mnuEditTransposeDown hidden
mnuEditTransposeUp hidden
mnuEditSep2 hidden
mnuEditMoveLeft hidden
mnuEditMoveRight hidden
mnuEditSep3 hidden
mnuPatchDec off
mnuPatchInc off
mnuEditUndo off
mnuEditRedo off
mnuToolsRNotes off
mnuToolsRandRest off
mnuToolsROctave off
mnuToolsRAccents off
mnuToolsInit Initialize Song
mnuToolsClear off
)" + bar;
    EXPECT_EQ(menus(), "mnuEditPaste off\n" + pattern + bars + bar);
    mnuEditCut_Click();
    for (int round = 0; round < 2; ++round) {
        Check1_Click();
        EXPECT_EQ(menus(), song);
        Check1_Click();
        std::string back = "mnuEditCut Copy\nmnuEditPaste Paste\n";
        for (const std::string& part : {pattern, std::string("mnuToolsInit Initialize Pattern\n"), bars, bar})
            back += part;
        EXPECT_EQ(menus(), back);
    }
}

TEST_F(SongSession, SwitchesAndChoices) {
    for (int bar = 1; bar < 12; ++bar) setBar(bar % 3, 16 * bar, bar % 4, bar % 8);
    knobTrack[0][32] = 40;
    knobTrack[19][48] = 50;
    currentBass(0).loopEnd = 4;
    pushPatternToEngine(0, 0, 0);
    for (int m = 0; m < kModules; ++m) selPatt(m, m + 1);
    refreshAll();
    program.calls();
    program.shown();
    expectSession(program, R"(
song: SetSong32(-1) song(0 A1>A1@0 A1>B2@0 A1>A1@0) PrepareController32(0..11,0) PrepareController32(12..19,100)
    pattern(103A A1) pattern(103B A1) pattern(109 A1) | timeDisplay enabled microDisplay enabled
    knobSprite(0..18) disabled DigitPatt(0)=0 LoopPt(0)="5" DigitPatt(1)=0 DigitPatt(2)=0 DigitPatt(3)=9
    DigitPatt(4)=0 DigitPatt(5)=0 Check1=1 ResetButton=1 prevButton=1 nextButton=1 RwdStep=1 FwdStep=1
    stopButton=1 playSongButton=1 RecButton=1 | song1 changed1
key 33: song(16 A1>A1@1 B2>A1@0 A1>C3@0) | LEDBar(0)=17 DigitPatt(2)=9 DigitPatt(3)=0 DigitPatt(5)=18
    timeDisplay="2" nextButton=2 nextButton=1 | tick16
key 33: song(32 A1>D4@2 A1>A1@0 C3>A1@0) PrepareController32(0,40) | LEDBar(0)=18 DigitPatt(1)=27 DigitPatt(2)=0
    DigitPatt(4)=18 DigitPatt(5)=0 timeDisplay="3" knobSprite(0)=17 nextButton=2 nextButton=1 | tick32 changed1
    knobs 0=40
wheel LoopPt 0 -2: Set103Loop32(0,0,0,2) | LoopPt(0)="3" | undo1 changed1 103A A1 {C*16 loop 3}
click RecButton 0: knobSprite(0..18) enabled RecButton=2 | rec1 changed1
key 33: song(48 D4>A1@0 A1>A5@0 A1>A1@0) PrepareController32(0,0) (19,50) | LEDBar(0)=16 DigitPatt(0)=27
    LoopPt(0)="16" DigitPatt(1)=0 DigitPatt(3)=4 DigitPatt(4)=0 timeDisplay="4" knobSprite(0)=0 knobSprite(19)=21
    nextButton=2 nextButton=1 | tick48 changed1 knobs 0=0 19=50
key 54: song(48 D6>A1@0 A1>A5@0 A1>A1@0) | DigitPatt(0)=29 | undo2 changed1 bars 103A 4=D6
key 50 1: song(48 B6>A1@0 A1>A5@0 A1>A1@0) | DigitPatt(0)=13 | undo3 changed1 bars 103A 4=B6
wheel DigitPatt 2 2: song(48 B6>A1@0 A3>A5@0 A1>A1@0) | edit(0>1: 0 16) DigitPatt(2)=2 | edit1 undo4 changed1
    bars 103B 4=A3
wheel DigitPatt 4 9: song(48 B6>A1@0 A3>A5@0 A8>A1@0) | edit(1>2: 0 16) DigitPatt(4)=7 | edit2 undo5 changed1
    bars 109 4=A8
drag DigitPatt 0 300: song(48 B6>A1@0 A3>A5@0 A8>A1@0) song(48 B6>A1@0 A3>A5@0 A8>A1@0) song(48 B7>A1@0 A3>A5@0
    A8>A1@0) song(48 B7>A1@0 A3>A5@0 A8>A1@0) song(48 B7>A1@0 A3>A5@0 A8>A1@0) | edit(2>0: 16 0) DigitPatt(0)=14
    | edit0 undo6 changed1 bars 103A 4=B7
click DigitPatt 0:
song: pattern(103A A2) pattern(103B A3) pattern(109 A4) pattern(103A A1) SetSong32(0) patterns(48 A2>A2@0 A3>A3@0
    A4>A4@0) SetController32(0..11,0) SetController32(12..19,100) | timeDisplay disabled microDisplay disabled
    DigitPatt(0)=1 DigitPatt(1)=1 DigitPatt(3)=2 DigitPatt(4)=3 DigitPatt(5)=3 knobSprite(19)=42 Check1=0
    ResetButton=0 prevButton=0 nextButton=0 RwdStep=0 FwdStep=0 stopButton=0 playSongButton=0 RecButton=0 | song0
    rec0 changed1 knobs 19=100 103A A1 {C*16 loop 5}
wheel LoopPt 2 -4: Set109Loop32(0,3,11) | edit(0>2: 0 16) LoopPt(2)="12" | edit2 undo1 changed1 109 A4 {drums
    loop 12}
drag LoopPt 0 -300: Set103Loop32(0,0,1,11) | edit(2>0: 16 0) LoopPt(0)="15" LoopPt(0)="14" LoopPt(0)="12" | edit0
    undo2 changed1 103A A2 {C*16 loop 12}
song: SetSong32(-1) song(48 B7>A1@0 A3>A5@0 A8>A1@0) PrepareController32(19,50) PrepareController32(0..11,0)
    PrepareController32(12..18,100) (19,50) pattern(103A B7) pattern(103B A3) pattern(109 A8) | timeDisplay
    enabled microDisplay enabled knobSprite(0..18) disabled DigitPatt(0)=14 LoopPt(0)="16" DigitPatt(1)=0
    DigitPatt(3)=4 DigitPatt(4)=7 LoopPt(2)="16" DigitPatt(5)=0 knobSprite(19)=21 Check1=1 ResetButton=1
    prevButton=1 nextButton=1 RwdStep=1 FwdStep=1 stopButton=1 playSongButton=1 RecButton=1 | song1 changed1
    knobs 19=50
click startStopButton 0: PrepareController32(0..11,0) PrepareController32(12..18,100) (19,50) HoldTicks32(-1)
    SetMarluneTempo32(140) song(48 B7>A1@0 A3>A5@0 A8>A1@0) StartMarluneTimer32(17,0) next(A1 A5 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 | run1 undo0
play 2: next(A1 A5 A1) PrepareController32(19,100) | knobSprite(19)=42 steps(17 1 1) | tick50 changed1 knobs
    19=100
song: pattern(103A A2) pattern(103B A3) pattern(109 A4) SetSong32(0) patterns(50 A2>A2@2 A3>A3@2 A4>A4@2)
    SetController32(0..11,0) SetController32(12..19,100) | timeDisplay disabled microDisplay disabled
    knobSprite(0..18) enabled DigitPatt(0)=1 LoopPt(0)="12" DigitPatt(1)=1 DigitPatt(3)=2 DigitPatt(4)=3
    LoopPt(2)="12" DigitPatt(5)=3 Check1=0 ResetButton=0 prevButton=0 nextButton=0 RwdStep=0 FwdStep=0
    stopButton=0 playSongButton=0 RecButton=0 | song0 changed1
play 3: steps(18 2 2) steps(19 3 3) steps(20 4 4) | tick53
key 52: SetNextPatt32(0,3) | DigitPatt(1)=3 | changed1
wheel DigitPatt 2 -3: SetNextPatt32(1,0) | edit(0>1) DigitPatt(3)=0 | edit1
click DigitPatt 5: SetNextPatt32(2,3) | edit(1>2) | edit2
click bank109 2: SetNextGroup32(2,2) | DigitPatt(5)=19 | changed1
play 11: steps(5 5 21) steps(6 6 22) steps(7 7 23) steps(8 8 24) steps(9 9 25) steps(10 10 26) steps(11 11 27)
    DigitPatt(0)=3 LoopPt(0)="16" DigitPatt(4)=19 LoopPt(2)="16" steps(0 12 16) steps(1 13 17) steps(2 14 18)
    steps(3 15 19) | tick48
song: SetSong32(-1) song(48 B7>A1@0 A3>A5@0 A8>A1@0) PrepareController32(19,50) PrepareController32(0..11,0)
    PrepareController32(12..18,100) (19,50) pattern(103A B7) pattern(103B A3) pattern(109 A8) | timeDisplay
    enabled microDisplay enabled knobSprite(0..18) disabled LEDBar(0)=0 DigitPatt(0)=14 DigitPatt(1)=0
    LEDBar(1)=0 DigitPatt(3)=4 LEDBar(2)=16 DigitPatt(4)=7 DigitPatt(5)=0 knobSprite(19)=21 Check1=1
    ResetButton=1 prevButton=1 nextButton=1 RwdStep=1 FwdStep=1 stopButton=1 playSongButton=1 RecButton=1 | song1
    changed1 knobs 19=50
play 1: next(A1 A5 A1) PrepareController32(19,100) | knobSprite(19)=42 | tick49 changed1 knobs 19=100
song: pattern(103A A4) pattern(103B A3) pattern(109 C4) SetSong32(0) patterns(49 A4>A4@1 A3>A3@1 C4>C4@1)
    SetController32(0..11,0) SetController32(12..19,100) | timeDisplay disabled microDisplay disabled
    knobSprite(0..18) enabled DigitPatt(0)=3 DigitPatt(1)=3 DigitPatt(3)=2 DigitPatt(4)=19 DigitPatt(5)=19
    Check1=0 ResetButton=0 prevButton=0 nextButton=0 RwdStep=0 FwdStep=0 stopButton=0 playSongButton=0
    RecButton=0 | song0 changed1
click startStopButton 0: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) |
    startStopButton=0 | run0
)");
}

TEST_F(SongSession, ResetFromTheProject) {
    test::Session session(program);
    session.verbs["reset"] = [](int, int, int) { resetSongFromProject(); };
    for (int bar = 1; bar < 4; ++bar) setBar(bar % 3, 16 * bar, bar % 4, bar % 8);
    expectSession(session, R"(
- click bank103B 3; key 69; drag knobSprite 4 200; drag knobTempo 0 200; song; key 33
- dialog 0=3 b0; menu mnuEditCut; click RecButton 0; drag knobSprite 5 200
reset: SetSong32(0) patterns(16 A1>A1@0 B2>A1@0 A1>C3@0) position(0) | timeDisplay="1" | tick0 song0 rec0 bars
    103A 4=A1 bars 103B 1=B2 3..1000=B2 bars 109 3=A1 track5 1..16=34 18..16000=34 STALE playSongButton=0
    RecButton=0 stopButton=0
song: SetSong32(-1) song(0 A1>A1@0 B2>B2@0 A1>A1@0) PrepareController32(0..4,0) (5,34)
    PrepareController32(6..11,0) PrepareController32(12..19,100) pattern(103A A1) pattern(103B B2) pattern(109
    A1) | knobSprite(0..18) disabled DigitPatt(3)=9 DigitPatt(5)=0 stopButton=1 playSongButton=1 RecButton=1 |
    song1 changed1
hold nextButton 10: song(16 A1>A1@0 B2>B2@0 A1>A1@0) | timeDisplay="2" nextButton=2 nextButton=1 nextButton=2
    nextButton=1 | tick16 undo0
)");
    EXPECT_EQ(songPosition->windBaseTempo, 193);
    EXPECT_FALSE(recordingState->knobRecording[5]);
}

} // namespace
} // namespace marlune
