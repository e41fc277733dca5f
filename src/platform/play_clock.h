// The clock that plays: the machine's monotonic clock, or a server's frame time while one is followed.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "boundary/midi_ports.h"

namespace marlune {

// The machine's monotonic clock, ns. Any thread.
std::int64_t monotonicNs() noexcept;

class SystemPlayClock : public PlayClock {
  public:
    // Starts at the monotonic time, which it keeps showing until follow() is called.
    SystemPlayClock() noexcept;

    // Any thread; lock-free. Never less than any value handed out before.
    std::int64_t nowNs() noexcept override;

    // Play time at a monotonic time, as the present source has it; may lie behind values handed out already.
    std::int64_t at(std::int64_t monotonic) const noexcept;

    // One thread at a time (the one of the server's cycle): from now on `play` is the time at `monotonic` and
    // passes `rate` times as fast as the monotonic clock. Where `play` lies behind, nowNs() stands until it
    // has caught up. A source that falls silent leaves the clock running at its last rate.
    void follow(std::int64_t monotonic, std::int64_t play, double rate) noexcept;

  private:
    struct Line {
        std::atomic<std::int64_t> monotonic{0}, play{0};
        std::atomic<double> rate{1.0};
    };

    // The writer fills the line after the current one and then makes it current, so a reader never waits; it
    // reads again only if the writer came all the way round meanwhile.
    std::array<Line, 8> lines_;
    std::atomic<std::uint32_t> current_{0};
    std::atomic<std::int64_t> last_{0};
};

} // namespace marlune
