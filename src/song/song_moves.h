// Moving through the song. User-interface thread.
#pragma once

namespace marlune {

// Where the track's value at the song position differs from a knob's, the knob takes it.
void refreshKnobsAtSongTick();

// To tick 0 with the bar and knobs there; recording ends.
void rewindSong();

// Move by count bars (onto a bar line) or ticks, count >= 0; forward stops at tick 15999, back at 0.
// keepRecord false ends recording. Modules take the bar's patterns and the steps that belong there.
void moveSongForward(int count, bool byBars, bool keepRecord);
void moveSongBack(int count, bool byBars, bool keepRecord);

} // namespace marlune
