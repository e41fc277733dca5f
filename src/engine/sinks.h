// The two ways out of the sequencer. Both are called inside apply(), stop() and period() only.
#pragma once

#include "boundary/engine_component.h"
#include "boundary/wire_log.h"

namespace marlune {

class MidiSink {
  public:
    // role seq: to the sequencer port. role sync: the clock stream, meant for both ports, once for each
    // device.
    virtual void midi(Role role, const MidiMessage& message) noexcept = 0;

  protected:
    ~MidiSink() = default;
};

class MessageSink {
  public:
    virtual void post(const EngineMessage& message) noexcept = 0;

  protected:
    ~MessageSink() = default;
};

struct Sinks {
    MidiSink& midi;
    MessageSink& messages;
};

} // namespace marlune
