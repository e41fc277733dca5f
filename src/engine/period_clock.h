// When the timer's periods are due: exact for a tempo however long it runs.
#pragma once

#include <cstdint>

namespace marlune {

// Lengths are a fraction of nanoseconds, so that period n is at its place without a growing error: six
// periods of a tempo fill exactly one sixteenth of it.
class PeriodClock {
  public:
    // Changes the rate. Periods that are over keep their place, the next one follows the last at the new
    // rate. tempo: beats per minute, > 0.
    void setTempo(int tempo) noexcept { setLength(kMinuteNs / kPeriodsPerBeat, tempo); }
    // ms: > 0.
    void setPeriod(int ms) noexcept { setLength(ms * kMillisecondNs, 1); }

    // Places the first period.
    void anchorAt(std::int64_t ns) noexcept {
        anchor_ = ns;
        count_ = 0;
    }
    // Moves all periods to come.
    void shift(std::int64_t ns) noexcept { anchor_ += ns; }

    // Time of the period that comes ahead periods after the next one.
    std::int64_t deadline(std::int64_t ahead = 0) const noexcept {
        return anchor_ + (count_ + ahead) * numerator_ / denominator_;
    }
    void advance() noexcept { ++count_; }

  private:
    static constexpr std::int64_t kMinuteNs = 60'000'000'000;
    static constexpr std::int64_t kMillisecondNs = 1'000'000;
    static constexpr std::int64_t kPeriodsPerBeat = 24;

    void setLength(std::int64_t numerator, std::int64_t denominator) noexcept {
        if (count_ > 0) {
            anchor_ = deadline(-1);
            count_ = 1;
        }
        numerator_ = numerator;
        denominator_ = denominator;
    }

    std::int64_t anchor_ = 0;
    std::int64_t count_ = 0; // periods since the anchor, up to the next one
    std::int64_t numerator_ = kMillisecondNs, denominator_ = 1;
};

} // namespace marlune
