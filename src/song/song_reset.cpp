#include "song/song_reset.h"

#include "project/clipboard_state.h"
#include "project/recording.h"
#include "project/song_track.h"
#include "song/song_place.h"

namespace marlune {

void resetSongState() {
    noteBaseTempo();
    leaveSongMode();
    disarmRecording();
    for (int knob = 0; knob < kKnobs; ++knob) endKnobRecording(knob);
    setWindRate(0);
    placeSong(0);
    forgetSongCopy();
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
