#include "support/program_test.h"

namespace marlune {
namespace {

using Navigation = SongModeTest;

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
