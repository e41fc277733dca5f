#include "rebirth/rb40_music.h"

#include <algorithm>

#include "boundary/limits.h"

namespace marlune {

namespace {

constexpr int kNone = Rb40RowUse::kNoRow;
// Rows here: 0 bass drum, 1 snare, 2 clap, 3 closed hat, 4 second closed hat, 5 open hat, 6 loop. The two
// hats of the 909 share one level.
constexpr Rb40RowUse kUses[kRb40DrumUnits][kRb40Rows] = {
    {{kAccentRow, 2, 0, ""},
     {0, 3, 36, ""},
     {1, 6, 38, ""},
     {kNone, 9, 45, "tom"},
     {kNone, 12, 47, "tom"},
     {kNone, 15, 50, "tom"},
     {4, 18, 37, ""},
     {2, 20, 39, ""},
     {kNone, 22, 56, "cow bell"},
     {6, 23, 49, ""},
     {5, 26, 46, ""},
     {3, 28, 42, ""}},
    {{kAccentRow, 2, 0, ""},
     {0, 3, 36, ""},
     {1, 7, 38, ""},
     {kNone, 11, 45, "tom"},
     {kNone, 14, 47, "tom"},
     {kNone, 17, 50, "tom"},
     {4, 20, 37, ""},
     {2, 21, 39, ""},
     {3, 22, 42, ""},
     {5, 22, 46, ""},
     {6, 25, 49, ""},
     {kNone, 27, 51, "ride"}},
};

int hitsOf(const Rb40DrumPattern& pattern, int step) {
    int hits = 0;
    for (int row = kRb40Accent + 1; row < kRb40Rows; ++row) hits += pattern.cells[step][row] != 0 ? 1 : 0;
    return hits;
}

} // namespace

int rb40SongBars(const Rb40Song& song) {
    int last = 0;
    const auto look = [&](const Rb40Track& track) {
        if (!track.empty()) last = std::max(last, track.back().position);
    };
    for (const auto& unit : song.basses) look(unit.track);
    for (const auto& unit : song.drums) look(unit.track);
    look(song.mixer);
    const int bars = last / kRb40PositionsPerBar + (last % kRb40PositionsPerBar != 0 ? 1 : 0);
    return std::max({bars, static_cast<int>(song.loopEndBars), 1});
}

int rb40HitsInSong(const Rb40Song& song, int unit) {
    const auto& drums = song.drums[unit];
    int hits = 0;
    int step = 0;
    int before = kRb40Silent;
    for (const int pattern : rb40Bars(drums, std::min(rb40SongBars(song), kSongBars))) {
        if (pattern != before) step = 0;
        before = pattern;
        for (int i = 0; i < kRb40Steps && pattern != kRb40Silent; ++i) {
            hits += hitsOf(drums.patterns[pattern], step);
            step = (step + 1) % drums.patterns[pattern].length;
        }
    }
    return hits;
}

int rb40HitsInPatterns(const Rb40Song& song, int unit) {
    int hits = 0;
    for (const Rb40DrumPattern& pattern : song.drums[unit].patterns) {
        for (int step = 0; step < pattern.length; ++step) hits += hitsOf(pattern, step);
    }
    return hits;
}

const Rb40RowUse& rb40RowUse(int unit, int row) {
    return kUses[unit][row];
}

} // namespace marlune
