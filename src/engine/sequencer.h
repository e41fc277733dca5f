// The playing of patterns and songs, free of time: calls and timer periods go in, MIDI bytes and messages
// come out through two sinks.
//
// No clock, no thread, no global, no allocation. Six periods make a step, the first of them plays it. One
// step, in this order:
//   1. song mode, position 0 of a bar: modules move to the bar's pattern (messages 1310 and 1320 + module);
//      pattern mode: a module that took its cue over reports it (message 1310 + module);
//   2. 103A, 103B: the last note is released unless the coming step has the same;
//   3. prepared controllers; the position moves on;
//   4. drums; then 103A, 103B, each with its program change first where one is due;
//   5. message 1300 with position and steps just played;
//   6. the steps move on; modules that wrap take their cue over.
#pragma once

#include "boundary/sounding_notes.h"
#include "engine/knob_bank.h"
#include "engine/module_places.h"
#include "engine/pattern_store.h"
#include "engine/sync_stream.h"
#include "engine/voices.h"

namespace marlune {

class Sequencer {
  public:
    // Carries out an entry point at once. Those of the timer and the ports are not its business: ignored.
    void apply(const EngineCall& call, Sinks sinks) noexcept;

    // The next period is the first. Nothing has sounded, no program was sent.
    void start() noexcept;

    // Releases everything that sounds, ends the clock stream, puts the steps back to 0.
    void stop(Sinks sinks) noexcept;

    // One timer period: the clock byte first, then with every sixth one a step. Where that is a swung one,
    // true, and the step is left to playDelayed(), to be called before the next one.
    bool period(Sinks sinks) noexcept;
    void playDelayed(Sinks sinks) noexcept;
    void skipDelayed(Sinks sinks) noexcept; // as skipPeriod()

    // How much of a sixteenth a swung step is late, in fiftieths: 0..25. The even sixteenths of a bar swing.
    int swing() const noexcept { return swing_; }

    // Steps that have been played already (messages were posted for them) pass once more from where a placing
    // has put the modules: positions, steps and patterns move, nothing sounds. steps below 1 does nothing.
    void skipSteps(int steps, Sinks sinks) noexcept;
    int stepsPlayed() const noexcept { return stepsPlayed_; } // since the start

    // For a stretch of time that nobody will hear. interrupt() releases what sounds and stops the clock
    // stream; skipPeriod() then does all that period() does, but for the clock and the notes: positions,
    // cues, messages, programs and controllers stay what they would have been. The stream goes on by itself.
    void interrupt(Sinks sinks) noexcept;
    void skipPeriod(Sinks sinks) noexcept;

    // Releases everything that sounds, one by one.
    void releaseAll(Sinks sinks) noexcept {
        sounding_.releaseAll([&](const MidiMessage& message) { sinks.midi.midi(Role::seq, message); });
    }

    const SyncStream& sync() const noexcept { return sync_; }
    const PatternStore& patterns() const noexcept { return patterns_; }

  private:
    bool applyVoice(const EngineCall& call) noexcept;
    void sendShortMessage(const EngineCall& call, MidiSink& midi) const noexcept;
    void playStep(MidiSink& midi, MessageSink& messages) noexcept;
    void applyGroove(const EngineCall& call, MidiSink& midi) noexcept;
    void takeMutes(MidiSink& midi) noexcept;
    const BassPattern& playingBass(int module) const noexcept;

    PatternStore patterns_;
    ModulePlaces places_;
    KnobBank knobs_;
    std::array<BassVoice, kBassModules> bass_{BassVoice(0), BassVoice(1)};
    DrumVoice drums_;
    SyncStream sync_;
    struct Mutes {
        unsigned modules = 0, drums = 0;
        bool waiting = false; // for the next bar line
    };
    Mutes mutes_;
    int swing_ = 0;
    bool running_ = false;
    int stepsPlayed_ = 0;
    SoundingNotes sounding_;
};

} // namespace marlune
