// A song of ReBirth 2 as a draft of the project: first bassline to 103A, second to 103B, one of the drum
// units or both to 109. User-interface thread; writes nothing but the draft.
#pragma once

#include "import/music_draft.h"
#include "rebirth/rb40_song.h"

namespace marlune {

enum class Rb40Drums {
    of808,
    of909,
    both, // hits of both in the same rows, as far as the lengths of the patterns fit
};

// The unit with more hits, in the song or in the patterns.
Rb40Drums rb40DefaultDrums(const Rb40Song& song, bool patternsOnly);

// Fills patterns, tempo, start values of the knobs, title and report; bars and knob movements as well unless
// patternsOnly. Bars behind the last one play on; those behind bar 1000 are left out. A bar in which a unit
// is off plays an empty pattern: one that is empty anyway, or the last that the song doesn't play.
void draftRb40(const Rb40Song& song, Rb40Drums drums, bool patternsOnly, MusicDraft& draft);

} // namespace marlune
