#include "platform/device_memory.h"

#include <sstream>

#include "platform/device_list.h"
#include "platform/port_names.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

// A name as the list would have made it; anything else came from elsewhere.
bool isName(const std::string& text) {
    if (text.empty() || text.size() > kMaxPortName + 8) return false;
    for (const char c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) return false;
    return true;
}

void take(const std::string& line, const std::string& tag, std::vector<std::string>& names) {
    if (line.rfind(tag, 0) != 0 || names.size() >= DeviceList::kMaxDevices) return;
    const std::string name = line.substr(tag.size());
    if (isName(name)) names.push_back(name);
}

} // namespace

DeviceNames loadDeviceNames(const std::string& path) {
    DeviceNames names;
    if (path.empty()) return names;
    const FileBytes file = readFileStart(path, kMaxStateBytes);
    std::istringstream text(std::string(file.bytes.begin(), file.bytes.end()));
    for (std::string line; std::getline(text, line);) {
        take(line, "out ", names.outputs);
        take(line, "in ", names.inputs);
    }
    return names;
}

bool saveDeviceNames(const std::string& path, const DeviceNames& names) {
    if (path.empty()) return true;
    std::string text;
    for (const std::string& name : names.outputs) text += "out " + name + "\n";
    for (const std::string& name : names.inputs) text += "in " + name + "\n";
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    return writeFileAtomically(path, {bytes, text.size()});
}

} // namespace marlune
