#include "song/recording_end.h"

#include "panel/refresh.h"
#include "project/recording.h"
#include "project/run_state.h"

namespace marlune {

void endRecording() {
    disarmRecording();
    if (!songPosition->songMode) return;
    enableSongKnobs(false);
    refreshRec();
}

} // namespace marlune
