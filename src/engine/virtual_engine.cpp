#include "engine/virtual_engine.h"

namespace marlune {

VirtualEngine::VirtualEngine(OutputDevices* devices, WireLog* log) : devices_(devices), core_(*this, log) {}

VirtualEngine::~VirtualEngine() {
    core_.apply({Entry::StopMarluneTimer32, {}}, now_);
    closePort(Role::seq);
    closePort(Role::sync);
}

int VirtualEngine::call(const EngineCall& call) {
    switch (call.entry) {
        case Entry::SetMarluneHwnd32: break; // nobody waits for a wake-up in virtual time
        case Entry::OpenMidiPort32: return openPort(Role::seq, call.arguments[0]);
        case Entry::OpenSyncPort32: return openPort(Role::sync, call.arguments[0]);
        case Entry::CloseMidiPort32: closePort(Role::seq); break;
        case Entry::CloseSyncPort32: closePort(Role::sync); break;
        default: core_.apply(call, now_); break;
    }
    if (call.entry == Entry::StopMarluneTimer32)
        std::erase_if(messages_, [](const EngineMessage& late) { return late.message != kClockMessage; });
    return 0;
}

bool VirtualEngine::takeMessage(EngineMessage& message) {
    if (messages_.empty()) return false;
    message = messages_.front();
    messages_.pop_front();
    return true;
}

bool VirtualEngine::advance() {
    core_.look(now_);
    const std::int64_t due = core_.deadline();
    if (due == kNever) return false;
    now_ = due;
    core_.period(due);
    return true;
}

void VirtualEngine::playUntil(std::int64_t ns) {
    core_.look(now_);
    for (std::int64_t due = core_.deadline(); due <= ns; due = core_.deadline()) {
        now_ = std::max(now_, due);
        core_.period(now_);
        core_.look(now_);
    }
    now_ = ns;
    core_.look(ns);
}

int VirtualEngine::openPort(Role role, int device) {
    closePort(role);
    OutputPort* const port = devices_ == nullptr ? nullptr : devices_->open(device);
    if (port != nullptr) core_.setPort(role, port, now_);
    ports_[static_cast<std::size_t>(role)] = port;
    return port != nullptr ? 1 : 0;
}

void VirtualEngine::closePort(Role role) {
    OutputPort*& port = ports_[static_cast<std::size_t>(role)];
    if (port == nullptr) return;
    core_.setPort(role, nullptr, now_);
    devices_->close(port);
    port = nullptr;
}

} // namespace marlune
