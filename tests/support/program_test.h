// What tests of the whole program stand on: everything below the window, in one include.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <thread>

#include "boundary/menus.h"
#include "commands/panel_events.h"
#include "edit/calculator.h"
#include "edit/clipboard.h"
#include "edit/musical_state.h"
#include "edit/randomizers.h"
#include "edit/song_tools.h"
#include "edit/transforms.h"
#include "edit/undo_history.h"
#include "files/project_file.h"
#include "midi/midi_input.h"
#include "midi/remote_control.h"
#include "panel/editing.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "panel/scaling.h"
#include "panel/shown_state.h"
#include "panel/step_editing.h"
#include "program/default_project.h"
#include "program/open_project.h"
#include "program/startup.h"
#include "project/clipboard_state.h"
#include "project/global_config.h"
#include "project/pattern_push.h"
#include "project/run_state.h"
#include "project/song_track.h"
#include "project/step_rules.h"
#include "setup/config_file.h"
#include "setup/memorizer.h"
#include "setup/midi_devices.h"
#include "setup/setup_dialogs.h"
#include "song/mode_switch.h"
#include "song/selection.h"
#include "song/song_moves.h"
#include "support/kept_text.h"
#include "support/session.h"
#include "support/test_program.h"
#include "transport/navigation.h"
#include "transport/timer_control.h"
#include "transport/transport.h"
#include "util/whole_file.h"

namespace marlune {

using test::readBytes;
using test::TemporaryFolder;
using test::TestProgram;
using test::writeBytes;

// Every test of such a suite begins with a freshly started program and an empty folder.
struct ProgramTest : testing::Test {
    TestProgram program;
    TemporaryFolder folder;
};

// The same in song mode.
struct SongModeTest : ProgramTest {
    SongModeTest() { Check1_Click(); }
};

// The text is what the folder's sessions.txt keeps for the test that runs, or for that part of it.
inline void expectKept(const std::string& found, const std::string& part = "",
                       const char* file = __builtin_FILE(), int at = __builtin_LINE()) {
    const testing::TestInfo& running = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(running.test_suite_name()) + "." + running.name() + part;
    const std::string apart = test::apartFromKept(MARLUNE_KEPT_TEXTS, name, found);
    if (!apart.empty()) ADD_FAILURE_AT(file, at) << apart;
}

// The transcript kept for the test is what doing it brings.
inline void expectSession(test::Session& session, const char* file = __builtin_FILE(),
                          int at = __builtin_LINE()) {
    const testing::TestInfo& running = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(running.test_suite_name()) + "." + running.name();
    expectKept(session.tell(test::keptText(MARLUNE_KEPT_TEXTS, name)), "", file, at);
}
inline void expectSession(TestProgram& program, const char* file = __builtin_FILE(),
                          int at = __builtin_LINE()) {
    test::Session session(program);
    expectSession(session, file, at);
}

// Each section of the folder's sessions.txt that has a name in plain words is a test, "Session.InPlainWords".
class KeptSession final : public ProgramTest {
  public:
    explicit KeptSession(std::string name) : name_(std::move(name)) {}
    void TestBody() override {
        std::filesystem::current_path(folder.path); // so that names of files are short
        const std::string told = test::Session(program).tell(test::keptText(MARLUNE_KEPT_TEXTS, name_));
        const std::string apart = test::apartFromKept(MARLUNE_KEPT_TEXTS, name_, told);
        std::filesystem::current_path("/");
        if (!apart.empty()) ADD_FAILURE() << apart;
    }

  private:
    std::string name_;
};
inline const bool keptSessionsAreTests = [] {
    for (const std::string& name : test::keptSessions(MARLUNE_KEPT_TEXTS)) {
        std::string words;
        for (std::size_t i = 0; i < name.size(); ++i)
            if (std::isalnum(name[i]) != 0)
                words += i == 0 || name[i - 1] == ' ' ? static_cast<char>(std::toupper(name[i])) : name[i];
        testing::RegisterTest("Session", words.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                              [name]() -> ProgramTest* { return new KeptSession(name); });
    }
    return true;
}();

} // namespace marlune
