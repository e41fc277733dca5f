// What a song recording writes: the owner's routines of RecordingState. User-interface thread.
// knob: 0..19; module: 0..2.
#pragma once

namespace marlune {

void armRecording();
void disarmRecording(); // keeps which knobs and bars were being written
void stopSongRecording();

// Writes a knob's value at the song position and marks the knob as recording.
void recordKnobValue(int knob, int value);
void endKnobRecording(int knob);

void recordBars(int module); // from here on each bar line copies the module's choice on

void markKnobMoved(int knob);   // by MIDI input
void forgetKnobMoved(int knob); // it has been taken up

} // namespace marlune
