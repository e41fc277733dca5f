#include "transport/timer_control.h"

#include <algorithm>

#include "boundary/clock_source.h"
#include "boundary/engine_component.h"
#include "project/song_track.h"
#include "song/song_place.h"
#include "util/tempo_calc.h"

namespace marlune {

namespace {

constexpr int kPeriodsPerStep = 6;
int interval = 0;

// A start is at the bar line: in song mode with all that belongs there, in pattern mode with every module at
// its first step.
void placeStart() {
    markMovedByTicks(false);
    placeSong(barLine(songPosition->songTick));
    if (songPosition->songMode) return;
    stepsToZero();
    placePatterns();
}

} // namespace

void QuenTimer(int stepMs) {
    const bool running = interval > 0;
    interval = stepMs;
    if (stepMs == 0) {
        StopMarluneTimer32();
        if (running && clockRoom() != nullptr) clockRoom()->transport(false, songPosition->songTick);
    } else if (running) {
        SetMarluneTimerInterval32(stepMs / kPeriodsPerStep, 0);
    } else {
        placeStart();
        timerStarted();
        if (clockRoom() != nullptr) clockRoom()->transport(true, songPosition->songTick);
        StartMarluneTimer32(stepMs / kPeriodsPerStep, 0);
    }
}

void runTimerAt(int tempo) {
    tempo = std::clamp(tempo, kMinTempo, kMaxTempo);
    SetMarluneTempo32(tempo);
    QuenTimer(stepMilliseconds(tempo));
}

int timerInterval() {
    return interval;
}

void resetTimerControl() {
    interval = 0;
}

} // namespace marlune
