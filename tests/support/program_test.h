// What tests of the whole program stand on: everything below the window, in one include.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <thread>

#include "core/clipboard_state.h"
#include "core/default_project.h"
#include "core/project_file.h"
#include "core/run_state.h"
#include "core/song_track.h"
#include "core/startup.h"
#include "core/step_rules.h"
#include "edit/calculator.h"
#include "edit/clipboard.h"
#include "edit/musical_state.h"
#include "edit/randomizers.h"
#include "edit/song_tools.h"
#include "edit/transforms.h"
#include "edit/undo_history.h"
#include "midi/config_file.h"
#include "midi/global_config.h"
#include "midi/memorizer.h"
#include "midi/midi_devices.h"
#include "midi/midi_input.h"
#include "midi/remote_control.h"
#include "midi/setup_dialogs.h"
#include "panel/knobs.h"
#include "panel/menus.h"
#include "panel/mode_switch.h"
#include "panel/panel_events.h"
#include "panel/refresh.h"
#include "panel/scaling.h"
#include "panel/selection.h"
#include "panel/shown_state.h"
#include "panel/step_editing.h"
#include "playback/navigation.h"
#include "playback/song_moves.h"
#include "playback/timer_control.h"
#include "playback/transport.h"
#include "support/test_program.h"
#include "util/files.h"

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

} // namespace marlune
