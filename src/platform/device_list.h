// The devices of one direction in an order that lasts. Pure: what the systems show comes in, a list comes
// out.
#pragma once

#include <string>
#include <vector>

#include "platform/port_system.h"

namespace marlune {

// An index means the same device for the life of the list: devices that vanish stay, marked as absent, new
// ones come at the end. Across runs it does so up to the last device that was ever chosen: the names up to
// there are what remembered() gives for the next run. At most kMaxDevices; what comes later is not listed.
class DeviceList {
  public:
    static constexpr int kMaxDevices = 128;

    // How to reach a device: a system (its number) and the address there.
    struct Place {
        int system = 0;
        std::string address;
        bool operator==(const Place&) const = default;
    };

    // fixed: names of the devices that are always there. remembered: as it was given before; entries that say
    // nothing or say it twice are left out.
    DeviceList(std::vector<std::string> fixed, const std::vector<std::string>& remembered);

    // What each system shows now, the one to be preferred first. A port that several systems show is one
    // device; a bridge's port is left out where the system behind it shows its ports itself. Devices of one
    // name are numbered: "X", "X (2)". True when a name or a presence changed.
    bool update(const std::vector<std::vector<PortSystem::Port>>& seen);

    int count() const { return static_cast<int>(fixed_.size() + entries_.size()); }

    // With " (absent)" behind it where it is. Index: 0..count()-1.
    std::string name(int index) const;
    std::string plainName(int index) const;
    bool isFixed(int index) const { return index >= 0 && index < static_cast<int>(fixed_.size()); }
    bool present(int index) const { return isFixed(index) || !places(index).empty(); }

    // Empty for a fixed or absent device.
    std::vector<Place> places(int index) const;

    // Remembers a device that was opened. True when remembered() changed.
    bool choose(int index);
    std::vector<std::string> remembered() const;

  private:
    struct Entry {
        std::string base, key; // the name without its number, and what it is compared by
        int number = 1;
        std::vector<Place> places;
    };
    struct Seen {
        std::string base, key;
        int occurrence = 1;
        bool bridgeOnly = false;
        std::vector<Place> places;
        bool taken = false;
    };

    static std::vector<Seen> merged(const std::vector<std::vector<PortSystem::Port>>& seen);
    static std::string label(const Entry& entry);
    const Entry* entry(int index) const;
    void add(Seen& seen);

    std::vector<std::string> fixed_;
    std::vector<Entry> entries_;
    std::size_t kept_ = 0; // entries up to the last chosen one
};

} // namespace marlune
