#include "project/recording.h"

#include "project/song_track.h"

namespace marlune {

void armRecording() {
    recordingState.write().recordOn = true;
}

void disarmRecording() {
    recordingState.write().recordOn = false;
}

void stopSongRecording() {
    recordingState.write().recordOn = false;
    recordingState.write().knobRecording = {};
    recordingState.write().barRecording = {};
}

void recordKnobValue(int knob, int value) {
    knobTrack[knob][songPosition->songTick] = static_cast<std::uint8_t>(value);
    recordingState.write().knobRecording[knob] = true;
}

void endKnobRecording(int knob) {
    recordingState.write().knobRecording[knob] = false;
}

void recordBars(int module) {
    recordingState.write().barRecording[module] = true;
}

void markKnobMoved(int knob) {
    recordingState.write().knobMoved[knob] = true;
}

void forgetKnobMoved(int knob) {
    recordingState.write().knobMoved[knob] = false;
}

} // namespace marlune
