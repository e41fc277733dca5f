#include "transport/tick.h"

#include "boundary/engine_component.h"
#include "boundary/midi_bytes.h"
#include "midi/midi_input.h"
#include "midi/remote_control.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/song_track.h"
#include "transport/timer_control.h"
#include "util/tempo_calc.h"

namespace marlune {

namespace {

// Display work of a tick may take half a step; what doesn't fit is skipped and never made up for.
bool withinBudget() {
    return tickWatch.Elapsed() < drawBudgetMs;
}

void cueNextBar(int module) {
    const bool copyOn = barRecording[module] && recordOn && transportRunning;
    const int bank = copyOn ? barBank(module, songTick) : nextBarBank(module, songTick);
    const int patt = copyOn ? barPatt(module, songTick) : nextBarPatt(module, songTick);
    if (copyOn) setNextBar(module, songTick, bank, patt);
    SetNextBarPatt32(module, patt);
    SetNextBarGroup32(module, bank);
    setNextBankPatt(module, bank, patt);
}

void followSong() {
    if (isBarLine(songTick)) {
        for (int m = 0; m < kModules; ++m) cueNextBar(m);
    }
    if (holdSongTick) {
        holdSongTick = false;
    } else {
        advanceSongTick();
    }
    songKnobTick(recordOn);
}

void pollMidiInput() {
    MIDIIn1.BlockStatus(kControlChange, true);
    ClockedMIDIMessage();
    if (recordOn || !songMode) MIDIIn1.BlockStatus(kControlChange, false);
}

void sendMovedKnobs() {
    for (int knob = 0; knob < kKnobs; ++knob) {
        if (knobMoved[knob] == 0) continue;
        PrepareController32(knob, project.knobValue[knob]);
        if (withinBudget()) refreshKnobGfx(knob);
        knobMoved[knob] = 0;
    }
}

} // namespace

void ProcessTick() {
    inTick = true;
    tickWatch.Reset();
    for (int m = 0; m < kModules; ++m) stepWork[m] = moduleStep[m];
    if (songMode) followSong();
    pollMidiInput();
    for (int m = 0; m < kModules; ++m) {
        if (withinBudget()) refreshStepLamp(m);
    }
    for (int m = 0; m < kModules; ++m) moduleStep[m] = static_cast<std::int16_t>(stepWork[m]);
    sendMovedKnobs();
    if (songMode && songTick % kTicksPerBar == kTicksPerBar - 1) {
        showNumber(Control::timeDisplay, 0, (songTick + 1) / kTicksPerBar + 1);
    }
    if (project.tempoChanged) {
        runTimerAt(project.tempo);
        project.tempoChanged = false;
        drawBudgetMs = stepMilliseconds(project.tempo) / 2;
    }
    inTick = false;
}

void beginTicking(int tempo) {
    HoldTicks32(-1);
    runTimerAt(tempo);
    ProcessTick();
    HoldTicks32(0);
}

void songKnobTick(bool recording) {
    for (int knob = 0; knob < kKnobs; ++knob) {
        std::uint8_t& track = knobTrack[knob][songTick];
        const bool writes = recording && knobRecording[knob];
        knobMoved[knob] = 0;
        if (track == project.knobValue[knob] || (writes && !transportRunning)) continue;
        if (writes) {
            track = static_cast<std::uint8_t>(int{project.knobValue[knob]});
        } else {
            project.knobValue[knob] = track;
        }
        PrepareController32(knob, project.knobValue[knob]);
        if (withinBudget()) refreshKnobGfx(knob);
    }
}

} // namespace marlune
