#include "edit/calculator.h"

#include <cmath>

#include "project/project_record.h"
#include "util/tempo_calc.h"
#include "util/text_number.h"

namespace marlune {

marluneCalculator calculator;

void mnuToolsCalc_Click() {
    calculator.showModal();
}

marluneCalculator::marluneCalculator() {
    caption = "Calculator";
    Command1.caption = Command2.caption = "Calculate";
    cmdOK.caption = "OK";
}

void marluneCalculator::describe(FormBuilder& builder) {
    static const Label equals{"="};
    builder.beginFrame("Delay Calculator");
    builder.beginRow();
    builder.textBox("Tempo (BPM)", Text1, 6);
    builder.textBox("Duration (1/16 steps)", Text2, 6);
    builder.label(equals);
    static const Label delayCaption{"Delay (in ms)"};
    builder.label(delayCaption);
    builder.label(Label4);
    builder.button(Command1, FormBuilder::Role::plain, [this] { Command1_Click(); });
    builder.endRow();
    builder.endFrame();
    builder.beginFrame("Tempo Converter");
    builder.beginRow();
    builder.textBox("Tempo (BPM)", Text3, 6);
    builder.textBox("New Tempo (BPM)", Text4, 6);
    builder.label(equals);
    static const Label transposeCaption{"Transpose (semitone/cts)"};
    builder.label(transposeCaption);
    builder.label(Label7);
    builder.button(Command2, FormBuilder::Role::plain, [this] { Command2_Click(); });
    builder.endRow();
    builder.endFrame();
    builder.button(cmdOK, FormBuilder::Role::accept, [this] { cmdOK_Click(); });
}

void marluneCalculator::Form_Load() {
    Text1.text = Text3.text = Text4.text = std::to_string(int{project.tempo});
    Text2.text = "16";
    Command1_Click();
    Label7.text = "0";
}

void marluneCalculator::Command1_Click() {
    if (!isNumeric(Text1.text) || !isNumeric(Text2.text)) return;
    Label4.text = decimalText(BpmToMs(leadingInteger(Text1.text), leadingNumber(Text2.text)));
}

void marluneCalculator::Command2_Click() {
    if (!isNumeric(Text3.text) || !isNumeric(Text4.text)) return;
    const double oldBpm = leadingNumber(Text3.text);
    const double newBpm = leadingNumber(Text4.text);
    const double semitones = std::abs(roundHalfEven(100 * bpmConvert(oldBpm, newBpm)) / 100.0);
    if (oldBpm == newBpm) {
        Label7.text = "0";
    } else {
        Label7.text = (oldBpm < newBpm ? "+" : "-") + signedText(semitones);
    }
}

void marluneCalculator::cmdOK_Click() {
    unload();
}

} // namespace marlune
