// Sizes, limits and names of the instrument, each told once. Numbers used everywhere: module 0 = 103A, 1 =
// 103B, 2 = 109; bank 0..3; pattern 0..7; step 0..15; drum row 0..7 (7 accents the step); knob 0..19; bar
// 0..999.
#pragma once

namespace marlune {

inline constexpr int kModules = 3;
inline constexpr const char* kModuleNames[kModules + 1] = {"103A", "103B", "109",
                                                           ""}; // the last: none of them
inline constexpr int kBassModules = 2;
inline constexpr int kDrumModule = 2;
inline constexpr int kBanks = 4;
inline constexpr int kPatterns = 8;
inline constexpr int kSteps = 16;
inline constexpr int kDrumRows = 8;
inline constexpr int kDrums = 7; // rows that sound
inline constexpr int kAccentRow = 7;
inline constexpr int kKnobs = 20;
inline constexpr int kBassKnobs = 6; // knobs of one bass module
inline constexpr int kFirstDrumKnob = 12;
inline constexpr int kAccentKnobOfDrums = 19;
inline constexpr int kMinTempo = 40;
inline constexpr int kMaxTempo = 240;
inline constexpr int kNoPatch = -1;
inline constexpr int kTopNote = 12; // highest key of the one-octave keyboard
inline constexpr int kDrumHit = 255;
inline constexpr int kTopValue = 127;       // of a knob, a note, a velocity, a controller number
inline constexpr int kFreshDrumLevel = 100; // of every drum knob in a new project

inline constexpr int kSongBars = 1000;
inline constexpr int kTicksPerBar = 16;                     // a tick is a step, a sixteenth
inline constexpr int kSongTicks = kSongBars * kTicksPerBar; // a position is 0..15999

} // namespace marlune
