#include "setup/midi_devices.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "boundary/midi_bytes.h"
#include "midi/midi_input.h"
#include "midi/midi_output.h"
#include "panel/editing.h"
#include "panel/form_parts.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "setup/clock_file.h"
#include "setup/config_file.h"
#include "transport/clock_follow.h"
#include "transport/transport.h"
#include "util/text_number.h"

namespace marlune {

MIDISetupForm midiSetupForm;

namespace {

constexpr int kMaxOffset = 4;
constexpr int kSilentChannel = 15;
OutputDevices* outputs = nullptr;

// What stands open, as opposed to what is chosen.
struct Opened {
    bool wanted = false; // the devices are in use: one that is away is opened when it comes
    bool sync = false, sequencer = false;
    bool inputRests = false; // closed for a while on purpose
};
Opened opened;

int outputCount() {
    return outputs != nullptr ? outputs->count() : 0;
}

// A saved index beyond the list becomes the last device; a negative one selects nothing.
void fitToList(Le16& index, ComboBox& list) {
    index = std::min<int>(index, static_cast<int>(list.items.size()) - 1);
    list.selected = index;
}

void fillLists() {
    MIDISetupForm& form = midiSetupForm;
    form.ComboMidiIn.items.clear();
    form.ComboMidiOut.items.clear();
    for (int i = 0; i < MIDIIn1.DeviceCount(); ++i) form.ComboMidiIn.items.push_back(MIDIIn1.ProductName(i));
    for (int i = 0; i < outputCount(); ++i) form.ComboMidiOut.items.push_back(outputs->name(i));
    form.ComboSyncOut.items = form.ComboMidiOut.items;
    fitToList(config.midiOutDevice, form.ComboMidiOut);
    fitToList(config.syncOutDevice, form.ComboSyncOut);
    fitToList(config.midiInDevice, form.ComboMidiIn);
    if (config.midiOutDevice >= 0) MIDIIn1.DeviceID = config.midiInDevice;
}

void blockInput() {
    for (int channel = 0; channel < 16; ++channel) {
        for (const int base : {kNoteOn, kNoteOff, kControlChange, kPolyPressure, kProgramChange, kPitchBend,
                               kSystem, kChannelPressure}) {
            MIDIIn1.BlockStatus(base + channel, true);
        }
    }
    MIDIIn1.BlockStatus(kActiveSensing, false);
    MIDIIn1.BlockStatus(kTimingClock, false);
}

void startInput() {
    for (int m = 0; m < kModules; ++m) MIDIIn1.BlockStatus(kNoteOn + channelOf(m), false);
    MIDIIn1.BlockStatus(kNoteOn + phraseChannelNumber(), false);
    MIDIIn1.BlockStatus(kControlChange + controlChannelNumber(), false);
    MIDIIn1.start();
}

void openInput() {
    if (!MIDIIn1.isOpen() && config.midiInDevice >= 0) {
        MIDIIn1.DeviceID = config.midiInDevice;
        MIDIIn1.open();
    }
    if (MIDIIn1.isOpen()) startInput();
}

} // namespace

void setOutputDevices(OutputDevices* devices) {
    outputs = devices;
}

void takeClockSettings() {
    ClockSettings settings = loadClockSettings();
    if (clockRoom() == nullptr || !clockRoom()->offers(settings.kind)) settings.kind = ClockKind::internal;
    chooseClock(settings);
}

void listMidiDevices() {
    midiSetupForm.load();
    fillLists();
}

bool openMidiDevices(const std::string& next) {
    opened = {.wanted = true,
              .sync = OpenSyncPort32(config.syncOutDevice) != 0,
              .sequencer = OpenMidiPort32(config.midiOutDevice) != 0};
    SetSyncOffset32(config.syncOffset);
    blockInput();
    openInput();
    if (MIDIIn1.isOpen() && opened.sync && opened.sequencer) {
        midiNoteOn(kSilentChannel, 1, 0);
        shell().letPaintRun();
        return true;
    }
    shell().messageBox(
        "Warning: Can't open selected MIDI Device(s) or No MIDI Device(s) Selected.\n"
        "MIDI has been disabled.  Select Midi Devices from Midi Setup." +
            next,
        BoxIcon::exclamation, BoxButtons::ok);
    return false;
}

void openMissingDevices() {
    if (!opened.wanted) return;
    const bool was = opened.sequencer;
    if (!opened.sequencer && config.midiOutDevice >= 0)
        opened.sequencer = OpenMidiPort32(config.midiOutDevice) != 0;
    if (!opened.sync && config.syncOutDevice >= 0) opened.sync = OpenSyncPort32(config.syncOutDevice) != 0;
    if (opened.sequencer && !was)
        for (int knob = 0; knob < kKnobs; ++knob) midiKnobUpdate(knob);
    if (!opened.inputRests && !MIDIIn1.isOpen()) openInput();
}

void restInput() {
    opened.inputRests = true;
    MIDIIn1.close();
}

void wakeInput() {
    if (!opened.inputRests) return;
    opened.inputRests = false;
    openInput();
}

void closeMidiDevices() {
    opened = {};
    CloseMidiPort32();
    CloseSyncPort32();
    MIDIIn1.close();
}

bool MidiInit(const std::string& next) {
    closeMidiDevices();
    const bool allOpen = openMidiDevices(next);
    if (allOpen) {
        closeMidiDevices();
        openMidiDevices();
    }
    sendPanelState();
    StopPlay();
    return allOpen;
}

void sendPanelState() {
    refresh103Patt(0);
    refresh103Patt(1);
    refresh109Patt(project.drum.selDrum);
    for (int knob = 0; knob < kKnobs; ++knob) midiKnobUpdate(knob);
    refreshTempo();
}

void mnuOptionsMidiSetup_Click() {
    releaseCtrl();
    if (outputCount() < 1 || MIDIIn1.DeviceCount() < 1) {
        shell().messageBox(
            "Warning: No MIDI Drivers Installed!\n"
            "Marlune 200q requires at least one MIDI Driver. \n"
            "Please exit Marlune and install a MIDI Driver.",
            BoxIcon::exclamation, BoxButtons::ok);
        return;
    }
    StopPlay();
    midiSetupForm.showModal();
}

MIDISetupForm::MIDISetupForm() {
    caption = "MIDI Setup";
    CmdOk.caption = "OK";
    CmdCancel.caption = "Cancel";
    shareStart.caption = "Link: start and stop with the others";
    followJack.caption = "JACK: follow start, stop and bar";
    leadJack.caption = "JACK: lead, and tell bar, beat and tick";
}

void MIDISetupForm::describe(FormBuilder& builder) {
    builder.beginFrame("MIDI In Device");
    builder.comboBox("", ComboMidiIn);
    builder.endFrame();
    builder.beginFrame("MIDI Out Device");
    builder.comboBox("Sequencer Out (with Sync)", ComboMidiOut);
    builder.comboBox("Sync Only", ComboSyncOut);
    builder.textBox("Playback Delay(+/-4ticks)", syncOffsetCheck, 4);
    builder.endFrame();
    builder.beginFrame("Clock");
    builder.comboBox("Follow", clock);
    builder.textBox("Play later by ms (+/-100)", clockOffset, 4);
    builder.checkBox(shareStart);
    builder.checkBox(followJack);
    builder.checkBox(leadJack);
    builder.endFrame();
    okCancelRow(
        builder, CmdOk, [this] { cmdOK_Click(); }, CmdCancel, [this] { cmdCancel_Click(); });
}

void MIDISetupForm::Form_Activate() {
    syncOffsetCheck.text = std::to_string(int{config.syncOffset});
    fillLists();
    fillClock();
}

void MIDISetupForm::fillClock() {
    const ClockSettings& chosen = clockState->chosen;
    offered.clear();
    clock.items.clear();
    for (int k = 0; k < kClockKinds; ++k) {
        const auto kind = static_cast<ClockKind>(k);
        if (kind != ClockKind::internal && (clockRoom() == nullptr || !clockRoom()->offers(kind))) continue;
        if (kind == chosen.kind) clock.selected = static_cast<int>(offered.size());
        offered.push_back(kind);
        clock.items.emplace_back(clockName(kind));
    }
    clockOffset.text = std::to_string(chosen.offsetMs);
    shareStart.checked = chosen.shareStart;
    followJack.checked = chosen.followJack;
    leadJack.checked = chosen.leadJack;
}

ClockSettings MIDISetupForm::enteredClock() const {
    ClockSettings settings = clockState->chosen;
    if (clock.selected >= 0 && clock.selected < static_cast<int>(offered.size()))
        settings.kind = offered[clock.selected];
    if (isNumeric(clockOffset.text))
        settings.offsetMs =
            std::clamp(leadingInteger(clockOffset.text), -kMostClockOffsetMs, kMostClockOffsetMs);
    settings.shareStart = shareStart.checked;
    settings.followJack = followJack.checked;
    settings.leadJack = leadJack.checked;
    return settings;
}

void MIDISetupForm::cmdOK_Click() {
    saveGlobalConfig(); // as it stood before the dialog; the new choice is saved with the next occasion
    closeMidiDevices();
    config.midiInDevice = ComboMidiIn.selected;
    config.midiOutDevice = ComboMidiOut.selected;
    config.syncOutDevice = ComboSyncOut.selected;
    if (isNumeric(syncOffsetCheck.text)) {
        const double offset = leadingNumber(syncOffsetCheck.text);
        if (offset > kMaxOffset) syncOffsetCheck.text = std::to_string(kMaxOffset);
        if (offset < -kMaxOffset) syncOffsetCheck.text = std::to_string(-kMaxOffset);
        config.syncOffset = leadingInteger(syncOffsetCheck.text);
    }
    SetSyncOffset32(config.syncOffset);
    const ClockSettings settings = enteredClock();
    if (settings != clockState->chosen) saveClockSettings(settings);
    chooseClock(settings);
    hide();
    closeMidiDevices();
    openMidiDevices();
}

void MIDISetupForm::cmdCancel_Click() {
    hide();
}

} // namespace marlune
