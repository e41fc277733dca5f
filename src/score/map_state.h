// What the Song Map shows: a plain picture of the song and the run state, taken in one place.
//
// Equal states look the same. User-interface thread only.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "edit/song_bars.h"
#include "score/map_layout.h"
#include "score/record_marks.h"
#include "score/sheet_state.h"

namespace marlune {

// Equal neighbours of a lane.
struct MapRun {
    BarRange bars;
    SongBar plays;
    bool operator==(const MapRun&) const = default;
};

struct MapState {
    bool songMode = false, running = false, armed = false;
    bool canUndo = false, canRedo = false, canPaste = false;
    int edited = 0; // module under edit
    int tick = 0;   // that sounds; at rest the one that comes
    int end = 0;    // first bar after which nothing changes
    std::array<std::vector<MapRun>, kModules> lanes;
    std::array<std::array<SheetSlot, kBanks * kPatterns>, kModules> patterns;
    std::array<SongBar, kModules> current, cued; // what plays, and what comes
    std::array<std::string, kKnobs> knobNames;
    std::array<int, kKnobs> knobValues{};
    std::array<bool, kKnobs> knobMoves{}; // its track is no straight line
    std::array<bool, kModules> barRecording{};
    std::array<bool, kKnobs> knobRecording{};
    RecordMarks marks;

    [[nodiscard]] bool mayEdit() const { return songMode; }
    [[nodiscard]] bool mayCommand() const { return songMode && !armed; } // insert, delete, init, paste
    [[nodiscard]] int bar() const { return tick / 16; }
    [[nodiscard]] const SheetSlot& slot(int module, SongBar bar) const {
        return patterns[module][bar.bank * kPatterns + bar.patt];
    }
    bool operator==(const MapState&) const = default;
};

MapState readMap();

// What the user has set up on the map; the window remembers part of it.
enum class MapPointer { select, paint, erase };

struct MapSelection {
    BarRange bars; // count 0: nothing is selected
    BarLanes lanes;
    [[nodiscard]] bool any() const { return bars.count > 0; }
    friend bool operator==(const MapSelection&, const MapSelection&) = default;
};

struct MapDesk {
    MapView view;
    MapPointer pointer = MapPointer::select;
    bool follow = true;
    MapSelection selection;
    std::array<SongBar, kModules> paint{};
    friend bool operator==(const MapDesk&, const MapDesk&) = default;
};

// While playing, with FOLLOW lit: turns the page when the playhead leaves what is in view.
void followPlayhead(MapDesk& desk, const MapState& state);

} // namespace marlune
