// Run-time variables that are never stored in a project file, by what they are about.
//
// User-interface thread only. Each has one room that writes it (the table is in tools/check_layers.py);
// whoever else wants a change calls a routine of that room. resetRunState puts all of it back to a freshly
// started program.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "boundary/clock_source.h"
#include "project/project_record.h"
#include "util/owned.h"
#include "util/stop_watch.h"

namespace marlune {

inline constexpr const char* kUntitled = "untitled.mlp";

// Written by transport/.
struct TransportState {
    bool transportRunning = false;
    bool inTick = false;         // a tick is being processed
    CStopWatch tickWatch;        // restarted at each tick: its display work may take half a step
    bool programClosing = false; // the window is going: waits end at once
};
extern Owned<TransportState> transportState;

// Whose time is played. Written by transport/.
struct ClockState {
    ClockSettings chosen;
    ClockSight sight;    // of a source that is followed, as last looked at
    int sharedTempo = 0; // the project's tempo as the source knows it
    int settling = 0;    // looks for which a tempo of ours may not be theirs yet
};
extern Owned<ClockState> clockState;

// Where the song stands. Written by song/.
struct SongPosition {
    bool songMode = false;    // off is pattern mode
    int songTick = 0;         // the tick that comes: the next step that sounds belongs to it
    int playedTick = 0;       // the tick that sounded last, as the component reported it
    bool holdSongTick = true; // nothing has sounded since the position was placed
    bool byTicks = false;     // the position was last moved by ticks
    std::array<std::int16_t, kModules> moduleStep{}; // step shown of each module: the one that sounded last
    std::array<int, kModules> dueStep{};             // and the one that comes
    int windBaseTempo = 0;                           // tempo to which the timer returns after winding
    int windRate = 0;                                // 7 while Shift is held, else 0
    int ticksTaken = 0;                              // tick messages taken since the timer started
    int cuedBar = -1;                                // the bar whose follower the component knows
    int placing = 0; // number of the last placing; what the component reports from before it is stale
};
extern Owned<SongPosition> songPosition;

// What is written into the song. Written by project/.
struct RecordingState {
    bool recordOn = false;                     // song recording is armed
    std::array<bool, kKnobs> knobRecording{};  // the knob's movements go into knobTrack
    std::array<bool, kModules> barRecording{}; // the module's choice goes into barTrack bar by bar
    std::array<bool, kKnobs> knobMoved{};      // moved by MIDI input, not shown and not told yet
};
extern Owned<RecordingState> recordingState;

// What is silent, and what the component knows of the groove. Written by panel/.
struct SilentParts {
    unsigned muted = 0, solo = 0; // a bit each
};
struct GrooveState {
    SilentParts modules, drums;
    int toldSwing = 50;
    bool toldSlides = false;
};
extern Owned<GrooveState> grooveState;

// What the user works on. Written by panel/.
struct EditingState {
    int editSel = 0;                         // module under edit, 0..2
    bool ctrlDown = false;                   // the Control key is held
    bool projectDirty = false;               // the project has unsaved changes
    std::string projectFileName = kUntitled; // kUntitled for a project without a file
    std::string proposedName;                // for a save under a new name; empty: that of the file
    bool saveAsks = false; // the file of that name was not taken: its first save asks like any other file
    bool savedSongMode = false;    // songMode at the last save since the start
    unsigned recordGeneration = 0; // counts loads, new projects and mode switches
    std::string patternCopyStatus; // status text of the last copy in pattern mode
    std::string songCopyStatus;    // and in song mode
};
extern Owned<EditingState> editingState;

void resetRunState();

} // namespace marlune
