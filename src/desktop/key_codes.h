// From the toolkit's keys to the virtual key codes of the panel's key table.
#pragma once

#include <cstdint>

class QKeyEvent;

namespace marlune {

struct KeyPress {
    int qtKey = 0;              // Qt::Key: what the key means under the present layout
    std::uint32_t scanCode = 0; // where the key lies (evdev code + 8); 0 when unknown
    bool keypad = false;
};

// Letters and named keys go by their meaning. The digit row and the punctuation beside the letters go by
// their place, so that 1..8, the brackets and the patch keys stay under the same fingers on every layout;
// where the place is unknown, by meaning. 0: the panel knows no such key.
int virtualKey(const KeyPress& key);

// Whether holding the key repeats its command: winding and tempo do, what toggles or selects does not.
bool repeats(int virtualKeyCode);

int virtualKey(const QKeyEvent& event);
int modifierMask(const QKeyEvent& event); // 1 Shift, 2 Ctrl, 4 Alt

} // namespace marlune
