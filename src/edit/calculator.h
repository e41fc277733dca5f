// The tempo calculators: a delay time for a tempo and a length, a transposition for a change of tempo.
// They change nothing in the project. User-interface thread.
#pragma once

#include "boundary/form.h"

namespace marlune {

struct marluneCalculator final : Form {
    marluneCalculator();
    TextBox Text1, Text2, Text3, Text4; // tempo, steps; tempo, new tempo
    Label Label4, Label7;               // the two results
    Button Command1, Command2, cmdOK;

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void Command1_Click();
    void Command2_Click();
    void cmdOK_Click();
};
extern marluneCalculator calculator;

void mnuToolsCalc_Click();

} // namespace marlune
