#include "program/starter.h"

#include "boundary/app_shell.h"
#include "files/project_file.h"
#include "panel/editing.h"
#include "program/default_project.h"
#include "program/open_project.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "setup/config_file.h"
#include "util/whole_file.h"

namespace marlune {

const char* const kFirstStartNext =
    "\n\nThis is the first start: the built-in synthesizer and the virtual MIDI input are chosen now.\n"
    "Other devices are found under Options, Midi Setup.";

namespace {

std::string examples;

std::string demoFile() {
    return examples + "/harbour_nights.mlp";
}

std::string starterFile() {
    return examples + "/starter/new.mlp";
}

// The file is a beginning, not the place to save to.
void openUntitled(const std::string& fileName) {
    OpenOnLoad(fileName);
    nameProject(kUntitled);
}

} // namespace

void setExamplesFolder(const std::string& folder) {
    examples = folder;
}

bool canHelpFirstStart() {
    return FileExists(examples + "/starter/marlune.cfg");
}

void takeStarterConfig() {
    const std::string folder = configFolderInUse();
    setConfigFolder(examples + "/starter");
    loadGlobalConfig();
    setConfigFolder(folder);
}

void offerDemo() {
    if (!FileExists(demoFile())) return;
    const BoxAnswer answer = shell().messageBox(
        "Open the demo song?\n\nThe play button starts it. File, New from Starter begins a project of your "
        "own.",
        BoxIcon::information, BoxButtons::okCancel);
    if (answer == BoxAnswer::ok) openUntitled(demoFile());
}

void mnuFileNewStarter_Click() {
    releaseCtrl();
    if (!FileExists(starterFile())) {
        shell().showPassing("The starter project is missing: install the program again, or use File, New.");
        return;
    }
    if (wannaSaveYourWorkCancel()) return;
    forgetUnsavedChanges(); // asked already
    mnuFileNew_Click();
    openUntitled(starterFile());
}

} // namespace marlune
