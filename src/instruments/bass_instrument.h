// A bass: MIDI messages of one channel in, sound out. What it sounds like is in bass.dsp.
#pragma once

#include <array>

#include "boundary/midi_ports.h"
#include "instruments/voice.h"

namespace marlune {

// Controllers 12 Cutoff, 13 Res, 14 Env.Amt, 15 Decay, 16 Ctrl.1 (saw to square), 17 Accent, 7 volume, 10
// pan; pitch bend of two semitones. One note at a time; the latest held one sounds, and slides there.
//
// Loudness: a plain step has velocity 100, and below that a note is softer in proportion. A note is an accent
// where its velocity is the value of the Accent controller, as the sequencer plays them: 1 to 5 dB louder
// than a plain step, by that value, with more envelope and resonance. 100 itself stays plain, since a plain
// step can't be told from an accent there. From 100 on velocity alone brings accent in as well.
class BassInstrument {
  public:
    // place: of the stereo picture, 0 left to 1 right. Other than construction everything is real-time safe.
    BassInstrument(int sampleRate, float place);

    // At the frame reached.
    void play(const MidiMessage& message) noexcept;

    void renderTo(int frame) noexcept { voice_.renderTo(frame); }
    void mix(float* left, float* right) noexcept { voice_.mix(left, right); }
    bool asleep() const noexcept { return voice_.asleep(); }

    void releaseAll() noexcept; // the sound dies away
    void reset() noexcept;      // releases, and the controllers go back to their start

  private:
    struct Controller {
        int number;
        float* value;
        float start; // 0..1
    };
    void noteOn(int note, int velocity) noexcept;
    void noteOff(int note) noexcept;
    void control(int controller, int value) noexcept;
    void aim() noexcept;
    void shape(int velocity) noexcept;

    Voice voice_;
    float *note_, *glide_, *level_, *accent_;
    std::array<Controller, 7> controllers_;
    float* volume_;
    float bend_ = 0;       // semitones
    int accentLevel_ = -1; // controller 17; -1: nobody has told
    std::array<int, 16> heldNotes_{};
    int held_ = 0; // the last one sounds
};

} // namespace marlune
