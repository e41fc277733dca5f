// Brings the component's posted messages to the program. User-interface thread.
#pragma once

namespace marlune {

// A message procedure in the way of window systems: window, message number, wParam, lParam.
using WindowProc = long (*)(long window, unsigned message, long wParam, long lParam);

// The procedure of the main window as it was before the hook; null for none.
extern WindowProc previousWndProc;

// The hook: calls the previous procedure first and returns its result, then handles ticks (1300), patterns
// reached (1310..1312) and cues (1320..1322). All other messages pass.
long engineWndProc(long window, unsigned message, long wParam, long lParam);

// Takes every message that the component has posted and hands it to engineWndProc while it is hooked. What
// was posted before the last placing speaks of an earlier place and is dropped; the component has reported
// anew.
void pumpEngineMessages();

void hookEngineMessages(bool hooked);

} // namespace marlune
