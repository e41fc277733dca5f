// The internal clock: exact for a tempo however long it runs.
#pragma once

#include "boundary/clock_source.h"

namespace marlune {

// Lengths are a fraction of nanoseconds, so that period n is at its place without a growing error: six
// periods of a tempo fill exactly one sixteenth of it.
class PeriodClock final : public ClockSource {
  public:
    // Changes the rate: next is the next period of the run. Those before keep their place, the next one
    // follows the last at the new rate. tempo: beats per minute, > 0.
    void setTempo(int tempo, std::int64_t next) noexcept {
        setLength(kMinuteNs / kPeriodsPerBeat, tempo, next);
    }
    // ms: > 0.
    void setPeriod(int ms, std::int64_t next) noexcept { setLength(ms * kMillisecondNs, 1, next); }

    // Every place fits.
    void place(std::int64_t n, std::int64_t ns) noexcept override {
        anchor_ = ns;
        first_ = n;
    }
    std::int64_t timeOf(std::int64_t n) const noexcept override {
        return anchor_ + (n - first_) * numerator_ / denominator_;
    }
    // Moves all periods to come.
    void shift(std::int64_t ns) noexcept { anchor_ += ns; }

  private:
    static constexpr std::int64_t kMinuteNs = 60'000'000'000;
    static constexpr std::int64_t kMillisecondNs = 1'000'000;
    static constexpr std::int64_t kPeriodsPerBeat = 24;

    void setLength(std::int64_t numerator, std::int64_t denominator, std::int64_t next) noexcept {
        if (next > first_) place(next - 1, timeOf(next - 1));
        numerator_ = numerator;
        denominator_ = denominator;
    }

    std::int64_t anchor_ = 0; // time of period first_
    std::int64_t first_ = 0;
    std::int64_t numerator_ = kMillisecondNs, denominator_ = 1;
};

} // namespace marlune
