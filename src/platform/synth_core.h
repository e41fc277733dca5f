// The built-in synthesizer's sound: FluidSynth with a General MIDI font, set up for two basses and drums,
// with events placed at their very sample.
#pragma once

#include <fluidsynth.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "boundary/midi_ports.h"
#include "platform/sample_shift.h"

namespace marlune {

// Channels 0 and 1 begin with two synth basses, channel 9 is drums. On every channel
//   controller 12 opens the filter, 13 is its resonance, 14 the depth of the filter's envelope, 15 the decay;
// all of them at 0 give a dull, short, clearly audible bass. Beyond that General MIDI. Reverb and chorus are
// off, so that the same messages give the same samples on every run.
class SynthCore {
  public:
    // Frames rendered in one go, and by how many the sound comes after the events.
    static constexpr int kBlock = SampleShift::kBlock;

    // sampleRate: 8000..96000. Any thread; may take some 50 ms. The library prints nothing.
    explicit SynthCore(int sampleRate);

    // False where no sound font was found; render() then gives silence.
    bool ready() const { return ready_; }
    int sampleRate() const { return sampleRate_; }

    // One thread at a time, real-time safe. A message for the block that begins kBlock frames after the one
    // that render() gives next; offset: its frame in that block, 0..kBlock-1. Notes start at that frame,
    // everything else at the start of the block. Where a block brings a channel several notes, the first sets
    // the frame.
    void play(const MidiMessage& message, int offset) noexcept;

    // The same thread. Writes the next kBlock frames, each -1..+1.
    void render(float* left, float* right) noexcept;

    static constexpr int kChannels = 16;

  private:
    template <auto Delete>
    struct Deleter {
        template <class T>
        void operator()(T* object) const noexcept {
            Delete(object);
        }
    };

    void setControllers(int channel) noexcept;
    void shapeBass(int channel, int key) noexcept;

    int sampleRate_;
    bool ready_ = false;
    std::unique_ptr<fluid_settings_t, Deleter<delete_fluid_settings>> settings_;
    std::unique_ptr<fluid_synth_t, Deleter<delete_fluid_synth>> synth_;
    std::array<SampleShift, kChannels> shifts_;
};

// The library's own lines of text are switched off; called by whoever uses it. Any thread.
void silenceFluidSynth() noexcept;

// The first sound font found in the usual places, "" where there is none.
std::string findSoundFont();

} // namespace marlune
