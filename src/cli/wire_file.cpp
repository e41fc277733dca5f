#include "cli/wire_file.h"

#include <algorithm>
#include <utility>

#include "boundary/hex_text.h"
#include "engine/engine_core.h"

namespace marlune {

void WireFile::sent(std::int64_t ns, Role role, const MidiMessage& message) noexcept {
    if (!recording_) return;
    if (!ring_.push({ns, role, message})) ++lost_;
}

void WireFile::collect() {
    Sent entry;
    while (ring_.pop(entry)) {
        if (!inSight_ && entry.ns == -kStartDelayNs) {
            early_.push_back(entry);
            continue;
        }
        inSight_ = true;
        for (const Sent& each : std::exchange(early_, {})) add(each, std::min(each.ns, entry.ns));
        add(entry, entry.ns);
    }
}

void WireFile::add(const Sent& entry, std::int64_t ns) {
    constexpr std::int64_t kNsPerUs = 1000;
    // Rounded down, before the first step as well.
    const std::int64_t us = (ns - (ns < 0 ? kNsPerUs - 1 : 0)) / kNsPerUs;
    text_ +=
        std::to_string(us) + (entry.role == Role::seq ? " seq " : " sync ") + hexText(entry.message) + '\n';
}

} // namespace marlune
