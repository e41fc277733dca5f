// Wakes the event loop for what arrived, without a system call that could hold up the thread that announces.
#pragma once

#include <atomic>
#include <thread>

#include "util/semaphore.h"

namespace marlune {

// A server's cycle must not write to descriptors: it posts a semaphore, once for all that the reader has not
// yet looked at, and a thread of its own writes.
class InputWake {
  public:
    InputWake() = default;
    ~InputWake() { setDescriptor(-1); }
    InputWake(const InputWake&) = delete;
    InputWake& operator=(const InputWake&) = delete;

    // User-interface thread, while nobody announces. The descriptor gets eight bytes for each wake-up; -1:
    // none.
    void setDescriptor(int descriptor);

    // Any thread, never waits: something was put where the reader looks.
    void announce() noexcept;

    // User-interface thread, before it looks: what is announced from now on wakes it again.
    void looking() noexcept { announced_.exchange(false, std::memory_order_acq_rel); }

  private:
    void run() noexcept;

    // Reader and announcer both exchange the flag, so that one of them comes second and sees what the other
    // did.
    std::atomic<bool> announced_{false};
    std::atomic<int> descriptor_{-1};
    Semaphore due_;
    std::thread thread_;
};

} // namespace marlune
