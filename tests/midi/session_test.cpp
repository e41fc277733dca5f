// What arrives at the input does what the panel does: each note of a keyboard on each channel, as whole
// sessions.
#include "midi/midi_output.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using MidiSession = ProgramTest;

TEST_F(MidiSession, EveryNoteOfTheMapInPatternMode) {
    expectSession(program, R"(
midi 90 33 64: step103(0)=15
midi 90 34 64; midi 90 23 64:
midi 90 24 64: step103(0)=0
midi 90 3a 64:
midi 90 3b 64: Set103Down32(0,0,0,0,-1) | down(0)=1 | undo1 changed1 103A A1 {C_ C*15}
midi 90 3b 64: Set103Down32(0,0,0,0,0) | down(0)=0 | undo2 changed1 103A A1 {C*16}
midi 90 3c 64: Set103NoteOn32(0,0,0,0,0) | keys(0)=13 | undo3 changed1 103A A1 {C- C*15}
midi 90 48 64: Set103Note32(0,0,0,0,12) Set103NoteOn32(0,0,0,0,-1) | keys(0)=12 | undo4 changed1 103A A1 {C'
    C*15}
midi 90 49 64: Set103Up32(0,0,0,0,-1) | up(0)=1 | undo5 changed1 103A A1 {C'^ C*15}
midi 90 4a 64: Set103Accent32(0,0,0,0,-1) | accent(0)=1 | status "Accented steps of 103A are silent: turn up the
    Accent knob, which stands at 0." | undo6 changed1 103A A1 {C'^! C*15}
midi 90 4b 64; midi 90 4a 0:
midi 91 25 1: step103(1)=1
midi 91 48 1: Set103Note32(1,0,0,1,12) Set103NoteOn32(1,0,0,1,-1) | keys(1)=12 | undo7 changed1 103B A1 {C C'
    C*14}
midi 91 4a 1: Set103Accent32(1,0,0,1,-1) | accent(1)=1 | status "Accented steps of 103A, 103B are silent: turn up
    the Accent knob, which stands at 0." | undo8 changed1 103B A1 {C C'! C*14}
midi 99 24 1: Set109bOn32(0,0,0,0,1) | lamp(0)=on | undo9 changed1 109 A1 {drums 0.1}
midi 99 33 1: Set109bOn32(0,0,15,0,1) | lamp(15)=on | undo10 changed1 109 A1 {drums 0.1.16}
midi 99 34 1; midi 99 3b 1; midi 99 3c 1:
midi 99 43 1: sel109(0)=0 sel109(7)=1 lamp(0)=off lamp(15)=off
midi 99 44 1; midi 92 25 1; midi b0 b 7:
midi b0 c 7: SetController32(0,7) | knobSprite(0)=3 | undo11 changed1 knobs 0=7
midi b0 1f 127: SetController32(19,39) | knobSprite(19)=16 | changed1 knobs 19=39
midi b0 20 9; midi b1 c 9; midi 80 25 1:
)");
}

TEST_F(MidiSession, PhrasesAndTheOtherStates) {
    config.phraseChannel = 4;
    openMidiDevices();
    for (int note = 1; note < 5; ++note) project.noteMap[note].mapUsed = note != 4;
    project.noteMap[1].mapBank = {2, -1, 0};
    project.noteMap[1].mapPatt = {5, -1, 0};
    project.noteMap[2].mapBank = {-1, 1, 3};
    project.noteMap[2].mapPatt = {1, -1, 7};
    project.noteMap[3].mapBank = {0, 0, 0};
    project.noteMap[3].mapPatt = {0, 0, 0};
    program.calls();
    expectSession(program, R"(
midi 94 1 64: SetNextGroup32(0,2) SetCurrGroup32(0,2) SetNextPatt32(0,5) SetCurrPatt32(0,5) SetNextGroup32(2,0)
    SetCurrGroup32(2,0) SetNextPatt32(2,0) SetCurrPatt32(2,0) | DigitPatt(1)=16 DigitPatt(0)=16 DigitPatt(1)=21
    DigitPatt(0)=21 | changed1
midi 94 2 64: SetNextPatt32(0,1) SetCurrPatt32(0,1) SetNextGroup32(2,3) SetCurrGroup32(2,3) SetNextPatt32(2,7)
    SetCurrPatt32(2,7) | DigitPatt(1)=17 DigitPatt(0)=17 DigitPatt(5)=24 DigitPatt(4)=24 DigitPatt(5)=31
    DigitPatt(4)=31 | changed1
midi 94 4 64:
midi 94 3 0: SetNextGroup32(0,0) SetCurrGroup32(0,0) SetNextPatt32(0,0) SetCurrPatt32(0,0) SetNextGroup32(1,0)
    SetCurrGroup32(1,0) SetNextPatt32(1,0) SetCurrPatt32(1,0) SetNextGroup32(2,0) SetCurrGroup32(2,0)
    SetNextPatt32(2,0) SetCurrPatt32(2,0) | DigitPatt(1)=1 DigitPatt(0)=1 DigitPatt(1)=0 DigitPatt(0)=0
    DigitPatt(5)=7 DigitPatt(4)=7 DigitPatt(5)=0 DigitPatt(4)=0 | changed1
click startStopButton 0: SetController32(0..11,0) SetController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) position(0) patterns(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0)
    HoldTicks32(0) | startStopButton=1 | run1
play 1: tick1
midi 94 1 64; midi 90 25 64; midi 90 40 64; midi b0 d 64:
play 1: Set103Note32(0,0,0,1,4) Set103NoteOn32(0,0,0,1,-1) PrepareController32(1,100) | step103(0)=1 keys(0)=4
    steps(17 1 1) knobSprite(1)=42 | tick2 undo1 changed1 knobs 1=100 103A A1 {C E C*14}
- click startStopButton 0; song
midi b0 d 64: undo0
midi 90 26 64: keys(0)=0 step103(0)=2
midi 94 2 64: changed1
click RecButton 0: knobSprite(0..18) enabled RecButton=2 | rec1 changed1
midi b0 d 64: PrepareController32(1,100) | knobSprite(1)=42 | undo1 changed1 knobs 1=100 track1 1=100
midi 94 2 64: song(0 A2>A1@0 A1>A1@0 A1>A1@0) song(0 A2>A1@0 A1>A1@0 D1>A1@0) song(0 A2>A1@0 A1>A1@0 D8>A1@0) |
    DigitPatt(0)=1 DigitPatt(4)=24 DigitPatt(4)=31 | undo2 changed1 bars 103A 1=A2 bars 109 1=D8
click startStopButton 0: PrepareController32(0,0) (1,100) PrepareController32(2..11,0)
    PrepareController32(12..19,100) HoldTicks32(-1) SetMarluneTempo32(140) song(0 A2>A1@0 A1>A1@0 D8>A1@0)
    StartMarluneTimer32(17,0) next(A2 A1 D8) HoldTicks32(0) | startStopButton=1 playSongButton=2 DigitPatt(1)=1
    DigitPatt(5)=31 | run1 bars 103A 2=A2 bars 109 2=D8
play 1: next(A2 A1 D8) PrepareController32(1,100) | tick1 changed1 track1 2=100
midi b0 d 50; midi b0 e 51; midi 94 1 64; midi 90 26 64:
play 1: PrepareController32(1,100) (1,80) (2,81) | steps(17 1 1) knobSprite(1)=33 knobSprite(2)=34 | tick2
    changed1 knobs 1=80 2=81 track1 3=80 track2 3=81
play 16: PrepareController32(1,80) (2,81) (1,80) (2,81) (1,80) (2,81) (1,80) (2,81) (1,80) (2,81) (1,80) (2,81)
    (1,80) (2,81) (1,80) (2,81) (1,80) (2,81) (1,80) (2,81) (1,80) (2,81) (1,80) (2,81) (1,80) (2,81) (1,80)
    (2,81) next(A2 A1 D8) PrepareController32(1,80) (2,81) (1,80) (2,81) | steps(18 2 2) steps(19 3 3) steps(20 4
    4) steps(21 5 5) steps(22 6 6) steps(23 7 7) steps(24 8 8) steps(25 9 9) steps(26 10 10) steps(27 11 11)
    steps(28 12 12) steps(29 13 13) steps(30 14 14) steps(31 15 15) steps(16 0 0) timeDisplay="2" steps(17 1 1) |
    tick18 changed1 bars 103A 3=A2 bars 109 3=D8 track1 4..19=80 track2 4..19=81
click startStopButton 0: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(18
    A2>A2@2 A1>A1@2 D8>D8@2) | knobSprite(0..18) disabled RecButton=1 steps(18 2 2) microDisplay="[ 3/16]"
    steps(16 0 0) startStopButton=0 playSongButton=1 | run0 rec0 undo3
click startStopButton 0: PrepareController32(0,0) (1,80) (2,81) PrepareController32(3..11,0)
    PrepareController32(12..19,100) HoldTicks32(-1) SetMarluneTempo32(140) song(16 A2>A2@0 A1>A1@0 D8>D8@0)
    StartMarluneTimer32(17,0) next(A2 A1 D8) HoldTicks32(0) | startStopButton=1 playSongButton=2 microDisplay=""
    | tick16 run1
play 1: next(A2 A1 D8) | tick17
midi b0 d 40; midi 90 27 64:
play 1: steps(17 1 1) | tick18
)");
}

TEST_F(MidiSession, SingleMessagesKeepWithinTheirBytes) {
    program.calls();
    midiNoteOn(17, 128, 200);
    midiNoteOn(2, -1, -1);
    midiNoteOn(9, 127, 0);
    midiProgramChange(1, -1);
    midiProgramChange(18, 0);
    midiProgramChange(3, 130);
    EXPECT_EQ(program.calls(),
              "SendShortMessage32(145,127,127) SendShortMessage32(146,0,0) SendShortMessage32(153,127,0) "
              "SendShortMessage32(194,0,0) SendShortMessage32(195,127,0)");
    for (int m = 0; m < kModules; ++m) config.moduleChannel[m] = 3 + m;
    for (int m = 0; m < kBassModules; ++m) config.moduleVelocity[m] = 60 + m;
    for (int m = 0; m < kBassModules; ++m) config.moduleBaseNote[m] = 40 + m;
    for (int k = 0; k < kKnobs; ++k) config.outputController[k] = 90 + k;
    pushOutputAssignment();
    const std::string calls = program.calls();
    EXPECT_TRUE(
        calls.starts_with("Set103Vel32(0,60) Set103Vel32(1,61) Set103NoteOffset32(0,40) "
                          "Set103NoteOffset32(1,41) Set103Chan32(0,3) "
                          "Set103Chan32(1,4) Set109Chan32(2,5) DefineController32(0,90) "))
        << calls;
    EXPECT_TRUE(calls.ends_with("DefineController32(18,108) DefineController32(19,109)")) << calls;
}

} // namespace
} // namespace marlune
