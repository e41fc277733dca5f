#include "setup/setup_dialogs.h"

#include <algorithm>
#include <string>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "boundary/midi_bytes.h"
#include "midi/midi_input.h"
#include "panel/editing.h"
#include "panel/form_parts.h"
#include "panel/shown_state.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "setup/config_file.h"
#include "util/text_number.h"

namespace marlune {

marluneOptionsMidiOutput midiOutputForm;
marluneOptionsMidiInput midiInputForm;
Customize customizeForm;

namespace {

constexpr const char* kBassLabels[] = {"Cutoff", "Res", "Env Amp", "Decay", "Ctrl 1", "Accent"};
constexpr const char* kDrumLabels[] = {"Bass ", "Snare", "Clap",   "CHat1",
                                       "CHat2", "OHat",  "Drum 1", "Accent"};
constexpr const char* kBassNames[] = {"103A Bassline", "103B Bassline"};

struct FieldLimits {
    int lowest, highest;
};
constexpr FieldLimits kChannel{1, 16};
constexpr FieldLimits kVelocity{0, 127};
constexpr FieldLimits kBaseNote{0, 91};
constexpr FieldLimits kDrumNote{0, 127};
constexpr FieldLimits kOutputController{-1, 127};
constexpr FieldLimits kInputController{0, 127};
constexpr FieldLimits kSelectBase{1, 115};
constexpr FieldLimits kStepBase{0, 111};

// The number of a box, limited; a text without one counts as 0. The box shows what was taken.
int limitedEntry(TextBox& box, const FieldLimits& limits) {
    const int entered = leadingInteger(box.text);
    const int value = std::clamp(entered, limits.lowest, limits.highest);
    if (value != entered || !isNumeric(box.text)) box.text = std::to_string(value);
    return value;
}

void enter(TextBox& box, int number) {
    box.text = std::to_string(number);
}

// A row of text boxes for consecutive knobs.
void knobRow(FormBuilder& builder, TextBox* boxes, int first, const char* const* labels, int count,
             const std::function<FormEvent(int)>& gotFocus = {}) {
    builder.beginRow();
    for (int k = 0; k < count; ++k) {
        builder.textBox(labels[k], boxes[first + k], 4, gotFocus ? gotFocus(first + k) : FormEvent{});
    }
    builder.endRow();
}

const Label kLevelLabel{"Level"};

} // namespace

// ---- Midi Output (Sequencer)

void mnuOptionsMidiControl_Click() {
    releaseCtrl();
    midiOutputForm.showModal();
}

marluneOptionsMidiOutput::marluneOptionsMidiOutput() {
    caption = "Midi Output (Sequencer)";
    cmdOK.caption = "OK";
    CmdCancel.caption = "Cancel";
}

void marluneOptionsMidiOutput::describe(FormBuilder& builder) {
    for (int m = 0; m < kBassModules; ++m) {
        builder.beginFrame(kBassNames[m]);
        knobRow(builder, newMapping, kBassKnobs * m, kBassLabels, kBassKnobs);
        builder.beginRow();
        builder.textBox("Midi Channel", chan[m], 4);
        builder.textBox("Velocity", vel[m], 4);
        builder.textBox("Base Note", offset[m], 4);
        builder.endRow();
        builder.endFrame();
    }
    builder.beginFrame("109 Dummer");
    builder.label(kLevelLabel);
    knobRow(builder, newMapping, kFirstDrumKnob, kDrumLabels, kDrumRows);
    builder.textBox("Midi Channel", chan[kDrumModule], 4);
    builder.endFrame();
    builder.beginFrame("Drum Note Defaults");
    builder.beginRow();
    for (TextBox& box : noteNum) builder.textBox("Note#", box, 4);
    builder.endRow();
    builder.endFrame();
    okCancelRow(
        builder, cmdOK, [this] { cmdOK_Click(); }, CmdCancel, [this] { cmdCancel_Click(); });
}

void marluneOptionsMidiOutput::Form_Load() {
    for (int k = 0; k < kKnobs; ++k) enter(newMapping[k], config.outputController[k]);
    for (int d = 0; d < kDrums; ++d) enter(noteNum[d], config.drumNoteDefault[d]);
    for (int m = 0; m < kModules; ++m) enter(chan[m], config.moduleChannel[m] + 1);
    for (int m = 0; m < kBassModules; ++m) enter(offset[m], config.moduleBaseNote[m]);
    for (int m = 0; m < kBassModules; ++m) enter(vel[m], config.moduleVelocity[m]);
}

void marluneOptionsMidiOutput::cmdOK_Click() {
    for (int k = 0; k < kKnobs; ++k) {
        if (!isNumeric(newMapping[k].text)) enter(newMapping[k], config.outputController[k]);
        config.outputController[k] = limitedEntry(newMapping[k], kOutputController);
        DefineController32(k, config.outputController[k]);
    }
    for (int d = 0; d < kDrums; ++d) config.drumNoteDefault[d] = limitedEntry(noteNum[d], kDrumNote);
    for (int m = 0; m < kModules; ++m) config.moduleChannel[m] = limitedEntry(chan[m], kChannel) - 1;
    for (int m = 0; m < kBassModules; ++m) Set103Chan32(m, config.moduleChannel[m]);
    Set109Chan32(kDrumModule, config.moduleChannel[kDrumModule]);
    int velocity[kBassModules];
    for (int m = 0; m < kBassModules; ++m) velocity[m] = limitedEntry(vel[m], kVelocity);
    for (int m = 0; m < kBassModules; ++m) config.moduleBaseNote[m] = limitedEntry(offset[m], kBaseNote);
    for (int m = 0; m < kBassModules; ++m) Set103NoteOffset32(m, config.moduleBaseNote[m]);
    for (int m = 0; m < kBassModules; ++m) config.moduleVelocity[m] = velocity[m];
    for (int m = 0; m < kBassModules; ++m) Set103Vel32(m, config.moduleVelocity[m]);
    unload();
    saveGlobalConfig();
}

// ---- Midi Input (Control)

void mnuOptionsMidiInput_Click() {
    releaseCtrl();
    midiInputForm.showModal();
}

marluneOptionsMidiInput::marluneOptionsMidiInput() {
    caption = "Midi Input (Control)";
    cmdOK.caption = "OK";
    CmdCancel.caption = "Cancel";
}

void marluneOptionsMidiInput::describe(FormBuilder& builder) {
    const auto learn = [this](int knob) -> FormEvent {
        return [this, knob] {
            learning = knob;
            MIDIIn1.takeLearnt(); // what moved before doesn't count
        };
    };
    const FormEvent learnNothing = [this] { learning = -1; };
    for (int m = 0; m < kBassModules; ++m) {
        builder.beginFrame(std::string(kBassNames[m]) + " Continuous Control");
        knobRow(builder, newMapping, kBassKnobs * m, kBassLabels, kBassKnobs, learn);
        builder.endFrame();
    }
    builder.beginFrame("109 Dummer Continuous Control");
    builder.label(kLevelLabel);
    knobRow(builder, newMapping, kFirstDrumKnob, kDrumLabels, kDrumRows, learn);
    builder.endFrame();
    builder.beginRow();
    builder.beginFrame("Control Global");
    builder.textBox("Midi Channel", chan, 4, learnNothing);
    builder.endFrame();
    builder.beginFrame("MIDI Pattern Edit");
    builder.textBox("Select Base", pOff[0], 4, learnNothing);
    builder.textBox("Step Base", pOff[1], 4, learnNothing);
    builder.endFrame();
    builder.beginFrame("Phrase Channel");
    builder.textBox("Midi Channel", pTriggChan, 4, learnNothing);
    builder.endFrame();
    builder.endRow();
    okCancelRow(
        builder, cmdOK, [this] { cmdOK_Click(); }, CmdCancel, [this] { cmdCancel_Click(); });
}

void marluneOptionsMidiInput::Form_Load() {
    learning = -1;
    for (TextBox& box : newMapping) box.text.clear();
    for (int c = 0; c < 128; ++c) {
        if (knobOfController(c) >= 0) enter(newMapping[knobOfController(c)], c);
    }
    enter(chan, config.controlChannel + 1);
    enter(pOff[0], config.selectBase);
    enter(pOff[1], config.stepBase);
    enter(pTriggChan, config.phraseChannel + 1);
}

void marluneOptionsMidiInput::Form_Timer() {
    const int controller = MIDIIn1.takeLearnt();
    if (controller < 0 || learning < 0) return;
    enter(newMapping[learning], controller);
    shell().formChanged(*this);
}

// Writes the map from the boxes; false and the map half written where two boxes hold the same text.
bool marluneOptionsMidiInput::readMappings() {
    const auto before = config.controllerMap;
    config.controllerMap.fill(-1);
    for (int i = 0; i < kKnobs; ++i) {
        TextBox& box = newMapping[i];
        if (!isNumeric(box.text)) {
            const auto had = std::find(before.begin(), before.end(), i);
            if (had == before.end()) {
                box.text.clear(); // had no controller, and gets none
                continue;
            }
            enter(box, static_cast<int>(had - before.begin()));
        }
        const int controller = limitedEntry(box, kInputController);
        const auto same = [&](const TextBox& other) { return &other != &box && other.text == box.text; };
        if (std::any_of(std::begin(newMapping), std::end(newMapping), same)) return false;
        config.controllerMap[controller] = i;
    }
    return true;
}

namespace {

void blockChosen(bool blocked) {
    for (int m = 0; m < kModules; ++m) MIDIIn1.BlockStatus(kNoteOn + channelOf(m), blocked);
    MIDIIn1.BlockStatus(kNoteOn + phraseChannelNumber(), blocked);
    MIDIIn1.BlockStatus(kControlChange + controlChannelNumber(), blocked);
}

} // namespace

void marluneOptionsMidiInput::cmdOK_Click() {
    blockChosen(true);
    const auto before = config.controllerMap;
    if (!readMappings()) {
        config.controllerMap = before;
        blockChosen(false);
        shell().messageBox("Duplicate Controller assignments not allowed", BoxIcon::information,
                           BoxButtons::ok);
        return;
    }
    config.controlChannel = limitedEntry(chan, kChannel) - 1;
    const int select = limitedEntry(pOff[0], kSelectBase);
    config.stepBase = limitedEntry(pOff[1], kStepBase);
    config.selectBase = select;
    config.phraseChannel = limitedEntry(pTriggChan, kChannel) - 1;
    blockChosen(false);
    saveGlobalConfig();
    unload();
}

// ---- Label Customize

void mnuOtpionsCustomize_Click() {
    customizeForm.showModal();
}

Customize::Customize() {
    caption = "Label Customize";
    Command1.caption = "Default";
    cmdOK.caption = "OK";
    cmdCancel.caption = "Cancel";
}

void Customize::describe(FormBuilder& builder) {
    constexpr const char* kDrumRow[] = {"BDrum", "Snare", "Clap", "ClHt1",
                                        "ClHt2", "OpHat", "Loop", "Accent"};
    const auto row = [&](const char* title, int first, const char* const* labels, int count) {
        builder.beginFrame(title);
        builder.beginRow();
        for (int k = 0; k < count; ++k) builder.textBox(labels[k], Text1[first + k], 8);
        builder.endRow();
        builder.endFrame();
    };
    row("103A", 0, kBassLabels, kBassKnobs);
    row("103B", kBassKnobs, kBassLabels, kBassKnobs);
    row("109", kFirstDrumKnob, kDrumRow, kDrumRows);
    builder.beginRow();
    builder.button(Command1, FormBuilder::Role::plain, [this] { Command1_Click(); });
    builder.button(cmdOK, FormBuilder::Role::accept, [this] { cmdOK_Click(); });
    builder.button(cmdCancel, FormBuilder::Role::reject, [this] { cmdCancel_Click(); });
    builder.endRow();
}

void Customize::Form_Load() {
    for (int k = 0; k < kKnobs; ++k) Text1[k].text = knobLabel[k];
}

void Customize::Command1_Click() {
    for (int k = 0; k < kKnobs; ++k) Text1[k].text = kDefaultLabels[k];
}

void Customize::cmdOK_Click() {
    for (int k = 0; k < kKnobs; ++k) {
        knobLabel[k] = Text1[k].text;
        showText(Control::UserTitle, k, knobLabel[k]);
    }
    unload();
    saveGlobalConfig();
}

} // namespace marlune
