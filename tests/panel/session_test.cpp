// What each control does, as whole sessions: told, shown, and left in the record.
#include "support/program_test.h"

namespace marlune {
namespace {

using PanelSession = ProgramTest;

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

} // namespace
} // namespace marlune
