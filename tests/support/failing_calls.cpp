#include "support/failing_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>

namespace marlune::test {

namespace {

int left = 0; // calls until the one that fails
int failed = 0;
Failing mode = Failing::none;

// Whether this call fails.
bool fails(bool writes = false) {
    if (mode == Failing::none) return false;
    const bool again = writes && mode == Failing::full && failed > 0;
    if (!again && --left != 0) return false;
    if (mode == Failing::death) ::_exit(0);
    ++failed;
    errno = ENOSPC;
    return true;
}

template <typename Call>
Call* next(const char* name) {
    return reinterpret_cast<Call*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

void failAtCall(int n, Failing how) {
    left = n;
    failed = 0;
    mode = how;
}

int failedCalls() {
    return failed;
}

} // namespace marlune::test

using marlune::test::fails;
using marlune::test::next;

extern "C" {

ssize_t write(int file, const void* bytes, size_t size) {
    static auto* const real = next<ssize_t(int, const void*, size_t)>("write");
    const bool first = marlune::test::failed == 0;
    if (!fails(true)) return real(file, bytes, size);
    return first && marlune::test::mode == marlune::test::Failing::full && size > 1
               ? real(file, bytes, size / 2)
               : -1;
}

int fsync(int file) {
    static auto* const real = next<int(int)>("fsync");
    return fails() ? -1 : real(file);
}

int fchmod(int file, mode_t mode) {
    static auto* const real = next<int(int, mode_t)>("fchmod");
    return fails() ? -1 : real(file, mode);
}

int close(int file) {
    static auto* const real = next<int(int)>("close");
    const int result = real(file); // it is closed all the same
    return fails() ? -1 : result;
}

int rename(const char* from, const char* to) noexcept {
    static auto* const real = next<int(const char*, const char*)>("rename");
    return fails() ? -1 : real(from, to);
}

int mkostemp(char* name, int flags) {
    static auto* const real = next<int(char*, int)>("mkostemp");
    return fails() ? -1 : real(name, flags);
}

} // extern "C"
