#include "platform/synth_core.h"

#include <algorithm>
#include <cmath>

#include "boundary/midi_bytes.h"

namespace marlune {

namespace {

constexpr int kDrumChannel = 9;
constexpr int kResetControllers = 121;
constexpr int kSystemReset = 0xFF;
constexpr float kRoomAmount = 0.5F;
constexpr float kInstruments = 0.46F; // room for two basses and the drums at full velocity

// Straight up to the knee, bent above.
float limited(float x) noexcept {
    constexpr float kKnee = 0.6F, kRest = SynthCore::kCeiling - kKnee;
    const float size = std::abs(x);
    if (size <= kKnee) return x;
    const float over = (size - kKnee) / kRest;
    return std::copysign(kKnee + kRest * over / (1.0F + over), x);
}

} // namespace

SynthCore::SynthCore(const SynthSettings& settings)
    : sampleRate_(std::clamp(settings.sampleRate, 8000, 96000)),
      sampler_(sampleRate_),
      basses_{BassInstrument(sampleRate_, 0.34F), BassInstrument(sampleRate_, 0.68F)},
      drums_(sampleRate_),
      room_(Timbre::room, sampleRate_, Voice::Ends::byItself) {
    *room_.value("amount") = settings.room ? kRoomAmount : 0;
}

bool SynthCore::onSampler(int channel, const MidiMessage& message) const noexcept {
    if (patched_[channel]) return true;
    if (channel < static_cast<int>(basses_.size())) return false;
    if (channel != kDrumChannel) return true;
    const bool note = statusKind(message.bytes[0]) <= kPolyPressure;
    return note && sampler_.ready() && !DrumMachine::knows(message.bytes[1] & 0x7F);
}

void SynthCore::renderTo(int frame) noexcept {
    for (BassInstrument& bass : basses_) bass.renderTo(frame);
    drums_.renderTo(frame);
}

void SynthCore::toInstrument(int channel, const MidiMessage& message) noexcept {
    if (channel == kDrumChannel)
        drums_.play(message);
    else if (channel < static_cast<int>(basses_.size()))
        basses_[channel].play(message);
}

void SynthCore::takeProgram(int channel) noexcept {
    patched_[channel] = true;
    if (channel < static_cast<int>(basses_.size())) basses_[channel].releaseAll();
}

void SynthCore::resetChannel(int channel) noexcept {
    patched_[channel] = false;
    const MidiMessage reset = midiBytes(kControlChange + channel, kResetControllers, 0);
    sampler_.play(midiBytes(kControlChange + channel, 123, 0), 0); // all notes off
    sampler_.play(reset, 0);
    toInstrument(channel, reset);
}

void SynthCore::play(const MidiMessage& message, int offset) noexcept {
    if (message.size == 0) return;
    const NoDenormals guard;
    renderTo(offset);
    if (message.bytes[0] == kSystemReset)
        for (int channel = 0; channel < kChannels; ++channel) resetChannel(channel);
    if (message.bytes[0] >= kSystem) return;
    const int channel = channelOfStatus(message.bytes[0]), kind = statusKind(message.bytes[0]);
    if (kind == kProgramChange) takeProgram(channel);
    if (kind == kControlChange && message.bytes[1] == kResetControllers) {
        resetChannel(channel);
        return;
    }
    // Both know where the controllers stand, whoever plays.
    const bool both = kind == kControlChange || kind == kPitchBend, sampler = onSampler(channel, message);
    if (both || sampler) sampler_.play(message, offset);
    if (both || !sampler) toInstrument(channel, message);
}

void SynthCore::render(float* left, float* right) noexcept {
    const NoDenormals guard;
    std::copy(nextLeft_.begin(), nextLeft_.end(), left);
    std::copy(nextRight_.begin(), nextRight_.end(), right);
    nextLeft_ = nextRight_ = {};
    for (BassInstrument& bass : basses_) bass.mix(nextLeft_.data(), nextRight_.data());
    drums_.mix(nextLeft_.data(), nextRight_.data());
    for (int i = 0; i < kBlock; ++i) {
        left[i] *= kInstruments;
        right[i] *= kInstruments;
    }
    sampler_.mix(left, right);
    room_.feed(left, right);
    room_.mix(left, right);
    peak_ = 0;
    for (int i = 0; i < kBlock; ++i) {
        peak_ = std::max({peak_, std::abs(left[i]), std::abs(right[i])});
        left[i] = limited(left[i]);
        right[i] = limited(right[i]);
    }
}

} // namespace marlune
