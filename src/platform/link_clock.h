// A session of Ableton Link as a source of time: bars of four beats in phase with the others, the tempo
// theirs and ours, start and stop shared where that is wished.
//
// An optional part: built where the library's headers are (MARLUNE_LINK), otherwise makeLinkClock() gives
// null.
#pragma once

#include <memory>

#include "boundary/clock_source.h"

namespace marlune {

class LinkClock : public ClockSource {
  public:
    // User-interface thread. A session is joined or left; that may take a moment.
    virtual void enable(bool on, bool shareStart, double tempo) = 0;
    virtual void setTempo(double tempo) = 0;
};

// tempo: of a session that nobody else is in.
std::unique_ptr<LinkClock> makeLinkClock();

} // namespace marlune
