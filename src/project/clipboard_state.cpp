#include "project/clipboard_state.h"

namespace marlune {

PatternClipboard patternClipboard;
SongClipboard songClipboard;
BarKnobClipboard barKnobClipboard;

void resetClipboards() {
    patternClipboard = {};
    songClipboard = {};
    barKnobClipboard = {};
}

} // namespace marlune
