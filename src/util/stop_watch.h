// A millisecond stop watch on a free-running 32-bit clock.
#pragma once

#include <cstdint>

namespace marlune {

// Milliseconds of a clock that never stops and wraps at 32 bits.
using MillisecondClock = std::uint32_t (*)();

// The clock of all stop watches; null puts the monotonic clock back. For virtual time.
void setMillisecondClock(MillisecondClock clock);

// Runs from its creation on and has no stopped state.
class CStopWatch {
  public:
    CStopWatch();
    [[nodiscard]] std::int32_t Elapsed() const; // ms since creation or Reset; right across the clock's wrap
    [[nodiscard]] std::int32_t MinimumResolution() const { return minResolution; }
    [[nodiscard]] std::int32_t MaximumResolution() const { return maxResolution; }
    void Reset();

  private:
    std::int32_t minResolution; // ms, period limits of the system's timer
    std::int32_t maxResolution;
    std::uint32_t startTime;
};

} // namespace marlune
