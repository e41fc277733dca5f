// An input's receiving end that counts.
#pragma once

#include <atomic>

#include "midi/midi_ports.h"

namespace marlune::test {

struct CountingSink final : InputSink {
    void received(const MidiMessage& message) noexcept override {
        note = message.bytes[1];
        ++count;
    }
    std::atomic<int> note{0}, count{0};
};

} // namespace marlune::test
