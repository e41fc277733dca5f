// Brings what other threads and signals announce on a file descriptor onto the user-interface thread.
#pragma once

#include <QObject>
#include <functional>

namespace marlune {

// Calls ready on the user-interface thread, from the event loop, each time the descriptor becomes readable;
// what is readable is taken away before (up to 128 bytes: an eventfd's count, a pipe's bytes, one record of a
// signal descriptor). The descriptor stays its owner's and must be non-blocking.
class FdPump final : public QObject {
    Q_OBJECT

  public:
    FdPump(int fd, std::function<void()> ready, QObject* parent = nullptr);
};

} // namespace marlune
