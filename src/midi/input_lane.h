// One way in: what a single link to an input device delivers, on its way to the user-interface thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "boundary/midi_ports.h"
#include "util/overwriting_ring.h"

namespace marlune {

// The link's thread pushes and never waits; the user-interface thread takes. Where that falls behind by more
// than kRoom messages of a kind, the oldest of that kind are lost: controllers never cost a note.
class InputLane {
  public:
    static constexpr std::size_t kRoom = 16384;

    struct Arrival {
        std::uint64_t number = 0; // in the order of arrival, over all lanes
        MidiMessage message;
    };

    // The link's thread. The message is whole, its data bytes 0..127; numbers grow, below 2^40.
    void push(const Arrival& arrival) noexcept;

    // User-interface thread. The next in the order of arrival; false where there is none. lost grows by the
    // messages that were overwritten before.
    bool take(Arrival& arrival, int& lost) noexcept;

  private:
    OverwritingRing<kRoom> notes_, others_; // each word the number of the message and its three bytes
    std::atomic<std::uint64_t> end_{0};     // the last number in the rings, plus 1
};

} // namespace marlune
