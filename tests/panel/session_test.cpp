// What each control does, as whole sessions: told, shown, and left in the record.
#include "support/program_test.h"

namespace marlune {
namespace {

using PanelSession = ProgramTest;

TEST_F(PanelSession, EveryControlInPatternModeAtRest) {
    test::setBassSteps(1, "C D! E^ F_ G -");
    project.bass[1].patterns[0][0].loopEnd = 6;
    project.bass[1].patterns[0][0].patch = 20;
    pushPatternToEngine(1, 0, 0);
    refreshAll();
    selPatt(0, 5);
    bankClick(0, 2);
    bankClick(2, 3);
    program.calls();
    program.shown();
    forgetUnsavedChanges();
    expectSession(program, R"(
click ediSel 1: edit(0>1: 0 16) | edit1
click step103B 3: keys(1)=5 down(1)=1 step103(1)=3
click step103A 15: step103(0)=15 edit(1>0: 16 0) | edit0
click sel103BButton 12: Set103Note32(1,0,0,3,12) Set103NoteOn32(1,0,0,3,-1) | keys(1)=12 edit(0>1: 0 16) | edit1
    undo1 changed1 103B A1 {C D! E^ C'_ G C- C*10 loop 7 patch 20}
click sel103BButton 12: Set103NoteOn32(1,0,0,3,0) | keys(1)=13 | undo2 changed1 103B A1 {C D! E^ C'_- G C- C*10
    loop 7 patch 20}
click sel103AButton 4: Set103Note32(0,2,5,15,4) Set103NoteOn32(0,2,5,15,-1) | keys(0)=4 edit(1>0: 16 0) | edit0
    undo3 changed1 103A C6 {C*15 E}
click up 1: Set103Up32(1,0,0,3,-1) (1,0,0,3,0) Set103Down32(1,0,0,3,0) | down(1)=0 edit(0>1: 0 16) | edit1 undo4
    changed1 103B A1 {C D! E^ C'- G C- C*10 loop 7 patch 20}
click down 1: Set103Down32(1,0,0,3,-1) | down(1)=1 | undo5 changed1 103B A1 {C D! E^ C'_- G C- C*10 loop 7 patch
    20}
click down 1: Set103Down32(1,0,0,3,0) | down(1)=0 | undo6 changed1 103B A1 {C D! E^ C'- G C- C*10 loop 7 patch
    20}
click accent 1: Set103Accent32(1,0,0,3,-1) | accent(1)=1 | status "Accented steps of 103B are silent: turn up the
    Accent knob, which stands at 0." | undo7 changed1 103B A1 {C D! E^ C'!- G C- C*10 loop 7 patch 20}
click accent 0: Set103Accent32(0,2,5,15,-1) | accent(0)=1 edit(1>0: 16 0) | status "Accented steps of 103A, 103B
    are silent: turn up the Accent knob, which stands at 0." | edit0 undo8 changed1 103A C6 {C*15 E!}
double up 0: Set103Up32(0,2,5,15,-1) (0,2,5,15,0) | up(0)=1 up(0)=0 | undo10 changed1
click sel109 6: sel109(0)=0 sel109(6)=1 edit(0>2: 0 16) | edit2
click step109LED 3: Set109bOn32(3,0,3,6,1) | lamp(3)=on | undo11 changed1 109 D1 {drums 6.4}
double step109LED 3: Set109bOn32(3,0,3,6,0) (3,0,3,6,1) | lamp(3)=off lamp(3)=on | undo13 changed1
click edi109 0:
wheel PatchID 1 2: Set103Patch32(1,0,0,22) | edit(2>1: 16 0) PatchID(1)="22" | edit1 undo14 changed1 103B A1 {C
    D! E^ C'!- G C- C*10 loop 7 patch 22}
drag PatchID 0 400: Set103Patch32(0,2,5,26) | edit(1>0: 16 0) PatchID(0)="5" PatchID(0)="12" PatchID(0)="19"
    PatchID(0)="26" | edit0 undo15 changed1 103A C6 {C*15 E! patch 26}
wheel PatchID 1 200: Set103Patch32(1,0,0,127) | edit(0>1: 0 16) PatchID(1)="127" | edit1 undo16 changed1 103B A1
    {C D! E^ C'!- G C- C*10 loop 7 patch 127}
drag PatchID 1 -9000: Set103Patch32(1,0,0,-1) | PatchID(1)="NONE" | undo17 changed1 103B A1 {C D! E^ C'!- G C-
    C*10 loop 7}
wheel LoopPt 2 -3: Set109Loop32(3,0,12) | edit(1>2: 0 16) LoopPt(2)="13" | edit2 undo18 changed1 109 D1 {drums
    6.4 loop 13}
drag LoopPt 1 500: Set103Loop32(1,0,0,15) | edit(2>1: 16 0) LoopPt(1)="10" LoopPt(1)="12" LoopPt(1)="14"
    LoopPt(1)="16" | edit1 undo19 changed1 103B A1 {C D! E^ C'!- G C- C*10}
wheel knobSprite 0 3: SetController32(0,3) | edit(1>0: 16 0) knobSprite(0)=1 | edit0 undo20 changed1 knobs 0=3
drag knobSprite 7 100: SetController32(7,4) (7,8) (7,13) (7,17) | edit(0>1: 0 16) knobSprite(7)=2 knobSprite(7)=3
    knobSprite(7)=5 knobSprite(7)=7 | edit1 undo21 changed1 knobs 7=17
drag knobSprite 18 -40: SetController32(18,98) (18,97) (18,95) (18,93) | edit(1>2: 0 16) knobSprite(18)=41
    knobSprite(18)=40 knobSprite(18)=39 | edit2 undo22 changed1 knobs 18=93
wheel knobTempo 0 5: knobTempo=27 tempoBPM="145" | undo23 changed1 tempo=145
drag knobTempo 0 -100: knobTempo=26 tempoBPM="139" knobTempo=24 tempoBPM="132" knobTempo=22 tempoBPM="125"
    knobTempo=20 tempoBPM="119" | undo24 changed1 tempo=119
drag knobTempo 0 -9000: knobTempo=0 tempoBPM="40" | undo25 changed1 tempo=40
drag DigitPatt 2 400: SetNextPatt32(1,0) SetCurrPatt32(1,0) SetNextPatt32(1,1) SetCurrPatt32(1,1)
    SetNextPatt32(1,1) SetCurrPatt32(1,1) SetNextPatt32(1,2) SetCurrPatt32(1,2) SetNextPatt32(1,2)
    SetCurrPatt32(1,2) | edit(2>1: 16 0) DigitPatt(3)=1 DigitPatt(2)=1 keys(1)=0 accent(1)=0 DigitPatt(3)=2
    DigitPatt(2)=2 | edit1
wheel DigitPatt 5 3: SetNextPatt32(2,3) SetCurrPatt32(2,3) | edit(1>2: 0 16) DigitPatt(5)=27 DigitPatt(4)=27
    lamp(3)=off LoopPt(2)="16" | edit2
click bank103A 1: SetNextGroup32(0,1) SetCurrGroup32(0,1) | DigitPatt(1)=13 DigitPatt(0)=13 keys(0)=0 accent(0)=0
    PatchID(0)="NONE" edit(2>0: 16 0) | edit0 changed1
click bank103B 2: SetNextGroup32(1,2) SetCurrGroup32(1,2) | DigitPatt(3)=18 DigitPatt(2)=18 edit(0>1: 0 16) |
    edit1 changed1
click bank109 3: SetNextGroup32(2,3) SetCurrGroup32(2,3) | edit(1>2: 0 16) | edit2 changed1
click Offset109 2:
press PatchID 0 3000: edit(2>0: 16 0) | edit0
move PatchID 0 2800: PatchID(0)="12"
release PatchID 0 2800: Set103Patch32(0,1,5,12) | undo26 changed1 103A B6 {C*16 patch 12}
press LoopPt 2 3000: edit(0>2: 0 16) | edit2
move LoopPt 2 2800:
release LoopPt 2 2800: Set109Loop32(3,3,15) | changed1
enter startStopButton 0: SetController32(0,3) SetController32(1..6,0) (7,17) SetController32(8..11,0)
    SetController32(12..17,100) (18,93) (19,100) HoldTicks32(-1) SetMarluneTempo32(40) position(0) patterns(0
    B6>B6@0 C3>C3@0 D4>D4@0) StartMarluneTimer32(62,0) HoldTicks32(0) | startStopButton=1 | run1
enter startStopButton 0: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) |
    startStopButton=0 | run0
enter RecButton 0:
)");
}

TEST_F(PanelSession, EveryControlInSongModeAtRest) {
    knobTrack[7].fill(20);
    expectSession(program, R"(
song: SetSong32(-1) song(0 A1>A1@0 A1>A1@0 A1>A1@0) PrepareController32(7,20) PrepareController32(0..6,0) (7,20)
    PrepareController32(8..11,0) PrepareController32(12..19,100) pattern(103A A1) pattern(103B A1) pattern(109
    A1) | timeDisplay enabled microDisplay enabled knobSprite(0..18) disabled knobSprite(7)=8 Check1=1
    ResetButton=1 prevButton=1 nextButton=1 RwdStep=1 FwdStep=1 stopButton=1 playSongButton=1 RecButton=1 | song1
    changed1 knobs 7=20
click sel103BButton 12: edit(0>1: 0 16) | edit1
click up 1:
click down 0: edit(1>0: 16 0) | edit0
click accent 1: edit(0>1: 0 16) | edit1
double accent 1:
double step109LED 3: edit(1>2: 0 16) | edit2
click step103B 9: step103(1)=9 edit(2>1: 16 0) | edit1
click sel109 6: sel109(0)=0 sel109(6)=1 edit(1>2: 0 16) | edit2
drag PatchID 0 400; wheel PatchID 0 4:
wheel LoopPt 1 -3: Set103Loop32(1,0,0,12) | edit(2>1: 16 0) LoopPt(1)="13" | edit1 undo1 changed1 103B A1 {C*16
    loop 13}
drag LoopPt 1 500: Set103Loop32(1,0,0,15) | LoopPt(1)="16" | undo2 changed1 103B A1 {C*16}
wheel knobSprite 19 3: edit(1>2: 0 16) | edit2
drag knobSprite 7 100: edit(2>1: 16 0) | edit1
wheel knobTempo 0 5: knobTempo=27 tempoBPM="145" | undo3 changed1 tempo=145
wheel DigitPatt 3 3:
click bank103A 1: edit(1>0: 16 0) | edit0 changed1
click RecButton 0: knobSprite(0..18) enabled RecButton=2 | rec1 changed1
drag knobSprite 7 100: PrepareController32(7,24) (7,28) (7,33) (7,37) | edit(0>1: 0 16) knobSprite(7)=10
    knobSprite(7)=12 knobSprite(7)=14 knobSprite(7)=15 | edit1 undo4 changed1 knobs 7=37 track7 1=37
wheel knobSprite 19 3: PrepareController32(19,103) | edit(1>2: 0 16) knobSprite(19)=43 | edit2 undo5 changed1
    knobs 19=103 track19 1=103
wheel DigitPatt 3 3: song(0 A1>A1@0 A4>A1@0 A1>A1@0) | edit(2>1: 16 0) DigitPatt(2)=3 | edit1 undo6 changed1 bars
    103B 1=A4
drag DigitPatt 2 400: song(0 A1>A1@0 A4>A1@0 A1>A1@0) song(0 A1>A1@0 A5>A1@0 A1>A1@0) song(0 A1>A1@0 A5>A1@0
    A1>A1@0) song(0 A1>A1@0 A6>A1@0 A1>A1@0) song(0 A1>A1@0 A6>A1@0 A1>A1@0) | DigitPatt(2)=4 DigitPatt(2)=5 |
    undo7 changed1 bars 103B 1=A6
click bank109 2: song(0 A1>A1@0 A6>A1@0 C1>A1@0) | DigitPatt(4)=16 edit(1>2: 0 16) | edit2 undo8 changed1 bars
    109 1=C1
click RecButton 0: knobSprite(0..18) disabled RecButton=1 | rec0
dialog 0=many b0:
menu mnuToolsSongRandom: Song Randomize: {Radomize Details Number of Bars :[4]6 '[ Starting at Bar:1 ]' 'Module
    Select :' ( 103A[x] 103B[ ] 109[ ] ) } ( !Randomize! xCancel ) [Enter the number of Bars to randomize (1 to
    1000)]
song: pattern(103A A1) pattern(103B A1) pattern(109 A1) SetSong32(0) patterns(0 A1>A1@0 A1>A1@0 A1>A1@0)
    SetController32(0..11,0) SetController32(12..19,100) | timeDisplay disabled microDisplay disabled
    knobSprite(0..18) enabled DigitPatt(2)=0 step103(1)=0 DigitPatt(4)=0 sel109(0)=1 sel109(6)=0 knobSprite(7)=0
    knobSprite(19)=42 Check1=0 ResetButton=0 prevButton=0 nextButton=0 RwdStep=0 FwdStep=0 stopButton=0
    playSongButton=0 RecButton=0 | song0 changed1 knobs 7=0 19=100
)");
}

TEST_F(PanelSession, AFullRefreshShowsAllThatFollowsFromTheData) {
    test::Session session(program);
    session.verbs["anew"] = [](int, int, int) {
        resetShownState();
        refreshAll();
        refreshTransport();
    };
    session.verbs["begin"] = [](int, int, int) {
        resetShownState();
        loadKnobs();
    };
    test::setBassSteps(0, "- D! E^ F_");
    test::setBassSteps(1, "F!_");
    project.bass[0].selStep = 3;
    setBar(1, 16, 1, 5);
    songPosition.write().songTick = 18;
    songPosition.write().moduleStep = {4, 5, 6};
    expectSession(session, R"(
anew: pattern(103A A1) pattern(103B A1) SetController32(0..11,0) SetController32(12..19,100) | DigitPatt(0)=0
    keys(0)=5 accent(0)=0 down(0)=1 up(0)=0 step103(0)=3 LoopPt(0)="16" PatchID(0)="NONE" DigitPatt(1)=0
    LEDBar(0)=20 SelEditPicture(0)=0 DigitPatt(2)=0 keys(1)=5 accent(1)=1 down(1)=1 up(1)=0 step103(1)=0
    LoopPt(1)="16" PatchID(1)="NONE" DigitPatt(3)=0 LEDBar(1)=5 SelEditPicture(1)=1 DigitPatt(4)=0 sel109(0)=1
    sel109(1..7)=0 lamp(0..15)=off Offset109(0)="36" Offset109(1)="38" Offset109(2)="39" Offset109(3)="42"
    Offset109(4)="44" Offset109(5)="46" Offset109(6)="48" LoopPt(2)="16" DigitPatt(5)=0 LEDBar(2)=6
    SelEditPicture(2)=1 timeDisplay="2" microDisplay="" knobSprite(0..11)=0 knobSprite(12..19)=42
    startStopButton=0 playSongButton=0 RecButton=0 stopButton=0 | changed1
begin: knobSprite(0..11)=0 knobSprite(12..19)=42 SelEditPicture(0)=0 edit(0>1: 4 21) LEDBar(2)=6 edit(1>2: 5 22)
    | edit2 STALE DigitPatt(0)=0 keys(0)=5 accent(0)=0 down(0)=1 up(0)=0 step103(0)=3 LoopPt(0)="16"
    PatchID(0)="NONE" DigitPatt(1)=0 DigitPatt(2)=0 keys(1)=5 accent(1)=1 down(1)=1 up(1)=0 step103(1)=0
    LoopPt(1)="16" PatchID(1)="NONE" DigitPatt(3)=0 DigitPatt(4)=0 sel109(0)=1 sel109(1)=0 sel109(2)=0
    sel109(3)=0 sel109(4)=0 sel109(5)=0 sel109(6)=0 sel109(7)=0 lamp(0)=off lamp(1)=off lamp(2)=off lamp(3)=off
    lamp(4)=off lamp(5)=off lamp(6)=off lamp(7)=off lamp(8)=off lamp(9)=off lamp(10)=off lamp(11)=off
    lamp(12)=off lamp(13)=off lamp(14)=off lamp(15)=off Offset109(0)="36" Offset109(1)="38" Offset109(2)="39"
    Offset109(3)="42" Offset109(4)="44" Offset109(5)="46" Offset109(6)="48" LoopPt(2)="16" DigitPatt(5)=0
    timeDisplay="2" microDisplay="" startStopButton=0 playSongButton=0 RecButton=0 stopButton=0
- song; click RecButton 0; key 33 2
anew: PrepareController32(0..11,0) PrepareController32(12..19,100) | DigitPatt(0)=0 keys(0)=5 accent(0)=0
    down(0)=1 up(0)=0 step103(0)=3 LoopPt(0)="16" PatchID(0)="NONE" DigitPatt(1)=0 LEDBar(0)=0
    SelEditPicture(0)=1 DigitPatt(2)=0 keys(1)=5 accent(1)=1 down(1)=1 up(1)=0 step103(1)=0 LoopPt(1)="16"
    PatchID(1)="NONE" DigitPatt(3)=0 LEDBar(1)=0 SelEditPicture(1)=1 DigitPatt(4)=0 sel109(0)=1 sel109(1..7)=0
    lamp(0..15)=off Offset109(0)="36" Offset109(1)="38" Offset109(2)="39" Offset109(3)="42" Offset109(4)="44"
    Offset109(5)="46" Offset109(6)="48" LoopPt(2)="16" DigitPatt(5)=0 LEDBar(2)=16 SelEditPicture(2)=0
    timeDisplay="3" microDisplay="" knobSprite(0..11)=0 knobSprite(12..19)=42 startStopButton=0 playSongButton=1
    RecButton=2 stopButton=1 | changed1
- click playSongButton 0; play 2
anew: PrepareController32(0..11,0) PrepareController32(12..19,100) | DigitPatt(0)=0 keys(0)=5 accent(0)=0
    down(0)=1 up(0)=0 step103(0)=3 LoopPt(0)="16" PatchID(0)="NONE" DigitPatt(1)=0 LEDBar(0)=1
    SelEditPicture(0)=1 DigitPatt(2)=0 keys(1)=5 accent(1)=1 down(1)=1 up(1)=0 step103(1)=0 LoopPt(1)="16"
    PatchID(1)="NONE" DigitPatt(3)=0 LEDBar(1)=1 SelEditPicture(1)=1 DigitPatt(4)=0 sel109(0)=1 sel109(1..7)=0
    lamp(0..15)=off Offset109(0)="36" Offset109(1)="38" Offset109(2)="39" Offset109(3)="42" Offset109(4)="44"
    Offset109(5)="46" Offset109(6)="48" LoopPt(2)="16" DigitPatt(5)=0 LEDBar(2)=17 SelEditPicture(2)=0
    timeDisplay="3" microDisplay="" knobSprite(0..11)=0 knobSprite(12..19)=42 startStopButton=1 playSongButton=2
    RecButton=2 stopButton=1 | changed1
)");
}

TEST_F(PanelSession, WhilePlaying) {
    expectSession(program, R"(
click startStopButton 0: SetController32(0..11,0) SetController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) position(0) patterns(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0)
    HoldTicks32(0) | startStopButton=1 | run1
play 1: tick1
click ediSel 2: edit(0>2) | edit2
click bank103A 1: SetNextGroup32(0,1) | DigitPatt(1)=8 edit(2>0) | edit0 changed1
wheel DigitPatt 1 3: SetNextPatt32(0,3) | DigitPatt(1)=11
wheel knobTempo 0 5: knobTempo=27 tempoBPM="145" | undo1 changed1 tempo=145
wheel knobSprite 3 50: SetController32(3,50) | knobSprite(3)=21 | undo2 changed1 knobs 3=50
click sel109 2: sel109(0)=0 sel109(2)=1 edit(0>2) | edit2
click step109LED 9: Set109bOn32(0,0,9,2,1) | lamp(9)=on | undo3 changed1 109 A1 {drums 2.10}
play 1: SetMarluneTempo32(145) SetMarluneTimerInterval32(17,0) | steps(1 1 17) | tick2
click stopButton 0:
click PlayHit 0: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) | steps(0 0 16)
    DigitPatt(0)=11 startStopButton=0 | run0
)");
}

} // namespace
} // namespace marlune
