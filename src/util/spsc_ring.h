// A bounded queue between two threads, one of which only pushes and the other only pops. Neither ever waits.
// A side may pass to another thread while its first one stands still.
#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

namespace marlune {

// T: trivially copyable. Capacity: a power of two; all of it can be used.
template <typename T, std::size_t Capacity>
class SpscRing {
    static_assert(Capacity > 0 && (Capacity & (Capacity - 1)) == 0);

  public:
    SpscRing() : slots_(Capacity) {}

    // Pushing thread. False when full.
    bool push(const T& value) noexcept {
        const std::size_t head = head_.load(std::memory_order_relaxed);
        if (head - tail_.load(std::memory_order_acquire) == Capacity) return false;
        slots_[head % Capacity] = value;
        head_.store(head + 1, std::memory_order_release);
        return true;
    }

    // Popping thread. False when empty.
    bool pop(T& value) noexcept {
        const std::size_t tail = tail_.load(std::memory_order_relaxed);
        if (tail == head_.load(std::memory_order_acquire)) return false;
        value = slots_[tail % Capacity];
        tail_.store(tail + 1, std::memory_order_release);
        return true;
    }

    // Popping thread. The oldest value, null where there is none; it stays until pop().
    const T* front() const noexcept {
        const std::size_t tail = tail_.load(std::memory_order_relaxed);
        return tail == head_.load(std::memory_order_acquire) ? nullptr : &slots_[tail % Capacity];
    }
    void pop() noexcept { tail_.fetch_add(1, std::memory_order_release); }
    void clear() noexcept { tail_.store(head_.load(std::memory_order_acquire), std::memory_order_release); }

    // Any thread; a snapshot.
    bool empty() const noexcept {
        return tail_.load(std::memory_order_acquire) == head_.load(std::memory_order_acquire);
    }

  private:
    std::vector<T> slots_;
    alignas(64) std::atomic<std::size_t> head_{0}; // pushed so far
    alignas(64) std::atomic<std::size_t> tail_{0}; // popped so far
};

} // namespace marlune
