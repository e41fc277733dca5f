// What the desktop's tests share: a moment of the instrument to be shown, and what the user did to it.
#pragma once

#include "picture/panel_state.h"

namespace marlune {

// What the desktop reported to the panel since the last time, joined by blanks; forgets it.
std::string takeEvents();

// The instrument in pattern mode, with knobs turned, lamps lit and texts to see.
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
    for (int row = 0; row < 7; ++row) state.setText(Control::Offset109, row, std::to_string(36 + row));
    for (int step = 0; step < 16; step += 3) state.lamps[step] = true;
    for (const Control display : {Control::timeDisplay, Control::microDisplay})
        state.setEnabled(display, 0, false);
    return state;
}

} // namespace marlune
