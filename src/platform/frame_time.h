// Play time counted in the frames of an audio server.
#pragma once

#include <cstdint>

namespace marlune {

// A straight line between frame numbers and nanoseconds; exact for as many frames as a year has.
struct FrameTime {
    std::int64_t base = 0;     // play time of frame 0, ns
    std::int64_t rate = 48000; // frames a second, > 0

    // Rounded to the nearest frame, so that equal distances in time stay equal in frames wherever they can.
    std::int64_t frameAt(std::int64_t ns) const noexcept {
        const std::int64_t passed = ns - base;
        std::int64_t seconds = passed / kSecond;
        std::int64_t rest = passed % kSecond;
        if (rest < 0) rest += kSecond, --seconds;
        return seconds * rate + (rest * rate + kSecond / 2) / kSecond;
    }

    std::int64_t nsAt(std::int64_t frame) const noexcept {
        std::int64_t seconds = frame / rate;
        std::int64_t rest = frame % rate;
        if (rest < 0) rest += rate, --seconds;
        return base + seconds * kSecond + (rest * kSecond + rate / 2) / rate;
    }

    // From this frame on the others pass at another rate; its own time stays.
    void changeRate(std::int64_t frame, std::int64_t newRate) noexcept {
        const std::int64_t ns = nsAt(frame);
        rate = newRate;
        base += ns - nsAt(frame);
    }

    static constexpr std::int64_t kSecond = 1'000'000'000;
};

} // namespace marlune
