#include "score/step_edits.h"

#include "panel/editing.h"
#include "panel/refresh.h"
#include "panel/step_editing.h"
#include "project/run_state.h"
#include "project/song_track.h"
#include "song/selection.h"

namespace marlune {

namespace {

const BassStep& stepAt(int module, int step) {
    return currentBass(module).steps[step];
}

// The bank that a choice of a pattern goes with.
int bankInView(int module) {
    const Selection at = selectionOf(project, module);
    if (!transportState->transportRunning) return at.currBank;
    return songPosition->songMode ? nextBarBank(module, songPosition->songTick) : int{at.nextBank};
}

} // namespace

void setStepNote(int module, int step, int note) {
    step103Click(module, step);
    set103Note(module, note);
    setEditSel(module);
}

void drawStepNote(int module, int step, int note) {
    const BassStep& at = stepAt(module, step);
    if (at.noteOn && at.note == note) return;
    setStepNote(module, step, note);
}

void restStep(int module, int step) {
    if (stepAt(module, step).noteOn) setStepNote(module, step, stepAt(module, step).note);
}

void toggleStepAccent(int module, int step) {
    step103Click(module, step);
    accentClick(module);
    setEditSel(module);
}

void drawStepAccent(int module, int step, bool accent) {
    if (bool{stepAt(module, step).accent} != accent) toggleStepAccent(module, step);
}

int stepOctave(int module, int step) {
    return (stepAt(module, step).up ? 1 : 0) - (stepAt(module, step).down ? 1 : 0);
}

void turnStepOctave(int module, int step, bool up) {
    step103Click(module, step);
    if (up)
        upClick(module);
    else
        downClick(module);
    setEditSel(module);
}

void drawStepOctave(int module, int step, int octave) {
    // From the lower octave to the upper one leads through the middle.
    for (int turn = 0; turn < 2 && stepOctave(module, step) != octave; ++turn)
        turnStepOctave(module, step, stepOctave(module, step) < octave);
}

bool padHit(int step, int row) {
    return currentDrum().drumOn[step][row] == kDrumHit;
}

void togglePad(int step, int row) {
    sel109Drum(row);
    step109click(step);
    setEditSel(kDrumModule);
}

void drawPad(int step, int row, bool hit) {
    if (padHit(step, row) != hit) togglePad(step, row);
}

void chooseSlot(int module, int bank, int pattern) {
    markProject();
    if (bankInView(module) != bank) bankClick(module, bank);
    selPatt(module, pattern);
    setEditSel(module);
}

void dropCues() {
    if (songPosition->songMode) return; // the song chooses
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(project, m);
        if (at.nextBank == at.currBank && at.nextPatt == at.currPatt) continue;
        if (at.nextBank != at.currBank) bankClick(m, at.currBank);
        if (at.nextPatt != at.currPatt) selPatt(m, at.currPatt);
    }
}

} // namespace marlune
