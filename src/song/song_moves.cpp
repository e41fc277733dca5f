#include "song/song_moves.h"

#include <algorithm>

#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/song_track.h"
#include "song/recording_end.h"
#include "song/song_place.h"

namespace marlune {

namespace {

void moveSong(int signedCount, bool byBars, bool keepRecord) {
    const int from = songPosition->songTick;
    const int target = byBars ? (barOf(from) + signedCount) * kTicksPerBar : from + signedCount;
    if (!keepRecord) endRecording();
    markMovedByTicks(!byBars);
    placeSong(std::clamp(target, 0, kSongTicks - 1));
    refreshKnobsAtSongTick();
}

} // namespace

void refreshKnobsAtSongTick() {
    for (int knob = 0; knob < kKnobs; ++knob) {
        const int value = knobTrack[knob][songPosition->songTick];
        if (project.knobValue[knob] == value) continue;
        project.knobValue[knob] = value;
        refreshKnob(knob);
    }
}

void rewindSong() {
    endRecording();
    markMovedByTicks(false);
    placeSong(0);
    refreshKnobsAtSongTick();
}

void moveSongForward(int count, bool byBars, bool keepRecord) {
    moveSong(count, byBars, keepRecord);
}

void moveSongBack(int count, bool byBars, bool keepRecord) {
    moveSong(-count, byBars, keepRecord);
}

} // namespace marlune
