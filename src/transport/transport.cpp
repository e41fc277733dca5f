#include "transport/transport.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "midi/midi_input.h"
#include "midi/midi_output.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/global_config.h"
#include "project/song_track.h"
#include "transport/recording.h"
#include "transport/tick.h"
#include "transport/timer_control.h"
#include "transport/waits.h"
#include "util/tempo_calc.h"

namespace marlune {

namespace {

enum class Tell { component, nobody };

// What the module plays is what its bar says, whatever was current or cued before.
void takeBar(int module) {
    const Selection at = selectionOf(project, module);
    at.currBank = at.nextBank = barBank(module, songTick);
    at.currPatt = at.nextPatt = barPatt(module, songTick);
    refreshCurrBankPatt(module);
}

// Steps at rest: 0 in pattern mode, in song mode where each module belongs at the bar line.
void placeSteps(Tell tell) {
    if (songMode) songTick = barLine(songTick);
    for (int m = 0; m < kModules; ++m) {
        if (songMode) takeBar(m);
        const int step = songMode ? moduleStepAtTick(m, songTick, currentLoopEnd(m) + 1) : 0;
        moduleStep[m] = static_cast<std::int16_t>(step);
        if (songMode && tell == Tell::component) SetModuleTick32(m, step);
        refreshStepLamp(m);
    }
}

void releaseBassNotes() {
    for (int m = 0; m < kBassModules; ++m) midiNoteOn(channelOf(m), project.bass[m].lastNote, 0);
}

void endSongRecording() {
    stopSongRecording();
    endRecording();
}

void start() {
    placeSteps(Tell::component);
    for (int knob = 0; knob < kKnobs; ++knob) midiKnobUpdate(knob);
    for (BassModule& bass : project.bass) bass.lastPatch = kNoPatch;
    MidiMsgEnable(false);
    if (transportRunning) return; // another start came with the events let through
    transportRunning = true;
    showFrame(Control::startStopButton, 0, 1);
    refreshPlaySong();
    drawBudgetMs = stepMilliseconds(std::clamp<int>(project.tempo, kMinTempo, kMaxTempo)) / 2;
    beginTicking(project.tempo);
}

// A start that came with the events let through: the stop is over, its remaining steps would undo the start.
bool startedMeanwhile() {
    if (transportRunning) MIDIIn1.setMessageEvents(false);
    return transportRunning;
}

void stopAndTakeCues() {
    transportRunning = false;
    if (songMode && recordOn) endRecording();
    QuenTimer(0);
    releaseBassNotes();
    placeSteps(Tell::nobody);
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(project, m);
        at.currBank = int{at.nextBank};
        at.currPatt = int{at.nextPatt};
        refreshCurrBankPatt(m);
        refreshPattern(m);
    }
    for (int d = 0; d < kDrums; ++d) midiNoteOn(channelOf(kDrumModule), currentDrum().drumNote[d], 0);
    MidiMsgEnable(true);
    if (startedMeanwhile()) return;
    moduleStep = {};
    showFrame(Control::startStopButton, 0, 0);
    refreshPlaySong();
}

} // namespace

void playButton() {
    if (transportRunning) {
        stopAndTakeCues();
    } else {
        start();
    }
}

void StopPlay() {
    if (!transportRunning) return;
    while (inTick && !programClosing) shell().waitForEvents(1);
    QuenTimer(0);
    transportRunning = false;
    releaseBassNotes();
    for (int d = 0; d < kDrums; ++d) midiNoteOn(channelOf(kDrumModule), drumNoteDefaultOf(d), 0);
    MidiMsgEnable(false);
    if (startedMeanwhile()) return;
    for (int m = 0; m < kModules; ++m) {
        const int step = moduleStep[m] - songTick % kTicksPerBar;
        // A step before the bar's first counts back from 15, not from 16.
        moduleStep[m] = static_cast<std::int16_t>(songMode ? 0 : step < 0 ? step + kSteps - 1 : step);
    }
    if (songMode && recordOn) endRecording();
    showFrame(Control::startStopButton, 0, 0);
    refreshPlaySong();
}

void PlayHit_Click() {
    playButton();
}

void startStopButton_Click() {
    if (!songMode) {
        playButton();
        return;
    }
    if (transportRunning) {
        endSongRecording();
        StopPlay();
    } else {
        playButton();
    }
    refreshTransport();
}

void playSongButton_Click() {
    if (!songMode) return;
    playSongButton_DblClick();
    refreshPlaySong();
}

void playSongButton_DblClick() {
    if (songMode && !transportRunning) playButton();
}

void stopButton_Hit() {
    showFrame(Control::stopButton, 0, songFrame() + 1);
    delay();
    if (songMode) endSongRecording();
    StopPlay();
    refreshTransport();
}

void stopButton_MouseDown() {
    if (!songMode) return;
    endSongRecording();
    StopPlay();
    refreshTransport();
    showFrame(Control::stopButton, 0, songFrame() + 1);
}

void stopButton_MouseUp() {
    if (songMode) showFrame(Control::stopButton, 0, songFrame());
}

void recButton_Click() {
    if (!songMode) return;
    if (recordOn) {
        endSongRecording();
    } else {
        stopSongRecording();
        projectDirty = true;
        recordOn = true;
        enableSongKnobs(true);
        if (!transportRunning) MidiMsgEnable(true);
    }
    refreshRec();
}

void RecButton_DblClick() {
    if (!songMode) return;
    recButton_Click();
    refreshRec();
}

} // namespace marlune
