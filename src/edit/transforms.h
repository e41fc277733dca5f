// Commands that change the whole current pattern of a module by one step. User-interface thread.
#pragma once

#include "project/project_record.h"

namespace marlune {

// By a semitone (delta -1 or +1): basslines carry into the octave flags and stop at the ends of their range;
// of the drums the note of the row under edit moves, rows 0..6 only.
void transposePatt(int module, int delta);

// One semitone for one step; the pitch moves by exactly one until the end of the range.
BassStep transposed(const BassStep& step, int delta);

// Rotates by a step over all sixteen, +1 to the right; loop point, patch and drum notes stay.
void editMovePatt(int module, int direction);

void mnuEditTransposeDown_Click();
void mnuEditTransposeUp_Click();
void mnuEditMoveLeft_Click();
void mnuEditMoveRight_Click();
void mnuEditLoopPt2_Click();
void mnuEditLoop1_Click();
void mnuPatchDec_Click(); // basslines in pattern mode
void mnuPatchInc_Click(); // basslines in either mode

} // namespace marlune
