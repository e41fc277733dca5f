#include "cli/wire_file.h"

#include <cstdio>

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
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "%lld %s", static_cast<long long>(us),
                      entry.role == Role::seq ? "seq" : "sync");
        text_ += buffer;
        for (int i = 0; i < entry.message.size; ++i) {
            std::snprintf(buffer, sizeof buffer, " %02x", entry.message.bytes[i]);
            text_ += buffer;
        }
        text_ += '\n';
    }
}

} // namespace marlune
