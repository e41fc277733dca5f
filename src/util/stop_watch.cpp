#include "util/stop_watch.h"

#include <chrono>

namespace marlune {

namespace {

std::uint32_t monotonicMilliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

MillisecondClock millisecondClock = monotonicMilliseconds;

} // namespace

void setMillisecondClock(MillisecondClock clock) {
    millisecondClock = clock != nullptr ? clock : monotonicMilliseconds;
}

CStopWatch::CStopWatch() : minResolution(1), maxResolution(1000000), startTime(millisecondClock()) {}

std::int32_t CStopWatch::Elapsed() const {
    return static_cast<std::int32_t>(millisecondClock() - startTime);
}

void CStopWatch::Reset() {
    startTime = millisecondClock();
}

} // namespace marlune
