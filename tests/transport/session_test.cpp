// The transport, the winding buttons and their keys, as whole sessions.
#include "support/program_test.h"

namespace marlune {
namespace {

using TransportSession = ProgramTest;

void someSong() {
    for (int bar = 1; bar < 12; ++bar) setBar(bar % 3, 16 * bar, bar % 4, bar % 8);
    for (int bar = 0; bar < 12; ++bar) knobTrack[3][16 * bar] = static_cast<std::uint8_t>(10 * bar);
    project.bass[0].patterns[0][0].loopEnd = 4;
    pushPatternToEngine(0, 0, 0);
    refreshAll();
}

TEST_F(TransportSession, InPatternMode) {
    someSong();
    program.calls();
    program.shown();
    expectSession(program, R"(
click startStopButton 0: SetController32(0..11,0) SetController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) position(0) patterns(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0)
    HoldTicks32(0) | startStopButton=1 | run1
play 7: steps(17 1 1) steps(18 2 2) steps(19 3 3) steps(20 4 4) steps(16 5 5) steps(17 6 6) | tick7
key 51: SetNextPatt32(0,2) | DigitPatt(1)=2 | changed1
key 50 1: SetNextGroup32(0,1) | DigitPatt(1)=10 | changed1
play 4: steps(18 7 7) steps(19 8 8) steps(20 9 9) DigitPatt(0)=10 LoopPt(0)="16" steps(16 10 10) | tick11
click startStopButton 0: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) | LEDBar(1)=0
    LEDBar(2)=0 startStopButton=0 | run0
double PlayHit 0: SetController32(0..11,0) SetController32(12..19,100) HoldTicks32(-1) SetMarluneTempo32(140)
    position(0) patterns(0 B3>B3@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) HoldTicks32(0) StopMarluneTimer32()
    SendShortMessage32(144,0,0) (145,0,0) drums off(153) | startStopButton=1 startStopButton=0 | tick0
play 3:
double PlayHit 0: SetController32(0..11,0) SetController32(12..19,100) HoldTicks32(-1) SetMarluneTempo32(140)
    position(0) patterns(0 B3>B3@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) HoldTicks32(0) StopMarluneTimer32()
    SendShortMessage32(144,0,0) (145,0,0) drums off(153) | startStopButton=1 startStopButton=0
play 1:
click PlayHit 0: SetController32(0..11,0) SetController32(12..19,100) HoldTicks32(-1) SetMarluneTempo32(140)
    position(0) patterns(0 B3>B3@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) HoldTicks32(0) | startStopButton=1
    | run1
click playSongButton 0; click stopButton 0; click RecButton 0; double RecButton 0:
click ResetButton 0; click nextButton 0; double FwdStep 0; double prevButton 0; click RwdStep 0:
enter nextButton 0; enter stopButton 0; key 33; key 34; key 36; key 45:
)");
}

TEST_F(TransportSession, InSongMode) {
    someSong();
    expectSession(program, R"(
- song
click playSongButton 0: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(0 A1>A1@0 A1>B2@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 B2 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 | run1
play 2: next(A1 B2 A1) | steps(17 1 1) | tick2
click playSongButton 0:
press stopButton 0: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(2 A1>A1@2
    A1>B2@2 A1>A1@2) | steps(18 2 2) microDisplay="[ 3/16]" steps(16 0 0) startStopButton=0 playSongButton=1
    stopButton=2 | run0
release stopButton 0: stopButton=1
double playSongButton 0: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(0 A1>A1@0 A1>B2@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 B2 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 microDisplay="" | tick0 run1
play 3: next(A1 B2 A1) | steps(17 1 1) steps(18 2 2) | tick3
click startStopButton 0: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(3 A1>A1@3
    A1>B2@3 A1>A1@3) | steps(19 3 3) microDisplay="[ 4/16]" steps(16 0 0) startStopButton=0 playSongButton=1 |
    run0
click startStopButton 0: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(0 A1>A1@0 A1>B2@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 B2 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 microDisplay="" | tick0 run1
play 15: next(A1 B2 A1) | steps(17 1 1) steps(18 2 2) steps(19 3 3) steps(20 4 4) steps(16 5 5) steps(17 6 6)
    steps(18 7 7) steps(19 8 8) steps(20 9 9) steps(16 10 10) steps(17 11 11) steps(18 12 12) steps(19 13 13)
    steps(20 14 14) | tick15
play 1: PrepareController32(3,10) | knobSprite(3)=4 steps(16 15 15) | tick16 changed1 knobs 3=10
play 1: next(A1 A1 C3) PrepareController32(3,0) | DigitPatt(2)=9 DigitPatt(3)=0 DigitPatt(5)=18 knobSprite(3)=0
    steps(17 0 0) timeDisplay="2" | tick17 changed1 knobs 3=0
click PlayHit 0: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) song(16 A1>A1@1 B2>A1@0 A1>C3@0)
    drums off(153) | LEDBar(0)=16 startStopButton=0 playSongButton=1 | tick16 run0
click PlayHit 0: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(16 A1>A1@1 B2>A1@0 A1>C3@0) StartMarluneTimer32(17,0) next(A1 A1 C3)
    PrepareController32(3,10) HoldTicks32(0) | startStopButton=1 playSongButton=2 LEDBar(0)=17 knobSprite(3)=4 |
    run1 changed1 knobs 3=10
hold nextButton 50: StopMarluneTimer32() song(32 A1>D4@2 A1>A1@0 C3>A1@0) PrepareController32(3,20)
    HoldTicks32(-1) SetMarluneTempo32(140) song(32 A1>D4@2 A1>A1@0 C3>A1@0) StartMarluneTimer32(17,0) next(D4 A1
    A1) HoldTicks32(0) | LEDBar(0)=18 DigitPatt(1)=27 DigitPatt(2)=0 DigitPatt(4)=18 DigitPatt(5)=0
    timeDisplay="3" knobSprite(3)=8 nextButton=2 nextButton=1 nextButton=2 nextButton=1 | tick32 changed1 knobs
    3=20
play 2: next(D4 A1 A1) PrepareController32(3,0) | knobSprite(3)=0 steps(19 1 1) | tick34 changed1 knobs 3=0
hold prevButton 50: StopMarluneTimer32() song(16 A1>A1@1 B2>A1@0 A1>C3@0) PrepareController32(3,10)
    HoldTicks32(-1) SetMarluneTempo32(140) song(16 A1>A1@1 B2>A1@0 A1>C3@0) StartMarluneTimer32(17,0) next(A1 A1
    C3) HoldTicks32(0) | LEDBar(0)=17 DigitPatt(1)=0 LEDBar(1)=0 DigitPatt(2)=9 LEDBar(2)=0 DigitPatt(4)=0
    DigitPatt(5)=18 timeDisplay="2" knobSprite(3)=4 prevButton=2 prevButton=1 prevButton=2 prevButton=1 | tick16
    changed1 knobs 3=10
hold FwdStep 50: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(16 A1>A1@1
    B2>A1@0 A1>C3@0) song(17 A1>A1@2 B2>A1@1 A1>C3@1) PrepareController32(3,0) | stopButton=2 LEDBar(0)=16
    startStopButton=0 playSongButton=1 stopButton=1 steps(18 1 1) microDisplay="[ 2/16]" knobSprite(3)=0
    FwdStep=2 FwdStep=1 FwdStep=2 FwdStep=1 | tick17 run0 changed1 knobs 3=0
hold RwdStep 50: song(16 A1>A1@1 B2>A1@0 A1>C3@0) PrepareController32(3,10) | steps(17 0 0) microDisplay="[
    1/16]" knobSprite(3)=4 RwdStep=2 RwdStep=1 RwdStep=2 RwdStep=1 | tick16 changed1 knobs 3=10
click RecButton 0: knobSprite(0..18) enabled RecButton=2 | rec1 changed1
key 16 1; down 16 1:
down 33 1: song(144 B2>A1@0 A1>C3@0 A1>A1@0) PrepareController32(3,90) | LEDBar(0)=16 DigitPatt(0)=9
    LoopPt(0)="16" DigitPatt(2)=0 DigitPatt(3)=18 DigitPatt(5)=0 timeDisplay="10" microDisplay=""
    knobSprite(3)=38 nextButton=2 | tick144 changed1 knobs 3=90
up 33 1: nextButton=1
up 16 0:
key 34: song(128 A1>B2@1 A1>A1@0 A1>A1@0) PrepareController32(3,80) | LEDBar(0)=17 DigitPatt(0)=0 LoopPt(0)="5"
    DigitPatt(1)=9 DigitPatt(3)=0 timeDisplay="9" knobSprite(3)=33 prevButton=2 prevButton=1 | tick128 changed1
    knobs 3=80
down 17 2: ctrl1
key 33 2: song(129 A1>B2@2 A1>A1@1 A1>A1@1) PrepareController32(3,0) | steps(18 1 1) microDisplay="[ 2/16]"
    knobSprite(3)=0 FwdStep=2 FwdStep=1 | tick129 changed1 knobs 3=0
key 34 2: song(128 A1>B2@1 A1>A1@0 A1>A1@0) PrepareController32(3,80) | steps(17 0 0) microDisplay="[ 1/16]"
    knobSprite(3)=33 RwdStep=2 RwdStep=1 | tick128 changed1 knobs 3=80
up 17: ctrl0
press ResetButton 0: song(0 A1>A1@0 A1>B2@0 A1>A1@0) PrepareController32(3,0) song(0 A1>A1@0 A1>B2@0 A1>A1@0) |
    knobSprite(0..18) disabled RecButton=1 ResetButton=2 LEDBar(0)=16 DigitPatt(1)=0 DigitPatt(3)=9
    timeDisplay="1" microDisplay="" knobSprite(3)=0 | tick0 rec0 changed1 knobs 3=0
release ResetButton 0: ResetButton=1
double RecButton 0: knobSprite(0..18) enabled RecButton=2 knobSprite(0..18) disabled RecButton=1 | changed1
click startStopButton 0: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(0 A1>A1@0 A1>B2@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 B2 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 | run1
play 1: next(A1 B2 A1) | tick1
down 33: StopMarluneTimer32() song(16 A1>A1@1 B2>A1@0 A1>C3@0) PrepareController32(3,10) | LEDBar(0)=17
    DigitPatt(2)=9 DigitPatt(3)=0 DigitPatt(5)=18 timeDisplay="2" knobSprite(3)=4 nextButton=2 | tick16 changed1
    knobs 3=10
up 33: HoldTicks32(-1) SetMarluneTempo32(140) song(16 A1>A1@1 B2>A1@0 A1>C3@0) StartMarluneTimer32(17,0) next(A1
    A1 C3) HoldTicks32(0) | nextButton=1
click ResetButton 0: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(16 A1>A1@1
    B2>A1@0 A1>C3@0) song(0 A1>A1@0 A1>B2@0 A1>A1@0) PrepareController32(3,0) song(0 A1>A1@0 A1>B2@0 A1>A1@0) |
    LEDBar(0)=16 startStopButton=0 playSongButton=1 ResetButton=2 DigitPatt(2)=0 DigitPatt(3)=9 DigitPatt(5)=0
    timeDisplay="1" knobSprite(3)=0 ResetButton=1 | tick0 run0 changed1 knobs 3=0
- key 33
click RecButton 0: knobSprite(0..18) enabled RecButton=2 | rec1 changed1
click playSongButton 0: PrepareController32(0..2,0) (3,10) PrepareController32(4..11,0)
    PrepareController32(12..19,100) HoldTicks32(-1) SetMarluneTempo32(140) song(16 A1>A1@1 B2>A1@0 A1>C3@0)
    StartMarluneTimer32(17,0) next(A1 A1 C3) HoldTicks32(0) | startStopButton=1 playSongButton=2 | run1
key 36: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(16 A1>A1@1 B2>A1@0
    A1>C3@0) song(0 A1>A1@0 A1>B2@0 A1>A1@0) PrepareController32(3,0) song(0 A1>A1@0 A1>B2@0 A1>A1@0) |
    LEDBar(0)=16 knobSprite(0..18) disabled RecButton=1 startStopButton=0 playSongButton=1 ResetButton=2
    DigitPatt(2)=0 DigitPatt(3)=9 DigitPatt(5)=0 timeDisplay="1" knobSprite(3)=0 ResetButton=1 | tick0 run0 rec0
    changed1 knobs 3=0
enter nextButton 0: song(16 A1>A1@1 B2>A1@0 A1>C3@0) PrepareController32(3,10) | LEDBar(0)=17 DigitPatt(2)=9
    DigitPatt(3)=0 DigitPatt(5)=18 timeDisplay="2" knobSprite(3)=4 nextButton=2 nextButton=1 | tick16 changed1
    knobs 3=10
enter FwdStep 0: song(17 A1>A1@2 B2>A1@1 A1>C3@1) PrepareController32(3,0) | steps(18 1 1) microDisplay="[ 2/16]"
    knobSprite(3)=0 FwdStep=2 FwdStep=1 | tick17 changed1 knobs 3=0
enter RwdStep 0: song(16 A1>A1@1 B2>A1@0 A1>C3@0) PrepareController32(3,10) | steps(17 0 0) microDisplay="[
    1/16]" knobSprite(3)=4 RwdStep=2 RwdStep=1 | tick16 changed1 knobs 3=10
enter prevButton 0: song(0 A1>A1@0 A1>B2@0 A1>A1@0) PrepareController32(3,0) | LEDBar(0)=16 DigitPatt(2)=0
    DigitPatt(3)=9 DigitPatt(5)=0 timeDisplay="1" microDisplay="" knobSprite(3)=0 prevButton=2 prevButton=1 |
    tick0 changed1 knobs 3=0
enter ResetButton 0: song(0 A1>A1@0 A1>B2@0 A1>A1@0) song(0 A1>A1@0 A1>B2@0 A1>A1@0) | ResetButton=2
    ResetButton=1
enter stopButton 0: stopButton=2 stopButton=1
)");
}

TEST_F(TransportSession, HeldButtonsRepeatUntilTheirRelease) {
    expectSession(program, R"(
- song
hold nextButton 405: song(16 A1>A1@0 A1>A1@0 A1>A1@0) song(32 A1>A1@0 A1>A1@0 A1>A1@0) song(48 A1>A1@0 A1>A1@0
    A1>A1@0) song(64 A1>A1@0 A1>A1@0 A1>A1@0) | timeDisplay="2" nextButton=2 nextButton=1 nextButton=2
    timeDisplay="3" timeDisplay="4" timeDisplay="5" nextButton=1 | tick64
hold prevButton 405: song(48 A1>A1@0 A1>A1@0 A1>A1@0) song(32 A1>A1@0 A1>A1@0 A1>A1@0) song(16 A1>A1@0 A1>A1@0
    A1>A1@0) song(0 A1>A1@0 A1>A1@0 A1>A1@0) | timeDisplay="4" prevButton=2 prevButton=1 prevButton=2
    timeDisplay="3" timeDisplay="2" timeDisplay="1" prevButton=1 | tick0 changed1
hold FwdStep 405: song(1 A1>A1@1 A1>A1@1 A1>A1@1) song(2 A1>A1@2 A1>A1@2 A1>A1@2) | steps(17 1 1) microDisplay="[
    2/16]" FwdStep=2 FwdStep=1 FwdStep=2 steps(18 2 2) microDisplay="[ 3/16]" FwdStep=1 | tick2
hold RwdStep 405: song(1 A1>A1@1 A1>A1@1 A1>A1@1) song(0 A1>A1@0 A1>A1@0 A1>A1@0) | steps(17 1 1) microDisplay="[
    2/16]" RwdStep=2 RwdStep=1 RwdStep=2 steps(16 0 0) microDisplay="[ 1/16]" RwdStep=1 | tick0
- click startStopButton 0; play 3
hold nextButton 345: StopMarluneTimer32() song(16 A1>A1@0 A1>A1@0 A1>A1@0) song(32 A1>A1@0 A1>A1@0 A1>A1@0)
    song(48 A1>A1@0 A1>A1@0 A1>A1@0) song(64 A1>A1@0 A1>A1@0 A1>A1@0) HoldTicks32(-1) SetMarluneTempo32(140)
    song(64 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 A1 A1) HoldTicks32(0) | steps(16 0 0)
    timeDisplay="2" nextButton=2 nextButton=1 nextButton=2 timeDisplay="3" timeDisplay="4" timeDisplay="5"
    nextButton=1 | tick64
play 1: next(A1 A1 A1) | tick65
hold prevButton 345: StopMarluneTimer32() song(48 A1>A1@0 A1>A1@0 A1>A1@0) song(32 A1>A1@0 A1>A1@0 A1>A1@0)
    song(16 A1>A1@0 A1>A1@0 A1>A1@0) song(0 A1>A1@0 A1>A1@0 A1>A1@0) HoldTicks32(-1) SetMarluneTempo32(140)
    song(0 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 A1 A1) HoldTicks32(0) | timeDisplay="4"
    prevButton=2 prevButton=1 prevButton=2 timeDisplay="3" timeDisplay="2" timeDisplay="1" prevButton=1 | tick0
    changed1
play 1: next(A1 A1 A1) | tick1
hold FwdStep 345: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(1 A1>A1@1
    A1>A1@1 A1>A1@1) song(2 A1>A1@2 A1>A1@2 A1>A1@2) | stopButton=2 steps(17 1 1) microDisplay="[ 2/16]" steps(16
    0 0) startStopButton=0 playSongButton=1 stopButton=1 steps(18 2 2) microDisplay="[ 3/16]" FwdStep=2 FwdStep=1
    FwdStep=2 FwdStep=1 | tick2 run0
)");
}

} // namespace
} // namespace marlune
