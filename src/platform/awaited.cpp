#include "platform/awaited.h"

#include <csignal>
#include <thread>

namespace marlune {

void runDetached(std::function<void()> call) {
    // The thread inherits a mask with everything blocked: signals belong to the main thread.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread(std::move(call)).detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

bool runBounded(std::function<void()> call, std::chrono::milliseconds patience) {
    Awaited<bool> ended;
    ended.start([call = std::move(call)] { return call(), true; }, [](bool) {});
    return ended.take(patience).has_value();
}

} // namespace marlune
