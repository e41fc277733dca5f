#include "platform/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace marlune {

namespace {

std::string usualPath() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && runtime[0] == '/' && access(runtime, W_OK) == 0)
        return std::string(runtime) + "/marlune200q.lock";
    const char* temporary = std::getenv("TMPDIR");
    const std::string folder = temporary != nullptr && temporary[0] == '/' ? temporary : "/tmp";
    return folder + "/marlune200q-" + std::to_string(getuid()) + ".lock";
}

} // namespace

InstanceLock::InstanceLock(std::string path) : path_(path.empty() ? usualPath() : std::move(path)) {}

InstanceLock::~InstanceLock() {
    // The file stays: removing it would let two instances lock two files of one name.
    if (file_ >= 0) close(file_);
}

bool InstanceLock::acquire() {
    if (file_ >= 0) return true;
    const int file = open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    if (file < 0) return true;
    struct stat status {};
    const bool ours = fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
    if (ours && flock(file, LOCK_EX | LOCK_NB) == 0) {
        file_ = file;
        return true;
    }
    const bool held = ours && errno == EWOULDBLOCK;
    close(file);
    return !held;
}

} // namespace marlune
