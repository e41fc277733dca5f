// The menu bar: its entries in order, and what each shows at present.
//
// The desktop builds the menus from menuRows() and follows the states through AppShell::showMenu.
// User-interface thread only.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace marlune {

enum class Menu : std::uint8_t {
    mnuFile,
    mnuFileNew,
    mnuFileNewStarter,
    mnuFileOpenPatt,
    mnuFileSavePatt,
    mnuSaveAs,
    mnuFileImportRebPatt,
    mnuFileRebirthImport,
    mnuFileImportMidi,
    mnuFileExport,
    mnuFileExportWav,
    mnuFileConvert,
    mnuFileExit,
    mnuEdit,
    mnuEditCut,
    mnuEditPaste,
    mnuEditCopyPattern,
    mnuEditPastePattern,
    mnuEditTransposeDown,
    mnuEditTransposeUp,
    mnuEditSep2,
    mnuEditMoveLeft,
    mnuEditMoveRight,
    mnuEditSep3,
    mnuEditLoopPt2,
    mnuEditLoop1,
    mnuPatchDec,
    mnuPatchInc,
    mnuEditUndo,
    mnuEditRedo,
    mnuTools,
    mnuToolsRNotes,
    mnuToolsRandRest,
    mnuToolsROctave,
    mnuToolsRAccents,
    mnuToolsSongRandom,
    mnuToolsInit,
    mnuToolsInitBarfromPatt,
    mnuToolsInitSongfromPatt,
    mnuToolsClear,
    mnuToolsLearn,
    mnuToolsCalc,
    mnuOptions,
    mnuOptionsMidiSetup,
    mnuOptionsMidiInput,
    mnuOptionsMidiControl,
    mnuOtpionsCustomize,
    mnuStatusBarEnable,
    mnuHelp,
    mnuHelpContents,
    mnuHelpAbout,
    separator, // a line without a name
};
inline constexpr int kMenus = static_cast<int>(Menu::separator);

enum class MenuKind : std::uint8_t { menu, entry, line };

struct MenuRow {
    Menu id;
    MenuKind kind;
    const char* name;     // "mnuFileNew"
    const char* caption;  // "&New"; & marks the letter of the keyboard
    const char* shortcut; // "Ctrl+O", or empty
};

// All rows in the order of the menu bar: each menu is followed by its entries.
std::span<const MenuRow> menuRows();

struct MenuState {
    std::string caption;
    bool enabled = true;
    bool visible = true;
    bool checked = false;
    bool operator==(const MenuState&) const = default;
};
const MenuState& menuState(Menu menu);

// Each shows the change through the shell when it is one.
void setMenuCaption(Menu menu, const std::string& caption);
void setMenuEnabled(Menu menu, bool enabled);
void setMenuVisible(Menu menu, bool visible);
void setMenuChecked(Menu menu, bool checked);

void resetMenus(); // the states of a freshly started program

} // namespace marlune
