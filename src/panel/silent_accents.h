// Accents that nobody hears, told in the status line. User-interface thread.
#pragma once

namespace marlune {

// An accented step plays at the value of its module's Accent knob, and at 0 not at all. Where a pattern that
// is selected has such steps, the status line says so and what to do.
void tellSilentAccents();

} // namespace marlune
