// What the panel shows at present, and the way to change it: the view hears of real changes only.
//
// User-interface thread only. Starts out unknown, so that the first showing of everything reaches the view.
#pragma once

#include <string>

#include "boundary/panel_view.h"

namespace marlune {

void showFrame(Control control, int index, int frame); // frame limited to the strip
void showText(Control control, int index, const std::string& text);
void showNumber(Control control, int index, int number);
void showLamp(int step, bool lit);
void showEnabled(Control control, int index, bool enabled);

int shownFrame(Control control, int index); // -1 before the first showing
const std::string& shownText(Control control, int index);
int shownNumber(Control control, int index); // the number at the start of the text, 0 without one
bool shownLamp(int step);
bool shownEnabled(Control control, int index);

void resetShownState(); // unknown again; every control counts as enabled

} // namespace marlune
