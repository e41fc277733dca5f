// Stands in the way of everything that goes to the sequencer port and keeps the set of sounding notes.
#pragma once

#include "boundary/sounding_notes.h"
#include "engine/sinks.h"

namespace marlune {

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
