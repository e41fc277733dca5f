// Periods by a MIDI clock that is heard: start, stop, continue and song position, and a line through the
// arrivals.
//
// The line is the delay-locked loop of F. Adriaensen, "Using a DLL to filter time" (Linux Audio Conference
// 2005): each arrival is e later than expected; the next is expected at t + b e + T, and T grows by c e,
// where
//     b = sqrt(2) w,  c = w w,  w = 2 pi B T.
// Its bandwidth B narrows with every clock, w = sqrt(6) / n for the n-th: nearly the gains of a straight line
// fitted through all clocks since the lock, so that it is locked within a beat and rests at n = kNarrowest
// (at 120 beats a minute B = 19 mHz; what is left of uniform jitter is a twentieth of it). When the mean of
// the recent e is more than the noise between neighbours can explain, the tempo is moving, and n is halved.
#pragma once

#include <array>
#include <atomic>

#include "boundary/clock_source.h"
#include "util/spsc_ring.h"

namespace marlune {

class MidiClock final : public ClockSource {
  public:
    // A link's thread, one for each number 0..kInputLinks-1. Anything but a clock's messages is ignored.
    void push(int link, const MidiMessage& message, std::int64_t when) noexcept;

    void look(std::int64_t now) noexcept override;
    void place(std::int64_t n, std::int64_t ns) noexcept override;
    // Never more than kAhead clocks beyond the last that was heard: a clock that stops is waited for.
    std::int64_t timeOf(std::int64_t n) const noexcept override;
    ClockWish takeWish() noexcept override;
    // Locked from the second beat of a steady clock on, until nothing has come for half a second.
    ClockSight sight() const noexcept override;

    static constexpr int kAhead = 2;

  private:
    struct Arrival {
        std::int64_t when = 0;
        std::array<std::uint8_t, 3> bytes{};
    };

    void take(const Arrival& arrival) noexcept;
    void clock(double when) noexcept;
    void follow(double when) noexcept;
    void wish(ClockWish::Kind kind, std::int64_t clocks) noexcept;
    double timeOfClock(std::int64_t number) const noexcept;

    std::array<SpscRing<Arrival, 1024>, kInputLinks> rings_;

    // Engine thread. Clocks are numbered from the song's beginning, as far as that is known.
    std::int64_t heard_ = -1;                 // number of the last clock
    std::int64_t position_ = 0;               // where a continue goes on, while stopped
    bool started_ = false;                    // by a start or continue
    std::int64_t entry_ = -1;                 // clock at which a run begins that the source has asked for
    std::int64_t base_ = 0;                   // clock of the run's period 0
    double last_ = 0;                         // arrival of the last clock, ns
    double time_ = 0;                         // its filtered time
    double next_ = 0;                         // and that expected of the next one
    double length_ = 0;                       // T, ns; 0: not known yet
    int count_ = 0;                           // n; 0: stands
    int since_ = 0;                           // clocks since it began
    double error_ = 0, mean_ = 0, noise_ = 0; // the last e, their short mean, the difference of neighbours
    std::array<ClockWish, 8> wishes_;
    int wishCount_ = 0;

    std::atomic<double> tempo_{0};
    std::atomic<bool> locked_{false};
};

} // namespace marlune
