// The two tracks of song mode: which pattern each module plays in each bar, and what value each knob has at
// each tick. A song is 1000 bars of 16 ticks; a tick is one step.
//
// User-interface thread only. tick: 0..15999; module: 0..2; knob: 0..19.
#pragma once

#include <array>
#include <cstdint>

#include "project/run_state.h"

namespace marlune {

struct SongBar {
    std::uint8_t patt = 0; // 0..7
    std::uint8_t bank = 0; // 0..3
    bool operator==(const SongBar&) const = default;
};

extern std::array<std::array<SongBar, kSongBars>, kModules> barTrack;
extern std::array<std::array<std::uint8_t, kSongTicks>, kKnobs> knobTrack; // 0..127

constexpr int barOf(int tick) {
    return tick / kTicksPerBar;
}
constexpr int barLine(int tick) {
    return tick / kTicksPerBar * kTicksPerBar;
}
constexpr bool isBarLine(int tick) {
    return tick % kTicksPerBar == 0;
}

int barPatt(int module, int tick);
int barBank(int module, int tick);
int nextBarPatt(int module, int tick); // of the following bar; bar 0 follows the last one, as in playing
int nextBarBank(int module, int tick);
SongBar songBarAt(int module, int tick);
SongBar nextSongBarAt(int module, int tick);
int nextSongTick(int tick); // wraps from 15999 to 0
void setBar(int module, int tick, int bank, int patt);
void setNextBar(int module, int tick, int bank, int patt); // nothing in bar 999

// Step of a module at a song position: a pattern that stays over several bars runs on through the bar lines.
// length: loopEnd + 1 of the pattern, 1..16.
int moduleStepAtTick(int module, int tick, int length);

void initKnobTrack(const std::array<int, kKnobs>& values);
void fillBarTrack(const std::array<int, kModules>& patts, const std::array<int, kModules>& banks);

void clearSongTracks(); // all zero, as before start-up

} // namespace marlune
