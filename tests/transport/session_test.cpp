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
    expectSession(program);
}

TEST_F(TransportSession, InSongMode) {
    someSong();
    expectSession(program);
}

TEST_F(TransportSession, HeldButtonsRepeatUntilTheirRelease) {
    expectSession(program);
}

} // namespace
} // namespace marlune
