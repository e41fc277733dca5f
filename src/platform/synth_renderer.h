// The built-in synthesizer without a sound card: messages in, samples out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/synth_core.h"

namespace marlune {

// One thread, not a real-time one: unlike other ports it allocates. The same messages give the same samples
// on every run, on one machine.
class SynthRenderer : public OutputPort {
  public:
    static constexpr int kSampleRate = 44100;

    // False where no sound font was found; render() then gives silence.
    bool ready() const { return core_.ready(); }

    // due: ns from the first sample that is rendered; sounds there to the sample. In any order; what is due
    // before the samples already rendered sounds at once.
    void send(const MidiMessage& message, std::int64_t due) noexcept override;

    // The next frames, left and right in turn, each value -1..+1.
    std::vector<float> render(int frames);

  private:
    void renderBlock();
    struct Event {
        std::int64_t frame;
        MidiMessage message;
    };

    SynthCore core_{kSampleRate};
    std::vector<Event> events_; // by frame, in order of arrival among equals
    std::size_t next_ = 0;
    std::int64_t blockStart_ = 0; // the first frame of the next block
    std::vector<float> rendered_; // and not yet handed out
};

// -1..+1 to -32767..+32767, rounded; beyond is limited.
std::vector<std::int16_t> toInt16(const std::vector<float>& samples);

// Writes a RIFF WAVE file, 16 bit, two channels in turn, as a whole or not at all: false where it failed, and
// the file is then as it was before.
bool writeWav(const std::string& path, const std::vector<std::int16_t>& samples,
              int sampleRate = SynthRenderer::kSampleRate);

} // namespace marlune
