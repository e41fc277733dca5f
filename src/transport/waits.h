// Waits of the user-interface thread in which events run.
#pragma once

#include "util/stop_watch.h"

namespace marlune {

// Keeps a pressed sprite visible: 200 ms in which events run. Ends at once when the program closes.
void delay();

// Runs events until the watch has reached ms or `held`, where given, is false; sleeps in between. Ends at
// once when the program closes.
void runEventsUntil(const CStopWatch& watch, int ms, const bool* held = nullptr);

// The window is going: every wait under way or to come ends at once.
void endWaits();

} // namespace marlune
