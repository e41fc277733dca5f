#include "platform/play_clock.h"

#include <ctime>

namespace marlune {

std::int64_t monotonicNs() noexcept {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

SystemPlayClock::SystemPlayClock() noexcept {
    const std::int64_t now = monotonicNs();
    lines_[0].monotonic = now;
    lines_[0].play = now;
    last_ = now;
}

std::int64_t SystemPlayClock::at(std::int64_t monotonic) const noexcept {
    for (;;) {
        const std::uint32_t number = current_.load(std::memory_order_acquire);
        const Line& line = lines_[number % lines_.size()];
        // A value of a later turn brings with it the number that was current when it was written.
        const std::int64_t from = line.monotonic.load(std::memory_order_acquire);
        const std::int64_t play = line.play.load(std::memory_order_acquire);
        const double rate = line.rate.load(std::memory_order_acquire);
        if (current_.load(std::memory_order_relaxed) - number >= lines_.size() - 1) continue;
        // Only the deviation goes through floating point, so that a rate of 1 is exact for ever.
        const std::int64_t passed = monotonic - from;
        return play + passed + static_cast<std::int64_t>(static_cast<double>(passed) * (rate - 1.0));
    }
}

std::int64_t SystemPlayClock::nowNs() noexcept {
    const std::int64_t now = at(monotonicNs());
    std::int64_t last = last_.load(std::memory_order_relaxed);
    while (last < now && !last_.compare_exchange_weak(last, now, std::memory_order_relaxed)) {}
    return now > last ? now : last;
}

void SystemPlayClock::follow(std::int64_t monotonic, std::int64_t play, double rate) noexcept {
    const std::uint32_t next = current_.load(std::memory_order_relaxed) + 1;
    Line& line = lines_[next % lines_.size()];
    line.monotonic.store(monotonic, std::memory_order_release);
    line.play.store(play, std::memory_order_release);
    line.rate.store(rate, std::memory_order_release);
    current_.store(next, std::memory_order_release);
}

} // namespace marlune
