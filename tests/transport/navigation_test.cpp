#include "support/program_test.h"

namespace marlune {
namespace {

using SongMoves = SongModeTest;

TEST_F(SongMoves, KnowTheFollowersAndStepsAtTheEdges) {
    setBar(0, 998 * 16, 1, 2);
    setNextBar(0, 998 * 16 + 5, 3, 4);
    setBar(0, 0, 2, 6);
    EXPECT_EQ(nextBarPatt(0, 15999), 6); // as it is played: bar 1 follows bar 1000
    setNextBar(0, 15999, 2, 2);
    EXPECT_EQ(barBank(0, 15999) * 10 + barPatt(0, 0), 36);
    // A pattern that stays runs on through the bar lines.
    for (int bar = 4; bar <= 6; ++bar) setBar(1, 16 * bar, 0, 5);
    EXPECT_EQ(moduleStepAtTick(1, 6 * 16, 12), 8);
    EXPECT_EQ(moduleStepAtTick(1, 7 * 16 + 3, 12), 3);
    EXPECT_EQ(moduleStepAtTick(2, 15999, 16), 15); // one run down to bar 0
    EXPECT_EQ(moduleStepAtTick(2, 15999, 7), 15999 % 7);
}

struct Navigation : SongModeTest {
    // For so many ms, in the time of the test.
    void hold(Control button, int ms) {
        program.shell.after(ms, [button] { panelPointer(button, 0, {.action = PointerAction::release}); });
        panelPointer(button, 0, {.action = PointerAction::press});
    }
};

TEST_F(Navigation, RepeatedStepsDoNotWaitInsideEachOther) {
    int depth = 0, deepest = 0;
    for (int i = 0; i < 50; ++i) {
        program.shell.after(30 * i, [&] {
            deepest = std::max(deepest, ++depth);
            navigation_Click(Winding::stepForward);
            --depth;
        });
    }
    while (TestProgram::now() < 4000) program.shell.waitForEvents(5);
    EXPECT_EQ(songPosition->songTick, 50);
    EXPECT_LE(deepest, 2);
    panelPointer(Control::FwdStep, 0, {.action = PointerAction::release, .inside = false});
    navigation_Click(Winding::stepForward); // no click came with that release: this is another press
    EXPECT_EQ(songPosition->songTick, 51);
}

TEST_F(Navigation, ClosingTheWindowWhileAButtonIsHeldIsSafe) {
    program.shell.after(300, [] { transportState.write().programClosing = true; });
    panelPointer(Control::nextButton, 0, {.action = PointerAction::press});
    EXPECT_TRUE(transportState->programClosing); // it came back without a release
}

} // namespace
} // namespace marlune
