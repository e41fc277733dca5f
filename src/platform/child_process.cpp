#include "platform/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace marlune {

namespace {

constexpr int kBySignal = 128;

int statusOf(int wait) {
    return WIFEXITED(wait) ? WEXITSTATUS(wait) : kBySignal + WTERMSIG(wait);
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words) {
    int out[2], err[2];
    if (pipe2(out, O_CLOEXEC) != 0) return;
    if (pipe2(err, O_CLOEXEC) != 0) {
        close(out[0]);
        close(out[1]);
        return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
    // What this program does with signals is no business of the other one.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none, usual;
    sigemptyset(&none);
    sigemptyset(&usual);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGPIPE}) sigaddset(&usual, signal);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    if (posix_spawn(&pid_, arguments[0], &actions, &attributes, arguments.data(), environ) != 0) pid_ = -1;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    close(err[1]);
    out_.fd = out[0];
    err_.fd = err[0];
    for (const int fd : {out_.fd, err_.fd}) fcntl(fd, F_SETFL, O_NONBLOCK);
}

ChildProcess::~ChildProcess() {
    end();
    int wait = 0;
    if (pid_ > 0) waitpid(pid_, &wait, 0);
    for (const int fd : {out_.fd, err_.fd})
        if (fd >= 0) close(fd);
}

bool ChildProcess::running() {
    int wait = 0;
    if (pid_ > 0 && waitpid(pid_, &wait, WNOHANG) == pid_) {
        status_ = statusOf(wait);
        pid_ = -1;
    }
    return pid_ > 0;
}

void ChildProcess::end() {
    if (pid_ > 0) kill(pid_, SIGTERM);
}

void ChildProcess::Stream::take() {
    char bytes[1024];
    for (ssize_t got = 0; fd >= 0 && (got = read(fd, bytes, sizeof bytes)) > 0;)
        text.append(bytes, static_cast<std::size_t>(got));
}

const std::string& ChildProcess::output() {
    out_.take();
    return out_.text;
}

const std::string& ChildProcess::complaints() {
    err_.take();
    return err_.text;
}

} // namespace marlune
