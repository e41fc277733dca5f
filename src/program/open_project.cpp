#include "program/open_project.h"

#include "boundary/app_shell.h"
#include "edit/undo_history.h"
#include "files/project_file.h"
#include "panel/editing.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/run_state.h"
#include "song/mode_switch.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

// Takes a file by the user's wish.
void openNamed(const std::string& name) {
    OpenOnLoad(name);
    if (!editingState->saveAsks) shell().noteRecentFile(name, true);
}

} // namespace

void mnuFileOpenPatt_Click() {
    releaseCtrl();
    if (wannaSaveYourWorkCancel()) return;
    dlgCommonDialog.fileName = withoutExtension(editingState->projectFileName);
    const std::string name = askProjectName(false);
    if (!name.empty()) openNamed(name);
}

void openRecent(const std::string& fileName) {
    releaseCtrl();
    if (!FileExists(fileName)) {
        shell().noteRecentFile(fileName, false);
        shell().messageBox(fileName + "\nis no longer there.", BoxIcon::exclamation, BoxButtons::ok);
    } else if (!wannaSaveYourWorkCancel()) {
        openNamed(fileName);
    }
}

void OpenOnLoad(const std::string& fileName) {
    if (songPosition->songMode) SongSwitch(false);
    restartEdit();
    shell().showPointer(Pointer::hourglass);
    shell().letPaintRun();
    const bool whole = loadProjectFile(fileName);
    refreshTempo();
    refreshAll();
    nameProject(fileName);
    if (!whole) doubtProjectFile();
    shell().showPointer(Pointer::normal);
}

} // namespace marlune
