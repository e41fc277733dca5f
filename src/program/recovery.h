// A copy of unsaved work, for the next start after one that ended badly. User-interface thread.
//
// The copy lies in a folder of the user's state under the number of this process, PROCESS.mlp, with the name
// of its project beside it, PROCESS.name. What counts is the content: a project that is as it was last saved
// or opened needs none, whatever its mark says.
#pragma once

#include <string>

namespace marlune {

// Where copies are kept; "" keeps none. The present content counts as saved.
void startRecovery(const std::string& folder);

// About once a second: keeps a copy where there is something to keep, every 30 s at most and never inside a
// tick.
void tendRecovery();

// Keeps a copy now: a signal, a lost display, a logout.
void keepRecovery();

// The content is that of a file now, or was given up: no copy is needed.
void contentIsSaved();

// Offers what a process that ended badly has left: opened as an unsaved project under its old name, thrown
// away, or left for the next start. True when a project was opened.
bool offerRecovery();

} // namespace marlune
