#include "project/run_state.h"

namespace marlune {

Owned<TransportState> transportState;
Owned<ClockState> clockState;
Owned<SongPosition> songPosition;
Owned<RecordingState> recordingState;
Owned<GrooveState> grooveState;
Owned<EditingState> editingState;

void resetRunState() {
    const unsigned generation = editingState->recordGeneration;
    transportState.write() = {};
    clockState.write() = {};
    songPosition.write() = {};
    recordingState.write() = {};
    grooveState.write() = {};
    editingState.write() = {};
    editingState.write().recordGeneration = generation + 1;
}

} // namespace marlune
