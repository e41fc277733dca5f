// Swing and slide on the panel. User-interface thread; the owner's routines of GrooveState.
#pragma once

namespace marlune {

// Shows the project's swing and the slide of the steps under edit; the component learns what it doesn't know.
void refreshGroove();

// y: twips; 750 of them span the range 50..75, ten times as many with fine.
void swing_MouseDown(bool leftButton, double y);
void swing_MouseMove(bool leftButton, double y, bool fine);
void stepSwing(int steps);

void showSlide(int module);
// Of the step under edit. The first one set in a project makes its slides heard.
void slideClick(int module);

} // namespace marlune
