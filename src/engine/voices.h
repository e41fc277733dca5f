// How a bass module and the drums sound: what each remembers from step to step.
#pragma once

#include <array>
#include <optional>

#include "engine/knob_bank.h"
#include "engine/sinks.h"
#include "project/project_record.h"

namespace marlune {

// A note where it went out: a change of channel or base note must not lose track of it.
struct PlacedNote {
    int channel = 0;
    int pitch = 0;
    bool operator==(const PlacedNote&) const = default;
};

class BassVoice {
  public:
    explicit BassVoice(int module) : channel(module), storedChannel(module), module_(module) {}

    int channel;       // 0..15
    int storedChannel; // of the program changes, 0..15
    int velocity = 100;
    int baseNote = 36;
    bool slides = false; // whether the steps' slide flags count

    // From now on nothing begins; what sounds is released.
    void mute(bool on, MidiSink& sink) noexcept;

    // Nothing has sounded and no program was sent since the start.
    void start() noexcept;

    // Releases the last step's note unless the coming step has the same: a rest of the same pitch lets it
    // ring, a sounding step strikes it again. A slide leaves it to play().
    void release(const BassStep& coming, MidiSink& sink) const noexcept;

    // Plays a step; at step 0 the pattern's program goes out first if it is a new one, its knobs behind it. A
    // step that slides begins before the note before it is released.
    void play(const BassPattern& pattern, int step, const KnobBank& knobs, MidiSink& sink) noexcept;

  private:
    PlacedNote placed(const BassStep& step) const noexcept;
    bool slidesInto(const BassStep& step) const noexcept;

    int module_;
    std::optional<PlacedNote> lastNote_; // of the last step, sounding or not; none before the first note-on
    int lastPatch_ = kNoPatch;
    bool muted_ = false;
};

class DrumVoice {
  public:
    int channel = 9; // 0..15

    void start() noexcept;

    // Drums of which nothing begins from now on, a bit each; what sounds of them is released.
    void mute(unsigned drums, MidiSink& sink) noexcept;

    // Plays a step; step 0 first releases every drum that still sounds.
    void play(const DrumPattern& pattern, int step, const KnobBank& knobs, MidiSink& sink) noexcept;

  private:
    std::array<std::optional<PlacedNote>, kDrums> lastNote_; // none before a drum's first hit
    std::array<bool, kDrums> sounding_{};
    unsigned muted_ = 0;
};

} // namespace marlune
