// Following a clock that isn't ours: the choice, what the source asks for, and what the panel shows of it.
//
// User-interface thread. Writes ClockState, and the project's tempo where the source shares it.
#pragma once

#include "boundary/clock_source.h"

namespace marlune {

// From now on. The component, the sources of this machine and the panel learn of it.
void chooseClock(const ClockSettings& settings);

// About twenty times a second while a clock is followed: the tempo goes both ways where it is shared, and
// what there is to see of the source is shown.
void tendClock();

// A wish of the source, as the component reported it. A start begins at the bar line of the tick, in song
// mode; a start while playing begins anew.
void clockWished(int kind, int tick);

// The name of a source in lists, and in four letters on the panel.
const char* clockName(ClockKind kind);
const char* clockBadge(ClockKind kind);

} // namespace marlune
