#include "platform/signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

namespace marlune {

namespace {

std::atomic<int> writeEnd{-1};
static_assert(std::atomic<int>::is_always_lock_free);

void onSignal(int /*number*/) {
    const int saved = errno;
    const char byte = 1;
    // A full pipe is fine: it is readable then.
    [[maybe_unused]] const auto written = write(writeEnd.load(), &byte, 1);
    errno = saved;
}

void setHandler(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) sigaction(number, &action, nullptr);
}

} // namespace

Signals::Signals() {
    if (pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0) {
        ends_[0] = ends_[1] = -1;
        return;
    }
    writeEnd = ends_[1];
    setHandler(onSignal);
}

Signals::~Signals() {
    if (ends_[0] < 0) return;
    setHandler(SIG_DFL);
    writeEnd = -1;
    close(ends_[0]);
    close(ends_[1]);
}

bool Signals::take() {
    char bytes[16];
    bool any = false;
    while (ends_[0] >= 0 && read(ends_[0], bytes, sizeof bytes) > 0) any = true;
    return any;
}

} // namespace marlune
