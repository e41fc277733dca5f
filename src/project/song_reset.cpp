#include "project/song_reset.h"

#include "project/clipboard_state.h"
#include "project/song_track.h"

namespace marlune {

void resetSongState() {
    windBaseTempo = project.tempo;
    songMode = false;
    recordOn = false;
    knobRecording = {};
    windRate = 0;
    songTick = 0;
    songClipboard.songCopyReady = false;
    songClipboard.copyBarCount = 1;
}

void resetSongFromProject() {
    resetSongState();
    std::array<int, kKnobs> values{};
    for (int knob = 0; knob < kKnobs; ++knob) values[knob] = project.knobValue[knob];
    initKnobTrack(values);
    std::array<int, kModules> patts{};
    std::array<int, kModules> banks{};
    for (int m = 0; m < kModules; ++m) {
        patts[m] = selectionOf(project, m).currPatt;
        banks[m] = selectionOf(project, m).currBank;
    }
    fillBarTrack(patts, banks);
}

} // namespace marlune
