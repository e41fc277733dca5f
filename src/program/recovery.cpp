#include "program/recovery.h"

#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "boundary/app_shell.h"
#include "files/project_file.h"
#include "panel/editing.h"
#include "program/open_project.h"
#include "project/run_state.h"
#include "util/stop_watch.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

constexpr int kRestMs = 30'000;
constexpr std::size_t kLongestName = 4096;

struct Recovery {
    std::string folder;        // "" keeps nothing
    std::size_t savedHash = 0; // of the content that needs no copy
    std::size_t keptHash = 0;  // of the content of the copy
    bool kept = false;         // a copy of ours lies there
    CStopWatch sinceLast;
};
Recovery state;

std::size_t hashOf(const std::vector<std::uint8_t>& bytes) {
    return std::hash<std::string_view>{}({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

std::string ours(const char* extension) {
    return state.folder + "/" + std::to_string(::getpid()) + extension;
}

void removeBoth(const std::string& stem) {
    std::error_code error;
    std::filesystem::remove(stem + ".mlp", error);
    std::filesystem::remove(stem + ".name", error);
}

// What processes that are gone have left with that extension, without it.
std::vector<std::string> orphans(const char* extension) {
    std::vector<std::string> stems;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(state.folder, error)) {
        const std::string stem = entry.path().stem().string();
        int process = 0;
        const auto [end, wrong] = std::from_chars(stem.data(), stem.data() + stem.size(), process);
        const bool number = wrong == std::errc{} && end == stem.data() + stem.size();
        if (entry.path().extension() != extension || !number || process == ::getpid()) continue;
        if (::kill(process, 0) != 0 && errno == ESRCH) stems.push_back(state.folder + "/" + stem);
    }
    return stems;
}

// Copies that were never whole: a name alone, or a file half written.
void removeHalves() {
    removeLeftovers(state.folder);
    for (const std::string& stem : orphans(".name"))
        if (!FileExists(stem + ".mlp")) removeBoth(stem);
}

std::string nameOf(const std::string& stem) {
    const FileBytes file = readFileStart(stem + ".name", kLongestName);
    std::string name(file.bytes.begin(), file.bytes.end());
    return name.empty() ? kUntitled : name;
}

void openOrphan(const std::string& stem) {
    const std::string name = nameOf(stem);
    OpenOnLoad(stem + ".mlp");
    nameProject(name);
    if (FileExists(name)) doubtProjectFile(); // it may have changed since
    markProject();
    state.savedHash = 0;
    keepRecovery();                   // before the old copy goes
    if (state.kept) removeBoth(stem); // else it stays for the next start
}

} // namespace

void startRecovery(const std::string& folder) {
    state = {};
    state.folder = folder;
    setSavedHook(folder.empty() ? nullptr : contentIsSaved);
    if (!folder.empty()) removeHalves();
    contentIsSaved();
}

void contentIsSaved() {
    if (state.folder.empty()) return;
    state.savedHash = hashOf(projectFileBytes());
    if (state.kept) removeBoth(ours(""));
    state.kept = false;
}

void tendRecovery() {
    if (transportState->inTick || state.sinceLast.Elapsed() < kRestMs) return;
    keepRecovery();
}

void keepRecovery() {
    if (state.folder.empty()) return;
    state.sinceLast.Reset();
    const std::vector<std::uint8_t> bytes = projectFileBytes();
    const std::size_t hash = hashOf(bytes);
    if (hash == state.savedHash || (state.kept && hash == state.keptHash)) return;
    std::error_code error;
    std::filesystem::create_directories(state.folder, error);
    const std::string& name = editingState->projectFileName;
    const std::span text(reinterpret_cast<const std::uint8_t*>(name.data()), name.size());
    if (!writeFileAtomically(ours(".name"), text) || !writeFileAtomically(ours(".mlp"), bytes)) {
        if (!state.kept) removeBoth(ours(""));
        return;
    }
    state.kept = true;
    state.keptHash = hash;
}

bool offerRecovery() {
    if (state.folder.empty()) return false;
    for (const std::string& stem : orphans(".mlp")) {
        const BoxAnswer answer =
            shell().messageBox("Marlune ended without saving " + extractFileName(nameOf(stem)) +
                                   ".\nOpen the work as it was then ?",
                               BoxIcon::exclamation, BoxButtons::yesNoCancel);
        if (answer == BoxAnswer::yes) {
            openOrphan(stem);
            return true;
        }
        if (answer == BoxAnswer::no) removeBoth(stem);
    }
    return false;
}

} // namespace marlune
