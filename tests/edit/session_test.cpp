// Every command of the Edit and Tools menus on every module, taken back and made again.
#include "support/program_test.h"

namespace marlune {
namespace {

using EditSession = ProgramTest;

void someMusic() {
    test::setBassSteps(0, "C! D^ - F_ G");
    test::setBassSteps(1, "A_ C'^ C_ - B!");
    currentBass(1).loopEnd = 7;
    currentBass(1).patch = 30;
    currentDrum().drumOn[0][0] = currentDrum().drumOn[15][7] = kDrumHit;
    currentDrum().loopEnd = 11;
    for (int m = 0; m < kModules; ++m) pushPatternToEngine(m, 0, 0);
    refreshAll();
}

TEST_F(EditSession, InPatternMode) {
    someMusic();
    for (const int knob : {0, 4, 6, 11, 12, 19}) project.knobValue[knob] = 20 + knob;
    refreshAll();
    program.calls();
    program.shown();
    expectSession(program, R"(
dialog 0=100 1=8 b0 2=100 3=90 b1 b2:
menu mnuToolsCalc: Calculator: {Delay Calculator ( Tempo (BPM)[140]6 Duration (1/16 steps)[16]6 '=' 'Delay (in
    ms)' '1712' Calculate ) } {Tempo Converter ( Tempo (BPM)[140]6 New Tempo (BPM)[140]6 '=' 'Transpose
    (semitone/cts)' '0' Calculate ) } !OK
dialog:
menu mnuToolsCalc: Calculator: {Delay Calculator ( Tempo (BPM)[140]6 Duration (1/16 steps)[16]6 '=' 'Delay (in
    ms)' '1712' Calculate ) } {Tempo Converter ( Tempo (BPM)[140]6 New Tempo (BPM)[140]6 '=' 'Transpose
    (semitone/cts)' '0' Calculate ) } !OK
- down 17 2
menu mnuEditCut: status "COPY: Module 103A ( current pattern and knobs )." | ctrl0
- down 17 2
menu mnuEditPaste: pattern(103A A1) SetController32(0,20) SetController32(1..3,0) (4,24) (5,0) | ctrl0 changed1
- down 17 2
menu mnuToolsClear: pattern(103A A1) | keys(0)=13 accent(0)=0 | ctrl0 undo1 changed1 103A A1 {C-*16}
menu mnuEditUndo: pattern(103A A1) | keys(0)=0 accent(0)=1 | undo0 changed1 103A A1 {C! D^ C- F_ G C*11}
- down 17 2
menu mnuToolsRNotes: Set103Note32(0,0,0,0,5) (0,0,0,1,12) (0,0,0,2,9) (0,0,0,3,12) (0,0,0,4,0) (0,0,0,5,2)
    (0,0,0,6,4) (0,0,0,7,12) (0,0,0,8,2) (0,0,0,9,3) (0,0,0,10,1) (0,0,0,11,5) (0,0,0,12,2) (0,0,0,13,5)
    (0,0,0,14,4) (0,0,0,15,9) | keys(0)=5 | ctrl0 undo1 changed1 103A A1 {F! C'^ A- C'_ C D E C' D D# C# F D F E
    A}
menu mnuEditUndo: pattern(103A A1) | keys(0)=0 | undo0 changed1 103A A1 {C! D^ C- F_ G C*11}
menu mnuEditTransposeUp: Set103Note32(0,0,0,0,1) (0,0,0,1,3) (0,0,0,2,1) (0,0,0,3,6) (0,0,0,4,8) (0,0,0,5,1)
    (0,0,0,6,1) (0,0,0,7,1) (0,0,0,8,1) (0,0,0,9,1) (0,0,0,10,1) (0,0,0,11,1) (0,0,0,12,1) (0,0,0,13,1)
    (0,0,0,14,1) (0,0,0,15,1) | keys(0)=1 | undo1 changed1 103A A1 {C#! D#^ C#- F#_ G# C#*11}
menu mnuEditTransposeDown: Set103Note32(0,0,0,0,0) (0,0,0,1,2) (0,0,0,2,0) (0,0,0,3,5) (0,0,0,4,7) (0,0,0,5,0)
    (0,0,0,6,0) (0,0,0,7,0) (0,0,0,8,0) (0,0,0,9,0) (0,0,0,10,0) (0,0,0,11,0) (0,0,0,12,0) (0,0,0,13,0)
    (0,0,0,14,0) (0,0,0,15,0) | keys(0)=0 | undo2 changed1 103A A1 {C! D^ C- F_ G C*11}
menu mnuEditMoveRight: pattern(103A A1) | accent(0)=0 | undo3 changed1 103A A1 {C C! D^ C- F_ G C*10}
menu mnuEditMoveLeft: pattern(103A A1) | accent(0)=1 | undo4 changed1 103A A1 {C! D^ C- F_ G C*11}
menu mnuEditLoop1: Set103Loop32(0,0,0,15) | changed1
menu mnuEditLoopPt2: Set103Loop32(0,0,0,14) | LoopPt(0)="15" | undo5 changed1 103A A1 {C! D^ C- F_ G C*11 loop
    15}
menu mnuPatchDec: Set103Patch32(0,0,0,-1) | changed1
menu mnuPatchInc: Set103Patch32(0,0,0,0) | PatchID(0)="0" | undo6 changed1 103A A1 {C! D^ C- F_ G C*11 loop 15
    patch 0}
menu mnuEditUndo: pattern(103A A1) | PatchID(0)="NONE" | undo5 changed1 103A A1 {C! D^ C- F_ G C*11 loop 15}
menu mnuEditRedo: pattern(103A A1) | PatchID(0)="0" | undo6 changed1 103A A1 {C! D^ C- F_ G C*11 loop 15 patch 0}
menu mnuEditPaste: pattern(103A A1) SetController32(0,20) SetController32(1..3,0) (4,24) (5,0) | LoopPt(0)="16"
    PatchID(0)="NONE" | undo7 changed1 103A A1 {C! D^ C- F_ G C*11}
menu mnuEditCut:
- click ediSel 1
menu mnuEditTransposeUp: Set103Note32(1,0,0,0,10) (1,0,0,1,12) (1,0,0,2,1) (1,0,0,3,1) (1,0,0,4,12) (1,0,0,5,1)
    (1,0,0,6,1) (1,0,0,7,1) (1,0,0,8,1) (1,0,0,9,1) (1,0,0,10,1) (1,0,0,11,1) (1,0,0,12,1) (1,0,0,13,1)
    (1,0,0,14,1) (1,0,0,15,1) | keys(1)=10 | undo8 changed1 103B A1 {A#_ C'^ C#_ C#- C'! C#*11 loop 8 patch 30}
menu mnuEditMoveLeft: pattern(103B A1) | keys(1)=12 down(1)=0 up(1)=1 | undo9 changed1 103B A1 {C'^ C#_ C#- C'!
    C#*11 A#_ loop 8 patch 30}
menu mnuEditLoop1: Set103Loop32(1,0,0,8) | LoopPt(1)="9" | undo10 changed1 103B A1 {C'^ C#_ C#- C'! C#*11 A#_
    loop 9 patch 30}
menu mnuPatchDec: Set103Patch32(1,0,0,29) | PatchID(1)="29" | undo11 changed1 103B A1 {C'^ C#_ C#- C'! C#*11 A#_
    loop 9 patch 29}
menu mnuEditPaste: pattern(103B A1) SetController32(6,20) SetController32(7..9,0) (10,24) (11,0) | keys(1)=0
    accent(1)=1 up(1)=0 LoopPt(1)="16" PatchID(1)="NONE" knobSprite(6)=8 knobSprite(10)=10 knobSprite(11)=0 |
    undo12 changed1 knobs 6=20 10=24 11=0 103B A1 {C! D^ C- F_ G C*11}
menu mnuEditUndo: pattern(103B A1) SetController32(6,26) SetController32(7..10,0) (11,31) | keys(1)=12
    accent(1)=0 up(1)=1 LoopPt(1)="9" PatchID(1)="29" knobSprite(6)=11 knobSprite(10)=0 knobSprite(11)=13 |
    undo11 changed1 knobs 6=26 10=0 11=31 103B A1 {C'^ C#_ C#- C'! C#*11 A#_ loop 9 patch 29}
menu mnuEditUndo: pattern(103B A1) | PatchID(1)="30" | undo10 changed1 103B A1 {C'^ C#_ C#- C'! C#*11 A#_ loop 9
    patch 30}
menu mnuEditRedo: pattern(103B A1) | PatchID(1)="29" | undo11 changed1 103B A1 {C'^ C#_ C#- C'! C#*11 A#_ loop 9
    patch 29}
menu mnuEditRedo: pattern(103B A1) SetController32(6,20) SetController32(7..9,0) (10,24) (11,0) | keys(1)=0
    accent(1)=1 up(1)=0 LoopPt(1)="16" PatchID(1)="NONE" knobSprite(6)=8 knobSprite(10)=10 knobSprite(11)=0 |
    undo12 changed1 knobs 6=20 10=24 11=0 103B A1 {C! D^ C- F_ G C*11}
menu mnuToolsRNotes: Set103Note32(1,0,0,0,5) (1,0,0,1,12) (1,0,0,2,7) (1,0,0,3,11) (1,0,0,4,5) (1,0,0,5,4)
    (1,0,0,6,9) (1,0,0,7,7) (1,0,0,8,3) (1,0,0,9,6) (1,0,0,10,11) (1,0,0,11,3) (1,0,0,12,0) (1,0,0,13,7)
    (1,0,0,14,9) (1,0,0,15,12) | keys(1)=5 | undo13 changed1 103B A1 {F! C'^ G- B_ F E A G D# F# B D# C G A C'}
menu mnuToolsRandRest: Set103NoteOn32(1,0,0,0,0) (1,0,0,1,0) (1,0,0,2,-1) (1,0,0,3,0) (1,0,0,4,0) (1,0,0,5,-1)
    (1,0,0,6,0) (1,0,0,7,-1) (1,0,0,8,-1) (1,0,0,9,-1) (1,0,0,10,-1) (1,0,0,11,-1) (1,0,0,12,0) (1,0,0,13,0)
    (1,0,0,14,-1) (1,0,0,15,-1) | keys(1)=13 | undo14 changed1 103B A1 {F!- C'^- G B_- F- E A- G D# F# B D# C- G-
    A C'}
menu mnuToolsROctave: Set103Up32(1,0,0,0,0) Set103Down32(1,0,0,0,0) Set103Up32(1,0,0,1,0) Set103Down32(1,0,0,1,0)
    Set103Up32(1,0,0,2,0) Set103Down32(1,0,0,2,0) Set103Up32(1,0,0,3,0) Set103Down32(1,0,0,3,-1)
    Set103Up32(1,0,0,4,0) Set103Down32(1,0,0,4,0) Set103Up32(1,0,0,5,0) Set103Down32(1,0,0,5,-1)
    Set103Up32(1,0,0,6,0) Set103Down32(1,0,0,6,0) Set103Up32(1,0,0,7,-1) Set103Down32(1,0,0,7,0)
    Set103Up32(1,0,0,8,-1) Set103Down32(1,0,0,8,0) Set103Up32(1,0,0,9,0) Set103Down32(1,0,0,9,0)
    Set103Up32(1,0,0,10,0) Set103Down32(1,0,0,10,0) Set103Up32(1,0,0,11,0) Set103Down32(1,0,0,11,-1)
    Set103Up32(1,0,0,12,0) Set103Down32(1,0,0,12,0) Set103Up32(1,0,0,13,0) Set103Down32(1,0,0,13,-1)
    Set103Up32(1,0,0,14,-1) Set103Down32(1,0,0,14,0) Set103Up32(1,0,0,15,0) Set103Down32(1,0,0,15,-1) | undo15
    changed1 103B A1 {F!- C'- G B_- F- E_ A- G^ D#^ F# B D#_ C- G_- A^ C'_}
menu mnuToolsRAccents: Set103Accent32(1,0,0,0,-1) (1,0,0,1,0) (1,0,0,2,-1) (1,0,0,3,0) (1,0,0,4,-1) (1,0,0,5,0)
    (1,0,0,6,0) (1,0,0,7,0) (1,0,0,8,-1) (1,0,0,9,-1) (1,0,0,10,-1) (1,0,0,11,0) (1,0,0,12,0) (1,0,0,13,0)
    (1,0,0,14,-1) (1,0,0,15,-1) | undo16 changed1 103B A1 {F!- C'- G! B_- F!- E_ A- G^ D#^! F#! B! D#_ C- G_- A^!
    C'_!}
menu mnuToolsClear: pattern(103B A1) | accent(1)=0 | undo17 changed1 103B A1 {C-*16}
menu mnuToolsInit: pattern(103B A1) | keys(1)=0 | undo18 changed1 103B A1 {C*16}
menu mnuEditUndo: pattern(103B A1) | keys(1)=13 | undo17 changed1 103B A1 {C-*16}
menu mnuToolsRNotes: Set103Note32(1,0,0,0,12) (1,0,0,1,9) (1,0,0,2,10) (1,0,0,3,4) (1,0,0,4,4) (1,0,0,5,6)
    (1,0,0,6,10) (1,0,0,7,3) (1,0,0,8,1) (1,0,0,9,1) (1,0,0,10,6) (1,0,0,11,6) (1,0,0,12,12) (1,0,0,13,1)
    (1,0,0,14,4) (1,0,0,15,12) | undo18 changed1 103B A1 {C'- A- A#- E-*2 F#- A#- D#- C#-*2 F#-*2 C'- C#- E- C'-}
menu mnuEditRedo:
- click ediSel 2
menu mnuEditPaste:
menu mnuEditTransposeUp: Set109DrumNote32(0,0,0,37) | Offset109(0)="37" | undo19 changed1 109 A1 {drums 0.1 7.16
    note0 37 loop 12}
menu mnuEditTransposeDown: Set109DrumNote32(0,0,0,36) | Offset109(0)="36" | undo20 changed1 109 A1 {drums 0.1
    7.16 loop 12}
menu mnuEditMoveRight: pattern(109 A1) | lamp(0)=off lamp(1)=on | undo21 changed1 109 A1 {drums 0.2 7.1 loop 12}
menu mnuEditMoveLeft: pattern(109 A1) | lamp(0)=on lamp(1)=off | undo22 changed1 109 A1 {drums 0.1 7.16 loop 12}
menu mnuEditLoopPt2: Set109Loop32(0,0,10) | LoopPt(2)="11" | undo23 changed1 109 A1 {drums 0.1 7.16 loop 11}
menu mnuPatchDec; menu mnuPatchInc:
menu mnuToolsRNotes: Set109DrumNote32(0,0,0,37) | Offset109(0)="37" | undo24 changed1 109 A1 {drums 0.1 7.16
    note0 37 loop 11}
menu mnuToolsRandRest: Set109bOn32(0,0,0,0,0) (0,0,1,0,0) (0,0,2,0,255) (0,0,3,0,0) (0,0,4,0,0) (0,0,5,0,255)
    (0,0,6,0,255) (0,0,7,0,0) (0,0,8,0,255) (0,0,9,0,0) (0,0,10,0,0) (0,0,11,0,0) (0,0,12,0,255) (0,0,13,0,0)
    (0,0,14,0,255) (0,0,15,0,255) | lamp(0)=off lamp(2)=on lamp(5)=on lamp(6)=on lamp(8)=on lamp(12)=on
    lamp(14)=on lamp(15)=on | undo25 changed1 109 A1 {drums 0.3.6.7.9.13.15.16 7.16 note0 37 loop 11}
menu mnuToolsROctave: changed1
menu mnuToolsRAccents: Set109bOn32(0,0,0,7,255) (0,0,1,7,0) (0,0,2,7,255) (0,0,3,7,255) (0,0,4,7,0) (0,0,5,7,255)
    (0,0,6,7,0) (0,0,7,7,0) (0,0,8,7,255) (0,0,9,7,0) (0,0,10,7,255) (0,0,11,7,255) (0,0,12,7,0) (0,0,13,7,0)
    (0,0,14,7,255) (0,0,15,7,0) | undo26 changed1 109 A1 {drums 0.3.6.7.9.13.15.16 7.1.3.4.6.9.11.12.15 note0 37
    loop 11}
menu mnuEditCut: status "COPY: Module 109 ( current pattern and knobs )."
menu mnuToolsClear: pattern(109 A1) | lamp(2)=off lamp(5)=off lamp(6)=off lamp(8)=off lamp(12)=off lamp(14)=off
    lamp(15)=off LoopPt(2)="16" | undo27 changed1 109 A1 {drums note0 37}
menu mnuEditPaste: pattern(109 A1) SetController32(12,32) SetController32(13..18,100) (19,39) | lamp(2)=on
    lamp(5)=on lamp(6)=on lamp(8)=on lamp(12)=on lamp(14)=on lamp(15)=on LoopPt(2)="11" | undo28 changed1 109 A1
    {drums 0.3.6.7.9.13.15.16 7.1.3.4.6.9.11.12.15 note0 37 loop 11}
menu mnuToolsInit: pattern(109 A1) | lamp(2)=off lamp(5)=off lamp(6)=off lamp(8)=off lamp(12)=off lamp(14)=off
    lamp(15)=off Offset109(0)="36" LoopPt(2)="16" | undo29 changed1 109 A1 {drums}
- click sel109 7
menu mnuToolsRNotes: Set109DrumNote32(0,0,7,98) | undo30 changed1 109 A1 {drums}
menu mnuEditTransposeUp: changed1
- drag knobTempo 0 100; drag knobSprite 14 -50
menu mnuEditUndo: SetController32(14,100) | knobSprite(14)=42 | undo31 changed1 knobs 14=100
menu mnuEditUndo: knobTempo=26 tempoBPM="140" | undo30 changed1 tempo=140
menu mnuEditRedo: knobTempo=33 tempoBPM="166" | undo31 changed1 tempo=166
menu mnuToolsSongRandom; menu mnuEditCopyPattern; menu mnuToolsInitBarfromPatt:
)");
}

TEST_F(EditSession, InSongMode) {
    someMusic();
    selPatt(0, 3);
    bankClick(2, 1);
    for (const int knob : {0, 4, 6, 11, 12, 19}) project.knobValue[knob] = 20 + knob;
    for (int bar = 0; bar < 5; ++bar) setBar(1, 16 * bar, bar % 4, bar % 8);
    for (int k = 0; k < kKnobs; ++k)
        for (int t = 0; t < 64; ++t) knobTrack[k][t] = static_cast<std::uint8_t>(k + t / 8 * 10);
    expectSession(program, R"(
- song
key 33: song(16 A1>A1@0 B2>C3@0 A1>A1@4) PrepareController32(0,20) (1,21) (2,22) (3,23) (4,24) (5,25) (6,26)
    (7,27) (8,28) (9,29) (10,30) (11,31) (12,32) (13,33) (14,34) (15,35) (16,36) (17,37) (18,38) (19,39) |
    DigitPatt(2)=9 keys(1)=0 down(1)=0 LoopPt(1)="16" PatchID(1)="NONE" DigitPatt(3)=18 LEDBar(2)=4
    timeDisplay="2" knobSprite(0)=8 knobSprite(1)=9 knobSprite(2)=9 knobSprite(3..5)=10 knobSprite(6)=11
    knobSprite(7)=11 knobSprite(8)=12 knobSprite(9)=12 knobSprite(10..12)=13 knobSprite(13)=14 knobSprite(14)=14
    knobSprite(15..17)=15 knobSprite(18)=16 knobSprite(19)=16 nextButton=2 nextButton=1 | tick16 changed1 knobs
    0=20 1=21 2=22 3=23 4=24 5=25 6=26 7=27 8=28 9=29 10=30 11=31 12=32 13=33 14=34 15=35 16=36 17=37 18=38 19=39
- click ediSel 1
dialog 0=7:
menu mnuEditCut: Copy Pattern [103B]: {Copy Details Number of Bars :[1]6 '[ Starting at Bar:2 ]' Copy Knobs[ ] }
    ( !OK xCancel )
dialog 0=2 c0 b0:
menu mnuEditCut: Copy Pattern [103B]: {Copy Details Number of Bars :[1]6 '[ Starting at Bar:2 ]' Copy Knobs[ ] }
    ( !OK xCancel ) status "SONG COPY: ( 103B Patterns and knobs ) from BAR 2 thru 3 ."
dialog b1:
menu mnuEditCut: Copy Pattern [103B]: {Copy Details Number of Bars :[2]6 '[ Starting at Bar:2 ]' Copy Knobs[x] }
    ( !OK xCancel )
menu mnuEditPaste: song(16 A1>A1@0 B2>C3@0 A1>A1@4) | changed1
- key 33; key 33; key 33; click ediSel 0
menu mnuEditPaste: song(64 B2>C3@0 A5>A1@0 A1>A1@4) PrepareController32(0,26) (1,27) (2,28) (3,29) (4,30) (5,31)
    | DigitPatt(0)=9 accent(0)=0 DigitPatt(1)=18 knobSprite(0)=11 knobSprite(1)=11 knobSprite(2)=12
    knobSprite(3)=12 knobSprite(4)=13 knobSprite(5)=13 | undo1 changed1 knobs 0=26 1=27 2=28 3=29 4=30 5=31 bars
    103A 5=B2 6=C3 track0 65..72=26 73..80=36 81..88=46 89..96=56 track1 65..72=27 73..80=37 81..88=47 89..96=57
    track2 65..72=28 73..80=38 81..88=48 89..96=58 track3 65..72=29 73..80=39 81..88=49 89..96=59 track4
    65..72=30 73..80=40 81..88=50 89..96=60 track5 65..72=31 73..80=41 81..88=51 89..96=61
menu mnuEditUndo: song(64 A1>A1@0 A5>A1@0 A1>A1@4) PrepareController32(0..5,0) | DigitPatt(0)=0 accent(0)=1
    DigitPatt(1)=0 knobSprite(0..5)=0 | undo0 changed1 knobs 0..5=0 bars 103A 5..6=A1 track0..track5 65..96=0
menu mnuEditRedo: song(64 B2>C3@0 A5>A1@0 A1>A1@4) PrepareController32(0,26) (1,27) (2,28) (3,29) (4,30) (5,31) |
    DigitPatt(0)=9 accent(0)=0 DigitPatt(1)=18 knobSprite(0)=11 knobSprite(1)=11 knobSprite(2)=12
    knobSprite(3)=12 knobSprite(4)=13 knobSprite(5)=13 | undo1 changed1 knobs 0=26 1=27 2=28 3=29 4=30 5=31 bars
    103A 5=B2 6=C3 track0 65..72=26 73..80=36 81..88=46 89..96=56 track1 65..72=27 73..80=37 81..88=47 89..96=57
    track2 65..72=28 73..80=38 81..88=48 89..96=58 track3 65..72=29 73..80=39 81..88=49 89..96=59 track4
    65..72=30 73..80=40 81..88=50 89..96=60 track5 65..72=31 73..80=41 81..88=51 89..96=61
- click ediSel 2
menu mnuEditPaste: changed1
menu mnuEditCopyPattern:
menu mnuEditPastePattern: changed1
- key 36
menu mnuEditPastePattern: PrepareController32(12..19,100) | knobSprite(12..19)=42 | undo2 changed1 knobs
    12..19=100 track12..track19 1..16=100
menu mnuEditUndo: song(0 A1>A1@0 A1>B2@0 A1>A1@0) PrepareController32(12,12) (13,13) (14,14) (15,15) (16,16)
    (17,17) (18,18) (19,19) | knobSprite(12)=5 knobSprite(13)=5 knobSprite(14)=6 knobSprite(15)=6
    knobSprite(16)=7 knobSprite(17)=7 knobSprite(18)=8 knobSprite(19)=8 | undo1 changed1 knobs 12=12 13=13 14=14
    15=15 16=16 17=17 18=18 19=19 track12 1..8=12 9..16=22 track13 1..8=13 9..16=23 track14 1..8=14 9..16=24
    track15 1..8=15 9..16=25 track16 1..8=16 9..16=26 track17 1..8=17 9..16=27 track18 1..8=18 9..16=28 track19
    1..8=19 9..16=29
menu mnuEditRedo: song(0 A1>A1@0 A1>B2@0 A1>A1@0) PrepareController32(12..19,100) | knobSprite(12..19)=42 | undo2
    changed1 knobs 12..19=100 track12..track19 1..16=100
- click ediSel 1
menu mnuEditCopyPattern:
menu mnuEditPastePattern: changed1
- key 34; dialog 0=1000 b0
menu mnuEditCut: Copy Pattern [103B]: {Copy Details Number of Bars :[2]6 '[ Starting at Bar:1 ]' Copy Knobs[x] }
    ( !OK xCancel ) status "SONG COPY: ( 103B Patterns and knobs ) from BAR 1 thru 1000 ."
dialog 0=0 c0 b0:
menu mnuEditCut: Copy Pattern [103B]: {Copy Details Number of Bars :[1000]6 '[ Starting at Bar:1 ]' Copy Knobs[x]
    } ( !OK xCancel ) status "SONG COPY: ( 103B Patterns ) from BAR 1 thru 1 ."
dialog 0=1 c0 b0:
menu mnuEditCut: Copy Pattern [103B]: {Copy Details Number of Bars :[1]6 '[ Starting at Bar:1 ]' Copy Knobs[ ] }
    ( !OK xCancel ) status "SONG COPY: ( 103B Patterns and knobs ) from BAR 1 thru 1 ."
menu mnuEditPaste: song(0 A1>A1@0 A1>B2@0 A1>A1@0) | changed1
menu mnuToolsInitBarfromPatt: song(0 A4>A1@0 A1>B2@0 B1>A1@0) PrepareController32(0,20)
    PrepareController32(1..3,0) (4,24) (5,0) (6,26) PrepareController32(7..10,0) (11,31) (12,32) (19,39) (0,20)
    PrepareController32(1..3,0) (4,24) (5,0) (6,26) PrepareController32(7..10,0) (11,31) (12,32)
    PrepareController32(13..18,100) (19,39) | DigitPatt(0)=3 accent(0)=0 DigitPatt(4)=8 lamp(0)=off
    LoopPt(2)="16" knobSprite(0)=8 knobSprite(2)=0 knobSprite(3)=0 knobSprite(4)=10 knobSprite(5)=0
    knobSprite(6)=11 knobSprite(7..10)=0 knobSprite(11)=13 knobSprite(12)=13 knobSprite(19)=16 | undo3 changed1
    knobs 0=20 1..3=0 4=24 5=0 6=26 7..10=0 11=31 12=32 19=39 bars 103A 1=A4 bars 109 1=B1 track0 1..16=20
    track1..track3 1..16=0 track4 1..16=24 track5 1..16=0 track6 1..16=26 track7..track10 1..16=0 track11
    1..16=31 track12 1..16=32 track19 1..16=39
menu mnuEditUndo: song(0 A1>A1@0 A1>B2@0 A1>A1@0) PrepareController32(0,0) (1,1) (2,2) (3,3) (4,4) (5,5) (6,6)
    (7,7) (8,8) (9,9) (10,10) (11,11) (12,100) (19,100) | DigitPatt(0)=0 accent(0)=1 DigitPatt(4)=0 lamp(0)=on
    LoopPt(2)="12" knobSprite(0)=0 knobSprite(2)=1 knobSprite(3)=1 knobSprite(4)=2 knobSprite(5)=2
    knobSprite(6..8)=3 knobSprite(9)=4 knobSprite(10)=4 knobSprite(11)=5 knobSprite(12)=42 knobSprite(19)=42 |
    undo2 changed1 knobs 0=0 1=1 2=2 3=3 4=4 5=5 6=6 7=7 8=8 9=9 10=10 11=11 12=100 19=100 bars 103A 1=A1 bars
    109 1=A1 track0 1..8=0 9..16=10 track1 1..8=1 9..16=11 track2 1..8=2 9..16=12 track3 1..8=3 9..16=13 track4
    1..8=4 9..16=14 track5 1..8=5 9..16=15 track6 1..8=6 9..16=16 track7 1..8=7 9..16=17 track8 1..8=8 9..16=18
    track9 1..8=9 9..16=19 track10 1..8=10 9..16=20 track11 1..8=11 9..16=21 track12 1..16=100 track19 1..16=100
menu mnuToolsSongRandom:
dialog 0=2 c0 c1 c2 b0:
menu mnuToolsSongRandom: song(0 A1>A1@0 B8>A2@0 C8>B8@0) | DigitPatt(2)=15 keys(1)=0 down(1)=0 LoopPt(1)="16"
    PatchID(1)="NONE" DigitPatt(3)=1 DigitPatt(4)=23 lamp(0)=off LoopPt(2)="16" DigitPatt(5)=15 | Song Randomize:
    {Radomize Details Number of Bars :[4]6 '[ Starting at Bar:1 ]' 'Module Select :' ( 103A[x] 103B[ ] 109[ ] ) }
    ( !Randomize! xCancel ) | undo3 bars 103B 1=B8 2=A2 bars 109 1=C8 2=B8
dialog 0=1 b1:
menu mnuToolsSongRandom: Song Randomize: {Radomize Details Number of Bars :[4]6 '[ Starting at Bar:1 ]' 'Module
    Select :' ( 103A[ ] 103B[x] 109[x] ) } ( !Randomize! xCancel )
menu mnuEditUndo: song(0 A1>A1@0 A1>B2@0 A1>A1@0) | DigitPatt(2)=0 keys(1)=9 down(1)=1 LoopPt(1)="8"
    PatchID(1)="30" DigitPatt(3)=9 DigitPatt(4)=0 lamp(0)=on LoopPt(2)="12" DigitPatt(5)=0 | undo2 changed1 bars
    103B 1=A1 2=B2 bars 109 1..2=A1
menu mnuToolsInit: song(0 A4>A4@0 A1>A1@0 B1>B1@0) PrepareController32(0,0) (1,1) (2,2) (3,3) (4,4) (5,5) (6,6)
    (7,7) (8,8) (9,9) (10,10) (11,11) PrepareController32(12..19,100) | DigitPatt(0)=3 accent(0)=0 DigitPatt(1)=3
    DigitPatt(3)=0 DigitPatt(4)=8 lamp(0)=off LoopPt(2)="16" DigitPatt(5)=8 | undo3 changed1 bars 103A 1..1000=A4
    bars 103B 2..5=A1 bars 109 1..1000=B1 track0 9..96=0 track1..track5 1..96=0 track6..track11 1..64=0
    track12..track19 17..64=100
menu mnuToolsInitSongfromPatt: song(0 A4>A4@0 A1>A1@0 B1>B1@0) PrepareController32(0,20)
    PrepareController32(1..3,0) (4,24) (5,0) (6,26) PrepareController32(7..10,0) (11,31) (12,32) (19,39) (0,20)
    PrepareController32(1..3,0) (4,24) (5,0) (6,26) PrepareController32(7..10,0) (11,31) (12,32)
    PrepareController32(13..18,100) (19,39) | knobSprite(0)=8 knobSprite(2)=0 knobSprite(3)=0 knobSprite(4)=10
    knobSprite(5)=0 knobSprite(6)=11 knobSprite(7..10)=0 knobSprite(11)=13 knobSprite(12)=13 knobSprite(19)=16 |
    undo4 changed1 knobs 0=20 1..3=0 4=24 5=0 6=26 7..10=0 11=31 12=32 19=39 track0 1..16000=20 track4
    1..16000=24 track6 1..16000=26 track11 1..16000=31 track12 1..16000=32 track19 1..16000=39
menu mnuEditUndo: song(0 A4>A4@0 A1>A1@0 B1>B1@0) PrepareController32(0,0) (4,0) (6,0) (11,0) (12,100) (19,100) |
    knobSprite(0)=0 knobSprite(4)=0 knobSprite(6)=0 knobSprite(11)=0 knobSprite(12)=42 knobSprite(19)=42 | undo3
    changed1 knobs 0=0 4=0 6=0 11=0 12=100 19=100 track0 1..16000=0 track4 1..16000=0 track6 1..16000=0 track11
    1..16000=0 track12 1..16000=100 track19 1..16000=100
menu mnuEditTransposeUp; menu mnuToolsRNotes; menu mnuPatchDec; menu mnuPatchInc:
menu mnuToolsClear:
menu mnuEditLoop1: Set103Loop32(1,0,0,8) | LoopPt(1)="9" | undo4 changed1 103B A1 {A_ C'^ C_ C- B! C*11 loop 9
    patch 30}
)");
}

} // namespace
} // namespace marlune
