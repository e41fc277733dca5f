// A bounded queue between two threads in which the newest values always find room: where the reader falls
// behind, the oldest are overwritten, and it is told how many. Neither side ever waits.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace marlune {

// Values are whole words, so that none is ever read half written. Capacity: a power of two; one place less
// than that can be relied on. A side may pass to another thread while its first one stands still.
template <std::size_t Capacity>
class OverwritingRing {
    static_assert(Capacity > 1 && (Capacity & (Capacity - 1)) == 0);

  public:
    // Writing thread.
    void push(std::uint64_t value) noexcept {
        const std::uint64_t head = head_.load(std::memory_order_relaxed);
        (*slots_)[head % Capacity].store(value, std::memory_order_release);
        head_.store(head + 1, std::memory_order_release);
    }

    // Reading thread. The oldest value that is still there; false where there is none. lost grows by the
    // number of values that were overwritten unread.
    bool front(std::uint64_t& value, int& lost) noexcept {
        for (;;) {
            const std::uint64_t head = head_.load(std::memory_order_acquire);
            if (tail_ == head) return false;
            const std::uint64_t oldest = head < Capacity ? 0 : head - (Capacity - 1);
            if (tail_ < oldest) {
                lost += static_cast<int>(oldest - tail_);
                tail_ = oldest;
            }
            value = (*slots_)[tail_ % Capacity].load(std::memory_order_acquire);
            // A value that replaced this one while it was read brings with it the head it was written at.
            if (head_.load(std::memory_order_acquire) - tail_ < Capacity) return true;
        }
    }
    void pop() noexcept { ++tail_; }

  private:
    std::unique_ptr<std::array<std::atomic<std::uint64_t>, Capacity>> slots_ =
        std::make_unique<std::array<std::atomic<std::uint64_t>, Capacity>>();
    alignas(64) std::atomic<std::uint64_t> head_{0}; // pushed so far
    alignas(64) std::uint64_t tail_ = 0;             // taken or lost so far; the reader's alone
};

} // namespace marlune
