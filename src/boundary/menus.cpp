#include "boundary/menus.h"

#include <array>
#include <cstddef>

#include "boundary/app_shell.h"

namespace marlune {

namespace {

constexpr MenuRow kLine{Menu::separator, MenuKind::line, "", "", ""};

#define MARLUNE_MENU(id, caption) \
    { Menu::id, MenuKind::menu, #id, caption, "" }
#define MARLUNE_ENTRY(id, caption, shortcut) \
    { Menu::id, MenuKind::entry, #id, caption, shortcut }
#define MARLUNE_LINE(id) \
    { Menu::id, MenuKind::line, #id, "", "" }

constexpr MenuRow kRows[] = {
    MARLUNE_MENU(mnuFile, "&File"),
    MARLUNE_ENTRY(mnuFileNew, "&New", ""),
    MARLUNE_ENTRY(mnuFileNewStarter, "New from S&tarter", ""),
    kLine,
    MARLUNE_ENTRY(mnuFileOpenPatt, "&Open", "Ctrl+O"),
    MARLUNE_ENTRY(mnuFileSavePatt, "&Save", "Ctrl+S"),
    MARLUNE_ENTRY(mnuSaveAs, "Save &As", "Ctrl+A"),
    kLine,
    MARLUNE_ENTRY(mnuFileImportRebPatt, "Import ReBirth Patterns", ""),
    MARLUNE_ENTRY(mnuFileRebirthImport, "Import ReBirth Song", ""),
    MARLUNE_ENTRY(mnuFileImportMidi, "Import MIDI Patterns", ""),
    MARLUNE_ENTRY(mnuFileExport, "Export to .MID", ""),
    MARLUNE_ENTRY(mnuFileExportWav, "Export to .&WAV", ""),
    kLine,
    MARLUNE_ENTRY(mnuFileConvert, "Convert Rebirth to .MID", ""),
    kLine,
    MARLUNE_ENTRY(mnuFileExit, "E&xit", "Ctrl+X"),
    MARLUNE_MENU(mnuEdit, "&Edit"),
    MARLUNE_ENTRY(mnuEditCut, "&Copy", "Ctrl+C"),
    MARLUNE_ENTRY(mnuEditPaste, "&Paste", "Ctrl+V"),
    MARLUNE_ENTRY(mnuEditCopyPattern, "Cop&y Knobs", "Ctrl+D"),
    MARLUNE_ENTRY(mnuEditPastePattern, "Paste Knobs", "Ctrl+F"),
    kLine,
    MARLUNE_ENTRY(mnuEditTransposeDown, "T&ranspose  -1 [ < ]", ""),
    MARLUNE_ENTRY(mnuEditTransposeUp, "&Transpose +1 [ > ]", ""),
    MARLUNE_LINE(mnuEditSep2),
    MARLUNE_ENTRY(mnuEditMoveLeft, "&Move Left   [ N ]", ""),
    MARLUNE_ENTRY(mnuEditMoveRight, "M&ove Right [ M ]", ""),
    MARLUNE_LINE(mnuEditSep3),
    MARLUNE_ENTRY(mnuEditLoopPt2, "Loop Poi&nt  -1 [ Z ]", ""),
    MARLUNE_ENTRY(mnuEditLoop1, "&Loop Point +1 [ X ]", ""),
    kLine,
    MARLUNE_ENTRY(mnuPatchDec, "Patch -1 [ ; ]", ""),
    MARLUNE_ENTRY(mnuPatchInc, "Patch +1 [ ' ]", ""),
    kLine,
    MARLUNE_ENTRY(mnuEditUndo, "&Undo", "Ctrl+Z"),
    MARLUNE_ENTRY(mnuEditRedo, "R&edo", "Ctrl+Shift+Z"),
    MARLUNE_MENU(mnuTools, "&Tools"),
    MARLUNE_ENTRY(mnuToolsRNotes, "Randomize &Pitch", "Ctrl+W"),
    MARLUNE_ENTRY(mnuToolsRandRest, "Randomize Not&es/Rests", "Ctrl+E"),
    MARLUNE_ENTRY(mnuToolsROctave, "Randomize &Octaves", "Ctrl+R"),
    MARLUNE_ENTRY(mnuToolsRAccents, "Randomize &Accents", "Ctrl+T"),
    MARLUNE_ENTRY(mnuToolsSongRandom, "Radomize &Song", ""),
    kLine,
    MARLUNE_ENTRY(mnuToolsInit, "Intialize Pattern", "Ctrl+Y"),
    MARLUNE_ENTRY(mnuToolsInitBarfromPatt, "Initalize Bar from Edit Mode", ""),
    MARLUNE_ENTRY(mnuToolsInitSongfromPatt, "Initialize Song from Edit Mode", ""),
    MARLUNE_ENTRY(mnuToolsClear, "Clear Pattern", "Ctrl+U"),
    kLine,
    MARLUNE_ENTRY(mnuToolsLearn, "Phrase Memorizer [ L ]", ""),
    kLine,
    MARLUNE_ENTRY(mnuToolsCalc, "&Calculator", ""),
    MARLUNE_MENU(mnuOptions, "&Options"),
    MARLUNE_ENTRY(mnuOptionsMidiSetup, "&Midi Setup", "Ctrl+M"),
    kLine,
    MARLUNE_ENTRY(mnuOptionsMidiInput, "Midi &Input", "Ctrl+I"),
    MARLUNE_ENTRY(mnuOptionsMidiControl, "Midi &Output", "Ctrl+P"),
    kLine,
    MARLUNE_ENTRY(mnuOtpionsCustomize, "&Customize Labels", ""),
    kLine,
    MARLUNE_ENTRY(mnuStatusBarEnable, "Status Bar", ""),
    MARLUNE_MENU(mnuHelp, "&Help"),
    MARLUNE_ENTRY(mnuHelpContents, "Contents", "F1"),
    kLine,
    MARLUNE_ENTRY(mnuHelpAbout, "&About Marlune 200Q...", ""),
};

std::array<MenuState, kMenus> states;

// Changes one field of a state and shows the state when that changed anything.
template <typename Field, typename Value>
void change(Menu menu, Field field, const Value& value) {
    MenuState& state = states[static_cast<std::size_t>(menu)];
    if (state.*field == value) return;
    state.*field = value;
    shell().showMenu(menu, state);
}

} // namespace

std::span<const MenuRow> menuRows() {
    return kRows;
}

const MenuState& menuState(Menu menu) {
    return states[static_cast<std::size_t>(menu)];
}

void setMenuCaption(Menu menu, const std::string& caption) {
    change(menu, &MenuState::caption, caption);
}

void setMenuEnabled(Menu menu, bool enabled) {
    change(menu, &MenuState::enabled, enabled);
}

void setMenuVisible(Menu menu, bool visible) {
    change(menu, &MenuState::visible, visible);
}

void setMenuChecked(Menu menu, bool checked) {
    change(menu, &MenuState::checked, checked);
}

void resetMenus() {
    for (const MenuRow& row : kRows) {
        if (row.id != Menu::separator) states[static_cast<std::size_t>(row.id)] = {row.caption};
    }
    for (const Menu hidden : {Menu::mnuEditCopyPattern, Menu::mnuEditPastePattern,
                              Menu::mnuToolsInitBarfromPatt, Menu::mnuToolsInitSongfromPatt}) {
        states[static_cast<std::size_t>(hidden)].visible = false;
    }
    for (const Menu disabled : {Menu::mnuEditPaste, Menu::mnuEditCopyPattern, Menu::mnuEditPastePattern,
                                Menu::mnuToolsSongRandom, Menu::mnuEditUndo, Menu::mnuEditRedo}) {
        states[static_cast<std::size_t>(disabled)].enabled = false;
    }
    for (const MenuRow& row : kRows) {
        if (row.id != Menu::separator) shell().showMenu(row.id, menuState(row.id));
    }
}

} // namespace marlune
