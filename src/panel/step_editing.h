// Editing the step under edit of a bassline, and the row under edit of the drums.
//
// User-interface thread. Each edit changes the record, tells the component and shows itself, in this order.
// module: 0 or 1; key: 0..12; step: 0..15. Callers refuse the edits in song mode.
#pragma once

namespace marlune {

void step103Click(int module, int step); // selects a step; works in song mode too
// Enters a note: another key sounds with its note, the step's own key turns it into a rest and back.
void set103Note(int module, int key);
void accentClick(int module);
void upClick(int module); // with the other octave set both go off: back to the middle
void downClick(int module);
void step109click(int step); // toggles the hit of the row under edit

// The drag on PatchID. Shown while it moves, stored at the release in the pattern on which it began. y:
// twips.
void PatchID_MouseDown(int module, double y);
void PatchID_MouseMove(int module, double y);
void PatchID_MouseUp(int module);
void setPatch(int module, int patch); // -1..127; limited; stored, sent, shown

} // namespace marlune
