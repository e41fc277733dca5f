// The ports of the ALSA sequencer, where the kernel has one.
#pragma once

#include <memory>

#include "platform/port_system.h"

namespace marlune {

// Null where the kernel offers no sequencer or it cannot be used. Prints nothing. Messages go out at once,
// whatever their due time.
std::unique_ptr<PortSystem> openAlsaPorts();

} // namespace marlune
