#include "edit/clipboard.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "edit/song_tools.h"
#include "panel/editing.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/clipboard_state.h"
#include "project/pattern_push.h"
#include "song/song_moves.h"
#include "song/song_place.h"
#include "transport/tick.h"

namespace marlune {

namespace {

bool isDrum(int module) {
    return module == kDrumModule;
}

void copyPattern() {
    PatternClipboard& clip = patternClipboard.write();
    clip.copyIsDrum = isDrum(editingState->editSel);
    if (clip.copyIsDrum) {
        clip.copyDrum = currentDrum();
    } else {
        clip.copyBass = currentBass(editingState->editSel);
    }
    const KnobRange knobs = knobsOf(editingState->editSel);
    for (int k = 0; k < knobs.count; ++k) {
        clip.copyKnobs[k] = static_cast<std::uint8_t>(int{project.knobValue[knobs.first + k]});
    }
    notePatternCopy(std::string("COPY: Module ") + kModuleNames[editingState->editSel] +
                    " ( current pattern and knobs ).");
}

void pastePattern() {
    const PatternClipboard& clip = patternClipboard.read();
    if (clip.copyIsDrum != isDrum(editingState->editSel)) return;
    markProject();
    if (clip.copyIsDrum) {
        currentDrum() = clip.copyDrum;
    } else {
        currentBass(editingState->editSel) = clip.copyBass;
    }
    const Selection at = selectionOf(project, editingState->editSel);
    pushPatternToEngine(editingState->editSel, at.currBank, at.currPatt);
    refreshPattern(editingState->editSel);
    const KnobRange knobs = knobsOf(editingState->editSel);
    for (int k = 0; k < knobs.count; ++k) {
        project.knobValue[knobs.first + k] = clip.copyKnobs[k];
        refreshKnob(knobs.first + k);
    }
}

void pasteKnobColumns(int firstTick) {
    const KnobRange knobs = knobsOf(editingState->editSel);
    const int rows = std::min(songClipboard->copyKnobLast + 1, kSongTicks - firstTick);
    for (int i = 0; i < rows; ++i) {
        for (int k = 0; k < knobs.count; ++k) {
            knobTrack[knobs.first + k][firstTick + i] = songClipboard->copyKnobList[i][k];
        }
    }
}

void pasteBars() {
    markProject();
    const int bar = shownBar();
    const int last = std::min(songClipboard->copyBarCount - 1, kSongBars - 1 - bar);
    if (last < 0) return;
    const bool fits = isDrum(editingState->editSel) == isDrum(songClipboard->copyModule);
    if (fits) {
        std::copy_n(songClipboard->copyBars.begin(), last + 1, barTrack[editingState->editSel].begin() + bar);
        takeUpSong();
    }
    if (songClipboard->copyKnobLast <= 0) return;
    if (fits) pasteKnobColumns(bar * kTicksPerBar);
    songKnobTick(recordingState->recordOn);
}

} // namespace

KnobRange knobsOf(int module) {
    return isDrum(module) ? KnobRange{kFirstDrumKnob, kKnobColumns}
                          : KnobRange{kBassKnobs * module, kBassKnobs};
}

void mnuEditCut_Click() {
    releaseCtrl();
    patternClipboard.write().copyEmpty = false;
    songClipboard.write().songCopyReady = true;
    setMenuEnabled(Menu::mnuEditPaste, true);
    if (songPosition->songMode) {
        showPatternCopy();
    } else {
        copyPattern();
    }
}

void mnuEditPaste_Click() {
    releaseCtrl();
    if (songPosition->songMode) {
        pasteBars();
    } else {
        pastePattern();
    }
}

void mnuEditCopyPattern_Click() {
    const KnobRange knobs = knobsOf(editingState->editSel);
    barKnobClipboard.write().barKnobIsBass = !isDrum(editingState->editSel);
    for (int k = 0; k < knobs.count; ++k) {
        std::copy_n(knobTrack[knobs.first + k].begin() + shownBar() * kTicksPerBar, kTicksPerBar,
                    barKnobClipboard.write().barKnobCopy[k].begin());
    }
}

void mnuEditPastePattern_Click() {
    if (barKnobClipboard->barKnobIsBass == isDrum(editingState->editSel)) return;
    markProject();
    const KnobRange knobs = knobsOf(editingState->editSel);
    for (int k = 0; k < knobs.count; ++k) {
        std::copy_n(barKnobClipboard->barKnobCopy[k].begin(), kTicksPerBar,
                    knobTrack[knobs.first + k].begin() + shownBar() * kTicksPerBar);
    }
    refreshKnobsAtSongTick();
}

void ClearCopyBuffer() {
    patternClipboard.write().copyEmpty = true;
    setEditSel(0);
    setMenuEnabled(Menu::mnuEditPaste, false);
}

} // namespace marlune
