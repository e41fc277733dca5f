#include "transport/transport.h"

#include <array>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "midi/midi_input.h"
#include "midi/midi_output.h"
#include "panel/editing.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "panel/silent_accents.h"
#include "project/global_config.h"
#include "project/recording.h"
#include "project/song_track.h"
#include "song/recording_end.h"
#include "song/song_place.h"
#include "transport/navigation.h"
#include "transport/tick.h"
#include "transport/timer_control.h"
#include "transport/waits.h"

namespace marlune {

namespace {

void showSteps() {
    for (int m = 0; m < kModules; ++m) refreshStepLamp(m);
}

void showStepsAtZero() {
    stepsToZero();
    showSteps();
}

void releaseBassNotes() {
    for (int m = 0; m < kBassModules; ++m) midiNoteOn(channelOf(m), project.bass[m].lastNote, 0);
}

void endSongRecording() {
    stopSongRecording();
    endRecording();
}

void start() {
    if (!songPosition->songMode) showStepsAtZero();
    for (int knob = 0; knob < kKnobs; ++knob) midiKnobUpdate(knob);
    for (BassModule& bass : project.bass) bass.lastPatch = kNoPatch;
    MidiMsgEnable(false);
    if (transportState->transportRunning) return; // another start came with the events let through
    transportState.write().transportRunning = true;
    showFrame(Control::startStopButton, 0, 1);
    refreshPlaySong();
    beginTicking(project.tempo);
}

// A start that came with the events let through: the stop is over, its remaining steps would undo the start.
bool startedMeanwhile() {
    if (transportState->transportRunning) MIDIIn1.setMessageEvents(false);
    return transportState->transportRunning;
}

void takeCues() {
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(project, m);
        at.currBank = int{at.nextBank};
        at.currPatt = int{at.nextPatt};
        refreshCurrBankPatt(m);
    }
}

void stopAndTakeCues() {
    transportState.write().transportRunning = false;
    if (songPosition->songMode && recordingState->recordOn) endRecording();
    QuenTimer(0);
    releaseBassNotes();
    if (songPosition->songMode) {
        placeSong(barLine(songPosition->songTick));
    } else {
        showStepsAtZero();
        takeCues();
    }
    for (int d = 0; d < kDrums; ++d) midiNoteOn(channelOf(kDrumModule), currentDrum().drumNote[d], 0);
    MidiMsgEnable(true);
    if (startedMeanwhile()) return;
    showStepsAtZero();
    showFrame(Control::startStopButton, 0, 0);
    refreshPlaySong();
}

// Where a stop in place leaves the modules.
std::array<int, kModules> stepsAfterStop() {
    std::array<int, kModules> steps{};
    for (int m = 0; !songPosition->songMode && m < kModules; ++m) {
        const int step = songPosition->moduleStep[m] - songPosition->playedTick % kTicksPerBar;
        // A step before the bar's first counts back from 15, not from 16.
        steps[m] = step < 0 ? step + kSteps - 1 : step;
    }
    return steps;
}

} // namespace

void playButton() {
    if (transportState->transportRunning) {
        stopAndTakeCues();
    } else {
        start();
        tellSilentAccents();
    }
}

void StopPlay() {
    if (!transportState->transportRunning) return;
    while (transportState->inTick && !transportState->programClosing) shell().waitForEvents(1);
    QuenTimer(0);
    transportState.write().transportRunning = false;
    releaseBassNotes();
    for (int d = 0; d < kDrums; ++d) midiNoteOn(channelOf(kDrumModule), drumNoteDefaultOf(d), 0);
    MidiMsgEnable(true);
    if (startedMeanwhile()) return;
    const std::array<int, kModules> steps = stepsAfterStop();
    if (songPosition->songMode) placeSong(songPosition->songTick);
    restSteps(steps);
    if (songPosition->songMode) showSteps();
    if (songPosition->songMode && recordingState->recordOn) endRecording();
    showFrame(Control::startStopButton, 0, 0);
    refreshPlaySong();
}

void PlayHit_Click() {
    playButton();
}

void startStopButton_Click() {
    endWinding();
    if (!songPosition->songMode) {
        playButton();
        return;
    }
    if (transportState->transportRunning) {
        endSongRecording();
        StopPlay();
    } else {
        playButton();
    }
    refreshTransport();
}

void playSongButton_Click() {
    if (!songPosition->songMode) return;
    playSongButton_DblClick();
    refreshPlaySong();
}

void playSongButton_DblClick() {
    if (songPosition->songMode && !transportState->transportRunning) playButton();
}

void stopButton_Hit() {
    showFrame(Control::stopButton, 0, songFrame() + 1);
    delay();
    if (songPosition->songMode) endSongRecording();
    StopPlay();
    refreshTransport();
}

void stopButton_MouseDown() {
    if (!songPosition->songMode) return;
    endSongRecording();
    StopPlay();
    refreshTransport();
    showFrame(Control::stopButton, 0, songFrame() + 1);
}

void stopButton_MouseUp() {
    if (songPosition->songMode) showFrame(Control::stopButton, 0, songFrame());
}

void recButton_Click() {
    if (!songPosition->songMode) return;
    if (recordingState->recordOn) {
        endSongRecording();
    } else {
        stopSongRecording();
        markProject();
        armRecording();
        enableSongKnobs(true);
        if (!transportState->transportRunning) MidiMsgEnable(true);
    }
    refreshRec();
}

void RecButton_DblClick() {
    if (!songPosition->songMode) return;
    recButton_Click();
    refreshRec();
}

} // namespace marlune
