// The song played into a MIDI file, one tick at a time and as fast as it goes. The rules of a step are those
// of live playing (project/step_rules.h); what differs stands here: a bass note lasts exactly one step, a
// velocity of 0 writes nothing, and song mode takes the bar's pattern before it moves on.
//
// User-interface thread. Works on the live record: whoever runs it saves the record before and restores it.
#pragma once

#include <array>

#include "boundary/limits.h"
#include "files/midi_file_writer.h"

namespace marlune {

// The tracks of the file that events go to; track 0 holds meta events only.
enum ExportTrack {
    kBassATrack = 1,
    kBassAControlTrack,
    kBassBTrack,
    kBassBControlTrack,
    kDrumTrack,
    kDrumControlTrack
};
inline constexpr int kExportTracks = 7;

// Begins a run at a song tick, with the modules at the steps where they stand: nothing sounds, every track's
// time is that tick. The writer outlives the run.
void beginExportRun(MidiFileWriter& writer, int startTick);

// Plays the tick that comes and moves on by one.
void ExportToMIDProcessTick();

int exportTick();                        // the tick that comes, 0..15999
std::array<int, kModules> exportSteps(); // and the step of each module

// Writes a knob's controller into the track of its module; a knob with controller 0 or none writes nothing.
void midiKnobUpdateMIDExp(int knob);

} // namespace marlune
