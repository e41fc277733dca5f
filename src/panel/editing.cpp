#include "panel/editing.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "project/run_state.h"
#include "util/whole_file.h"

namespace marlune {

namespace {
void (*savedHook)() = nullptr;
}

void markProject() {
    if (!editingState->projectDirty) shell().showModified(true);
    editingState.write().projectDirty = true;
}

void doubtProjectFile() {
    editingState.write().saveAsks = true;
}

void proposeName(const std::string& title) {
    std::string name = title;
    std::ranges::replace(name, '/', '-');
    if (name.starts_with('.')) name[0] = '-'; // such a file would be hidden
    editingState.write().proposedName = name;
}

void nameProject(const std::string& fileName) {
    editingState.write().proposedName.clear();
    editingState.write().projectFileName = fileName;
    editingState.write().saveAsks = false;
    forgetUnsavedChanges();
    showProjectTitle(extractFileName(fileName));
}

void showProjectTitle(const std::string& fileName) {
    shell().showTitle("Marlune 200Q [ " + fileName + " ]");
}

void forgetUnsavedChanges() {
    if (editingState->projectDirty) shell().showModified(false);
    editingState.write().projectDirty = false;
    if (savedHook != nullptr) savedHook();
}

void setSavedHook(void (*hook)()) {
    savedHook = hook;
}

void recordReplaced() {
    ++editingState.write().recordGeneration;
}

void setCtrlDown(bool down) {
    editingState.write().ctrlDown = down;
}

void releaseCtrl() {
    setCtrlDown(false);
}

void noteSavedMode() {
    editingState.write().savedSongMode = songPosition->songMode;
}

void notePatternCopy(const std::string& status) {
    editingState.write().patternCopyStatus = status;
    shell().showStatus(status);
}

void noteSongCopy(const std::string& status) {
    editingState.write().songCopyStatus = status;
    shell().showStatus(status);
}

} // namespace marlune
