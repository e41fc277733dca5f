// The twenty value knobs and the tempo knob. User-interface thread.
#pragma once

namespace marlune {

int knobFrame(int value);  // frame 0..53 of a value 0..127
int tempoFrame(int tempo); // frame 0..53 of a tempo 40..240

void refreshKnob(int knob);    // marks the project, shows the knob, hands the value to the component
void refreshKnobGfx(int knob); // marks the project and shows the knob; the tick has sent the value already
void midiKnobUpdate(int knob); // pattern mode: sent now; song mode: sent with the next step
void showTempo();              // the tempo that rules: the project's, or that of the clock that is followed
void refreshTempo();           // limits, shows and spreads the tempo; a running transport follows next tick

// y: twips, downwards. Ignored for a value knob in song mode unless recording is armed. A drag counts from
// the press: 750 twips span the range, ten times as many with fine.
void knobSprite_MouseDown(int knob, bool leftButton, double y);
void knobSprite_MouseMove(int knob, bool leftButton, double y, bool fine);
void knobTempo_MouseDown(bool leftButton, double y);
void knobTempo_MouseMove(bool leftButton, double y, bool fine);

// One notch of the wheel or one press of an arrow key, under the guards of a drag.
void stepKnob(int knob, int steps);
void stepTempo(int steps);

// The fourth tap in an even row sets the tempo, and each further one makes it more exact. A tap that comes
// too late, or out of the row, begins a new one.
void tapTempo();

// A drag of a field with a value: where it begins, and how far it has come, in twips upwards.
void startDrag(double y, int value);
double dragDistance(double y, bool fine, int value);

} // namespace marlune
