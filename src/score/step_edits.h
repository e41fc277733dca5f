// The edits that windows make by the panel's routines: one step aimed at, its module selected.
//
// Each makes what the click on the panel makes: the same routine, the same engine calls. Callers have asked
// the guards. module: 0..2 (0 or 1 for basslines), step 0..15, row of the drums 0..7. User-interface thread.
#pragma once

namespace marlune {

void setStepNote(int module, int step, int note);  // the lit note becomes a rest, the ring sounds again
void drawStepNote(int module, int step, int note); // a step that is so already stays
void restStep(int module, int step);               // keeps the note; a rest stays
void toggleStepAccent(int module, int step);
void drawStepAccent(int module, int step, bool accent);
int stepOctave(int module, int step);               // -1, 0, 1
void turnStepOctave(int module, int step, bool up); // as the panel's caps
void drawStepOctave(int module, int step, int octave);
void togglePad(int step, int row);
void drawPad(int step, int row, bool hit);
bool padHit(int step, int row);

// A slot: cued while the transport runs, taken at once else; the current one takes the cue back.
void chooseSlot(int module, int bank, int pattern);
void dropCues(); // of all modules

} // namespace marlune
