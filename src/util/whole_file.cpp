#include "util/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string_view>

namespace marlune {

namespace {

// Closes a descriptor at the end of a scope.
class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    [[nodiscard]] int get() const { return fd_; }
    bool close() {
        const int fd = fd_;
        fd_ = -1;
        return ::close(fd) == 0;
    }

  private:
    int fd_;
};

bool writeAll(int fd, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

// The file behind a symbolic link; the path itself where there is none (yet). None where a link leads
// nowhere.
std::optional<std::string> resolved(const std::string& path) {
    if (char* real = ::realpath(path.c_str(), nullptr)) {
        std::string result = real;
        std::free(real);
        return result;
    }
    struct stat info {};
    if (::lstat(path.c_str(), &info) == 0 && S_ISLNK(info.st_mode)) return std::nullopt;
    return path;
}

// Whether a file may be put there: nothing is there yet, or a regular file that somebody may write.
bool replaceable(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return true;
    return S_ISREG(info.st_mode) && (info.st_mode & 0222U) != 0 && ::access(path.c_str(), W_OK) == 0;
}

constexpr std::size_t kNamePart = 200; // a name of the longest length has no room for more
constexpr std::string_view kFreshPart = ".XXXXXX";

// Temporary files of a target are called ".NAME.PROCESS.XXXXXX", so that one can tell whose they are.
std::string temporaryPrefix(const std::string& target) {
    return "." + extractFileName(target).substr(0, kNamePart) + ".";
}

// Whether a name is that of a temporary file whose process is gone.
bool isLeftover(std::string_view name, std::string_view prefix) {
    if (!name.starts_with(prefix) || name.size() < prefix.size() + kFreshPart.size()) return false;
    name.remove_suffix(kFreshPart.size());
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot + 1 < prefix.size()) return false;
    int process = 0;
    const auto [end, wrong] = std::from_chars(name.data() + dot + 1, name.data() + name.size(), process);
    if (wrong != std::errc{} || end != name.data() + name.size() || process <= 0) return false;
    return ::kill(process, 0) != 0 && errno == ESRCH;
}

// A limit on the size of files is a failed write, not the end of the program.
void surviveFileLimits() {
    [[maybe_unused]] static const auto once = std::signal(SIGXFSZ, SIG_IGN);
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// What a newly created file would get, or what the file has now.
mode_t modeFor(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) return info.st_mode & 07777U;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666U & ~mask;
}

} // namespace

FileBytes readFileStart(const std::string& path, std::size_t limit) {
    FileBytes result;
    // Without O_NONBLOCK the opening of a FIFO would wait for its writer.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat info {};
    if (file.get() < 0 || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return result;
    result.size = static_cast<std::uint64_t>(info.st_size);
    result.bytes.resize(static_cast<std::size_t>(std::min<std::uint64_t>(result.size, limit)));
    std::size_t done = 0;
    while (done < result.bytes.size()) {
        const ssize_t got = ::read(file.get(), result.bytes.data() + done, result.bytes.size() - done);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return result; // shrank or failed meanwhile
        done += static_cast<std::size_t>(got);
    }
    result.ok = true;
    return result;
}

bool writeFileAtomically(const std::string& path, std::span<const std::uint8_t> bytes) {
    const std::optional<std::string> found = resolved(path);
    if (!found || !replaceable(*found)) return false;
    const std::string& target = *found;
    const std::string folder = folderOf(target);
    surviveFileLimits();
    removeLeftovers(folder, temporaryPrefix(target)); // of a process that was killed while it saved
    std::string temporary = folder + "/" + temporaryPrefix(target) + std::to_string(::getpid());
    temporary += kFreshPart;
    Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC)); // creates exclusively: follows no planted link
    if (file.get() < 0) return false;
    const bool written =
        ::fchmod(file.get(), modeFor(target)) == 0 && writeAll(file.get(), bytes) && ::fsync(file.get()) == 0;
    if (!file.close() || !written || std::rename(temporary.c_str(), target.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    const Descriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() >= 0) ::fsync(directory.get()); // so that the new name survives a power cut as well
    return true;
}

void removeLeftovers(const std::string& folder, const std::string& prefix) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        if (isLeftover(entry.path().filename().string(), prefix))
            std::filesystem::remove(entry.path(), error);
}

bool FileExists(const std::string& name) {
    struct stat info {};
    return !name.empty() && ::stat(name.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

std::string extractFileName(const std::string& path) {
    const std::size_t separator = path.find_last_of("\\/");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

std::string withoutExtension(const std::string& name) {
    const auto letter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; };
    const std::size_t size = name.size();
    if (size < 4 || name[size - 4] != '.' || !std::all_of(name.end() - 3, name.end(), letter)) return name;
    return name.substr(0, size - 4);
}

} // namespace marlune
