#include "platform/synth_renderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "platform/frame_time.h"
#include "util/whole_file.h"

namespace marlune {

void SynthRenderer::send(const MidiMessage& message, std::int64_t due) noexcept {
    const std::int64_t frame = std::max(blockStart_, FrameTime{0, kSampleRate}.frameAt(due));
    const auto before = [](std::int64_t value, const Event& event) { return value < event.frame; };
    events_.insert(
        std::upper_bound(events_.begin() + static_cast<std::ptrdiff_t>(next_), events_.end(), frame, before),
        {frame, message});
}

void SynthRenderer::renderBlock() {
    for (; next_ < events_.size() && events_[next_].frame < blockStart_ + SynthCore::kBlock; ++next_)
        core_.play(events_[next_].message, static_cast<int>(events_[next_].frame - blockStart_));
    const bool early = blockStart_ == 0; // the sound comes a block after the events, see SynthCore::play()
    blockStart_ += SynthCore::kBlock;
    float left[SynthCore::kBlock], right[SynthCore::kBlock];
    core_.render(left, right);
    for (int i = 0; i < SynthCore::kBlock && !early; ++i) {
        rendered_.push_back(left[i]);
        rendered_.push_back(right[i]);
    }
}

std::vector<float> SynthRenderer::render(int frames) {
    const std::size_t wanted = 2 * static_cast<std::size_t>(std::max(0, frames));
    while (rendered_.size() < wanted) renderBlock();
    std::vector<float> samples(rendered_.begin(), rendered_.begin() + static_cast<std::ptrdiff_t>(wanted));
    rendered_.erase(rendered_.begin(), rendered_.begin() + static_cast<std::ptrdiff_t>(wanted));
    return samples;
}

std::vector<std::int16_t> toInt16(const std::vector<float>& samples) {
    std::vector<std::int16_t> numbers(samples.size());
    std::transform(samples.begin(), samples.end(), numbers.begin(), [](float x) {
        return static_cast<std::int16_t>(std::lround(std::clamp(x, -1.0F, 1.0F) * 32767.0F));
    });
    return numbers;
}

namespace {

void put(std::vector<std::uint8_t>& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void put(std::vector<std::uint8_t>& bytes, const char* tag) {
    bytes.insert(bytes.end(), tag, tag + 4);
}

} // namespace

bool writeWav(const std::string& path, const std::vector<std::int16_t>& samples, int sampleRate) {
    constexpr std::uint32_t kFrameBytes = 4;
    if (samples.size() > (std::numeric_limits<std::uint32_t>::max() - 64) / 2) return false;
    const auto size = static_cast<std::uint32_t>(samples.size() * 2);
    const auto rate = static_cast<std::uint32_t>(sampleRate);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(44 + std::size_t{size});
    put(bytes, "RIFF");
    put(bytes, 36 + size, 4);
    put(bytes, "WAVE");
    put(bytes, "fmt ");
    for (const auto& [value, width] : std::array<std::pair<std::uint32_t, int>, 7>{
             {{16, 4}, {1, 2}, {2, 2}, {rate, 4}, {rate * kFrameBytes, 4}, {kFrameBytes, 2}, {16, 2}}})
        put(bytes, value, width);
    put(bytes, "data");
    put(bytes, size, 4);
    for (const std::int16_t sample : samples) put(bytes, static_cast<std::uint16_t>(sample), 2);
    return writeFileAtomically(path, bytes);
}

} // namespace marlune
