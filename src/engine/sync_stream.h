// The clock stream, and the count of periods that moves the notes against it.
#pragma once

#include <cstdint>

#include "engine/sinks.h"

namespace marlune {

inline constexpr int kPeriodsPerStep = 6; // 24 to the quarter note
inline constexpr int kMaxSyncOffset = 4;

class SyncStream {
  public:
    // periods: > 0 delays the notes against the clock, < 0 the clock against the notes; limited to -4..+4.
    // Counts from the next start on.
    void setOffset(int periods) noexcept;

    void start() noexcept;

    // One period: sends what is due and says whether a step begins with it. position: song position about to
    // be played. The stream opens with Start, or in song mode elsewhere than at 0 with the position and
    // Continue.
    bool period(int position, bool songMode, MidiSink& sink) noexcept;

    // One period that nobody hears: no clock goes out. Says whether a step begins with it.
    bool skip(int position, bool songMode) noexcept;

    // Sends Stop if the stream was opened. Where periods go on, it opens again with the next of its steps, by
    // the position and Continue.
    void stop(MidiSink& sink) noexcept;

    // Periods from the next one to the first step, 0 when it is the next; negative afterwards.
    std::int64_t periodsToFirstStep() const noexcept { return noteDelay_ - period_; }
    // Steps since the start of which all six periods are over.
    std::int64_t stepsCompleted() const noexcept;

  private:
    bool count(int position, bool songMode) noexcept;
    static void open(MidiSink& sink, std::int64_t position) noexcept;

    int offset_ = 0;
    int noteDelay_ = 0, clockDelay_ = 0;
    std::int64_t period_ = 0; // periods since the start
    int startPosition_ = 0;   // song position that the stream announces
    bool opened_ = false;
};

} // namespace marlune
