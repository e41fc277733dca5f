// Edits of the song track in one go: painting, filling, whole bars inserted, deleted, put back, copied; drawn
// knob curves.
//
// All of them change the tracks, tell the component what of it concerns the bar that plays, and bring the
// knobs to where the track has them now. Callers have asked the guards: song mode, no recording where noted.
// User-interface thread. bar: 0..999, tick: 0..15999.
#pragma once

#include <array>

#include "project/song_track.h"

namespace marlune {

struct BarRange {
    int first = 0;
    int count = 0; // first + count <= 1000
    [[nodiscard]] int end() const { return first + count; }
    [[nodiscard]] bool contains(int bar) const { return bar >= first && bar < end(); }
    friend bool operator==(const BarRange&, const BarRange&) = default;
};

constexpr BarRange barsBetween(int a, int b) { // both included, in either order
    return a < b ? BarRange{a, b - a + 1} : BarRange{b, a - b + 1};
}

// The modules that an edit means, and whether their knobs go along.
struct BarLanes {
    std::array<bool, kModules> modules{};
    bool knobs = false;
    [[nodiscard]] int count() const { return int{modules[0]} + int{modules[1]} + int{modules[2]}; }
    friend bool operator==(const BarLanes&, const BarLanes&) = default;
};

SongBar patternModeBar(int module); // what the module had chosen when song mode began

void fillBars(int module, BarRange bars, SongBar with);
void eraseBars(int module, BarRange bars); // with pattern mode's choice

// Not while recording. What moves past bar 1000 is lost; the routine tells how many bars that had something
// else than pattern mode's choice. The knobs of the new bars hold what they had before.
int insertBars(const BarLanes& lanes, BarRange bars);
void deleteBars(const BarLanes& lanes, BarRange bars); // the end repeats bar 1000
void initBars(const BarLanes& lanes, BarRange bars);   // as "Init Bar from Edit Mode", the position stays

// One lane goes to the song clipboard, for the panel's Paste as well; more lanes to one of their own.
void copyBars(const BarLanes& lanes, BarRange bars);
enum class BarPaste { done, nothing, otherKind };
// A single lane is put into `lane`; several go where they came from.
BarPaste pasteBarsAt(int bar, int lane);
bool barsToPaste();

// A straight line on a knob's track from one tick to another, both included, in either order.
void drawKnob(int knob, int fromTick, int fromValue, int toTick, int toValue);
void eraseKnob(int knob, int fromTick, int toTick); // pattern mode's value

} // namespace marlune
