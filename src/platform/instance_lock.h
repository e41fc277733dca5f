// Keeps a second instance of the same user from starting.
#pragma once

#include <string>

namespace marlune {

// One thread. The lock ends with the object or the process, however that ends, and is not inherited by
// programs that it starts.
class InstanceLock {
  public:
    // path: the lock file; "" for the usual place, the user's run-time folder or else the one for temporary
    // files.
    explicit InstanceLock(std::string path = "");
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    // False only where another instance holds the lock. Where no lock file can be made at all the program is
    // let through, for that tells nothing of a second instance.
    bool acquire();

  private:
    std::string path_;
    int file_ = -1;
};

} // namespace marlune
