// What reaches a control in every way that a pointer and the keyboard have, and what each menu entry does to
// undo.
#include "support/program_test.h"

namespace marlune {
namespace {

using Routes = ProgramTest;

TEST_F(Routes, OfTheOtherButton) {
    setEditSel(2);
    program.shown();
    expectSession(program);
}

TEST_F(Routes, OfAReleaseElsewhere) {
    setEditSel(2);
    program.shown();
    expectSession(program);
}

TEST_F(Routes, OfASecondPress) {
    setEditSel(2);
    program.shown();
    expectSession(program);
}

TEST_F(Routes, OfTheKeyboard) {
    setEditSel(2);
    program.shown();
    expectSession(program);
}

TEST_F(Routes, OfTheOtherButtonInSongMode) {
    setEditSel(2);
    program.shown();
    expectSession(program);
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
    expectSession(session);
    panelFocusLost();
    EXPECT_EQ(songPosition->windRate + 10 * editingState->ctrlDown, 0);
}

} // namespace
} // namespace marlune
