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
    expectSession(program);
}

TEST_F(EditSession, InSongMode) {
    someMusic();
    selPatt(0, 3);
    bankClick(2, 1);
    for (const int knob : {0, 4, 6, 11, 12, 19}) project.knobValue[knob] = 20 + knob;
    for (int bar = 0; bar < 5; ++bar) setBar(1, 16 * bar, bar % 4, bar % 8);
    for (int k = 0; k < kKnobs; ++k)
        for (int t = 0; t < 64; ++t) knobTrack[k][t] = static_cast<std::uint8_t>(k + t / 8 * 10);
    expectSession(program);
}

} // namespace
} // namespace marlune
