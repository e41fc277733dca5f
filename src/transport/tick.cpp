#include "transport/tick.h"

#include "boundary/engine_component.h"
#include "midi/remote_control.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/recording.h"
#include "project/song_track.h"
#include "song/song_place.h"
#include "transport/timer_control.h"
#include "util/tempo_calc.h"

namespace marlune {

namespace {

// Display work of a tick may take half a step; what doesn't fit is skipped and never made up for.
bool withinBudget() {
    return transportState->tickWatch.Elapsed() < stepMilliseconds(project.tempo) / 2;
}

// A choice that is being recorded goes on into the bar behind the one of `tick`.
void copyChoiceOn(int module, int tick) {
    const RecordingState& recording = recordingState.read();
    if (recording.barRecording[module] && recording.recordOn && transportState->transportRunning)
        setNextBar(module, tick, barBank(module, tick), barPatt(module, tick));
}

// A bar has begun, or is about to: what follows it is told. The message of the bar line itself may have been
// dropped with those of an earlier place.
void followSong() {
    const int tick = songPosition->holdSongTick ? songPosition->songTick : songPosition->playedTick;
    if (isBarLine(tick) || barOf(tick) != songPosition->cuedBar) {
        for (int m = 0; m < kModules; ++m) copyChoiceOn(m, tick);
        for (int m = 0; m < kModules; ++m) cueNextBar(m, tick);
        if (!barsSoundAsWritten()) takeUpSong();
    }
    songKnobTick(recordingState->recordOn);
}

void sendMovedKnobs() {
    for (int knob = 0; knob < kKnobs; ++knob) {
        if (!recordingState->knobMoved[knob]) continue;
        PrepareController32(knob, project.knobValue[knob]);
        if (withinBudget()) refreshKnobGfx(knob);
        forgetKnobMoved(knob);
    }
}

} // namespace

void ProcessTick() {
    transportState.write().inTick = true;
    transportState.write().tickWatch.Reset();
    if (songPosition->songMode) followSong();
    ClockedMIDIMessage();
    for (int m = 0; m < kModules; ++m) {
        if (withinBudget()) refreshStepLamp(m);
    }
    sendMovedKnobs();
    if (songPosition->songMode) refreshSongTime();
    if (project.tempoChanged) {
        runTimerAt(project.tempo);
        project.tempoChanged = false;
    }
    transportState.write().inTick = false;
}

void beginTicking(int tempo) {
    HoldTicks32(-1);
    runTimerAt(tempo);
    ProcessTick();
    HoldTicks32(0);
}

void songKnobTick(bool recording) {
    for (int knob = 0; knob < kKnobs; ++knob) {
        std::uint8_t& track = knobTrack[knob][songPosition->songTick];
        const bool writes = recording && recordingState->knobRecording[knob];
        forgetKnobMoved(knob);
        if (track == project.knobValue[knob] || (writes && !transportState->transportRunning)) continue;
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
