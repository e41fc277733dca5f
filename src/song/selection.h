// Which bank and pattern a module plays and cues, and where its pattern ends.
//
// User-interface thread. Pattern mode: while the transport runs a selection cues, stopped it takes effect at
// once. Song mode: it works while recording is armed only, and goes into the bar track.
#pragma once

namespace marlune {

void selPatt(int module, int pattern); // leaves projectDirty alone; callers that want it set it
void bankClick(int module, int bank);

// Adds delta to loopEnd of the current pattern, limited to 0..15; sent and shown.
void editLoop(int module, int delta);

// Drags on the digits and the loop point; a loop drag edits the pattern on which it began, whatever plays at
// its end. index of a digit: 2 x module, + 1 for the cued one. y: twips.
void DigitPatt_MouseDown(int index, double y);
void DigitPatt_MouseMove(int index, double y); // and MouseUp
void LoopPt_MouseDown(int module, double y);
void LoopPt_MouseMove(int module, double y);
void LoopPt_MouseUp(int module);

// One notch of the wheel on a digit.
void stepDigit(int index, int steps);

} // namespace marlune
