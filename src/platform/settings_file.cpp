#include "platform/settings_file.h"

#include <sstream>

#include "util/whole_file.h"

namespace marlune {

namespace {

constexpr std::size_t kMaxFile = 1U << 16U;

std::string trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t\r";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

} // namespace

std::string settingOf(const std::string& folder, const std::string& key, const std::string& otherwise) {
    const FileBytes file = readFileStart(folder + "/settings.cfg", kMaxFile);
    std::istringstream lines(std::string(file.bytes.begin(), file.bytes.end()));
    for (std::string line; std::getline(lines, line);) {
        const auto equals = line.find('=');
        if (equals == std::string::npos || trimmed(line.substr(0, equals)) != key) continue;
        return trimmed(line.substr(equals + 1));
    }
    return otherwise;
}

bool roomWanted(const std::string& folder) {
    return settingOf(folder, "room", "on") != "off";
}

} // namespace marlune
