#include "edit/clipboard.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "edit/song_tools.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/clipboard_state.h"
#include "project/pattern_push.h"
#include "transport/song_moves.h"
#include "transport/tick.h"

namespace marlune {

namespace {

constexpr const char* kModuleNames[] = {"103A", "103B", "109"};

bool isDrum(int module) {
    return module == kDrumModule;
}

void copyPattern() {
    PatternClipboard& clip = patternClipboard;
    clip.copyIsDrum = isDrum(editSel);
    if (clip.copyIsDrum) {
        clip.copyDrum = currentDrum();
    } else {
        clip.copyBass = currentBass(editSel);
    }
    const KnobRange knobs = knobsOf(editSel);
    for (int k = 0; k < knobs.count; ++k) {
        clip.copyKnobs[k] = static_cast<std::uint8_t>(int{project.knobValue[knobs.first + k]});
    }
    patternCopyStatus =
        std::string("COPY: Module ") + kModuleNames[editSel] + " ( current pattern and knobs ).";
    shell().showStatus(patternCopyStatus);
}

void pastePattern() {
    const PatternClipboard& clip = patternClipboard;
    if (clip.copyIsDrum != isDrum(editSel)) return;
    projectDirty = true;
    if (clip.copyIsDrum) {
        currentDrum() = clip.copyDrum;
    } else {
        currentBass(editSel) = clip.copyBass;
    }
    const Selection at = selectionOf(project, editSel);
    pushPatternToEngine(editSel, at.currBank, at.currPatt);
    refreshPattern(editSel);
    const KnobRange knobs = knobsOf(editSel);
    for (int k = 0; k < knobs.count; ++k) {
        project.knobValue[knobs.first + k] = clip.copyKnobs[k];
        refreshKnob(knobs.first + k);
    }
}

void pasteKnobColumns(int firstTick) {
    const KnobRange knobs = knobsOf(editSel);
    const int rows = std::min(songClipboard.copyKnobLast + 1, kSongTicks - firstTick);
    for (int i = 0; i < rows; ++i) {
        for (int k = 0; k < knobs.count; ++k) {
            knobTrack[knobs.first + k][firstTick + i] = songClipboard.copyKnobList[i][k];
        }
    }
}

void pasteBars() {
    projectDirty = true;
    const int bar = barOf(songTick);
    const int last = std::min(songClipboard.copyBarCount - 1, kSongBars - 1 - bar);
    if (last < 0) return;
    const bool fits = isDrum(editSel) == isDrum(songClipboard.copyModule);
    if (fits) {
        std::copy_n(songClipboard.copyBars.begin(), last + 1, barTrack[editSel].begin() + bar);
        const Selection at = selectionOf(project, editSel);
        at.currBank = barBank(editSel, songTick);
        at.currPatt = barPatt(editSel, songTick);
        refreshCurrBankPatt(editSel);
        setNextBankPatt(editSel, nextBarBank(editSel, songTick), nextBarPatt(editSel, songTick));
    }
    if (songClipboard.copyKnobLast <= 0) return;
    if (fits) pasteKnobColumns(bar * kTicksPerBar);
    songKnobTick(recordOn);
}

} // namespace

KnobRange knobsOf(int module) {
    return isDrum(module) ? KnobRange{kFirstDrumKnob, kKnobColumns}
                          : KnobRange{kBassKnobs * module, kBassKnobs};
}

void mnuEditCut_Click() {
    ctrlDown = false;
    patternClipboard.copyEmpty = false;
    songClipboard.songCopyReady = true;
    setMenuEnabled(Menu::mnuEditPaste, true);
    if (songMode) {
        showPatternCopy();
    } else {
        copyPattern();
    }
}

void mnuEditPaste_Click() {
    ctrlDown = false;
    if (songMode) {
        pasteBars();
    } else {
        pastePattern();
    }
}

void mnuEditCopyPattern_Click() {
    const KnobRange knobs = knobsOf(editSel);
    barKnobClipboard.barKnobIsBass = !isDrum(editSel);
    for (int k = 0; k < knobs.count; ++k) {
        std::copy_n(knobTrack[knobs.first + k].begin() + barLine(songTick), kTicksPerBar,
                    barKnobClipboard.barKnobCopy[k].begin());
    }
}

void mnuEditPastePattern_Click() {
    if (barKnobClipboard.barKnobIsBass == isDrum(editSel)) return;
    projectDirty = true;
    const KnobRange knobs = knobsOf(editSel);
    for (int k = 0; k < knobs.count; ++k) {
        std::copy_n(barKnobClipboard.barKnobCopy[k].begin(), kTicksPerBar,
                    knobTrack[knobs.first + k].begin() + barLine(songTick));
    }
    refreshKnobsAtSongTick();
}

void ClearCopyBuffer() {
    patternClipboard.copyEmpty = true;
    editSel = 0;
    setMenuEnabled(Menu::mnuEditPaste, false);
}

} // namespace marlune
