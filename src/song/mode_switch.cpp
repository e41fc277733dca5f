#include "song/mode_switch.h"

#include <algorithm>
#include <cstring>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "panel/editing.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/clipboard_state.h"
#include "project/pattern_push.h"
#include "project/recording.h"
#include "project/song_track.h"
#include "song/song_moves.h"
#include "song/song_place.h"

namespace marlune {

namespace {

constexpr Control kModeSprites[] = {Control::Check1,     Control::ResetButton,    Control::prevButton,
                                    Control::nextButton, Control::RwdStep,        Control::FwdStep,
                                    Control::stopButton, Control::playSongButton, Control::RecButton};

enum class Shows { both, pattern, song };

struct MenuRule {
    Menu menu;
    Shows visible, enabled;
};
constexpr MenuRule kMenuRules[] = {
    {Menu::mnuEditCopyPattern, Shows::song, Shows::song},
    {Menu::mnuEditPastePattern, Shows::song, Shows::song},
    {Menu::mnuEditTransposeDown, Shows::pattern, Shows::both},
    {Menu::mnuEditTransposeUp, Shows::pattern, Shows::both},
    {Menu::mnuEditMoveLeft, Shows::pattern, Shows::both},
    {Menu::mnuEditMoveRight, Shows::pattern, Shows::both},
    {Menu::mnuEditSep2, Shows::pattern, Shows::both},
    {Menu::mnuEditSep3, Shows::pattern, Shows::both},
    {Menu::mnuPatchDec, Shows::both, Shows::pattern},
    {Menu::mnuPatchInc, Shows::both, Shows::pattern},
    {Menu::mnuToolsRNotes, Shows::both, Shows::pattern},
    {Menu::mnuToolsRandRest, Shows::both, Shows::pattern},
    {Menu::mnuToolsROctave, Shows::both, Shows::pattern},
    {Menu::mnuToolsRAccents, Shows::both, Shows::pattern},
    {Menu::mnuToolsSongRandom, Shows::both, Shows::song},
    {Menu::mnuToolsInitBarfromPatt, Shows::song, Shows::both},
    {Menu::mnuToolsInitSongfromPatt, Shows::song, Shows::both},
    {Menu::mnuToolsClear, Shows::both, Shows::pattern},
};

void showModeMenus() {
    const auto holds = [](Shows when) {
        return when == Shows::both || (when == Shows::song) == songPosition->songMode;
    };
    for (const MenuRule& rule : kMenuRules) {
        setMenuVisible(rule.menu, holds(rule.visible));
        setMenuEnabled(rule.menu, holds(rule.enabled));
    }
    setMenuCaption(Menu::mnuEditCut, songPosition->songMode ? "Copy Pattern" : "Copy");
    setMenuCaption(Menu::mnuEditPaste, songPosition->songMode ? "Paste Pattern" : "Paste");
    setMenuEnabled(Menu::mnuEditPaste,
                   songPosition->songMode ? songClipboard->songCopyReady : !patternClipboard->copyEmpty);
    setMenuCaption(Menu::mnuToolsInit, songPosition->songMode ? "Initialize Song" : "Initialize Pattern");
}

void showModeSprites() {
    for (const Control sprite : kModeSprites) showFrame(sprite, 0, songFrame());
}

void enableSongDisplays(bool enabled) {
    showEnabled(Control::timeDisplay, 0, enabled);
    showEnabled(Control::microDisplay, 0, enabled);
}

void pushCurrentPatterns() {
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(project, m);
        pushPatternToEngine(m, at.currBank, at.currPatt);
    }
}

// Running, the tick that comes; at rest the step that the drums have reached in the bar of the position.
int tickOfSwitch() {
    const SongPosition& at = songPosition.read();
    if (transportState->transportRunning) return at.songTick;
    return std::min(barLine(at.songTick) + at.moduleStep[kDrumModule], kSongTicks - 1);
}

void toSongMode() {
    patternImage = project;
    cueCurrent(patternImage);
    disarmRecording();
    enableSongDisplays(true);
    enableSongKnobs(false);
    enterSongMode(tickOfSwitch());
    refreshKnobsAtSongTick();
    showModeMenus();
    refreshAll();
    shell().showStatus(editingState->songCopyStatus);
    pushCurrentPatterns();
    showModeSprites();
}

// Which patterns song mode has left different from the image that comes back.
template <typename Module>
void pushEdited(const Module& now, const Module& image, int module) {
    for (int bank = 0; bank < kBanks; ++bank) {
        for (int patt = 0; patt < kPatterns; ++patt) {
            const auto& edited = now.patterns[bank][patt];
            if (std::memcmp(&edited, &image.patterns[bank][patt], sizeof edited) == 0) continue;
            if (bank == image.currBank && patt == image.currPatt) continue; // has been pushed
            pushPatternToEngine(module, bank, patt);
        }
    }
}

void toPatternMode() {
    const ProjectRecord edited = project;
    project = patternImage;
    project.tempo = edited.tempo;
    project.groove = edited.groove;
    project.tempoChanged = edited.tempoChanged; // still to be told
    cueCurrent(project);
    disarmRecording();
    pushCurrentPatterns();
    for (int m = 0; m < kBassModules; ++m) pushEdited(edited.bass[m], project.bass[m], m);
    pushEdited(edited.drum, project.drum, kDrumModule);
    leaveSongMode();
    enableSongDisplays(false);
    enableSongKnobs(true);
    showModeMenus();
    refreshAll();
    shell().showStatus(editingState->patternCopyStatus);
    showModeSprites();
}

} // namespace

void Check1_Click() {
    SongSwitch(!songPosition->songMode);
}

void Check1_DblClick() {
    Check1_Click();
}

void SongSwitch(bool song) {
    recordReplaced();
    if (song) {
        toSongMode();
    } else {
        toPatternMode();
    }
}

} // namespace marlune
