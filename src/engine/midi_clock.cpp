#include "engine/midi_clock.h"

#include <algorithm>
#include <cmath>

#include "boundary/limits.h"
#include "boundary/midi_bytes.h"

namespace marlune {

namespace {

constexpr int kClocksPerTick = 6;
constexpr int kNarrowest = 1000;
constexpr int kWidest = 4;
constexpr int kLockCount = 24;     // clocks
constexpr double kShortest = 5e6;  // between clocks, ns: 500 beats a minute
constexpr double kLongest = 250e6; // and 10
constexpr double kPause = 4;       // lengths without a clock, after which it begins anew
constexpr double kSilentNs = 500e6;
constexpr double kMeanPart = 1.0 / 8; // of the newest error in the short mean
constexpr double kNoisePart = 1.0 / 64;
constexpr double kLeastNoise = 50e3; // ns
constexpr double kMinuteNs = 60e9;

// The least number at or above value that leaves the remainder when divided by the bar.
std::int64_t inBar(std::int64_t value, std::int64_t remainder) {
    const std::int64_t apart = (remainder - value) % kClocksPerBar;
    return value + (apart < 0 ? apart + kClocksPerBar : apart);
}

} // namespace

void MidiClock::push(int link, const MidiMessage& message, std::int64_t when) noexcept {
    const int status = message.bytes[0];
    const bool counts =
        status == kSongPosition || status == kTimingClock || (status >= kClockStart && status <= kClockStop);
    if (counts && link >= 0 && link < kInputLinks)
        rings_[link].push({when, {message.bytes[0], message.bytes[1], message.bytes[2]}});
}

void MidiClock::look(std::int64_t now) noexcept {
    Arrival arrival;
    for (auto& ring : rings_)
        while (ring.pop(arrival)) take(arrival);
    const double silence = static_cast<double>(now) - last_;
    if (length_ > 0 && silence > kPause * length_) count_ = 0;
    const bool heard = silence < kSilentNs;
    locked_.store(heard && since_ >= kLockCount, std::memory_order_relaxed);
    tempo_.store(heard && length_ > 0 ? kMinuteNs / (24 * length_) : 0, std::memory_order_relaxed);
}

void MidiClock::take(const Arrival& arrival) noexcept {
    switch (arrival.bytes[0]) {
        case kTimingClock: clock(static_cast<double>(arrival.when)); break;
        case kClockStart: position_ = 0; [[fallthrough]];
        case kClockContinue:
            started_ = true;
            heard_ = position_ - 1;
            wish(ClockWish::start, position_);
            break;
        case kClockStop:
            if (!started_) break;
            started_ = false;
            position_ = heard_ + 1;
            entry_ = -1;
            wish(ClockWish::stop, position_);
            break;
        default: // a song position counts where the clock stands
            if (started_) break;
            position_ = (arrival.bytes[1] + 128 * arrival.bytes[2]) * kClocksPerTick;
            wish(ClockWish::locate, position_);
            break;
    }
}

// Runs begin at bar lines: from within a bar, at the next one.
void MidiClock::wish(ClockWish::Kind kind, std::int64_t clocks) noexcept {
    const std::int64_t bar = inBar(clocks, 0);
    if (kind == ClockWish::start) entry_ = bar;
    if (wishCount_ == static_cast<int>(wishes_.size())) return;
    wishes_[wishCount_++] = {kind, static_cast<std::int32_t>(bar / kClocksPerTick % kSongTicks)};
}

ClockWish MidiClock::takeWish() noexcept {
    if (wishCount_ == 0) return {};
    const ClockWish first = wishes_[0];
    std::copy(wishes_.begin() + 1, wishes_.begin() + wishCount_--, wishes_.begin());
    return first;
}

void MidiClock::clock(double when) noexcept {
    const double gap = when - last_;
    last_ = when;
    ++heard_;
    ++since_;
    if (count_ == 0 || gap > (length_ > 0 ? kPause * length_ : kLongest)) {
        count_ = since_ = 1;
        time_ = when;
        next_ = when + length_;
        mean_ = noise_ = error_ = 0;
    } else if (length_ == 0) {
        length_ = std::clamp(gap, kShortest, kLongest);
        count_ = 2;
        time_ = when;
        next_ = when + length_;
    } else {
        follow(when);
    }
}

void MidiClock::follow(double when) noexcept {
    count_ = std::min(count_ + 1, kNarrowest);
    const double error = when - next_;
    const double apart = std::abs(error - error_);
    noise_ += (apart - noise_) * std::max(kNoisePart, 1.0 / count_);
    mean_ += (error - mean_) * kMeanPart;
    error_ = error;
    if (std::abs(mean_) > noise_ + kLeastNoise && count_ > kWidest) {
        count_ = std::max(count_ / 2, kWidest);
        mean_ = 0;
    }
    const double w = std::sqrt(6.0) / (count_ + 0.5);
    time_ = next_;
    next_ += std::sqrt(2.0) * w * error + length_;
    length_ = std::clamp(length_ + w * w * error, kShortest, kLongest);
}

double MidiClock::timeOfClock(std::int64_t number) const noexcept {
    return number > heard_ ? next_ + static_cast<double>(number - heard_ - 1) * length_
                           : time_ - static_cast<double>(heard_ - number) * length_;
}

void MidiClock::place(std::int64_t n, std::int64_t ns) noexcept {
    if (entry_ >= 0) {
        base_ = entry_ - n;
        entry_ = -1;
        return;
    }
    std::int64_t first = heard_ + 1;
    if (length_ > 0) {
        const double ahead = (static_cast<double>(ns) - timeOfClock(first)) / length_;
        first += std::max<std::int64_t>(0, std::llround(std::ceil(ahead)));
    }
    base_ = (started_ ? inBar(first, n % kClocksPerBar) : first) - n;
}

std::int64_t MidiClock::timeOf(std::int64_t n) const noexcept {
    const std::int64_t number = base_ + n;
    if (count_ == 0 || number > heard_ + (length_ > 0 ? kAhead : 0)) return kNever;
    return static_cast<std::int64_t>(std::llround(timeOfClock(number)));
}

ClockSight MidiClock::sight() const noexcept {
    return {tempo_.load(std::memory_order_relaxed), locked_.load(std::memory_order_relaxed), 0};
}

} // namespace marlune
