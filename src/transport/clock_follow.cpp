#include "transport/clock_follow.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "panel/knobs.h"
#include "panel/shown_state.h"
#include "project/run_state.h"
#include "song/song_place.h"
#include "transport/transport.h"

namespace marlune {

namespace {

struct Names {
    const char *name, *badge;
};
constexpr Names kNames[] = {
    {"Internal", ""}, {"Ableton Link", "LINK"}, {"MIDI clock", "MIDI"}, {"JACK transport", "JACK"}};
static_assert(std::size(kNames) == kClockKinds);

constexpr int kMicrosecondsPerMs = 1000;
constexpr int kSettlingLooks = 5;

ClockKind kind() {
    return clockState->chosen.kind;
}

void show() {
    showText(Control::clockBadge, 0, clockBadge(kind()));
    showEnabled(Control::clockBadge, 0, clockState->sight.locked);
    showTempo();
}

// Both sides may have changed it; where both have, ours counts.
void shareTempo() {
    ClockState& state = clockState.write();
    const int theirs = std::clamp(static_cast<int>(std::lround(state.sight.tempo)), kMinTempo, kMaxTempo);
    state.settling = std::max(state.settling - 1, 0);
    if (project.tempo != state.sharedTempo) {
        clockRoom()->setTempo(project.tempo);
        state.settling = kSettlingLooks;
    } else if (kind() == ClockKind::link && state.settling == 0 && state.sight.tempo > 0) {
        project.tempo = theirs;
    }
    state.sharedTempo = project.tempo;
}

void tellPeers(int before) {
    const int peers = clockState->sight.peers;
    if (peers == before) return;
    shell().showPassing(peers == 0   ? "Link: nobody else is there."
                        : peers == 1 ? "Link: one other is there."
                                     : "Link: " + std::to_string(peers) + " others are there.");
}

} // namespace

const char* clockName(ClockKind kind) {
    return kNames[indexOf(kind)].name;
}

const char* clockBadge(ClockKind kind) {
    return kNames[indexOf(kind)].badge;
}

void chooseClock(const ClockSettings& settings) {
    if (settings == clockState->chosen) return;
    const ClockKind before = kind();
    ClockState& state = clockState.write();
    state.chosen = settings;
    state.sight = {};
    state.sharedTempo = project.tempo;
    state.settling = kSettlingLooks;
    if (clockRoom() != nullptr) clockRoom()->choose(settings, project.tempo);
    SetClockOffset32(settings.offsetMs * kMicrosecondsPerMs);
    if (kind() != before) SetClock32(indexOf(kind()));
    show();
}

void tendClock() {
    if (kind() == ClockKind::internal || clockRoom() == nullptr) return;
    const int peers = clockState->sight.peers;
    clockState.write().sight = clockRoom()->sight(kind());
    shareTempo();
    tellPeers(peers);
    show();
}

void clockWished(int kind, int tick) {
    const bool ran = transportState->transportRunning;
    if (kind == ClockWish::stop) {
        if (ran) startStopButton_Click();
        return;
    }
    if (kind == ClockWish::locate && !songPosition->songMode) return;
    if (ran) startStopButton_Click();
    if (songPosition->songMode && tick != kWhereItStands && tick != songPosition->songTick) placeSong(tick);
    if (ran || kind == ClockWish::start) startStopButton_Click();
}

} // namespace marlune
