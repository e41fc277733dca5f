// Puts the song back to a beginning. User-interface thread.
#pragma once

namespace marlune {

// Position 0, pattern mode, no recording, no song clipboard; the present tempo becomes that of winding.
void resetSongState();

// As resetSongState, and the tracks hold what the record says: its current patterns in every bar, its knob
// values at every tick.
void resetSongFromProject();

} // namespace marlune
