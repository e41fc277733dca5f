// What leaves the playback component, for whoever wants to listen along.
#pragma once

#include <cstdint>

#include "boundary/midi_ports.h"

namespace marlune {

// The two outputs: seq plays the sound generators, sync feeds whatever follows our clock.
enum class Role : std::uint8_t { seq, sync };
inline constexpr int kRoles = 2;

// Receives every message of both roles, whatever ports are open. With the live engine it is called on the
// engine's thread: it must not allocate, lock or wait.
class WireLog {
  public:
    virtual ~WireLog() = default;

    // ns: the message's ideal time, counted from the ideal time of the first step since the start; negative
    // before it. What goes out while no first step is in sight (never started, or held) carries
    // -kStartDelayNs; what goes out after a stop goes on counting from the run that was stopped.
    virtual void sent(std::int64_t ns, Role role, const MidiMessage& message) noexcept = 0;
};

} // namespace marlune
