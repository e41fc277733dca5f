// Back to a freshly started program, for those who start it more than once. User-interface thread.
#pragma once

namespace marlune {

// All data, run-time state, forms, drags, open gestures and undo steps, the random source, what is shown and
// what is hooked. Neither engine nor devices nor the display boundary: whoever set them takes them away.
void resetProgram();

} // namespace marlune
