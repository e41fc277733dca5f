// clock.cfg: whose time is followed, beside the configuration. User-interface thread.
#pragma once

#include "boundary/clock_source.h"

namespace marlune {

// What the file in the configuration folder says, and the internal clock where it says nothing readable.
ClockSettings loadClockSettings();

// A line "key = value" for each; without a folder nothing is written. False where it failed.
bool saveClockSettings(const ClockSettings& settings);

} // namespace marlune
