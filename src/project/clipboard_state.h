// What was copied: the pattern clipboard, the song clipboard and the bar of knobs. Never in a project file.
//
// User-interface thread only. Written by edit/.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "project/song_track.h"
#include "util/owned.h"

namespace marlune {

inline constexpr int kKnobColumns = 8; // the drum module has the most knobs

struct PatternClipboard {
    bool copyEmpty = true; // until the first copy
    bool copyIsDrum = false;
    BassPattern copyBass;
    DrumPattern copyDrum;
    std::array<std::uint8_t, kKnobColumns> copyKnobs{};
};

struct SongClipboard {
    bool songCopyReady = false; // Paste is enabled in song mode
    int copyBarCount = 1;       // bars held, 1..1000; also what the copy dialog offers
    std::array<SongBar, kSongBars> copyBars{};
    int copyModule = 0;
    int copyKnobLast = 0; // last tick in copyKnobList; 0 means no knob data
    std::vector<std::array<std::uint8_t, kKnobColumns>> copyKnobList; // a row per tick
};

struct BarKnobClipboard {
    std::array<std::array<std::uint8_t, kTicksPerBar>, kKnobColumns> barKnobCopy{};
    bool barKnobIsBass = false;
};

// Bars of several modules at once; the song clipboard keeps what it has meanwhile.
struct LaneCopy {
    std::vector<SongBar> bars;
    std::vector<std::vector<std::uint8_t>> knobs; // empty without knobs; a row per knob of the module
};
struct LaneClipboard {
    bool latest = false; // nothing has gone to the song clipboard since
    std::array<std::optional<LaneCopy>, kModules> lanes;
};

extern Owned<PatternClipboard> patternClipboard;
extern Owned<SongClipboard> songClipboard;
extern Owned<BarKnobClipboard> barKnobClipboard;
extern Owned<LaneClipboard> laneClipboard;

void forgetSongCopy(); // nothing to paste in song mode; the dialog offers one bar
void resetClipboards();

} // namespace marlune
