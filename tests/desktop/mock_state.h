// Two moments of the instrument, for pictures and tests: patterns standing still, and a song being recorded.
#pragma once

#include "desktop/panel_state.h"

namespace marlune {

PanelState patternMoment();
PanelState songMoment();

} // namespace marlune
