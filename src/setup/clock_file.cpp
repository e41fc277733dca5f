#include "setup/clock_file.h"

#include <algorithm>
#include <sstream>
#include <string>

#include "setup/config_file.h"
#include "util/text_number.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

constexpr std::size_t kMaxFile = 4096;
constexpr const char* kWords[] = {"internal", "link", "midi", "jack"};

std::string path() {
    return configFolderInUse() + "/clock.cfg";
}

void take(ClockSettings& settings, const std::string& key, const std::string& value) {
    const bool on = value == "on";
    if (key == "source") {
        const auto word = std::find(std::begin(kWords), std::end(kWords), value);
        if (word != std::end(kWords)) settings.kind = static_cast<ClockKind>(word - std::begin(kWords));
    }
    if (key == "offset")
        settings.offsetMs = std::clamp(leadingInteger(value), -kMostClockOffsetMs, kMostClockOffsetMs);
    if (key == "share-start") settings.shareStart = on;
    if (key == "follow-jack") settings.followJack = on;
    if (key == "lead-jack") settings.leadJack = on;
}

} // namespace

ClockSettings loadClockSettings() {
    ClockSettings settings;
    if (configFolderInUse().empty()) return settings;
    const FileBytes file = readFileStart(path(), kMaxFile);
    std::istringstream lines(std::string(file.bytes.begin(), file.bytes.end()));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string key, equals, value;
        if (words >> key >> equals >> value && equals == "=") take(settings, key, value);
    }
    return settings;
}

bool saveClockSettings(const ClockSettings& settings) {
    if (configFolderInUse().empty()) return true;
    const auto onOff = [](bool on) { return on ? "on\n" : "off\n"; };
    const std::string text =
        std::string("source = ") + kWords[indexOf(settings.kind)] +
        "\noffset = " + std::to_string(settings.offsetMs) + "\nshare-start = " + onOff(settings.shareStart) +
        "follow-jack = " + onOff(settings.followJack) + "lead-jack = " + onOff(settings.leadJack);
    return writeFileAtomically(path(), {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

} // namespace marlune
