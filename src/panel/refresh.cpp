#include "panel/refresh.h"

#include <algorithm>

#include "panel/groove_edits.h"
#include "panel/knobs.h"
#include "panel/shown_state.h"
#include "project/song_track.h"

namespace marlune {

namespace {

constexpr int kNoKeyFrame = 13;
constexpr int kHighlightFrames = 16; // LEDBar: the second half of the strip has the highlight
constexpr int kSongLockedKnobs = 19; // 0..18

int digitFrame(int bank, int pattern) {
    return kPatterns * bank + pattern;
}

} // namespace

void refreshAll() {
    for (int m = 0; m < kModules; ++m) {
        refreshCurrBankPatt(m);
        refreshNextBankPatt(m);
        refreshStepLamp(m);
        showFrame(Control::SelEditPicture, m, m == editingState->editSel ? 0 : 1);
    }
    refreshSongTime();
    for (int knob = 0; knob < kKnobs; ++knob) refreshKnob(knob);
}

bool songSounds() {
    return songPosition->songMode && transportState->transportRunning && !songPosition->holdSongTick;
}

int shownBar() {
    return barOf(songSounds() ? songPosition->playedTick : songPosition->songTick);
}

void refreshSongTime() {
    const int inBar = songPosition->songTick % kTicksPerBar;
    const bool stepping = songPosition->byTicks || inBar != 0;
    const bool atRest = songPosition->songMode && !transportState->transportRunning;
    showNumber(Control::timeDisplay, 0, shownBar() + 1);
    showText(Control::microDisplay, 0, atRest && stepping ? "[ " + std::to_string(inBar + 1) + "/16]" : "");
}

void refresh103Patt(int module) {
    const int selected = project.bass[module].selStep;
    const BassStep& step = currentBass(module).steps[selected];
    showFrame(Control::keys, module, step.noteOn ? std::clamp<int>(step.note, 0, kTopNote) : kNoKeyFrame);
    showFrame(Control::accent, module, step.accent ? 1 : 0);
    showFrame(Control::down, module, step.down ? 1 : 0);
    showFrame(Control::up, module, step.up ? 1 : 0);
    showSlide(module);
    showFrame(Control::step103, module, selected);
    refreshLoop(module);
    refreshPatch(module);
}

void refresh109Patt(int drum) {
    const DrumPattern& pattern = currentDrum();
    for (int d = 0; d < kDrumRows; ++d) showFrame(Control::sel109, d, d == drum ? 1 : 0);
    for (int step = 0; step < kSteps; ++step) showLamp(step, pattern.drumOn[step][project.drum.selDrum] != 0);
    for (int d = 0; d < kDrums; ++d) showNumber(Control::Offset109, d, pattern.drumNote[d]);
    refreshLoop(kDrumModule);
}

void refreshPattern(int module) {
    if (module == kDrumModule) {
        refresh109Patt(project.drum.selDrum);
    } else {
        refresh103Patt(module);
    }
}

void sel109Drum(int drum) {
    project.drum.selDrum = drum;
    refresh109Patt(drum);
}

void refreshCurrBankPatt(int module) {
    const Selection at = selectionOf(project, module);
    showFrame(Control::DigitPatt, 2 * module, digitFrame(at.currBank, at.currPatt));
    if (module == kDrumModule) {
        sel109Drum(project.drum.selDrum);
    } else {
        refresh103Patt(module);
    }
}

void refreshNextBankPatt(int module) {
    const Selection at = selectionOf(project, module);
    setNextBankPatt(module, at.nextBank, at.nextPatt);
}

void setNextBankPatt(int module, int bank, int pattern) {
    showFrame(Control::DigitPatt, 2 * module + 1, digitFrame(bank, pattern));
}

void refreshLoop(int module) {
    showNumber(Control::LoopPt, module, currentLoopEnd(module) + 1);
}

std::string patchText(int patch) {
    return patch < 0 ? "NONE" : std::to_string(patch);
}

void refreshPatch(int module) {
    const int patch = currentBass(module).patch;
    showText(Control::PatchID, module, patchText(patch));
}

void refreshStepLamp(int module) {
    const int step = std::clamp<int>(songPosition->moduleStep[module], 0, kSteps - 1);
    showFrame(Control::LEDBar, module, step + (module == editingState->editSel ? kHighlightFrames : 0));
}

void setEditSel(int module) {
    if (module == editingState->editSel) return;
    showFrame(Control::SelEditPicture, editingState->editSel, 1);
    showFrame(Control::SelEditPicture, module, 0);
    editingState.write().editSel = module;
    if (transportState->transportRunning) return;
    for (int m = 0; m < kModules; ++m) refreshStepLamp(m);
}

int songFrame() {
    return songPosition->songMode ? 1 : 0;
}

void refreshPlaySong() {
    showFrame(Control::playSongButton, 0,
              songFrame() + (songPosition->songMode && transportState->transportRunning ? 1 : 0));
}

void refreshRec() {
    showFrame(Control::RecButton, 0,
              songFrame() + (songPosition->songMode && recordingState->recordOn ? 1 : 0));
}

void refreshTransport() {
    showFrame(Control::startStopButton, 0, transportState->transportRunning ? 1 : 0);
    refreshPlaySong();
    refreshRec();
    showFrame(Control::stopButton, 0, songFrame());
}

void enableSongKnobs(bool enabled) {
    for (int knob = 0; knob < kSongLockedKnobs; ++knob) showEnabled(Control::knobSprite, knob, enabled);
}

void loadKnobs() {
    for (int knob = 0; knob < kFirstDrumKnob; ++knob) showFrame(Control::knobSprite, knob, 0);
    for (int knob = kFirstDrumKnob; knob < kKnobs; ++knob)
        showFrame(Control::knobSprite, knob, knobFrame(100));
    // In this order every one of the three pictures comes into a defined state.
    showFrame(Control::SelEditPicture, 0, 0);
    for (int module = 0; module < kModules; ++module) setEditSel(module);
}

} // namespace marlune
