// Clears and initializes patterns and songs, rebuilds the song from pattern mode, copies bars.
// User-interface thread.
#pragma once

#include "boundary/form.h"

namespace marlune {

void mnuToolsClear_Click();            // the current pattern of the module under edit: rests, no hits
void mnuToolsInit_Click();             // pattern mode: a fresh pattern; song mode: a fresh song
void mnuToolsInitBarfromPatt_Click();  // song mode: the bar of the song position from pattern mode's state
void mnuToolsInitSongfromPatt_Click(); // the whole song from pattern mode's state, patternImage

// Copies a run of bars of the module under edit, with their knob movements if asked for.
struct marlunePatternCopy final : Form {
    marlunePatternCopy();
    TextBox Text1;   // number of bars
    CheckBox Check1; // "Copy Knobs"; keeps its state between openings
    Label Label1, Label2;
    Button Command1, Command2;

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void Form_Activate() override;
    void Command1_Click(); // OK
    void Command2_Click(); // Cancel
};
extern marlunePatternCopy patternCopyForm;
void showPatternCopy();

} // namespace marlune
