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
    expectSession(program);
}

TEST_F(PanelSession, EveryControlInSongModeAtRest) {
    knobTrack[7].fill(20);
    expectSession(program);
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
    expectSession(session);
}

TEST_F(PanelSession, WhilePlaying) {
    expectSession(program);
}

} // namespace
} // namespace marlune
