// What the user works on: the owner's routines of EditingState, beside setEditSel in panel/refresh.h.
// User-interface thread.
#pragma once

#include <string>

namespace marlune {

void markProject();                            // the project has unsaved changes
void nameProject(const std::string& fileName); // it is that file's content now; title with the short name
void proposeName(const std::string& title);    // of the next save under a new name, until the project has one
void doubtProjectFile();                       // that file could not be taken: the first save over it asks
void showProjectTitle(const std::string& fileName);
void forgetUnsavedChanges();
void setSavedHook(void (*hook)()); // called whenever the content has become that of a file; null for none

// The record is another one from here on: a load, a new project, a mode switch.
void recordReplaced();

void setCtrlDown(bool down);
void releaseCtrl(); // a dialog may take the release

void noteSavedMode(); // the mode of the last save
void notePatternCopy(const std::string& status);
void noteSongCopy(const std::string& status);

} // namespace marlune
