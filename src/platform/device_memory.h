// What is remembered of the devices from run to run: a small text file.
#pragma once

#include <string>
#include <vector>

namespace marlune {

struct DeviceNames {
    std::vector<std::string> outputs, inputs;
};

// A line each, "out NAME" or "in NAME"; any other line is skipped. At most kMaxStateBytes are read. A missing
// or damaged file gives what can be read of it.
DeviceNames loadDeviceNames(const std::string& path);

// Written as a whole or not at all; false where it failed. An empty path keeps nothing and is no failure.
bool saveDeviceNames(const std::string& path, const DeviceNames& names);

inline constexpr std::size_t kMaxStateBytes = 65536;

} // namespace marlune
