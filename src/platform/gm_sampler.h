// The General MIDI sounds of the built-in synthesizer: FluidSynth with a sound font, its notes placed at
// their very sample.
#pragma once

#include <fluidsynth.h>

#include <array>
#include <memory>
#include <string>

#include "boundary/midi_ports.h"
#include "platform/sample_shift.h"

namespace marlune {

// Sixteen channels, channel 9 with drum kits. On channels 0 and 1 every sound obeys
//   controller 12, which opens the filter, 13 its resonance, 14 the depth of the filter's envelope, 15 the
//   decay;
// on the others they do so from the sound's own setting on. Beyond that General MIDI. Reverb and chorus are
// off, so that the same messages give the same samples on every run.
class GmSampler {
  public:
    static constexpr int kBlock = SampleShift::kBlock;
    static constexpr int kChannels = 16;

    // Any thread; may take some 50 ms. The library prints nothing.
    explicit GmSampler(int sampleRate);

    // False where no sound font was found; nothing sounds then.
    bool ready() const { return ready_; }

    // One thread at a time, real-time safe. As SynthCore::play().
    void play(const MidiMessage& message, int offset) noexcept;

    // The same thread. Adds the next kBlock frames.
    void mix(float* left, float* right) noexcept;

  private:
    template <auto Delete>
    struct Deleter {
        template <class T>
        void operator()(T* object) const noexcept {
            Delete(object);
        }
    };

    void addModulations() noexcept;
    void setControllers(int channel) noexcept;
    void shapeBass(int channel, int key) noexcept;

    bool ready_ = false;
    int quietBlocks_ = 0;
    std::unique_ptr<fluid_settings_t, Deleter<delete_fluid_settings>> settings_;
    std::unique_ptr<fluid_synth_t, Deleter<delete_fluid_synth>> synth_;
    std::array<SampleShift, kChannels> shifts_;
};

// The library's own lines of text are switched off; called by whoever uses it. Any thread.
void silenceFluidSynth() noexcept;

// The first sound font found in the usual places, "" where there is none.
std::string findSoundFont();

} // namespace marlune
