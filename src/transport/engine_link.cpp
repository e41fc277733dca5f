#include "transport/engine_link.h"

#include "boundary/engine_component.h"
#include "panel/refresh.h"
#include "project/run_state.h"
#include "song/song_place.h"
#include "transport/clock_follow.h"
#include "transport/tick.h"

namespace marlune {

WindowProc previousWndProc = nullptr;

namespace {

bool hooked = false;

void tickReceived(long wParam, long lParam) {
    tickPlayed(static_cast<int>(wParam), {static_cast<int>(lParam % 16), static_cast<int>(lParam / 16 % 16),
                                          static_cast<int>(lParam / 256)});
    if (transportState->transportRunning) ProcessTick();
}

void patternReached(int module, int bank, int patt) {
    const Selection at = selectionOf(project, module);
    if ((at.currBank != bank || at.currPatt != patt) && !songPosition->songMode) patternEntered(module);
    at.currBank = bank;
    at.currPatt = patt;
    refreshCurrBankPatt(module);
}

// The number of a module in a row of three messages, -1 where the message is none of them.
int moduleOf(unsigned message, int first) {
    const int module = static_cast<int>(message) - first;
    return module >= 0 && module < kModules ? module : -1;
}

} // namespace

long engineWndProc(long window, unsigned message, long wParam, long lParam) {
    const long result = previousWndProc != nullptr ? previousWndProc(window, message, wParam, lParam) : 0;
    if (message == kTickMessage) {
        tickReceived(wParam, lParam);
    } else if (const int reached = moduleOf(message, kPatternMessage); reached >= 0) {
        patternReached(reached, static_cast<int>(wParam), static_cast<int>(lParam));
    } else if (const int cued = moduleOf(message, kCueMessage); cued >= 0) {
        setNextBankPatt(cued, static_cast<int>(wParam), static_cast<int>(lParam));
    }
    return result;
}

void pumpEngineMessages() {
    EngineMessage message;
    while (engineComponent() != nullptr && engineComponent()->takeMessage(message)) {
        if (!hooked) continue;
        if (message.message == kClockMessage) {
            clockWished(message.wParam, message.lParam);
            continue;
        }
        if (message.message == kTickMessage) countTick();
        if (message.placing != songPosition->placing) continue; // of a place that has been left since
        engineWndProc(0, static_cast<unsigned>(message.message), message.wParam, message.lParam);
    }
}

void hookEngineMessages(bool on) {
    hooked = on;
}

} // namespace marlune
