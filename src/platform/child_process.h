// Another program, run beside this one.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace marlune {

// User-interface thread; nothing here waits but the destructor, and that for a program that was told to end.
class ChildProcess {
  public:
    // words: the program's path and its arguments. One that can't be started has ended with status 127.
    explicit ChildProcess(const std::vector<std::string>& words);
    ~ChildProcess(); // ends it
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool running();
    int status() const { return status_; } // once it has ended; 128 and more: by a signal
    void end();                            // asks it to

    // What it has written to its standard output and its standard error so far.
    const std::string& output();
    const std::string& complaints();

  private:
    struct Stream {
        int fd = -1;
        std::string text;
        void take();
    };
    pid_t pid_ = -1;
    int status_ = 127;
    Stream out_, err_;
};

} // namespace marlune
