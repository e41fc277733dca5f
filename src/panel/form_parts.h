// Pieces that several dialogs share. User-interface thread.
#pragma once

#include <optional>

#include "boundary/form.h"

namespace marlune {

// The row of two buttons at the foot of a dialog: Enter takes the first, Escape the second.
void okCancelRow(FormBuilder& builder, Button& ok, FormEvent accept, Button& cancel, FormEvent reject);

// What a dialog that asks for a number of bars from the song position on shows below its box.
std::string startingBarText();

// The number entered, limited to what lies between the bar of the song position and the end of the song.
// Where the text isn't numeric the refusal is shown and there is none.
std::optional<int> enteredBars(const TextBox& box, const char* refusal);

} // namespace marlune
