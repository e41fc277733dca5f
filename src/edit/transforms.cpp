#include "edit/transforms.h"

#include <algorithm>

#include "boundary/engine_component.h"
#include "panel/editing.h"
#include "panel/refresh.h"
#include "panel/step_editing.h"
#include "project/pattern_push.h"
#include "project/run_state.h"
#include "song/selection.h"

namespace marlune {

namespace {

constexpr int kOctave = 12;

void transposeBass(int module, int delta) {
    const Selection at = selectionOf(project, module);
    for (int s = 0; s < kSteps; ++s) {
        BassStep& step = currentBass(module).steps[s];
        const BassStep before = step;
        step = transposed(before, delta);
        const bool cleared = (before.up || before.down) && !step.up && !step.down;
        if (cleared || before.up != step.up)
            Set103Up32(module, at.currBank, at.currPatt, s, step.up.number());
        if (cleared || before.down != step.down) {
            Set103Down32(module, at.currBank, at.currPatt, s, step.down.number());
        }
        Set103Note32(module, at.currBank, at.currPatt, s, step.note);
    }
    refresh103Patt(module);
}

void transposeDrum(int delta) {
    const DrumModule& drum = project.drum;
    if (drum.selDrum >= kDrums) return;
    Le16& note = currentDrum().drumNote[drum.selDrum];
    note = std::clamp(note + delta, 0, kTopValue);
    Set109DrumNote32(drum.currBank, drum.currPatt, drum.selDrum, note);
    refresh109Patt(drum.selDrum);
}

template <typename Steps>
void rotateSteps(Steps& steps, int direction) {
    std::rotate(steps.begin(), direction > 0 ? steps.end() - 1 : steps.begin() + 1, steps.end());
}

void onEdited(void (*routine)(int, int), int argument) {
    markProject();
    routine(editingState->editSel, argument);
}

} // namespace

BassStep transposed(const BassStep& step, int delta) {
    BassStep moved = step;
    const int note = step.note + delta;
    if (note < 0) {
        // At the bottom of the lower octave there is nowhere to go.
        moved.note = step.down ? 0 : note + kOctave;
        if (!step.down) {
            moved.down = !step.up;
            moved.up = false;
        }
    } else if (note > kTopNote) {
        moved.note = step.up ? kTopNote : note - kOctave;
        if (!step.up) {
            moved.up = !step.down;
            moved.down = false;
        }
    } else {
        moved.note = note;
    }
    return moved;
}

void transposePatt(int module, int delta) {
    if (module == kDrumModule) {
        transposeDrum(delta);
    } else {
        transposeBass(module, delta);
    }
}

void editMovePatt(int module, int direction) {
    if (module == kDrumModule) {
        rotateSteps(currentDrum().drumOn, direction);
    } else {
        rotateSteps(currentBass(module).steps, direction);
    }
    const Selection at = selectionOf(project, module);
    pushPatternToEngine(module, at.currBank, at.currPatt);
    refreshPattern(module);
}

void mnuEditTransposeDown_Click() {
    onEdited(transposePatt, -1);
}
void mnuEditTransposeUp_Click() {
    onEdited(transposePatt, +1);
}
void mnuEditMoveLeft_Click() {
    onEdited(editMovePatt, -1);
}
void mnuEditMoveRight_Click() {
    onEdited(editMovePatt, +1);
}
void mnuEditLoopPt2_Click() {
    onEdited(editLoop, -1);
}
void mnuEditLoop1_Click() {
    onEdited(editLoop, +1);
}

void mnuPatchDec_Click() {
    if (songPosition->songMode || editingState->editSel == kDrumModule) return;
    setPatch(editingState->editSel, currentBass(editingState->editSel).patch - 1);
}

void mnuPatchInc_Click() {
    if (editingState->editSel == kDrumModule) return;
    setPatch(editingState->editSel, currentBass(editingState->editSel).patch + 1);
}

} // namespace marlune
