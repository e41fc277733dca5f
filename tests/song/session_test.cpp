// The mode switch and the choices of patterns, as whole sessions.
#include "panel/editing.h"
#include "song/song_reset.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using SongSession = ProgramTest;

// Which entries of the menus are not as their rows begin.
std::string menus() {
    std::string text;
    for (const MenuRow& row : menuRows()) {
        if (row.kind == MenuKind::menu || row.id == Menu::separator) continue;
        if (row.kind == MenuKind::entry && !menuHasCommand(row.id))
            text += std::string("no command: ") + row.name + "\n";
        const MenuState& state = menuState(row.id);
        const std::string own = (state.caption == row.caption ? "" : " " + state.caption) +
                                (state.visible ? "" : " hidden") + (state.enabled ? "" : " off") +
                                (state.checked ? " checked" : "");
        if (!own.empty()) text += std::string(row.name) + own + "\n";
    }
    return text;
}

TEST_F(SongSession, MenusOfEachMode) {
    std::string all = "at first\n" + menus();
    mnuEditCut_Click();
    for (int round = 0; round < 2; ++round) {
        Check1_Click();
        all += "in song mode\n" + menus();
        Check1_Click();
        all += "back\n" + menus();
    }
    expectKept(all);
}

TEST_F(SongSession, SwitchesAndChoices) {
    for (int bar = 1; bar < 12; ++bar) setBar(bar % 3, 16 * bar, bar % 4, bar % 8);
    knobTrack[0][32] = 40;
    knobTrack[19][48] = 50;
    currentBass(0).loopEnd = 4;
    pushPatternToEngine(0, 0, 0);
    for (int m = 0; m < kModules; ++m) selPatt(m, m + 1);
    refreshAll();
    program.calls();
    program.shown();
    expectSession(program);
}

TEST_F(SongSession, ResetFromTheProject) {
    test::Session session(program);
    session.verbs["reset"] = [](int, int, int) { resetSongFromProject(); };
    for (int bar = 1; bar < 4; ++bar) setBar(bar % 3, 16 * bar, bar % 4, bar % 8);
    expectSession(session);
    EXPECT_EQ(songPosition->windBaseTempo, 193);
    EXPECT_FALSE(recordingState->knobRecording[5]);
}

} // namespace
} // namespace marlune
