// What the live engine and the one in virtual time have in common beyond the entry points.
#pragma once

#include <string>

#include "boundary/engine_component.h"
#include "project/project_record.h"

namespace marlune {

// User-interface thread.
class PlaybackEngine : public EngineComponent {
  public:
    // After steps complete steps (all six periods of the last one) the timer halts by itself, as if the clock
    // stood still: no clock, no tick, nothing released, until it is stopped or started again. Counts from the
    // start; 0 for no limit.
    virtual void limitSteps(int steps) = 0;

    // Whether the limit was reached since the last start or stop.
    virtual bool halted() const = 0;

    // Waits until all calls made before are carried out, so that what they send has been logged.
    virtual void settle() = 0;

    // Whether the component's copy of the patterns is that of the record; where not, difference (when given)
    // names the first place.
    virtual bool equalsRecord(const ProjectRecord& record, std::string* difference = nullptr) = 0;
};

} // namespace marlune
