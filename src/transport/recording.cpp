#include "transport/recording.h"

#include "panel/refresh.h"
#include "project/run_state.h"

namespace marlune {

void endRecording() {
    recordOn = false;
    if (!songMode) return;
    enableSongKnobs(false);
    refreshRec();
}

} // namespace marlune
