// Brings what other threads and signals announce on a file descriptor onto the user-interface thread.
#pragma once

#include <QObject>
#include <functional>

class QSocketNotifier;

namespace marlune {

// Calls ready on the user-interface thread, from the event loop, each time the descriptor becomes readable;
// what is readable is taken away before (up to 128 bytes: an eventfd's count, a pipe's bytes, one record of a
// signal descriptor). The descriptor stays its owner's and must be non-blocking.
class FdPump final : public QObject {
    Q_OBJECT

  public:
    FdPump(int fd, std::function<void()> ready, QObject* parent = nullptr);
    ~FdPump() override;

    // While one lives, no pump calls: what is announced meanwhile comes afterwards. Not every event loop of
    // the toolkit keeps descriptors back when it is asked to.
    class Rest {
      public:
        Rest();
        ~Rest();
        Rest(const Rest&) = delete;
        Rest& operator=(const Rest&) = delete;
    };

  private:
    static void enableAll(bool on);

    QSocketNotifier* notifier_;
};

} // namespace marlune
