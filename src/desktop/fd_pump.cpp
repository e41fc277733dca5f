#include "desktop/fd_pump.h"

#include <unistd.h>

#include <QSocketNotifier>
#include <array>

namespace marlune {

FdPump::FdPump(int fd, std::function<void()> ready, QObject* parent) : QObject(parent) {
    auto* notifier = new QSocketNotifier(fd, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [fd, call = std::move(ready)] {
        std::array<char, 128> taken;
        if (read(fd, taken.data(), taken.size()) > 0) call();
    });
}

} // namespace marlune
