#include "project/clipboard_state.h"

namespace marlune {

Owned<PatternClipboard> patternClipboard;
Owned<SongClipboard> songClipboard;
Owned<BarKnobClipboard> barKnobClipboard;
Owned<LaneClipboard> laneClipboard;

void forgetSongCopy() {
    laneClipboard.write() = {};
    songClipboard.write().songCopyReady = false;
    songClipboard.write().copyBarCount = 1;
}

void resetClipboards() {
    patternClipboard.write() = {};
    songClipboard.write() = {};
    barKnobClipboard.write() = {};
    laneClipboard.write() = {};
}

} // namespace marlune
