// What the Song Map says: the status bar, and the names of its places for screen readers.
#pragma once

#include <string>

#include "score/map_state.h"
#include "score/sheet_words.h"

namespace marlune {

// hover: the place under the pointer; tick: where it lies in the song; refusal: told instead, empty for none.
SheetStatus mapStatus(const MapState& state, const MapDesk& desk, const MapSpot& hover, int tick,
                      const std::string& refusal);

// column of a lane: its run, counted from the first one in the song.
std::string mapPlaceName(const MapState& state, const MapDesk& desk, const MapSpot& spot);
std::string mapGroupName(const MapState& state, const MapDesk& desk, const MapSpot& group);
bool mapPlaceAwake(const MapState& state, const MapDesk& desk, const MapSpot& spot);

std::string barName(SongBar bar);                               // "A5"
std::string rangeWords(const std::string& verb, BarRange bars); // "bars 57 to 58"

} // namespace marlune
