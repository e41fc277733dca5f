// Writes songs of ReBirth 2 for tests: the chunks told from the writing side, and noise wherever nothing is
// read.
#pragma once

#include "rebirth/rb40_song.h"

namespace marlune::test {

// A song of about so many bars in which everything occurs; `effectEvents` is that of effect tracks written.
Rb40Song randomRb40(unsigned seed, int bars);

// seed: of the noise, the order of the outer chunks and the chunks of other types between them.
std::vector<std::uint8_t> rb40File(const Rb40Song& song, unsigned seed = 1);

} // namespace marlune::test
