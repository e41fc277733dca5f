// The master switch between pattern mode and song mode.
//
// User-interface thread. What is done to the record in song mode ends with it: the record is copied aside
// when song mode begins and comes back when it ends; the tempo alone carries over. The transport may run
// meanwhile.
#pragma once

namespace marlune {

void Check1_Click(); // toggles
void Check1_DblClick();

// Puts the mode into the wanted state by running the whole switch, also when it is on already: the two copies
// of the record then change places.
void SongSwitch(bool song);

} // namespace marlune
