// Opening a project: the File menu's command, and the file named at the start. User-interface thread.
#pragma once

#include <string>

namespace marlune {

// Asks for unsaved work and a name, then opens. One step of undo, of a bad file too, whose name is taken all
// the same; the first save over such a file asks.
void mnuFileOpenPatt_Click();

// Opens a file by name, as the command line does.
void OpenOnLoad(const std::string& fileName);

// Asks for unsaved work, then opens one of the recent files; says so where it is gone.
void openRecent(const std::string& fileName);

} // namespace marlune
