// The patterns as they stood at the last save or load: what the dots on changed slots are told from.
//
// User-interface thread only.
#pragma once

namespace marlune {

// To be called whenever the program comes to rest: while nothing is unsaved, what is there counts as saved.
void noteSavedPatterns();

bool patternChanged(int module, int bank, int pattern); // since then

} // namespace marlune
