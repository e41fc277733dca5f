// A moment of the instrument in pattern mode, something to see in every control.
#pragma once

#include "desktop/panel_state.h"

namespace marlune {

inline PanelState patternMoment() {
    PanelState state;
    for (int knob = 0; knob < 20; ++knob) {
        state.setFrame(Control::knobSprite, knob, (13 * knob + 5) % 54);
        state.setText(Control::UserTitle, knob, "Knob " + std::to_string(knob));
    }
    for (int module = 0; module < 3; ++module) {
        state.setText(Control::LoopPt, module, "16");
        state.setFrame(Control::SelEditPicture, module, module == 0 ? 0 : 1);
        for (const int digit : {0, 1}) state.setFrame(Control::DigitPatt, 2 * module + digit, 9 * module + 2);
    }
    for (const int module : {0, 1}) {
        state.setText(Control::PatchID, module, module == 0 ? "24" : "NONE");
        state.setFrame(Control::keys, module, 7 - 4 * module);
        state.setFrame(Control::step103, module, 6 - 4 * module);
    }
    for (int row = 0; row < 7; ++row) state.setText(Control::Offset109, row, std::to_string(36 + row));
    for (int step = 0; step < 16; step += 3) state.lamps[step] = true;
    state.setFrame(Control::sel109, 0, 1);
    state.setFrame(Control::LEDBar, 0, 16);
    state.setText(Control::tempoBPM, 0, "132");
    state.setText(Control::timeDisplay, 0, "1");
    state.setEnabled(Control::timeDisplay, 0, false);
    state.setEnabled(Control::microDisplay, 0, false);
    return state;
}

} // namespace marlune
