#include "transport/song_moves.h"

#include <algorithm>
#include <string>

#include "boundary/engine_component.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/song_track.h"
#include "transport/recording.h"

namespace marlune {

namespace {

// Takes the track's values at a tick into the knobs that differ from them.
void knobsFromTrack(int tick) {
    for (int knob = 0; knob < kKnobs; ++knob) {
        if (project.knobValue[knob] == knobTrack[knob][tick]) continue;
        project.knobValue[knob] = knobTrack[knob][tick];
        refreshKnob(knob);
    }
}

void setCurrent(int module, int bank, int patt) {
    const Selection at = selectionOf(project, module);
    at.currBank = bank;
    at.currPatt = patt;
}

void setCurrentAndCue(int module, int bank, int patt) {
    const Selection at = selectionOf(project, module);
    setCurrent(module, bank, patt);
    at.nextBank = bank;
    at.nextPatt = patt;
}

void placeModule(int module) {
    setCurrent(module, barBank(module, songTick), barPatt(module, songTick));
    const int step = moduleStepAtTick(module, songTick, currentLoopEnd(module) + 1);
    moduleStep[module] = static_cast<std::int16_t>(step);
    refreshStepLamp(module);
    refreshLoop(module);
    if (module == kDrumModule) refresh109Patt(project.drum.selDrum);
    SetModuleTick32(module, step);
    refreshCurrBankPatt(module);
    setNextBankPatt(module, nextBarBank(module, songTick), nextBarPatt(module, songTick));
}

void moveSong(int signedCount, bool byBars, bool keepRecord) {
    const int target = byBars ? (barOf(songTick) + signedCount) * kTicksPerBar : songTick + signedCount;
    const int position = std::clamp(target, 0, kSongTicks - 1);
    if (byBars) {
        showText(Control::microDisplay, 0, "");
    } else {
        showText(Control::microDisplay, 0, "[ " + std::to_string(position % kTicksPerBar + 1) + "/16]");
    }
    if (!keepRecord) endRecording();
    songTick = position;
    refreshKnobsAtSongTick();
    for (int m = 0; m < kModules; ++m) placeModule(m);
    DisplaySongTime(barOf(songTick));
    SetSongTick32(songTick);
}

} // namespace

void DisplaySongTime(int bar) {
    showNumber(Control::timeDisplay, 0, bar + 1);
}

void refreshKnobsAtSongTick() {
    knobsFromTrack(songTick);
}

void applySongBar() {
    if (!isBarLine(songTick)) return;
    DisplaySongTime(barOf(songTick));
    for (int m = 0; m < kModules; ++m) {
        const int patt = barPatt(m, songTick);
        const int bank = barBank(m, songTick);
        if (barRecording[m] && recordOn && transportRunning) setNextBar(m, songTick, bank, patt);
        const Selection at = selectionOf(project, m);
        if (at.currBank == bank && at.currPatt == patt) continue;
        setCurrentAndCue(m, bank, patt);
        stepWork[m] = 0;
        refreshCurrBankPatt(m);
        setNextBankPatt(m, nextBarBank(m, songTick), nextBarPatt(m, songTick));
    }
}

void rewindSong() {
    songTick = 0;
    SetSongTick32(0);
    endRecording();
    knobsFromTrack(0);
    for (int m = 0; m < kModules; ++m) setCurrentAndCue(m, barBank(m, 0), barPatt(m, 0));
    DisplaySongTime(0);
}

void moveSongForward(int count, bool byBars, bool keepRecord) {
    moveSong(count, byBars, keepRecord);
}

void moveSongBack(int count, bool byBars, bool keepRecord) {
    moveSong(-count, byBars, keepRecord);
}

} // namespace marlune
