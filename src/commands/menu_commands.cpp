// The table that ties menu entries to their commands.
#include <array>

#include "boundary/app_shell.h"
#include "commands/panel_events.h"
#include "edit/calculator.h"
#include "edit/clipboard.h"
#include "edit/randomizers.h"
#include "edit/song_tools.h"
#include "edit/transforms.h"
#include "edit/undo_history.h"
#include "files/export_driver.h"
#include "files/project_file.h"
#include "import/midi_import.h"
#include "program/default_project.h"
#include "program/open_project.h"
#include "program/starter.h"
#include "program/startup.h"
#include "rebirth/converter_form.h"
#include "rebirth/rebirth_import.h"
#include "render/wav_export.h"
#include "setup/config_file.h"
#include "setup/memorizer.h"
#include "setup/midi_devices.h"
#include "setup/setup_dialogs.h"

namespace marlune {

namespace {

struct MenuCommand {
    Menu menu;
    void (*command)();
};

constexpr MenuCommand kCommands[] = {
    {Menu::mnuFileNew, mnuFileNew_Click},
    {Menu::mnuFileNewStarter, mnuFileNewStarter_Click},
    {Menu::mnuFileOpenPatt, mnuFileOpenPatt_Click},
    {Menu::mnuFileSavePatt, mnuFileSavePatt_Click},
    {Menu::mnuSaveAs, mnuSaveAs_Click},
    {Menu::mnuFileImportRebPatt, mnuFileImportRebPatt_Click},
    {Menu::mnuFileRebirthImport, mnuFileRebirthImport_Click},
    {Menu::mnuFileImportMidi, mnuFileImportMidi_Click},
    {Menu::mnuFileExport, mnuFileExport_Click},
    {Menu::mnuFileExportWav, mnuFileExportWav_Click},
    {Menu::mnuFileConvert, mnuFileConvert_Click},
    {Menu::mnuFileExit, mnuFileExit_Click},
    {Menu::mnuEditCut, mnuEditCut_Click},
    {Menu::mnuEditPaste, mnuEditPaste_Click},
    {Menu::mnuEditCopyPattern, mnuEditCopyPattern_Click},
    {Menu::mnuEditPastePattern, mnuEditPastePattern_Click},
    {Menu::mnuEditTransposeDown, mnuEditTransposeDown_Click},
    {Menu::mnuEditTransposeUp, mnuEditTransposeUp_Click},
    {Menu::mnuEditMoveLeft, mnuEditMoveLeft_Click},
    {Menu::mnuEditMoveRight, mnuEditMoveRight_Click},
    {Menu::mnuEditLoopPt2, mnuEditLoopPt2_Click},
    {Menu::mnuEditLoop1, mnuEditLoop1_Click},
    {Menu::mnuPatchDec, mnuPatchDec_Click},
    {Menu::mnuPatchInc, mnuPatchInc_Click},
    {Menu::mnuEditUndo, mnuEditUndo_Click},
    {Menu::mnuEditRedo, mnuEditRedo_Click},
    {Menu::mnuToolsRNotes, mnuToolsRNotes_Click},
    {Menu::mnuToolsRandRest, mnuToolsRandRest_Click},
    {Menu::mnuToolsROctave, mnuToolsROctave_Click},
    {Menu::mnuToolsRAccents, mnuToolsRAccents_Click},
    {Menu::mnuToolsSongRandom, mnuToolsSongRandom_Click},
    {Menu::mnuToolsInit, mnuToolsInit_Click},
    {Menu::mnuToolsInitBarfromPatt, mnuToolsInitBarfromPatt_Click},
    {Menu::mnuToolsInitSongfromPatt, mnuToolsInitSongfromPatt_Click},
    {Menu::mnuToolsClear, mnuToolsClear_Click},
    {Menu::mnuToolsLearn, mnuToolsLearn_Click},
    {Menu::mnuToolsCalc, mnuToolsCalc_Click},
    {Menu::mnuOptionsMidiSetup, mnuOptionsMidiSetup_Click},
    {Menu::mnuOptionsMidiInput, mnuOptionsMidiInput_Click},
    {Menu::mnuOptionsMidiControl, mnuOptionsMidiControl_Click},
    {Menu::mnuOtpionsCustomize, mnuOtpionsCustomize_Click},
    {Menu::mnuStatusBarEnable, mnuStatusBarEnable_Click},
    {Menu::mnuHelpContents, [] { shell().openHelp(); }},
    {Menu::mnuHelpAbout, [] { shell().showAbout(); }},
};

} // namespace

void menuClicked(Menu menu) {
    if (!menuState(menu).enabled || !menuState(menu).visible) return; // an accelerator of an absent entry
    for (const MenuCommand& row : kCommands) {
        if (row.menu != menu) continue;
        if (menu == Menu::mnuEditUndo || menu == Menu::mnuEditRedo) {
            row.command();
        } else {
            const EditBracket bracket;
            row.command();
        }
    }
}

void recentFileChosen(const std::string& fileName) {
    if (!menuState(Menu::mnuFileOpenPatt).enabled) return;
    const EditBracket bracket;
    openRecent(fileName);
}

bool menuHasCommand(Menu menu) {
    for (const MenuCommand& row : kCommands) {
        if (row.menu == menu) return true;
    }
    return false;
}

} // namespace marlune
