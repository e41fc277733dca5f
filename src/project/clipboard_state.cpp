#include "project/clipboard_state.h"

namespace marlune {

Owned<PatternClipboard> patternClipboard;
Owned<SongClipboard> songClipboard;
Owned<BarKnobClipboard> barKnobClipboard;

void forgetSongCopy() {
    songClipboard.write().songCopyReady = false;
    songClipboard.write().copyBarCount = 1;
}

void resetClipboards() {
    patternClipboard.write() = {};
    songClipboard.write() = {};
    barKnobClipboard.write() = {};
}

} // namespace marlune
