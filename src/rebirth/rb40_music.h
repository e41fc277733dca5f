// What a song of ReBirth 2 plays, as the import and the converter need it. Any thread; pure.
#pragma once

#include <vector>

#include "rebirth/rb40_song.h"

namespace marlune {

inline constexpr int kRb40Silent = -1; // no pattern: the unit is off, or none is chosen

// Bars up to the last event or the end of the loop, at least 1.
int rb40SongBars(const Rb40Song& song);

// The pattern that a unit plays in each bar, or kRb40Silent. What changes inside a bar counts for all of it.
template <typename Pattern>
std::vector<int> rb40Bars(const Rb40Unit<Pattern>& unit, int bars) {
    std::vector<int> result(bars);
    bool on = unit.start[kRb40Enabled] != 0;
    int pattern = unit.start[kRb40Pattern];
    std::size_t next = 0;
    for (int bar = 0; bar < bars; ++bar) {
        for (; next < unit.track.size() && unit.track[next].position / kRb40PositionsPerBar <= bar; ++next) {
            const Rb40Event& event = unit.track[next];
            if (event.controller == kRb40Enabled) on = event.value != 0;
            if (event.controller == kRb40Pattern) pattern = event.value;
        }
        result[bar] = on && pattern < kRb40Patterns ? pattern : kRb40Silent;
    }
    return result;
}

// Hits of a drum unit: all that sound in the song, or all that its patterns hold.
int rb40HitsInSong(const Rb40Song& song, int unit);
int rb40HitsInPatterns(const Rb40Song& song, int unit);

// What becomes of a row of a drum unit.
struct Rb40RowUse {
    int row = kNoRow;      // of a drum pattern here
    int levelSetting = 0;  // of its level, 0 for none
    int note = 0;          // General MIDI
    const char* name = ""; // where it has no row here
    static constexpr int kNoRow = -1;
};
const Rb40RowUse& rb40RowUse(int unit, int row);

} // namespace marlune
