// A counting semaphore that can be waited for until a moment of the monotonic clock.
#pragma once

#include <semaphore.h>

#include <cerrno>
#include <cstdint>
#include <ctime>

namespace marlune {

class Semaphore {
  public:
    Semaphore() noexcept { sem_init(&sem_, 0, 0); }
    ~Semaphore() { sem_destroy(&sem_); }
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;

    void post() noexcept { sem_post(&sem_); }

    void wait() noexcept {
        while (sem_wait(&sem_) != 0 && errno == EINTR) {}
    }

    // Returns when posted or after ns nanoseconds; may return early.
    void waitFor(std::int64_t ns) noexcept {
        timespec until{};
        clock_gettime(CLOCK_MONOTONIC, &until);
        const std::int64_t nanoseconds = until.tv_nsec + ns;
        until.tv_sec += nanoseconds / kSecond;
        until.tv_nsec = nanoseconds % kSecond;
        sem_clockwait(&sem_, CLOCK_MONOTONIC, &until);
    }

  private:
    static constexpr std::int64_t kSecond = 1'000'000'000;
    sem_t sem_{};
};

} // namespace marlune
