// The built-in synthesizer's sound: two basses and a drum machine, General MIDI sounds beside them, one room.
#pragma once

#include <array>

#include "boundary/midi_ports.h"
#include "instruments/bass_instrument.h"
#include "instruments/drum_machine.h"
#include "platform/gm_sampler.h"

namespace marlune {

struct SynthSettings {
    int sampleRate = 48000; // 8000..96000
    bool room = true;
};

// Channels 0 and 1 begin as basses, channel 9 as the drum machine; see there for their controllers. A program
// change takes such a channel to the sampler with that General MIDI sound, on channel 9 with that kit;
// controller 121 takes it back, and a system reset all three. The other channels are the sampler's, and drum
// notes without a voice of their own are. The same messages give the same samples on every run.
class SynthCore {
  public:
    // Frames rendered in one go, and by how many the sound comes after the events.
    static constexpr int kBlock = kVoiceBlock;
    static constexpr int kChannels = GmSampler::kChannels;

    // Any thread; may take some 50 ms.
    explicit SynthCore(const SynthSettings& settings);

    // False where no sound font was found: the sampler's channels are silent then.
    bool hasFont() const { return sampler_.ready(); }
    int sampleRate() const { return sampleRate_; }

    // One thread at a time, real-time safe. A message for the block that begins kBlock frames after the one
    // that render() gives next; offset: its frame in that block, 0..kBlock-1; below that of the message
    // before it counts as the same. On the sampler notes start at that frame, everything else at the start of
    // the block; where a block brings a channel several notes, the first sets the frame.
    void play(const MidiMessage& message, int offset) noexcept;

    // The same thread. Writes the next kBlock frames, each within kCeiling.
    void render(float* left, float* right) noexcept;

    static constexpr float kCeiling = 0.87F; // so that no device goes beyond full scale between the samples

    // The largest value of the block just rendered, before it was limited; beyond 1 is overload.
    float peak() const noexcept { return peak_; }

  private:
    bool onSampler(int channel, const MidiMessage& message) const noexcept;
    void renderTo(int frame) noexcept;
    void takeProgram(int channel) noexcept;
    void resetChannel(int channel) noexcept;
    void toInstrument(int channel, const MidiMessage& message) noexcept;

    int sampleRate_;
    float peak_ = 0;
    GmSampler sampler_;
    std::array<BassInstrument, 2> basses_;
    DrumMachine drums_;
    Voice room_;
    std::array<bool, kChannels> patched_{};              // a General MIDI sound was chosen
    std::array<float, kBlock> nextLeft_{}, nextRight_{}; // of the instruments, a block ahead
};

} // namespace marlune
