#include "midi/remote_control.h"

#include <string>

#include "boundary/app_shell.h"
#include "boundary/midi_bytes.h"
#include "midi/midi_input.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "panel/step_editing.h"
#include "project/global_config.h"
#include "project/recording.h"
#include "project/song_track.h"
#include "song/selection.h"

namespace marlune {

namespace {

constexpr int kKeys = 13;
constexpr int kDownKey = -1; // offsets from selectBase
constexpr int kUpKey = 13;
constexpr int kAccentKey = 14;

PhraseLearner* phraseLearner = nullptr;

bool within(int value, int count) {
    return value >= 0 && value < count;
}

void bassNote(int module, int note) {
    const int step = note - config.stepBase;
    const int key = note - config.selectBase;
    if (within(step, kSteps)) {
        step103Click(module, step);
    } else if (within(key, kKeys)) {
        set103Note(module, key);
    } else if (key == kAccentKey) {
        accentClick(module);
    } else if (key == kDownKey) {
        downClick(module);
    } else if (key == kUpKey) {
        upClick(module);
    }
}

void drumNote(int note) {
    const int step = note - config.stepBase;
    const int drum = note - config.selectBase;
    if (within(step, kSteps)) {
        step109click(step);
    } else if (within(drum, kDrumRows)) {
        sel109Drum(drum);
    }
}

bool isController(int status) {
    return status == kControlChange + controlChannelNumber();
}
bool isNote(int status) {
    return statusKind(status) == kNoteOn;
}

// Song playback and a stopped song that isn't recorded take nothing from the controllers.
bool takesInput() {
    return recordingState->recordOn || !songPosition->songMode;
}

void moveKnob(int knob, int value) {
    if (!takesInput()) return;
    project.knobValue[knob] = value;
    markKnobMoved(knob);
    if (songPosition->songMode && recordingState->recordOn) recordKnobValue(knob, value);
}

template <typename Handler>
void readQueueEmpty(Handler handle) {
    while (MIDIIn1.MessageCount() > 0) {
        const MidiMessage message = MIDIIn1.oldest();
        MIDIIn1.removeOldest();
        handle(message.bytes[0], message.bytes[1], message.bytes[2]);
    }
    const int dropped = MIDIIn1.takeDropped();
    if (dropped > 0) {
        shell().showPassing("MIDI input is flooded: " + std::to_string(dropped) + " messages were dropped.");
    }
}

} // namespace

void MIDIIn1_Message() {
    readQueueEmpty([](int status, int data1, int data2) {
        if (isController(status) && knobOfController(data1) >= 0) {
            moveKnob(knobOfController(data1), data2);
        } else if (isNote(status)) {
            handleRemoteNote(channelOfStatus(status), data1, data2);
            remoteNoteSnapShot(data1, channelOfStatus(status));
        }
    });
    for (int knob = 0; knob < kKnobs; ++knob) {
        if (!recordingState->knobMoved[knob]) continue;
        refreshKnob(knob);
        forgetKnobMoved(knob);
    }
}

void ClockedMIDIMessage() {
    readQueueEmpty([](int status, int data1, int data2) {
        const int channel = channelOfStatus(status);
        const bool ofModule = channel == channelOf(0) || channel == channelOf(1) || channel == channelOf(2);
        if (isNote(status) && ofModule) {
            if (!takesInput()) return;
            remoteNoteSnapShot(data1, channel);
            handleRemoteNote(channel, data1, data2);
        } else if (isController(status) && knobOfController(data1) >= 0) {
            moveKnob(knobOfController(data1), data2);
        }
    });
}

void handleRemoteNote(int channel, int note, int velocity) {
    if (velocity <= 0) return;
    if (channel == channelOf(kDrumModule)) {
        drumNote(note);
    } else if (channel == channelOf(0)) {
        bassNote(0, note);
    } else if (channel == channelOf(1)) {
        bassNote(1, note);
    }
}

void remoteNoteSnapShot(int note, int channel) {
    if (channel != phraseChannelNumber()) return;
    if (project.learnMode && phraseLearner != nullptr) {
        phraseLearner->setMidiMessage(note, channel);
        return;
    }
    const NoteMapEntry& entry = project.noteMap[note];
    if (!entry.mapUsed) return;
    for (int m = 0; m < kModules; ++m) {
        if (entry.mapPatt[m] < 0) continue;
        if (entry.mapBank[m] >= 0) bankClick(m, entry.mapBank[m]);
        selPatt(m, entry.mapPatt[m]);
        if (recordingState->recordOn) recordBars(m);
    }
}

void setPhraseLearner(PhraseLearner* learner) {
    phraseLearner = learner;
}

} // namespace marlune
