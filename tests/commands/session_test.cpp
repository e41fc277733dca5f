// What reaches a control in every way that a pointer and the keyboard have, and what each menu entry does to
// undo.
#include "support/program_test.h"

namespace marlune {
namespace {

using Routes = ProgramTest;

TEST_F(Routes, OfTheOtherButton) {
    setEditSel(2);
    program.shown();
    expectSession(program, R"(
right knobSprite 1: edit(2>0: 16 0) | edit0
right knobTempo 1; right LEDBar 1; right keys 1; right step103 1:
right DigitPatt 1: SetNextPatt32(0,1) SetCurrPatt32(0,1) | DigitPatt(1)=1 DigitPatt(0)=1
right accent 1; right up 1; right down 1; right sel109 1; right SelEditPicture 1; right Check1 1:
right startStopButton 1; right RecButton 1; right playSongButton 1; right stopButton 1:
right ResetButton 1:
right LoopPt 1: Set103Loop32(1,0,0,15) | edit(0>1: 0 16) | edit1 changed1
right PatchID 1: Set103Patch32(1,0,0,-1) | changed1
right Offset109 1: edit(1>2: 0 16) | edit2
right tempoBPM 1; right timeDisplay 1; right UserTitle 1; right step109LED 1; right sel103AButton 1:
right sel103BButton 1; right step103A 1; right step103B 1; right bank103A 1; right bank103B 1:
right bank109 1; right ediSel 1; right edi109 1; right PlayHit 1:
)");
}

TEST_F(Routes, OfAReleaseElsewhere) {
    setEditSel(2);
    program.shown();
    expectSession(program, R"(
away knobSprite 1: SetController32(1,51) | edit(2>0: 16 0) knobSprite(1)=21 | edit0 undo1 changed1 knobs 1=51
away knobTempo 1: knobTempo=47 tempoBPM="220" | undo2 changed1 tempo=220
away LEDBar 1: edit(0>1: 0 16) | edit1
away keys 1; away step103 1:
away DigitPatt 1: SetNextPatt32(0,1) SetCurrPatt32(0,1) SetNextPatt32(0,1) SetCurrPatt32(0,1) | edit(1>0: 16 0)
    DigitPatt(1)=1 DigitPatt(0)=1 | edit0
away accent 1: Set103Accent32(1,0,0,0,-1) | accent(1)=1 edit(0>1: 0 16) | status "Accented steps of 103B are
    silent: turn up the Accent knob, which stands at 0." | edit1 undo3 changed1 103B A1 {C! C*15}
away up 1: Set103Up32(1,0,0,0,-1) | up(1)=1 | undo4 changed1 103B A1 {C^! C*15}
away down 1: Set103Down32(1,0,0,0,-1) (1,0,0,0,0) Set103Up32(1,0,0,0,0) | up(1)=0 | undo5 changed1 103B A1 {C!
    C*15}
away sel109 1: sel109(0)=0 sel109(1)=1 edit(1>2: 0 16) | edit2
away SelEditPicture 1:
away Check1 1: SetSong32(-1) song(0 A1>A1@0 A1>A1@0 A1>A1@0) PrepareController32(1,0)
    PrepareController32(0..11,0) PrepareController32(12..19,100) pattern(103A A1) pattern(103B A1) pattern(109
    A1) | timeDisplay enabled microDisplay enabled knobSprite(0..18) disabled DigitPatt(0)=0 DigitPatt(1)=0
    knobSprite(1)=0 Check1=1 ResetButton=1 prevButton=1 nextButton=1 RwdStep=1 FwdStep=1 stopButton=1
    playSongButton=1 RecButton=1 | status "" | song1 undo0 changed1 knobs 1=0
away startStopButton 1: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(220) song(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(11,0) next(A1 A1 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 | status "Accented steps of 103B are silent: turn up the
    Accent knob, which stands at 0." | run1
away RecButton 1: knobSprite(0..18) enabled RecButton=2 | rec1 changed1
away playSongButton 1:
away stopButton 1: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(0 A1>A1@0
    A1>A1@0 A1>A1@0) | knobSprite(0..18) disabled RecButton=1 startStopButton=0 playSongButton=1 stopButton=2
    stopButton=1 | run0 rec0
away ResetButton 1: song(0 A1>A1@0 A1>A1@0 A1>A1@0) song(0 A1>A1@0 A1>A1@0 A1>A1@0) | ResetButton=2 ResetButton=1
away LoopPt 1: Set103Loop32(1,0,0,15) | edit(2>1: 16 0) | edit1 changed1
away PatchID 1:
away Offset109 1: edit(1>2: 0 16) | edit2
away tempoBPM 1; away timeDisplay 1; away UserTitle 1; away step109LED 1:
away sel103AButton 1: edit(2>0: 16 0) | edit0
away sel103BButton 1: edit(0>1: 0 16) | edit1
away step103A 1: step103(0)=1 edit(1>0: 16 0) | edit0
away step103B 1: accent(1)=0 step103(1)=1 edit(0>1: 0 16) | edit1
away bank103A 1: edit(1>0: 16 0) | edit0 changed1
away bank103B 1: edit(0>1: 0 16) | edit1 changed1
away bank109 1: edit(1>2: 0 16) | edit2 changed1
away ediSel 1: edit(2>1: 16 0) | edit1
away edi109 1: edit(1>2: 0 16) | edit2
away PlayHit 1: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(220) song(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(11,0) next(A1 A1 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 | run1
)");
}

TEST_F(Routes, OfASecondPress) {
    setEditSel(2);
    program.shown();
    expectSession(program, R"(
double knobSprite 1: edit(2>0: 16 0) | edit0
double knobTempo 1:
double LEDBar 1: edit(0>1: 0 16) | edit1
double keys 1; double step103 1:
double DigitPatt 1: SetNextPatt32(0,0) SetCurrPatt32(0,0) SetNextPatt32(0,0) SetCurrPatt32(0,0) | edit(1>0: 16 0)
    | edit0
double accent 1: Set103Accent32(1,0,0,0,-1) (1,0,0,0,0) | accent(1)=1 edit(0>1: 0 16) accent(1)=0 | status
    "Accented steps of 103B are silent: turn up the Accent knob, which stands at 0." | edit1 undo2 changed1
double up 1: Set103Up32(1,0,0,0,-1) (1,0,0,0,0) | up(1)=1 up(1)=0 | undo4 changed1
double down 1: Set103Down32(1,0,0,0,-1) (1,0,0,0,0) | down(1)=1 down(1)=0 | undo6 changed1
double sel109 1: sel109(0)=0 sel109(1)=1 edit(1>2: 0 16) | edit2
double SelEditPicture 1:
double Check1 1: SetSong32(-1) song(0 A1>A1@0 A1>A1@0 A1>A1@0) PrepareController32(0..11,0)
    PrepareController32(12..19,100) pattern(103A A1) pattern(103B A1) pattern(109 A1) pattern(109 A1)
    SetSong32(0) patterns(0 A1>A1@0 A1>A1@0 A1>A1@0) SetController32(0..11,0) SetController32(12..19,100) |
    timeDisplay enabled microDisplay enabled knobSprite(0..18) disabled Check1=1 ResetButton=1 prevButton=1
    nextButton=1 RwdStep=1 FwdStep=1 stopButton=1 playSongButton=1 RecButton=1 timeDisplay disabled microDisplay
    disabled knobSprite(0..18) enabled Check1=0 ResetButton=0 prevButton=0 nextButton=0 RwdStep=0 FwdStep=0
    stopButton=0 playSongButton=0 RecButton=0 | status "" | undo0 changed1
double startStopButton 1: SetController32(0..11,0) SetController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) position(0) patterns(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0)
    HoldTicks32(0) StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) | startStopButton=1
    startStopButton=0
double RecButton 1; double playSongButton 1; double stopButton 1; double ResetButton 1:
double LoopPt 1: Set103Loop32(1,0,0,15) (1,0,0,15) | edit(2>1: 16 0) | edit1 changed1
double PatchID 1: Set103Patch32(1,0,0,-1) (1,0,0,-1) | changed1
double Offset109 1: edit(1>2: 0 16) | edit2
double tempoBPM 1; double timeDisplay 1; double UserTitle 1:
double step109LED 1: Set109bOn32(0,0,1,1,1) (0,0,1,1,0) | lamp(1)=on lamp(1)=off | undo2 changed1
double sel103AButton 1: Set103Note32(0,0,0,0,1) Set103NoteOn32(0,0,0,0,-1) (0,0,0,0,0) | keys(0)=1 edit(2>0: 16
    0) keys(0)=13 | edit0 undo4 changed1 103A A1 {C#- C*15}
double sel103BButton 1: Set103Note32(1,0,0,0,1) Set103NoteOn32(1,0,0,0,-1) (1,0,0,0,0) | keys(1)=1 edit(0>1: 0
    16) keys(1)=13 | edit1 undo6 changed1 103B A1 {C#- C*15}
double step103A 1: keys(0)=0 step103(0)=1 edit(1>0: 16 0) | edit0
double step103B 1: keys(1)=0 step103(1)=1 edit(0>1: 0 16) | edit1
double bank103A 1: SetNextGroup32(0,1) SetCurrGroup32(0,1) SetNextGroup32(0,1) SetCurrGroup32(0,1) |
    DigitPatt(1)=8 DigitPatt(0)=8 edit(1>0: 16 0) | edit0 changed1
double bank103B 1: SetNextGroup32(1,1) SetCurrGroup32(1,1) SetNextGroup32(1,1) SetCurrGroup32(1,1) |
    DigitPatt(3)=8 DigitPatt(2)=8 edit(0>1: 0 16) | edit1 changed1
double bank109 1: SetNextGroup32(2,1) SetCurrGroup32(2,1) SetNextGroup32(2,1) SetCurrGroup32(2,1) |
    DigitPatt(5)=8 DigitPatt(4)=8 edit(1>2: 0 16) | edit2 changed1
double ediSel 1: edit(2>1: 16 0) | edit1
double edi109 1: edit(1>2: 0 16) | edit2
double PlayHit 1: SetController32(0..11,0) SetController32(12..19,100) HoldTicks32(-1) SetMarluneTempo32(140)
    position(0) patterns(0 B1>B1@0 B1>B1@0 B1>B1@0) StartMarluneTimer32(17,0) HoldTicks32(0) StopMarluneTimer32()
    SendShortMessage32(144,0,0) (145,0,0) drums off(153) | startStopButton=1 startStopButton=0
)");
}

TEST_F(Routes, OfTheKeyboard) {
    setEditSel(2);
    program.shown();
    expectSession(program, R"(
enter knobSprite 1; enter knobTempo 1:
enter LEDBar 1: edit(2>1: 16 0) | edit1
enter keys 1; enter step103 1; enter DigitPatt 1:
enter accent 1: Set103Accent32(1,0,0,0,-1) | accent(1)=1 | status "Accented steps of 103B are silent: turn up the
    Accent knob, which stands at 0." | undo1 changed1 103B A1 {C! C*15}
enter up 1: Set103Up32(1,0,0,0,-1) | up(1)=1 | undo2 changed1 103B A1 {C^! C*15}
enter down 1: Set103Down32(1,0,0,0,-1) (1,0,0,0,0) Set103Up32(1,0,0,0,0) | up(1)=0 | undo3 changed1 103B A1 {C!
    C*15}
enter sel109 1: sel109(0)=0 sel109(1)=1 edit(1>2: 0 16) | edit2
enter SelEditPicture 1:
enter Check1 1: SetSong32(-1) song(0 A1>A1@0 A1>A1@0 A1>A1@0) PrepareController32(0..11,0)
    PrepareController32(12..19,100) pattern(103A A1) pattern(103B A1) pattern(109 A1) | timeDisplay enabled
    microDisplay enabled knobSprite(0..18) disabled Check1=1 ResetButton=1 prevButton=1 nextButton=1 RwdStep=1
    FwdStep=1 stopButton=1 playSongButton=1 RecButton=1 | status "" | song1 undo0 changed1
enter startStopButton 1: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 A1 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 | status "Accented steps of 103B are silent: turn up the
    Accent knob, which stands at 0." | run1
enter RecButton 1: knobSprite(0..18) enabled RecButton=2 | rec1 changed1
enter playSongButton 1:
enter stopButton 1: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(0 A1>A1@0
    A1>A1@0 A1>A1@0) | knobSprite(0..18) disabled RecButton=1 startStopButton=0 playSongButton=1 stopButton=2
    stopButton=1 | run0 rec0
enter ResetButton 1: song(0 A1>A1@0 A1>A1@0 A1>A1@0) song(0 A1>A1@0 A1>A1@0 A1>A1@0) | ResetButton=2
    ResetButton=1
enter LoopPt 1; enter PatchID 1; enter Offset109 1; enter tempoBPM 1; enter timeDisplay 1:
enter UserTitle 1; enter step109LED 1:
enter sel103AButton 1: edit(2>0: 16 0) | edit0
enter sel103BButton 1: edit(0>1: 0 16) | edit1
enter step103A 1: step103(0)=1 edit(1>0: 16 0) | edit0
enter step103B 1: accent(1)=0 step103(1)=1 edit(0>1: 0 16) | edit1
enter bank103A 1: edit(1>0: 16 0) | edit0 changed1
enter bank103B 1: edit(0>1: 0 16) | edit1 changed1
enter bank109 1: edit(1>2: 0 16) | edit2 changed1
enter ediSel 1: edit(2>1: 16 0) | edit1
enter edi109 1: edit(1>2: 0 16) | edit2
enter PlayHit 1: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 A1 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 | run1
)");
}

TEST_F(Routes, OfTheOtherButtonInSongMode) {
    setEditSel(2);
    program.shown();
    expectSession(program, R"(
- song
right knobSprite 1: edit(2>0: 16 0) | edit0
right knobTempo 1; right LEDBar 1; right keys 1; right step103 1; right DigitPatt 1; right accent 1:
right up 1; right down 1; right sel109 1; right SelEditPicture 1; right Check1 1:
right startStopButton 1; right RecButton 1; right playSongButton 1:
right stopButton 1: stopButton=2 stopButton=1
right ResetButton 1: song(0 A1>A1@0 A1>A1@0 A1>A1@0) song(0 A1>A1@0 A1>A1@0 A1>A1@0) | ResetButton=2
    ResetButton=1
right LoopPt 1: Set103Loop32(1,0,0,15) | edit(0>1: 0 16) | edit1 changed1
right PatchID 1:
right Offset109 1: edit(1>2: 0 16) | edit2
right tempoBPM 1; right timeDisplay 1; right UserTitle 1; right step109LED 1; right sel103AButton 1:
right sel103BButton 1; right step103A 1; right step103B 1; right bank103A 1; right bank103B 1:
right bank109 1; right ediSel 1; right edi109 1; right PlayHit 1:
- song; song
double knobSprite 1: edit(2>0: 16 0) | edit0
double knobTempo 1:
double LEDBar 1: edit(0>1: 0 16) | edit1
double keys 1; double step103 1:
double DigitPatt 1: edit(1>0: 16 0) | edit0
double accent 1: edit(0>1: 0 16) | edit1
double up 1; double down 1:
double sel109 1: sel109(0)=0 sel109(1)=1 edit(1>2: 0 16) | edit2
double SelEditPicture 1:
double startStopButton 1: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 A1 A1)
    HoldTicks32(0) StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(0 A1>A1@0
    A1>A1@0 A1>A1@0) | startStopButton=1 playSongButton=2 startStopButton=0 playSongButton=1
double RecButton 1: knobSprite(0..18) enabled RecButton=2 knobSprite(0..18) disabled RecButton=1 | changed1
double playSongButton 1: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 A1 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 | run1
double stopButton 1: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(0 A1>A1@0
    A1>A1@0 A1>A1@0) | startStopButton=0 playSongButton=1 stopButton=2 stopButton=1 stopButton=2 stopButton=1 |
    run0
double ResetButton 1: song(0 A1>A1@0 A1>A1@0 A1>A1@0) song(0 A1>A1@0 A1>A1@0 A1>A1@0) song(0 A1>A1@0 A1>A1@0
    A1>A1@0) song(0 A1>A1@0 A1>A1@0 A1>A1@0) | ResetButton=2 ResetButton=1 ResetButton=2 ResetButton=1
double LoopPt 1: Set103Loop32(1,0,0,15) (1,0,0,15) | edit(2>1: 16 0) | edit1 changed1
double PatchID 1:
double Offset109 1: edit(1>2: 0 16) | edit2
double tempoBPM 1; double timeDisplay 1; double UserTitle 1; double step109LED 1:
double sel103AButton 1: edit(2>0: 16 0) | edit0
double sel103BButton 1: edit(0>1: 0 16) | edit1
double step103A 1: step103(0)=1 edit(1>0: 16 0) | edit0
double step103B 1: step103(1)=1 edit(0>1: 0 16) | edit1
double bank103A 1: edit(1>0: 16 0) | edit0 changed1
double bank103B 1: edit(0>1: 0 16) | edit1 changed1
double bank109 1: edit(1>2: 0 16) | edit2 changed1
double ediSel 1: edit(2>1: 16 0) | edit1
double edi109 1: edit(1>2: 0 16) | edit2
double PlayHit 1: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 A1 A1)
    HoldTicks32(0) StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) song(0 A1>A1@0 A1>A1@0 A1>A1@0)
    drums off(153) | startStopButton=1 playSongButton=2 startStopButton=0 playSongButton=1
)");
}

TEST_F(Routes, OfTheWheelAndFineDrags) {
    test::Session session(program);
    session.verbs["fine"] = [](int knob, int up, int) {
        for (const auto action : {PointerAction::press, PointerAction::move, PointerAction::release})
            panelPointer(
                Control::knobSprite, knob,
                {.action = action, .y = action == PointerAction::press ? 3000.0 : 3000.0 - up, .fine = true});
    };
    session.verbs["later"] = [](int ms, int, int) { TestProgram::advanceClock(ms); };
    expectSession(session, R"(
fine 13 -300: edit(0>2: 0 16) | edit2
fine 0 600: edit(2>0: 16 0) | edit0
wheel knobSprite 0 1: SetController32(0,1) | undo1 changed1 knobs 0=1
wheel knobSprite 0 1: SetController32(0,2) | knobSprite(0)=1 | changed1 knobs 0=2
wheel knobSprite 1 1: SetController32(1,1) | undo2 changed1 knobs 1=1
wheel knobTempo 0 1: tempoBPM="141" | undo3 changed1 tempo=141
wheel DigitPatt 0 1: SetNextPatt32(0,1) SetCurrPatt32(0,1) | DigitPatt(1)=1 DigitPatt(0)=1
wheel LoopPt 0 -1: Set103Loop32(0,0,1,14) | LoopPt(0)="15" | undo4 changed1 103A A2 {C*16 loop 15}
later 1001:
wheel LoopPt 0 -1: Set103Loop32(0,0,1,13) | LoopPt(0)="14" | undo5 changed1 103A A2 {C*16 loop 14}
wheel PatchID 0 1: Set103Patch32(0,0,1,0) | PatchID(0)="0" | undo6 changed1 103A A2 {C*16 loop 14 patch 0}
wheel keys 0 1; wheel step109LED 0 1:
key 187: knobTempo=27 tempoBPM="142" | undo7 changed1 tempo=142
key 187: tempoBPM="143" | changed1 tempo=143
key 189: tempoBPM="142" | undo8 changed1 tempo=142
key 107: tempoBPM="143" | undo9 changed1 tempo=143
key 221: knobTempo=29 tempoBPM="153" | undo10 changed1 tempo=153
later 1001:
key 221: knobTempo=32 tempoBPM="163" | undo11 changed1 tempo=163
midi b0 c 50: SetController32(0,80) | knobSprite(0)=33 | undo12 changed1 knobs 0=80
midi b0 c 51: SetController32(0,81) | knobSprite(0)=34 | changed1 knobs 0=81
midi 90 41 50: Set103Note32(0,0,1,0,5) Set103NoteOn32(0,0,1,0,-1) | keys(0)=5 | undo13 changed1 103A A2 {F C*15
    loop 14 patch 0}
midi 90 42 50: Set103Note32(0,0,1,0,6) Set103NoteOn32(0,0,1,0,-1) | keys(0)=6 | undo14 changed1 103A A2 {F# C*15
    loop 14 patch 0}
menu mnuEditUndo: pattern(103A A2) | keys(0)=5 | undo13 changed1 103A A2 {F C*15 loop 14 patch 0}
menu mnuEditUndo: pattern(103A A2) | keys(0)=0 | undo12 changed1 103A A2 {C*16 loop 14 patch 0}
menu mnuEditUndo: SetController32(0,2) | knobSprite(0)=1 | undo11 changed1 knobs 0=2
down 17 2: ctrl1
down 16 1:
)");
    panelFocusLost();
    EXPECT_EQ(songPosition->windRate + 10 * editingState->ctrlDown, 0);
}

} // namespace
} // namespace marlune
