#include "rebirth/drum_choice.h"

#include "panel/form_parts.h"
#include "rebirth/rb40_music.h"

namespace marlune {

DrumChoice drumChoiceForm;

DrumChoice::DrumChoice() {
    caption = "Import ReBirth";
    Label1.text = "The song has two drum machines.";
    Command1.caption = "OK";
    Command2.caption = "Cancel";
}

void DrumChoice::describe(FormBuilder& builder) {
    builder.label(Label1);
    builder.comboBox("Drums for the 109", Combo1);
    okCancelRow(
        builder, Command1, [this] { Command1_Click(); }, Command2, [this] { Command2_Click(); });
}

void DrumChoice::Command1_Click() {
    taken = true;
    hide();
}

void DrumChoice::Command2_Click() {
    hide();
}

std::optional<Rb40Drums> askForDrums(const Rb40Song& song, bool patternsOnly) {
    const auto hitsOf = patternsOnly ? rb40HitsInPatterns : rb40HitsInSong;
    const int hits[] = {hitsOf(song, kRb40Of808), hitsOf(song, kRb40Of909)};
    const Rb40Drums proposed = rb40DefaultDrums(song, patternsOnly);
    if (hits[0] == 0 || hits[1] == 0) return proposed;
    DrumChoice& form = drumChoiceForm;
    form.Combo1.items = {"808 (" + std::to_string(hits[0]) + " hits)",
                         "909 (" + std::to_string(hits[1]) + " hits)", "Both, in the same rows"};
    form.Combo1.selected = static_cast<int>(proposed);
    form.taken = false;
    form.showModal();
    form.unload();
    if (!form.taken || form.Combo1.selected < 0) return std::nullopt;
    return static_cast<Rb40Drums>(form.Combo1.selected);
}

} // namespace marlune
