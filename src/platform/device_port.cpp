#include "platform/device_port.h"

#include <thread>

namespace marlune {

void DevicePort::note(const MidiMessage& message) noexcept {
    const int kind = message.bytes[0] & 0xF0;
    if (message.size != 3 || (kind != 0x80 && kind != 0x90)) return;
    const int note = message.bytes[1] & 0x7F;
    std::uint64_t& bits = sounding_[message.bytes[0] & 0x0F][note / 64];
    const std::uint64_t bit = std::uint64_t{1} << (note % 64);
    bits = kind == 0x90 && message.bytes[2] != 0 ? bits | bit : bits & ~bit;
}

void DevicePort::send(const MidiMessage& message, std::int64_t due) noexcept {
    sending_.store(true);
    if (OutputLink* link = link_.load()) {
        note(message);
        link->send(message, due);
    }
    sending_.store(false);
}

void DevicePort::attach(std::unique_ptr<OutputLink> link, std::int64_t due) {
    detach();
    if (!link) return;
    for (int channel = 0; channel < 16; ++channel)
        for (int note = 0; note < 128; ++note)
            if ((sounding_[channel][note / 64] >> (note % 64) & 1) != 0)
                link->send(
                    {3, {static_cast<std::uint8_t>(0x90 | channel), static_cast<std::uint8_t>(note), 0}},
                    due);
    sounding_ = {};
    owned_ = std::move(link);
    link_.store(owned_.get());
}

void DevicePort::detach() {
    link_.store(nullptr);
    while (sending_.load()) std::this_thread::yield();
    owned_ = nullptr;
}

} // namespace marlune
