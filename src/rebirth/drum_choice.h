// Asks which drum unit of a ReBirth 2 song is meant. User-interface thread.
#pragma once

#include <optional>

#include "boundary/form.h"
#include "rebirth/rb40_import.h"

namespace marlune {

struct DrumChoice final : Form {
    DrumChoice();
    Label Label1;
    ComboBox Combo1; // in the order of Rb40Drums, each with its hits
    Button Command1, Command2;
    bool taken = false;

    void describe(FormBuilder& builder) override;
    void Command1_Click(); // OK
    void Command2_Click(); // Cancel
};
extern DrumChoice drumChoiceForm;

// Without a question where only one unit, or none, has hits; nothing when the dialog was left.
std::optional<Rb40Drums> askForDrums(const Rb40Song& song, bool patternsOnly);

} // namespace marlune
