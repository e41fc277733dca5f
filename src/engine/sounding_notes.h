// Which notes sound on the sequencer port: a set of channel and note.
//
// It stands in the way of everything that goes to that port and reads along, so nothing can be left hanging,
// whoever asked for the note.
#pragma once

#include <bitset>

#include "engine/sinks.h"

namespace marlune {

class SoundingNotes {
  public:
    // Reads one outgoing message: a note-on adds, a release takes away, anything else changes nothing.
    void read(const MidiMessage& message) noexcept;

    // Sends a release for every note that sounds, by channel and then by note, and is empty afterwards.
    void releaseAll(MidiSink& sink) noexcept;

  private:
    std::bitset<std::size_t{16} * 128> notes_; // channel x 128 + note
};

// A sink that keeps the set up to date and passes everything on.
class TrackedSink final : public MidiSink {
  public:
    TrackedSink(SoundingNotes& notes, MidiSink& next) : notes_(notes), next_(next) {}
    void midi(Role role, const MidiMessage& message) noexcept override {
        if (role == Role::seq) notes_.read(message);
        next_.midi(role, message);
    }

  private:
    SoundingNotes& notes_;
    MidiSink& next_;
};

} // namespace marlune
