#include "platform/device_port.h"

#include <thread>

namespace marlune {

void DevicePort::send(const MidiMessage& message, std::int64_t due) noexcept {
    sending_.store(true);
    if (OutputLink* link = link_.load()) {
        sounding_.read(message);
        link->send(message, due);
    }
    sending_.store(false);
}

std::int64_t DevicePort::latencyNs() const noexcept {
    sending_.store(true);
    const OutputLink* link = link_.load();
    const std::int64_t latency = link != nullptr ? link->latencyNs() : 0;
    sending_.store(false);
    return latency;
}

void DevicePort::attach(std::unique_ptr<OutputLink> link, std::int64_t due) {
    detach();
    if (!link) return;
    sounding_.releaseAll([&](const MidiMessage& message) { link->send(message, due); });
    owned_ = std::move(link);
    link_.store(owned_.get());
}

void DevicePort::detach() {
    link_.store(nullptr);
    while (sending_.load()) std::this_thread::yield();
    owned_ = nullptr;
}

} // namespace marlune
