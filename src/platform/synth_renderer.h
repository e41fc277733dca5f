// The built-in synthesizer without a sound card: messages in, samples out.
#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "platform/synth_core.h"

namespace marlune {

// One thread, not a real-time one: unlike other ports it allocates. The same messages give the same samples
// on every run, on one machine.
class SynthRenderer : public OutputPort {
  public:
    static constexpr int kSampleRate = 44100;

    explicit SynthRenderer(const SynthSettings& settings = {kSampleRate});

    bool hasFont() const { return core_.hasFont(); }
    int sampleRate() const { return core_.sampleRate(); }

    // due: ns from the first sample that is rendered; sounds there to the sample. In any order; what is due
    // before the samples already rendered sounds at once.
    void send(const MidiMessage& message, std::int64_t due) noexcept override;

    // The next frames, left and right in turn, each value -1..+1.
    std::vector<float> render(int frames);

    // Frames rendered so far.
    std::int64_t rendered() const { return handedOut_; }

    // Only channels of which the bit is set are heard from now on. All of them at the beginning.
    void listenTo(std::uint16_t channels) { channels_ = channels; }

  private:
    void renderBlock();
    struct Event {
        std::int64_t frame;
        MidiMessage message;
    };

    SynthCore core_;
    std::uint16_t channels_ = 0xFFFF;
    std::deque<Event> events_;    // still to be played, by frame, in order of arrival among equals
    std::int64_t blockStart_ = 0; // the first frame of the next block
    std::int64_t handedOut_ = 0;
    std::vector<float> block_; // what is left of the last one
};

} // namespace marlune
