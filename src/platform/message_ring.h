// MIDI messages with their ideal time on the way from the engine thread to whoever plays them.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "midi/midi_ports.h"

namespace marlune {

struct StampedMessage {
    std::int64_t due = 0; // ns on PlayClock
    MidiMessage message;
};

// A bounded queue; neither side ever waits for the other. push(): the writing thread only. front(), pop(),
// clear(): the reading thread only; that role may pass to another thread while the first one stands still.
class MessageRing {
  public:
    // False where the ring is full; the message is dropped then.
    bool push(const StampedMessage& item) noexcept {
        const std::size_t pushed = pushed_.load(std::memory_order_relaxed);
        if (pushed - popped_.load(std::memory_order_acquire) == kSize) return false;
        items_[pushed % kSize] = item;
        pushed_.store(pushed + 1, std::memory_order_release);
        return true;
    }

    // The oldest message, null where there is none. It stays until pop().
    const StampedMessage* front() const noexcept {
        const std::size_t popped = popped_.load(std::memory_order_relaxed);
        return popped == pushed_.load(std::memory_order_acquire) ? nullptr : &items_[popped % kSize];
    }

    void pop() noexcept { popped_.fetch_add(1, std::memory_order_release); }
    void clear() noexcept {
        popped_.store(pushed_.load(std::memory_order_acquire), std::memory_order_release);
    }

    // Any thread; a snapshot.
    bool empty() const noexcept {
        return popped_.load(std::memory_order_acquire) == pushed_.load(std::memory_order_acquire);
    }

    // All knobs, releases and a burst of notes at once, many times over.
    static constexpr std::size_t kSize = 8192;

  private:
    std::array<StampedMessage, kSize> items_{};
    alignas(64) std::atomic<std::size_t> pushed_{0};
    alignas(64) std::atomic<std::size_t> popped_{0};
};

} // namespace marlune
