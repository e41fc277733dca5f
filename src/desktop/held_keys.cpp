#include "desktop/held_keys.h"

#include <QTimer>

#include "commands/panel_events.h"
#include "desktop/key_codes.h"

namespace marlune {

namespace {

constexpr quint64 kRepeatGapMs = 5; // between a release and the press of the same repeat
constexpr int kReleaseWaitMs = 15;
constexpr int kShift = 16, kControl = 17; // key codes

} // namespace

bool HeldKeys::press(const QKeyEvent& event) {
    const int code = virtualKey(event);
    if (code == 0) return false;
    const bool repeated = continues(event, code) || event.isAutoRepeat();
    if (!repeated || repeats(code)) Form_KeyDown(code, modifierMask(event));
    return true;
}

void HeldKeys::release(const QKeyEvent& event) {
    if (event.isAutoRepeat()) return; // the system's repeat releases the key each time
    const int code = virtualKey(event);
    if (code == 0) return;
    flush();
    release_ = {code, modifierMask(event), event.timestamp()};
    if (release_.timestamp == 0) { // made by a program: nothing follows it
        flush();
        return;
    }
    QTimer::singleShot(kReleaseWaitMs, &waiting_, [this, stamp = release_.timestamp] {
        if (release_.timestamp == stamp) flush();
    });
}

// Whether a press goes on with the release that is waiting: no hand is that quick.
bool HeldKeys::continues(const QKeyEvent& event, int code) {
    const bool same = release_.code == code && event.timestamp() - release_.timestamp <= kRepeatGapMs;
    if (same) {
        release_ = {};
    } else {
        flush();
    }
    return same;
}

void HeldKeys::flushBefore(quint64 timestamp) {
    const bool modifier = release_.code == kShift || release_.code == kControl; // which repeat nowhere
    if (modifier || timestamp - release_.timestamp > kRepeatGapMs) flush();
}

void HeldKeys::flush() {
    if (release_.code == 0) return;
    const auto due = release_;
    release_ = {};
    Form_KeyUp(due.code, due.mask);
}

} // namespace marlune
