#include "setup/config_file.h"

#include <algorithm>
#include <cstring>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "midi/midi_output.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

constexpr std::size_t kMaxLabelFile = 1U << 20U;
std::string folder;

std::string pathOf(const char* name) {
    return folder + "/" + name;
}

void showStatusBarState() {
    shell().showStatusBar(config.statusBarVisible);
    setMenuChecked(Menu::mnuStatusBarEnable, config.statusBarVisible);
}

// The label in a line: the text between its quotes, a doubled quote standing for one; a line without quotes
// is the label as it stands.
std::string labelOf(const std::string& line) {
    if (!line.starts_with('"')) return line;
    std::string label;
    for (std::size_t i = 1; i < line.size(); ++i) {
        if (line[i] == '"') {
            if (i + 1 >= line.size() || line[i + 1] != '"') break;
            ++i;
        }
        label += line[i];
    }
    return label;
}

std::string quoted(const std::string& label) {
    std::string line = "\"";
    for (const char c : label) line += c == '"' ? std::string("\"\"") : std::string(1, c);
    return line + "\"\r\n";
}

void loadLabels() {
    const FileBytes file = readFileStart(pathOf("labels.cfg"), kMaxLabelFile);
    if (!file.ok) return;
    const std::string text(file.bytes.begin(), file.bytes.end());
    std::size_t start = 0;
    for (std::string& label : knobLabel) {
        if (start >= text.size()) return;
        const std::size_t end = std::min(text.find('\n', start), text.size());
        std::string line = text.substr(start, end - start);
        if (line.ends_with('\r')) line.pop_back();
        label = labelOf(line);
        start = end + 1;
    }
}

} // namespace

void setConfigFolder(const std::string& path) {
    folder = path;
}

std::string configFolderInUse() {
    return folder;
}

bool loadGlobalConfig() {
    const FileBytes file = folder.empty() ? FileBytes{} : readFileStart(pathOf("marlune.cfg"), sizeof config);
    const bool whole = file.bytes.size() == sizeof config;
    if (!file.ok || (!whole && !file.bytes.empty())) {
        config.statusBarVisible = true;
        showStatusBarState();
        return false;
    }
    if (whole) std::memcpy(&config, file.bytes.data(), sizeof config);
    pushOutputAssignment();
    showStatusBarState();
    loadLabels();
    SetSyncOffset32(config.syncOffset);
    return true;
}

bool saveGlobalConfig() {
    return folder.empty() || saveGlobalConfigTo(folder);
}

bool saveGlobalConfigTo(const std::string& other) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&config);
    const bool saved = writeFileAtomically(other + "/marlune.cfg", {bytes, sizeof config});
    std::string labels;
    for (const std::string& label : knobLabel) labels += quoted(label);
    return writeFileAtomically(other + "/labels.cfg",
                               {reinterpret_cast<const std::uint8_t*>(labels.data()), labels.size()}) &&
           saved;
}

void mnuStatusBarEnable_Click() {
    config.statusBarVisible = !config.statusBarVisible;
    showStatusBarState();
}

} // namespace marlune
