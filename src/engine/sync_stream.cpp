#include "engine/sync_stream.h"

#include <algorithm>

#include "boundary/midi_bytes.h"

namespace marlune {

namespace {

constexpr std::int64_t kSongPositions = 16384; // what the message can tell

} // namespace

void SyncStream::setOffset(int periods) noexcept {
    offset_ = std::clamp(periods, -kMaxSyncOffset, kMaxSyncOffset);
}

void SyncStream::start() noexcept {
    noteDelay_ = std::max(offset_, 0);
    clockDelay_ = std::max(-offset_, 0);
    period_ = 0;
    opened_ = false;
}

bool SyncStream::period(int position, bool songMode, MidiSink& sink) noexcept {
    const std::int64_t clocks = period_ - clockDelay_;
    const bool step = count(position, songMode);
    if (clocks < 0) return step;
    if (!opened_ && clocks % kPeriodsPerStep == 0) {
        open(sink, startPosition_ + clocks / kPeriodsPerStep);
        opened_ = true;
    }
    if (opened_) sink.midi(Role::sync, midiBytes(kTimingClock));
    return step;
}

bool SyncStream::skip(int position, bool songMode) noexcept {
    return count(position, songMode);
}

bool SyncStream::count(int position, bool songMode) noexcept {
    // Taken with the first period: a clock that comes later announces where the notes began all the same.
    if (period_ == 0) startPosition_ = songMode ? position : 0;
    const std::int64_t notePeriod = period_++ - noteDelay_;
    return notePeriod >= 0 && notePeriod % kPeriodsPerStep == 0;
}

void SyncStream::open(MidiSink& sink, std::int64_t position) noexcept {
    if (position == 0) {
        sink.midi(Role::sync, midiBytes(kClockStart));
        return;
    }
    sink.midi(Role::sync, songPositionPointer(static_cast<int>(position % kSongPositions)));
    sink.midi(Role::sync, midiBytes(kClockContinue));
}

void SyncStream::stop(MidiSink& sink) noexcept {
    if (opened_) sink.midi(Role::sync, midiBytes(kClockStop));
    opened_ = false;
}

std::int64_t SyncStream::stepsCompleted() const noexcept {
    return std::max<std::int64_t>(period_ - noteDelay_, 0) / kPeriodsPerStep;
}

} // namespace marlune
