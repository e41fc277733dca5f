#include "platform/port_names.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "platform/port_system.h"

namespace marlune {

namespace {

// What bridges put in front of the names of the ports that they hand through.
constexpr std::array<std::string_view, 4> kBridges = {"a2j:", "Midi-Bridge:", "alsa_midi:", "system:midi_"};

bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

bool allOf(std::string_view text, std::string_view extra) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [&](char c) {
        return isDigit(c) || extra.find(c) != std::string_view::npos;
    });
}

// "(playback_0)", "[20]", "(1234)", "(1234:0)": what stands in brackets is a number or a direction.
bool isDecoration(std::string_view inside) {
    for (const std::string_view direction : {"playback", "capture", "in", "out"})
        if (inside.substr(0, direction.size()) == direction &&
            (inside.size() == direction.size() || allOf(inside.substr(direction.size()), "_")))
            return true;
    return allOf(inside, ":");
}

void removeDecorations(std::string& name) {
    for (std::size_t from = 0; (from = name.find_first_of("([", from)) != std::string::npos;) {
        const std::size_t to = name.find(name[from] == '(' ? ')' : ']', from);
        if (to != std::string::npos && isDecoration(std::string_view(name).substr(from + 1, to - from - 1)))
            name.erase(from, to - from + 1);
        else
            ++from;
    }
}

std::string_view trimmed(std::string_view text) {
    const std::size_t from = text.find_first_not_of(' ');
    if (from == std::string_view::npos) return {};
    return text.substr(from, text.find_last_not_of(' ') - from + 1);
}

// " 20:0" at the end.
void removePortNumber(std::string& name) {
    const std::size_t blank = name.rfind(' ');
    if (blank == std::string::npos) return;
    const std::string_view last = std::string_view(name).substr(blank + 1);
    if (last.find(':') != std::string_view::npos && allOf(last, ":")) name.erase(blank);
}

// Printable, single blanks, not too long (and not cut inside a character).
std::string tidied(std::string_view text) {
    std::string tidy;
    for (const char c : text) {
        const char shown = static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c;
        if (shown != ' ' || (!tidy.empty() && tidy.back() != ' ')) tidy += shown;
    }
    if (tidy.size() > kMaxPortName) {
        std::size_t end = kMaxPortName;
        while (end > 0 && (static_cast<unsigned char>(tidy[end]) & 0xC0) == 0x80) --end;
        tidy.resize(end);
    }
    return std::string(trimmed(tidy));
}

} // namespace

std::string normalPortName(std::string_view raw) {
    std::string name = tidied(raw);
    for (const std::string_view bridge : kBridges)
        if (bridge.back() == ':' && name.starts_with(bridge)) {
            name.erase(0, bridge.size());
            break;
        }
    removeDecorations(name);
    name = trimmed(name);
    removePortNumber(name);
    const std::size_t colon = name.find(':');
    if (colon != std::string::npos) {
        const std::string_view client = trimmed(std::string_view(name).substr(0, colon));
        const std::string_view port = trimmed(std::string_view(name).substr(colon + 1));
        if (port.empty() || client.empty())
            name = std::string(port.empty() ? client : port);
        else if (portNameKey(port).starts_with(portNameKey(client)))
            name = std::string(port);
        else
            name = std::string(client) + ":" + std::string(port);
    }
    name = tidied(name);
    return name.empty() ? "MIDI port" : name;
}

std::string jackPortName(std::string_view raw, std::string_view alias) {
    if (!raw.starts_with("system:midi_")) return normalPortName(raw);
    std::string_view device = alias.substr(std::min(alias.find(':') + 1, alias.size()));
    device = device.substr(0, device.find("/midi_"));
    if (device.empty()) return normalPortName(raw);
    std::string name(device);
    std::replace(name.begin(), name.end(), '-', ' ');
    return normalPortName(name);
}

bool isBridgedPort(std::string_view raw) {
    return std::any_of(kBridges.begin(), kBridges.end(),
                       [&](std::string_view bridge) { return raw.starts_with(bridge); });
}

bool isOwnPort(std::string_view raw) {
    return raw.find(kClientName) != std::string_view::npos;
}

std::string portNameKey(std::string_view name) {
    std::string key;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80)
            key += c;
        else if (std::isalnum(byte) != 0)
            key += static_cast<char>(std::tolower(byte));
    }
    return key;
}

} // namespace marlune
