// Run-time variables that are never stored in a project file.
//
// Global plain data, read and written on the user-interface thread only. The tables of who writes what stand
// beside each variable; resetRunState puts all of it back to a freshly started program.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "project/project_record.h"
#include "util/stop_watch.h"

namespace marlune {

inline constexpr int kSongBars = 1000;
inline constexpr int kTicksPerBar = 16;
inline constexpr int kSongTicks = kSongBars * kTicksPerBar; // songTick is 0..15999
inline constexpr const char* kUntitled = "untitled.mlp";

extern int drawBudgetMs;                              // ms of a tick for display work: half a step
extern bool transportRunning;                         // written by transport
extern bool songMode;                                 // written by mode_switch; off is pattern mode
extern std::array<std::int16_t, kModules> moduleStep; // step of each module, from the tick messages
extern std::array<int, kModules> stepWork;            // copy of moduleStep while a tick runs
extern int songTick;                                  // song position, 0..15999
extern bool holdSongTick;                             // the next tick leaves songTick where it is
extern bool recordOn;                                 // song recording is armed
extern std::array<bool, kKnobs> knobRecording;        // the knob's movements go into knobTrack
extern std::array<bool, kModules> barRecording;       // the module's choice goes into barTrack bar by bar
extern std::array<std::uint8_t, kKnobs> knobMoved;    // non-zero: moved by MIDI input, not shown yet
extern int windBaseTempo;                             // tempo to which the timer returns after winding
extern int windRate;                                  // 7 while Shift is held, else 0
extern bool savedSongMode;                            // songMode at the last save since the start
extern int editSel;                                   // module under edit, 0..2
extern bool projectDirty;                             // the project has unsaved changes
extern std::string projectFileName;                   // kUntitled for a project without a file
extern std::array<std::string, kKnobs> knobLabel;     // captions of the knobs, kept in labels.cfg
extern bool inTick;                                   // a tick is being processed
extern CStopWatch tickWatch;                          // restarted at each tick, compared with drawBudgetMs
extern bool ctrlDown;                                 // the Control key is held
extern bool programClosing;                           // the window is going: waits end at once
extern bool saveAsRequested;                          // set for the length of File Save As
extern int exportBars;                                // bars the export dialog offers
extern bool importCancelled;                          // the last import was left or refused
extern unsigned recordGeneration;                     // counts loads, new projects and mode switches
extern std::string patternCopyStatus;                 // status text of the last copy in pattern mode
extern std::string songCopyStatus;                    // and in song mode

void resetRunState();

} // namespace marlune
