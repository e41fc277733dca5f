// What the program does for each tick, a sixteenth: feeds the song to the component, takes MIDI input in,
// updates the display as far as the time budget allows. Notes never pass through here. User-interface thread.
#pragma once

namespace marlune {

void ProcessTick();

// Starts the timer at a tempo and runs the first tick straight away; the component waits with its first step
// until that tick has prepared what belongs into it.
void beginTicking(int tempo);

// Follows the knob track at songTick; a knob that is being recorded writes the track instead.
void songKnobTick(bool recording);

} // namespace marlune
