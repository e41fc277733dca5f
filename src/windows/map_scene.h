// The Song Map as tiles: a pure function of what it shows.
#pragma once

#include <array>
#include <string>

#include "score/map_state.h"
#include "score/map_words.h"
#include "windows/tile.h"

namespace marlune {

// What the window itself adds to the state.
struct MapShow {
    int zoom = 100;    // per cent, as the strip tells it
    MapSpot hover;     // under the pointer; none
    MapSpot held;      // pressed
    int hoverTick = 0; // under the pointer on the time line
    SheetStatus status;
};

Scene mapScene(const MapState& state, const MapDesk& desk, const MapShow& show);

// Widths of the knobs' names on their chips: what the layout needs from the letters.
std::array<double, kKnobs> chipTexts(const std::array<std::string, kKnobs>& names);

} // namespace marlune
