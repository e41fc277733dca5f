#include "platform/device_list.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "platform/port_names.h"

namespace marlune {

namespace {

constexpr char kAbsent[] = " (absent)";

// "X (2)" is X, 2; names from a system never end like that, see normalPortName().
std::pair<std::string, int> split(const std::string& label) {
    const std::size_t open = label.rfind(" (");
    if (open == std::string::npos || open == 0 || label.back() != ')') return {label, 1};
    int number = 0;
    const char* end = label.data() + label.size() - 1;
    const auto [stop, error] = std::from_chars(label.data() + open + 2, end, number);
    if (error != std::errc() || stop != end || number < 2) return {label, 1};
    return {label.substr(0, open), number};
}

} // namespace

DeviceList::DeviceList(std::vector<std::string> fixed, const std::vector<std::string>& remembered)
    : fixed_(std::move(fixed)) {
    for (const std::string& text : remembered) {
        auto [base, number] = split(text);
        std::string key = portNameKey(base);
        const bool known = std::any_of(entries_.begin(), entries_.end(), [&, n = number](const Entry& each) {
            return each.key == key && each.number == n;
        });
        if (key.empty() || known || entries_.size() >= kMaxDevices) continue;
        entries_.push_back({std::move(base), std::move(key), number, {}});
    }
    kept_ = entries_.size();
}

std::vector<DeviceList::Seen> DeviceList::merged(const std::vector<std::vector<PortSystem::Port>>& seen) {
    std::vector<Seen> all;
    for (int system = 0; system < static_cast<int>(seen.size()); ++system) {
        std::map<std::string, int> occurrences;
        for (const PortSystem::Port& port : seen[system]) {
            const std::string key = portNameKey(port.name);
            const int occurrence = ++occurrences[key];
            const auto same = std::find_if(all.begin(), all.end(), [&](const Seen& each) {
                return each.key == key && each.occurrence == occurrence &&
                       each.places.back().system != system;
            });
            if (same == all.end()) {
                all.push_back({port.name, key, occurrence, port.bridge, {{system, port.address}}, false});
                continue;
            }
            if (same->bridgeOnly && !port.bridge) same->base = port.name; // the original's spelling
            same->bridgeOnly = same->bridgeOnly && port.bridge;
            same->places.push_back({system, port.address});
        }
    }
    // The system behind the bridges is the one that shows ports of its own beside another's.
    std::erase_if(all, [&](const Seen& each) {
        if (!each.bridgeOnly) return false;
        for (int system = 0; system < static_cast<int>(seen.size()); ++system)
            if (system != each.places.front().system && !seen[system].empty()) return true;
        return false;
    });
    return all;
}

void DeviceList::add(Seen& seen) {
    if (entries_.size() >= kMaxDevices) return;
    Entry fresh{seen.base, seen.key, 1, std::move(seen.places)};
    for (const Entry& each : entries_)
        if (each.key == fresh.key) fresh.number = std::max(fresh.number, each.number + 1);
    entries_.push_back(std::move(fresh));
}

bool DeviceList::update(const std::vector<std::vector<PortSystem::Port>>& seen) {
    std::vector<Seen> now = merged(seen);
    const std::size_t before = entries_.size();
    std::vector<std::vector<Place>> places(before);
    // Who stays at its address stays the same device, also where a twin before it has gone; the rest goes by
    // name.
    const auto assign = [&](auto fits) {
        for (std::size_t i = 0; i < before; ++i) {
            if (!places[i].empty()) continue;
            for (Seen& each : now) {
                if (each.taken || each.key != entries_[i].key || !fits(entries_[i], each)) continue;
                each.taken = true;
                places[i] = std::move(each.places);
                break;
            }
        }
    };
    assign([](const Entry& entry, const Seen& each) {
        return std::any_of(each.places.begin(), each.places.end(), [&](const Place& place) {
            return std::find(entry.places.begin(), entry.places.end(), place) != entry.places.end();
        });
    });
    assign([](const Entry& entry, const Seen& each) { return entry.number == each.occurrence; });
    assign([](const Entry&, const Seen&) { return true; });
    bool changed = false;
    for (std::size_t i = 0; i < before; ++i) {
        changed = changed || places[i].empty() != entries_[i].places.empty();
        entries_[i].places = std::move(places[i]);
    }
    for (Seen& each : now)
        if (!each.taken) add(each);
    return changed || entries_.size() != before;
}

std::string DeviceList::label(const Entry& entry) {
    return entry.number == 1 ? entry.base : entry.base + " (" + std::to_string(entry.number) + ")";
}

const DeviceList::Entry* DeviceList::entry(int index) const {
    const int at = index - static_cast<int>(fixed_.size());
    return at >= 0 && at < static_cast<int>(entries_.size()) ? &entries_[at] : nullptr;
}

std::string DeviceList::plainName(int index) const {
    if (isFixed(index)) return fixed_[index];
    const Entry* found = entry(index);
    return found != nullptr ? label(*found) : "";
}

std::string DeviceList::name(int index) const {
    const Entry* found = entry(index);
    return plainName(index) + (found != nullptr && found->places.empty() ? kAbsent : "");
}

std::vector<DeviceList::Place> DeviceList::places(int index) const {
    const Entry* found = entry(index);
    return found != nullptr ? found->places : std::vector<Place>{};
}

bool DeviceList::choose(int index) {
    if (entry(index) == nullptr) return false;
    const std::size_t upTo = static_cast<std::size_t>(index) - fixed_.size() + 1;
    if (upTo <= kept_) return false;
    kept_ = upTo;
    return true;
}

std::vector<std::string> DeviceList::remembered() const {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < kept_; ++i) names.push_back(label(entries_[i]));
    return names;
}

} // namespace marlune
