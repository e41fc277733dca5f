// Single messages to the sequencer port. They leave through the playback component, in one order with
// everything that it plays. User-interface thread. channel: 0..15; bytes are limited to 0..127.
#pragma once

namespace marlune {

void midiNoteOn(int channel, int note, int velocity); // velocity 0 stops a note
void midiProgramChange(int channel, int patch);       // nothing where patch is negative

// Hands channels, velocities, base notes and controller numbers of the configuration to the component.
void pushOutputAssignment();

} // namespace marlune
