// Random values for one aspect of the current pattern, and random patterns for a run of bars.
// User-interface thread. Draws come from the source set, uniform in [0, 1).
#pragma once

#include <functional>

#include "boundary/form.h"

namespace marlune {

using RandomSource = std::function<float()>;

// The source of all draws. Start-up seeds one from the clock; null puts an unseeded default back.
void setRandomSource(RandomSource source);
RandomSource seededRandom(unsigned seed);

void randPitch(int module);  // notes 0..12; of the drums the note of the row under edit
void RandNote(int module);   // notes against rests, hits against none
void randAccent(int module); // of the drums row 7
void randoctave(int module); // up, down, neither: a third each; module 0 or 1

void mnuToolsRNotes_Click();
void mnuToolsRandRest_Click();
void mnuToolsROctave_Click(); // nothing on the drum module
void mnuToolsRAccents_Click();
void mnuToolsSongRandom_Click();

struct marluneRandomPattern final : Form {
    marluneRandomPattern();
    TextBox Text1; // number of bars
    Label Label1, Label2, Label3;
    CheckBox Check1[3]; // keep their state between openings
    Button Command1, Command2;

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void Form_Activate() override;
    void Command1_Click(); // Randomize!
    void Command2_Click(); // Cancel
};
extern marluneRandomPattern songRandomizer;

} // namespace marlune
