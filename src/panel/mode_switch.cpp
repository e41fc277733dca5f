#include "panel/mode_switch.h"

#include <cstring>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/clipboard_state.h"
#include "project/pattern_push.h"

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
    const auto holds = [](Shows when) { return when == Shows::both || (when == Shows::song) == songMode; };
    for (const MenuRule& rule : kMenuRules) {
        setMenuVisible(rule.menu, holds(rule.visible));
        setMenuEnabled(rule.menu, holds(rule.enabled));
    }
    setMenuCaption(Menu::mnuEditCut, songMode ? "Copy Pattern" : "Copy");
    setMenuCaption(Menu::mnuEditPaste, songMode ? "Paste Pattern" : "Paste");
    setMenuEnabled(Menu::mnuEditPaste, songMode ? songClipboard.songCopyReady : !patternClipboard.copyEmpty);
    setMenuCaption(Menu::mnuToolsInit, songMode ? "Initialize Song" : "Initialize Pattern");
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

void followTracks() {
    for (int knob = 0; knob < kKnobs; ++knob) {
        if (project.knobValue[knob] == knobTrack[knob][songTick]) continue;
        project.knobValue[knob] = knobTrack[knob][songTick];
        refreshKnob(knob);
    }
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(project, m);
        at.currPatt = barPatt(m, songTick);
        at.currBank = barBank(m, songTick);
        at.nextPatt = nextBarPatt(m, songTick);
        at.nextBank = nextBarBank(m, songTick);
    }
}

void toSongMode() {
    patternImage = project;
    songMode = true;
    SetSong32(-1);
    cueCurrent(patternImage);
    songTick = barLine(songTick) + moduleStep[kDrumModule];
    SetSongTick32(songTick);
    recordOn = false;
    enableSongDisplays(true);
    enableSongKnobs(false);
    followTracks();
    showModeMenus();
    refreshAll();
    for (int m = 0; m < kModules; ++m) {
        refreshCurrBankPatt(m);
        setNextBankPatt(m, nextBarBank(m, songTick), nextBarPatt(m, songTick));
    }
    shell().showStatus(songCopyStatus);
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
    songMode = false;
    SetSong32(0);
    recordOn = false;
    enableSongDisplays(false);
    showModeMenus();
    const ProjectRecord edited = project;
    project = patternImage;
    project.tempo = edited.tempo;
    project.tempoChanged = edited.tempoChanged; // still to be told
    enableSongKnobs(true);
    cueCurrent(project);
    pushCurrentPatterns();
    for (int m = 0; m < kBassModules; ++m) pushEdited(edited.bass[m], project.bass[m], m);
    pushEdited(edited.drum, project.drum, kDrumModule);
    for (int m = 0; m < kModules; ++m) {
        SetCurrGroup32(m, selectionOf(project, m).currBank);
        SetCurrPatt32(m, selectionOf(project, m).currPatt);
    }
    for (int m = 0; m < kModules; ++m) {
        SetNextGroup32(m, selectionOf(project, m).currBank);
        SetNextPatt32(m, selectionOf(project, m).currPatt);
    }
    refreshAll();
    for (int m = 0; m < kModules; ++m) {
        refreshCurrBankPatt(m);
        refreshNextBankPatt(m);
    }
    shell().showStatus(patternCopyStatus);
    showModeSprites();
}

} // namespace

void Check1_Click() {
    ++recordGeneration;
    if (songMode) {
        toPatternMode();
    } else {
        toSongMode();
    }
}

void Check1_DblClick() {
    Check1_Click();
}

void SongSwitch(bool song) {
    songMode = !song;
    Check1_Click();
}

} // namespace marlune
