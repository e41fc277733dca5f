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

void mnuFileOpenPatt_Click() {
    releaseCtrl();
    if (wannaSaveYourWorkCancel()) return;
    dlgCommonDialog.fileName = withoutExtension(editingState->projectFileName);
    const std::string name = askProjectName(false);
    if (!name.empty()) OpenOnLoad(name);
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
