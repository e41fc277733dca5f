#include "transport/waits.h"

#include "boundary/app_shell.h"
#include "project/run_state.h"

namespace marlune {

namespace {
constexpr int kDelayMs = 200;
}

void runEventsUntil(const CStopWatch& watch, int ms, const bool* held) {
    while (!transportState->programClosing && watch.Elapsed() < ms && (held == nullptr || *held)) {
        shell().waitForEvents(ms - watch.Elapsed());
    }
}

void endWaits() {
    transportState.write().programClosing = true;
}

void delay() {
    const CStopWatch watch;
    runEventsUntil(watch, kDelayMs);
}

} // namespace marlune
