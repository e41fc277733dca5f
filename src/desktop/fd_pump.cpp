#include "desktop/fd_pump.h"

#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <vector>

namespace marlune {

namespace {

std::vector<FdPump*> pumps;
int rests = 0;

} // namespace

FdPump::FdPump(int fd, std::function<void()> ready, QObject* parent)
    : QObject(parent), notifier_(new QSocketNotifier(fd, QSocketNotifier::Read, this)) {
    connect(notifier_, &QSocketNotifier::activated, this, [fd, call = std::move(ready)] {
        std::array<char, 128> taken;
        if (read(fd, taken.data(), taken.size()) > 0) call();
    });
    notifier_->setEnabled(rests == 0);
    pumps.push_back(this);
}

FdPump::~FdPump() {
    std::erase(pumps, this);
}

void FdPump::enableAll(bool on) {
    for (const FdPump* pump : pumps) pump->notifier_->setEnabled(on);
}

FdPump::Rest::Rest() {
    if (rests++ == 0) enableAll(false);
}

FdPump::Rest::~Rest() {
    if (--rests == 0) enableAll(true);
}

} // namespace marlune
