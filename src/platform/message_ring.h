// MIDI messages with their ideal time on the way from the engine thread to whoever plays them.
#pragma once

#include <cstdint>

#include "boundary/midi_ports.h"
#include "util/spsc_ring.h"

namespace marlune {

struct StampedMessage {
    std::int64_t due = 0; // ns on PlayClock
    MidiMessage message;
};

// Room for all knobs, releases and a burst of notes at once, many times over; a full ring drops messages.
using MessageRing = SpscRing<StampedMessage, 8192>;

} // namespace marlune
