// MIDI devices as the program sees them; src/platform/ implements them, tests use ports in memory.
#pragma once

#include <cstdint>
#include <string>

namespace marlune {

// One MIDI message of 1 to 3 bytes (no system exclusive).
struct MidiMessage {
    std::uint8_t size = 0;
    std::uint8_t bytes[3] = {0, 0, 0};
};

// Length of the message that begins with a status byte, 1..3; 0 where it is none or system exclusive.
constexpr int midiMessageLength(int status) {
    if (status < 0x80 || status > 0xFF || status == 0xF0 || status == 0xF7) return 0;
    if (status >= 0xF0) return status == 0xF2 ? 3 : (status == 0xF1 || status == 0xF3) ? 2 : 1;
    return (status & 0xE0) == 0xC0 ? 2 : 3; // program change and channel pressure are short
}

// An open output device. Engine thread only, except for its life, which OutputDevices rules.
class OutputPort {
  public:
    virtual ~OutputPort() = default;

    // Sends one message. due: the message's ideal time on PlayClock, ns; a port that can place events
    // exactly does so with a fixed latency, any other sends at once. Never blocks, never allocates.
    virtual void send(const MidiMessage& message, std::int64_t due) noexcept = 0;

    // From an event's due time to its sound, ns; 0 where that can't be told. Any thread.
    virtual std::int64_t latencyNs() const noexcept { return 0; }
};

// The output devices in a stable order. User-interface thread.
class OutputDevices {
  public:
    virtual ~OutputDevices() = default;
    virtual int count() = 0;
    virtual std::string name(int index) = 0;

    // Opens a device; null where it cannot be opened or the index names none. Opening one device twice
    // gives the same port; it closes with its last user.
    virtual OutputPort* open(int index) = 0;
    virtual void close(OutputPort* port) = 0;
};

// Takes what one link to an input device delivers. Called on a thread of the link, one at a time, and
// real-time safe: a server's cycle may call it.
class InputSink {
  public:
    virtual ~InputSink() = default;
    virtual void received(const MidiMessage& message) noexcept = 0;

    // The same for a message without a channel, whose arrival counts. when: on the play clock, ns, or
    // kArrivesNow.
    virtual void clocked(const MidiMessage& message, std::int64_t /*when*/) noexcept { received(message); }
};
inline constexpr std::int64_t kArrivesNow = -1;

// A device may be heard over several links at once (our own port on each system), each with a thread of its
// own.
inline constexpr int kInputLinks = 2;
class InputSinks {
  public:
    virtual InputSink& link(int number) noexcept = 0; // number: 0..kInputLinks-1

  protected:
    ~InputSinks() = default;
};

// The input devices in a stable order. User-interface thread.
class InputDevices {
  public:
    virtual ~InputDevices() = default;
    virtual int count() = 0;
    virtual std::string name(int index) = 0;

    // Opens a device; messages reach the sinks until close() has returned. False where it cannot be opened.
    virtual bool open(int index, InputSinks& sinks) = 0;
    virtual void close() = 0;
};

// The clock of whoever plays: continuous and never running backwards, whichever source drives it.
// Any thread; never blocks.
class PlayClock {
  public:
    virtual ~PlayClock() = default;
    virtual std::int64_t nowNs() noexcept = 0;
};

} // namespace marlune
