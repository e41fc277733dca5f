#include "import/midi_form.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "panel/form_parts.h"
#include "util/text_number.h"

namespace marlune {

MidiImportForm midiImportForm;

namespace {

using F = MidiImportForm;
constexpr ComboBox F::*kSourceBoxes[kModules] = {&F::Combo1, &F::Combo2, &F::Combo3};

} // namespace

MidiImportForm::MidiImportForm() {
    caption = "Import MIDI Patterns";
    Combo4.items = {"Highest", "Last"};
    Check1.caption = "As a song: bars and knob movements";
    Command1.caption = "OK";
    Command2.caption = "Cancel";
}

void MidiImportForm::describe(FormBuilder& builder) {
    builder.beginFrame("Who plays what");
    for (int m = 0; m < kModules; ++m) builder.comboBox(kModuleNames[m], this->*kSourceBoxes[m]);
    builder.endFrame();
    builder.beginFrame("Basslines");
    builder.comboBox("Note of a step", Combo4);
    builder.endFrame();
    builder.digitsBox("Accent above velocity", Text1, 4);
    builder.checkBox(Check1);
    builder.beginFrame("What comes of it");
    builder.label(Label1);
    builder.label(Label2);
    builder.endFrame();
    okCancelRow(
        builder, Command1, [this] { Command1_Click(); }, Command2, [this] { Command2_Click(); });
}

bool MidiImportForm::choose(const MidiSong& song, const std::vector<MidiSource>& sources,
                            MidiChoices& choices) {
    song_ = &song;
    sources_ = &sources;
    for (int m = 0; m < kModules; ++m) {
        ComboBox& box = this->*kSourceBoxes[m];
        box.items = {"None"};
        for (const MidiSource& source : sources) box.items.push_back(source.label);
        box.selected = choices.source[m] + 1;
    }
    Combo4.selected = choices.highest ? 0 : 1;
    Text1.text = std::to_string(choices.accentAbove);
    Check1.checked = choices.asSong;
    taken_ = false;
    preview(entered());
    showModal();
    unload();
    choices = entered();
    song_ = nullptr;
    sources_ = nullptr;
    return taken_;
}

MidiChoices MidiImportForm::entered() const {
    MidiChoices choices;
    for (int m = 0; m < kModules; ++m)
        choices.source[m] = std::max((this->*kSourceBoxes[m]).selected - 1, kNoSource);
    choices.highest = Combo4.selected != 1;
    choices.accentAbove = std::clamp(leadingInteger(Text1.text), 0, kTopValue);
    choices.asSong = Check1.checked;
    return choices;
}

void MidiImportForm::preview(const MidiChoices& choices) {
    previewed_ = choices;
    const auto draft = draftOfProject();
    draftMidi(*song_, *sources_, choices, *draft);
    ImportReport counts = draft->report;
    counts.notes.clear();
    Label1.text = counts.text();
    Label2.text.clear();
    for (const std::string& note : draft->report.notes)
        Label2.text += (Label2.text.empty() ? "" : "\n") + note;
}

void MidiImportForm::Form_Timer() {
    const MidiChoices now = entered();
    if (now == previewed_ || song_ == nullptr) return;
    preview(now);
    shell().formChanged(*this);
}

void MidiImportForm::Command1_Click() {
    taken_ = true;
    hide();
}

void MidiImportForm::Command2_Click() {
    hide();
}

} // namespace marlune
