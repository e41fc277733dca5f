// What the pointer does on the panel, on its way to the handlers.
//
// The desktop reports press, move and release for each control under the pointer (a drag keeps its control)
// and the wheel; click and doubleClick follow by themselves, see panelPointer. User-interface thread only.
#pragma once

#include <string>

#include "boundary/menus.h"
#include "boundary/panel_view.h"

namespace marlune {

enum class PointerAction { press, move, release };

struct PointerEvent {
    PointerAction action = PointerAction::press;
    bool leftButton = true; // which button was pressed, or is held while moving
    double y = 0;           // twips below the panel's top: 15 to a logical pixel
    bool fine = false;      // Shift is held: a knob drag is ten times finer
    bool second = false;    // this press is the second of a fast pair
    bool inside = true;     // a release still over the control it pressed
    bool alt = false;       // held with a press
    bool ctrl = false;
};

// Routes one event to the handlers of control(index). A control without press and release handlers of its own
// gets its click (or double click) with the press; the others after the release inside.
void panelPointer(Control control, int index, const PointerEvent& event);

// Wheel over a control, or Up and Down with the keyboard focus on it: changes its number by steps (positive
// is up) through the routines and guards of a drag. Controls without a number ignore it.
void panelWheel(Control control, int index, int steps);

// The key that presses the control with the keyboard focus: press, release and click in one.
void panelPress(Control control, int index);

// Keys of the panel. code: virtual key code; shift mask: 1 Shift, 2 Ctrl, 4 Alt.
void Form_KeyDown(int code, int shift);
void Form_KeyUp(int code, int shift);

// The keyboard focus left the window: held modifiers count as released.
void panelFocusLost();

// The MIDI input has woken the event loop: read in event mode, left alone in polled mode.
void midiArrived();

// The playback component has posted messages.
void engineSpoke();

// A menu entry was chosen; nothing where it is disabled or hidden at present.
void menuClicked(Menu menu);

// One of the recent files was chosen: as File, Open with that name.
void recentFileChosen(const std::string& fileName);

// Whether an entry has a command; the desktop disables one without.
bool menuHasCommand(Menu menu);

} // namespace marlune
