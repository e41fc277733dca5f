// What the scenes of several windows are put together from.
#pragma once

#include "windows/tile.h"

namespace marlune {

// A glass with dots: text, number: places, second: pitch. Each lit place is a tile of its own, so that
// figures that run are copied, not drawn.
void addDigits(Scene& scene, const Box& box, const TileLook& look);

// How many letters the left of a status bar leaves to those at its right: steady while figures run there.
std::int16_t lettersKept(const std::string& right);

} // namespace marlune
