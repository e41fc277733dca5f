#include "setup/memorizer.h"

#include <string>

#include "boundary/app_shell.h"
#include "panel/editing.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "setup/midi_devices.h"
#include "transport/transport.h"

namespace marlune {

marluneSnapShot memorizer;

namespace {

constexpr const char* kNone = "NONE";

std::string bankAndPattern(int bank, int patt) {
    return std::to_string(bank + 1) + " - " + std::to_string(patt + 1);
}

} // namespace

void mnuToolsLearn_Click() {
    StopPlay();
    project.learnMode = true;
    memorizer.showModal();
    memorizer.unload();
}

marluneSnapShot::marluneSnapShot() {
    caption = "1039R Memorizer";
    StoreButton.caption = "Store";
    EditButton.caption = "Edit";
    for (int m = 0; m < kModules; ++m) pattMap[m].caption = std::string(kModuleNames[m]) + " ";
}

void marluneSnapShot::describe(FormBuilder& builder) {
    static const Label noteCaption{"Note(Chan)"};
    builder.beginRow();
    builder.label(noteCaption);
    builder.label(currMidiMessageText);
    builder.endRow();
    for (int m = 0; m < kModules; ++m) {
        builder.beginRow();
        builder.checkBox(pattMap[m], [this, m] { pattMap_Click(m); });
        builder.label(currMapped[m]);
        builder.endRow();
    }
    builder.beginRow();
    builder.button(StoreButton, FormBuilder::Role::plain, [this] { StoreButton_Click(); });
    builder.button(EditButton, FormBuilder::Role::plain, [this] { EditButton_Click(); });
    builder.endRow();
}

void marluneSnapShot::Form_Load() {
    currentNote = -1;
    currentChannel = phraseChannelNumber();
    for (CheckBox& box : pattMap) box.checked = false;
    ShowCurrMidiMessage();
    setPhraseLearner(this);
}

void marluneSnapShot::Form_Activate() {
    StopPlay();
}

void marluneSnapShot::Form_Unload() {
    setPhraseLearner(nullptr);
    wakeInput();
    project.learnMode = false;
}

bool marluneSnapShot::Form_KeyDown(int code) {
    switch (code) {
        case '1':
        case '2':
        case '3':
            pattMap[code - '1'].checked = !pattMap[code - '1'].checked;
            pattMap_Click(code - '1');
            return true;
        case 'S': StoreButton_Click(); return true;
        case 'E': EditButton_Click(); return true;
        case 27:
        case 'L':
        case 'l':
        case 13: hide(); return true;
        default: return false;
    }
}

void marluneSnapShot::setMidiMessage(int note, int channel) {
    if (channel != phraseChannelNumber()) return;
    currentNote = note;
    currentChannel = channel;
    NoteMapEntry& entry = project.noteMap[note];
    if (!entry.mapUsed) {
        entry.mapBank.fill(-1);
        entry.mapPatt.fill(-1);
    }
    ShowCurrMidiMessage();
    shell().formChanged(*this);
}

void marluneSnapShot::ShowCurrMidiMessage() {
    const bool known = currentNote >= 0;
    const bool used = known && project.noteMap[currentNote].mapUsed;
    currMidiMessageText.text =
        known ? std::to_string(currentNote) + "(" + std::to_string(currentChannel + 1) + ")" : kNone;
    for (int m = 0; m < kModules; ++m) {
        const bool mapped = used && project.noteMap[currentNote].mapPatt[m] >= 0;
        currMapped[m].text = mapped ? bankAndPattern(project.noteMap[currentNote].mapBank[m],
                                                     project.noteMap[currentNote].mapPatt[m])
                                    : kNone;
        if (known) pattMap[m].checked = mapped;
        pattMap[m].enabled = known && !used;
    }
    StoreButton.enabled = known && !used;
    EditButton.enabled = used;
}

void marluneSnapShot::pattMap_Click(int module) {
    if (!pattMap[module].enabled || currentNote < 0) return;
    const Selection at = selectionOf(project, module);
    currMapped[module].text = pattMap[module].checked ? bankAndPattern(at.nextBank, at.nextPatt) : kNone;
}

void marluneSnapShot::EditButton_Click() {
    if (!EditButton.enabled) return;
    restInput(); // no further note may replace this one while it is edited
    currMidiMessageText.text = kNone;
    for (int m = 0; m < kModules; ++m) {
        currMapped[m].text = kNone;
        pattMap[m].enabled = true;
    }
    StoreButton.enabled = true;
    EditButton.enabled = false;
}

void marluneSnapShot::StoreButton_Click() {
    if (!StoreButton.enabled) return;
    if (currentNote >= 0) {
        markProject();
        NoteMapEntry& entry = project.noteMap[currentNote];
        entry.mapUsed = false;
        for (int m = 0; m < kModules; ++m) {
            const Selection at = selectionOf(project, m);
            entry.mapBank[m] = pattMap[m].checked ? int{at.nextBank} : -1;
            entry.mapPatt[m] = pattMap[m].checked ? int{at.nextPatt} : -1;
            if (pattMap[m].checked) entry.mapUsed = true;
        }
    }
    ShowCurrMidiMessage();
    wakeInput();
}

} // namespace marlune
