#include "panel/selection.h"

#include <algorithm>

#include "boundary/engine_component.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/song_track.h"
#include "util/text_number.h"

namespace marlune {

namespace {

constexpr int kDigitDragTwips = 1100;
constexpr int kLoopDragTwips = 900;

// Writes a choice into the bar that follows the song position and cues it.
void recordNextBar(int module, int bank, int pattern) {
    setNextBar(module, songTick, bank, pattern);
    SetNextBarPatt32(module, pattern);
    SetNextBarGroup32(module, bank);
    setNextBankPatt(module, bank, pattern);
    barRecording[module] = true;
}

// Writes the module's present choice into the bar under the song position.
void recordThisBar(int module) {
    const Selection at = selectionOf(project, module);
    SetCurrBarPatt32(module, at.currPatt);
    SetCurrBarGroup32(module, at.currBank);
    refreshCurrBankPatt(module);
    barRecording[module] = true;
}

} // namespace

void selPatt(int module, int pattern) {
    const Selection at = selectionOf(project, module);
    if (!songMode) {
        at.nextPatt = pattern;
        SetNextPatt32(module, pattern);
        refreshNextBankPatt(module);
    } else if (recordOn && transportRunning) {
        recordNextBar(module, nextBarBank(module, songTick), pattern);
    }
    if (transportRunning || (songMode && !recordOn)) return;
    if (songMode) setBar(module, songTick, at.currBank, pattern);
    at.currPatt = pattern;
    SetCurrPatt32(module, pattern);
    if (songMode) {
        recordThisBar(module);
    } else {
        refreshCurrBankPatt(module);
    }
}

void bankClick(int module, int bank) {
    projectDirty = true;
    const Selection at = selectionOf(project, module);
    if (!songMode) {
        at.nextBank = bank;
        SetNextGroup32(module, bank);
        refreshNextBankPatt(module);
    } else if (recordOn && transportRunning) {
        recordNextBar(module, bank, nextBarPatt(module, songTick));
    }
    if (transportRunning || (songMode && !recordOn)) return;
    if (songMode) setBar(module, songTick, bank, at.currPatt);
    at.currBank = bank;
    SetCurrGroup32(module, bank);
    if (songMode) {
        recordThisBar(module);
    } else {
        refreshCurrBankPatt(module);
    }
}

void editLoop(int module, int delta) {
    Le16& loopEnd = module == kDrumModule ? currentDrum().loopEnd : currentBass(module).loopEnd;
    loopEnd = std::clamp(loopEnd + delta, 0, kSteps - 1);
    const Selection at = selectionOf(project, module);
    if (module == kDrumModule) {
        Set109Loop32(at.currBank, at.currPatt, loopEnd);
    } else {
        Set103Loop32(module, at.currBank, at.currPatt, loopEnd);
    }
    refreshLoop(module);
}

void DigitPatt_MouseDown(int index, double y) {
    const int module = index / 2;
    setEditSel(module);
    const Selection at = selectionOf(project, module);
    panelSlider().initKey(roundHalfEven(y), kDigitDragTwips, 0, kPatterns - 1,
                          transportRunning ? at.nextPatt : at.currPatt);
}

void DigitPatt_MouseMove(int index, double y) {
    selPatt(index / 2, panelSlider().moveKey(roundHalfEven(y)));
}

void LoopPt_MouseDown(int module, double y) {
    setEditSel(module);
    panelSlider().initKey(roundHalfEven(y), kLoopDragTwips, 1, kSteps, shownNumber(Control::LoopPt, module));
}

void LoopPt_MouseMove(int module, double y) {
    showNumber(Control::LoopPt, module, panelSlider().moveKey(roundHalfEven(y)));
}

void LoopPt_MouseUp(int module) {
    editLoop(module, shownNumber(Control::LoopPt, module) - panelSlider().keyStartValue);
    projectDirty = true;
}

void stepDigit(int index, int steps) {
    const int module = index / 2;
    setEditSel(module);
    const Selection at = selectionOf(project, module);
    const int cued = songMode ? nextBarPatt(module, songTick) : int{at.nextPatt};
    const int from = transportRunning ? cued : int{at.currPatt};
    selPatt(module, std::clamp(from + steps, 0, kPatterns - 1));
}

marluneKeySlider& panelSlider() {
    static marluneKeySlider slider;
    return slider;
}

} // namespace marlune
