// The new project. User-interface thread.
#pragma once

namespace marlune {

void init309(); // fills project and the MIDI settings with the values of a new project, tells the component
void ClearKeyMap(); // the default keys: 1..8, Q..I and A..K select patterns 0..7 of a module each
void mnuFileNew_Click();

} // namespace marlune
