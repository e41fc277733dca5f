// The drum machine: MIDI messages of the drum channel in, sound out. What it sounds like is in drums.dsp.
#pragma once

#include <vector>

#include "boundary/midi_ports.h"
#include "instruments/voice.h"

namespace marlune {

// Bass drum 35 36, snare 38 40, clap 39, closed hat 42, pedal hat 44, open hat 46, toms 41 43 45 47 48 50. A
// hit rings to its end whenever it is released; a closed or pedal hat ends the open one. Controllers 7 volume
// and 10 pan, which moves the whole set.
class DrumMachine {
  public:
    // Other than construction everything is real-time safe.
    explicit DrumMachine(int sampleRate);

    // Whether there is a voice of its own for the note.
    static bool knows(int note) noexcept;

    // At the frame reached. A note without a voice goes to the nearest one.
    void play(const MidiMessage& message) noexcept;

    void renderTo(int frame) noexcept;
    void mix(float* left, float* right) noexcept;
    bool asleep() const noexcept;
    void reset() noexcept; // the controllers go back to their start; what rings may end

  private:
    struct Drum {
        Voice voice;
        float place;
        float *level, *volume, *pan, *tune; // tune: null where there is none
    };
    void hit(int note, int velocity) noexcept;
    void control(int controller, int value) noexcept;

    std::vector<Drum> drums_;
};

} // namespace marlune
