#include "transport/timer_control.h"

#include <algorithm>

#include "boundary/engine_component.h"
#include "project/song_track.h"
#include "util/tempo_calc.h"

namespace marlune {

namespace {

constexpr int kPeriodsPerStep = 6;
int interval = 0;

void placeSong() {
    songTick = barLine(songTick);
    SetSongTick32(songTick);
    for (int m = 0; m < kModules; ++m) sendSongBar(m);
    holdSongTick = true;
}

void placePatterns() {
    for (int m = 0; m < kModules; ++m) {
        SetCurrGroup32(m, selectionOf(project, m).currBank);
        SetCurrPatt32(m, selectionOf(project, m).currPatt);
    }
}

} // namespace

void QuenTimer(int stepMs) {
    const bool running = interval > 0;
    interval = stepMs;
    if (stepMs == 0) {
        StopMarluneTimer32();
    } else if (running) {
        SetMarluneTimerInterval32(stepMs / kPeriodsPerStep, 0);
    } else {
        if (songMode) {
            placeSong();
        } else {
            placePatterns();
        }
        StartMarluneTimer32(stepMs / kPeriodsPerStep, 0);
    }
}

void runTimerAt(int tempo) {
    tempo = std::clamp(tempo, kMinTempo, kMaxTempo);
    SetMarluneTempo32(tempo);
    QuenTimer(stepMilliseconds(tempo));
}

void sendSongBar(int module) {
    SetCurrPatt32(module, barPatt(module, songTick));
    SetCurrGroup32(module, barBank(module, songTick));
    SetCurrBarPatt32(module, barPatt(module, songTick));
    SetCurrBarGroup32(module, barBank(module, songTick));
}

int timerInterval() {
    return interval;
}

void resetTimerControl() {
    interval = 0;
}

} // namespace marlune
