#include "platform/config_folder.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace marlune {

namespace {

// Root may write there too, yet these are no places for settings.
bool isInstalled(const std::string& folder) {
    for (const char* root : {"/usr", "/opt", "/bin"})
        if (folder == root || folder.rfind(std::string(root) + "/", 0) == 0) return true;
    return false;
}

std::string userFolder(const char* variable, const char* otherwise) {
    const char* told = std::getenv(variable);
    const char* home = std::getenv("HOME");
    const std::string folder =
        told != nullptr && told[0] == '/' // anything but an absolute path is to be ignored
            ? std::string(told)
            : std::string(home != nullptr && home[0] == '/' ? home : "/tmp") + otherwise;
    return folder + "/marlune200q";
}

} // namespace

std::string stateFolder() {
    return userFolder("XDG_STATE_HOME", "/.local/state");
}

std::string programFolder() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? "." : program.parent_path().string();
}

std::string configFolder(const std::string& program) {
    if (!program.empty() && !isInstalled(program) && access(program.c_str(), W_OK | X_OK) == 0)
        return program;
    std::string folder = userFolder("XDG_CONFIG_HOME", "/.config");
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return folder;
}

} // namespace marlune
