#include "edit/song_tools.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "edit/clipboard.h"
#include "panel/editing.h"
#include "panel/form_parts.h"
#include "panel/refresh.h"
#include "project/clipboard_state.h"
#include "project/global_config.h"
#include "project/pattern_push.h"
#include "song/song_moves.h"
#include "song/song_place.h"
#include "util/text_number.h"

namespace marlune {

namespace {

void startEdit() {
    markProject();
    releaseCtrl();
}

// What Clear and Initialize share: every step at the lowest note without flags, sounding or not; full length.
void resetBassPattern(BassPattern& pattern, bool sounding) {
    for (BassStep& step : pattern.steps) {
        step.noteOn = sounding;
        step.note = 0;
        step.accent = step.up = step.down = false;
    }
    pattern.loopEnd = kSteps - 1;
}

void resetDrumPattern(DrumPattern& pattern) {
    for (auto& step : pattern.drumOn) step.fill(0);
    pattern.loopEnd = kSteps - 1;
}

void showWholePattern() {
    const Selection at = selectionOf(project, editingState->editSel);
    pushPatternToEngine(editingState->editSel, at.currBank, at.currPatt);
    refreshPattern(editingState->editSel);
}

void initPattern() {
    if (editingState->editSel == kDrumModule) {
        resetDrumPattern(currentDrum());
        for (int d = 0; d < kDrums; ++d) currentDrum().drumNote[d] = drumNoteDefaultOf(d);
    } else {
        resetBassPattern(currentBass(editingState->editSel), true);
    }
    showWholePattern();
}

void barsFromImage(int firstBar, int count) {
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(patternImage, m);
        const SongBar bar{static_cast<std::uint8_t>(int{at.currPatt}),
                          static_cast<std::uint8_t>(int{at.currBank})};
        std::fill_n(barTrack[m].begin() + firstBar, count, bar);
    }
}

void knobsFromImage(int firstTick, int count) {
    for (int knob = 0; knob < kKnobs; ++knob) {
        const int value = patternImage.knobValue[knob];
        std::fill_n(knobTrack[knob].begin() + firstTick, count, static_cast<std::uint8_t>(value));
    }
}

void initSong() {
    for (int knob = 0; knob < kKnobs; ++knob) {
        knobTrack[knob].fill(knob < kFirstDrumKnob ? 0 : kFreshDrumLevel);
    }
    barsFromImage(0, kSongBars);
    takeUpSong();
    refreshAll();
}

} // namespace

void mnuToolsClear_Click() {
    startEdit();
    if (editingState->editSel == kDrumModule) {
        resetDrumPattern(currentDrum());
    } else {
        resetBassPattern(currentBass(editingState->editSel), false);
    }
    showWholePattern();
}

void mnuToolsInit_Click() {
    startEdit();
    if (songPosition->songMode) {
        initSong();
    } else {
        initPattern();
    }
}

void mnuToolsInitBarfromPatt_Click() {
    if (!songPosition->songMode) return;
    markProject();
    knobsFromImage(shownBar() * kTicksPerBar, kTicksPerBar);
    barsFromImage(shownBar(), 1);
    moveSongForward(0, true, false);
    refreshAll();
}

void mnuToolsInitSongfromPatt_Click() {
    markProject();
    knobsFromImage(0, kSongTicks);
    barsFromImage(0, kSongBars);
    rewindSong();
    refreshAll();
}

marlunePatternCopy patternCopyForm;

void showPatternCopy() {
    patternCopyForm.showModal();
}

marlunePatternCopy::marlunePatternCopy() {
    caption = "Copy Pattern";
    Label1.text = "Number of Bars :";
    Check1.caption = "Copy Knobs";
    Command1.caption = "OK";
    Command2.caption = "Cancel";
}

void marlunePatternCopy::describe(FormBuilder& builder) {
    builder.beginFrame("Copy Details");
    builder.textBox(Label1.text, Text1, 6);
    builder.label(Label2);
    builder.checkBox(Check1);
    builder.endFrame();
    okCancelRow(
        builder, Command1, [this] { Command1_Click(); }, Command2, [this] { Command2_Click(); });
}

void marlunePatternCopy::Form_Load() {
    Text1.text = "1";
}

void marlunePatternCopy::Form_Activate() {
    caption = std::string("Copy Pattern [") + kModuleNames[editingState->editSel] + "]";
    Text1.text = std::to_string(songClipboard->copyBarCount);
    Label2.text = startingBarText();
}

void marlunePatternCopy::Command1_Click() {
    const auto bars = enteredBars(Text1, "Enter the number of Bars to copy (1 to 1000)");
    if (!bars) return;
    SongClipboard& clip = songClipboard.write();
    laneClipboard.write().latest = false;
    const int bar = shownBar();
    clip.copyModule = editingState->editSel;
    clip.copyBarCount = *bars;
    std::copy_n(barTrack[editingState->editSel].begin() + bar, clip.copyBarCount, clip.copyBars.begin());
    std::string status = std::string("SONG COPY: ( ") + kModuleNames[editingState->editSel] + " Patterns ";
    clip.copyKnobLast = 0;
    if (Check1.checked) {
        status += "and knobs ";
        clip.copyKnobLast = kTicksPerBar * clip.copyBarCount - 1;
    }
    clip.copyKnobList.resize(clip.copyKnobLast + 1);
    const KnobRange knobs = knobsOf(editingState->editSel);
    for (int i = 0; Check1.checked && i <= clip.copyKnobLast; ++i) {
        for (int k = 0; k < knobs.count; ++k) {
            clip.copyKnobList[i][k] = knobTrack[knobs.first + k][kTicksPerBar * bar + i];
        }
    }
    status +=
        ") from BAR " + std::to_string(bar + 1) + " thru " + std::to_string(bar + clip.copyBarCount) + " .";
    noteSongCopy(status);
    hide();
}

void marlunePatternCopy::Command2_Click() {
    hide();
}

} // namespace marlune
