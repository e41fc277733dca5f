#include "midi/input_wake.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>

namespace marlune {

void InputWake::setDescriptor(int descriptor) {
    if (thread_.joinable()) {
        descriptor_ = -1;
        due_.post();
        thread_.join();
    }
    announced_ = false;
    descriptor_ = descriptor;
    if (descriptor < 0) return;
    // The thread inherits a mask with everything blocked: signals belong to the main thread.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void InputWake::announce() noexcept {
    if (descriptor_ >= 0 && !announced_.exchange(true, std::memory_order_acq_rel)) due_.post();
}

void InputWake::run() noexcept {
    prctl(PR_SET_NAME, "marlune-input");
    for (due_.wait(); descriptor_ >= 0; due_.wait()) {
        const std::uint64_t one = 1;
        // A full counter refuses the write and is a wake-up already.
        [[maybe_unused]] const ssize_t written = ::write(descriptor_, &one, sizeof one);
    }
}

} // namespace marlune
