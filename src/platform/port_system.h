// One way to the MIDI ports of this machine (JACK, ALSA); tests put a made-up one in its place.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "boundary/midi_ports.h"

namespace marlune {

// A connection to a port of the system. Its destructor lets go of it after what is queued has gone out,
// within half a second.
class OutputLink {
  public:
    virtual ~OutputLink() = default;

    // One thread at a time; never blocks, never allocates.
    virtual void send(const MidiMessage& message, std::int64_t due) noexcept = 0;

    // See OutputPort. Any thread.
    virtual std::int64_t latencyNs() const noexcept { return 0; }

    // User-interface thread. False once nothing can get through any more.
    virtual bool alive() noexcept = 0;
};

// A connection from a port of the system; messages reach the sink until its destructor has returned.
class InputLink {
  public:
    virtual ~InputLink() = default;
    virtual bool alive() noexcept = 0;
};

// User-interface thread. Every operation may fail at any time, as the other side comes and goes.
class PortSystem {
  public:
    struct Port {
        std::string name;    // as people know it, see port_names.h
        std::string address; // as open...() takes it; good for as long as the port stays
        bool bridge = false; // another system's port, shown here a second time
    };

    virtual ~PortSystem() = default;

    // The ports of others that we can send to, and those that we can hear. Empty where the system is not
    // there.
    virtual std::vector<Port> outputs() = 0;
    virtual std::vector<Port> inputs() = 0;

    // Null where it cannot be opened.
    virtual std::unique_ptr<OutputLink> openOutput(const std::string& address) = 0;
    virtual std::unique_ptr<InputLink> openInput(const std::string& address, InputSink& sink) = 0;

    // The ports that we offer to others. They swallow what is sent while the system is not there, and are
    // never null.
    virtual OutputLink& virtualOutput() = 0;
    virtual std::unique_ptr<InputLink> openVirtualInput(InputSink& sink) = 0;

    // About once a second: looks after a system that came or went.
    virtual void poll() = 0;
};

inline constexpr char kClientName[] = "Marlune 200Q";
inline constexpr char kVirtualOutName[] = "Marlune 200Q Out";
inline constexpr char kVirtualInName[] = "Marlune 200Q In";

} // namespace marlune
