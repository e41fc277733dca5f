#include "platform/synth_renderer.h"

#include <algorithm>

#include "boundary/midi_bytes.h"
#include "platform/frame_time.h"

namespace marlune {

SynthRenderer::SynthRenderer(const SynthSettings& settings) : core_(settings) {}

void SynthRenderer::send(const MidiMessage& message, std::int64_t due) noexcept {
    if (message.size == 0 || message.bytes[0] >= kSystem) return;
    if ((channels_ >> channelOfStatus(message.bytes[0]) & 1) == 0) return;
    const std::int64_t frame = std::max(blockStart_, FrameTime{0, sampleRate()}.frameAt(due));
    const auto before = [](std::int64_t value, const Event& event) { return value < event.frame; };
    events_.insert(std::upper_bound(events_.begin(), events_.end(), frame, before), {frame, message});
}

void SynthRenderer::renderBlock() {
    for (; !events_.empty() && events_.front().frame < blockStart_ + SynthCore::kBlock; events_.pop_front())
        core_.play(events_.front().message, static_cast<int>(events_.front().frame - blockStart_));
    const bool early = blockStart_ == 0; // the sound comes a block after the events, see SynthCore::play()
    blockStart_ += SynthCore::kBlock;
    float left[SynthCore::kBlock], right[SynthCore::kBlock];
    core_.render(left, right);
    for (int i = 0; i < SynthCore::kBlock && !early; ++i) {
        block_.push_back(left[i]);
        block_.push_back(right[i]);
    }
}

std::vector<float> SynthRenderer::render(int frames) {
    const std::size_t wanted = 2 * static_cast<std::size_t>(std::max(0, frames));
    while (block_.size() < wanted) renderBlock();
    const auto end = block_.begin() + static_cast<std::ptrdiff_t>(wanted);
    std::vector<float> samples(block_.begin(), end);
    block_.erase(block_.begin(), end);
    handedOut_ += frames;
    return samples;
}

} // namespace marlune
