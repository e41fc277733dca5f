// Copy and paste of the module under edit: the current pattern with its knobs in pattern mode, a run of bars
// in song mode, and one bar of knob movements. User-interface thread.
#pragma once

namespace marlune {

void mnuEditCut_Click();         // the Copy entry
void mnuEditPaste_Click();       // nothing where the clipboard doesn't fit the module
void mnuEditCopyPattern_Click(); // "Copy Knobs": the bar of the song position
void mnuEditPastePattern_Click();
void ClearCopyBuffer();

// Knobs of a module: the first one and how many.
struct KnobRange {
    int first, count;
};
KnobRange knobsOf(int module);

} // namespace marlune
