#include "cli/wire_file.h"

#include "boundary/hex_text.h"

namespace marlune {

void WireFile::sent(std::int64_t ns, Role role, const MidiMessage& message) noexcept {
    if (!recording_) return;
    if (!ring_.push({ns, role, message})) ++lost_;
}

void WireFile::collect() {
    Sent entry;
    while (ring_.pop(entry)) {
        constexpr std::int64_t kNsPerUs = 1000;
        // Rounded down, before the first step as well.
        const std::int64_t us = (entry.ns - (entry.ns < 0 ? kNsPerUs - 1 : 0)) / kNsPerUs;
        text_ += std::to_string(us) + (entry.role == Role::seq ? " seq " : " sync ") +
                 hexText(entry.message) + '\n';
    }
}

} // namespace marlune
