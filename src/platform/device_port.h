// An output device as the engine holds it: it stays while what it stands for comes and goes.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "boundary/sounding_notes.h"
#include "platform/port_system.h"

namespace marlune {

// send(): engine thread; swallows while there is no connection. Everything else: user-interface thread.
class DevicePort : public OutputPort {
  public:
    DevicePort() = default;
    ~DevicePort() override { detach(); }

    void send(const MidiMessage& message, std::int64_t due) noexcept override;

    // Engine thread.
    std::int64_t latencyNs() const noexcept override;

    // Connects. Notes that sounded when an earlier connection broke are released first; due: the time now.
    void attach(std::unique_ptr<OutputLink> link, std::int64_t due);

    // Waits until the engine thread is out of the connection, some microseconds, and ends it.
    void detach();

    bool attached() const { return owned_ != nullptr; }
    bool alive() const { return owned_ && owned_->alive(); }

  private:
    std::unique_ptr<OutputLink> owned_;
    std::atomic<OutputLink*> link_{nullptr};
    mutable std::atomic<bool> sending_{false};
    SoundingNotes sounding_; // who sends or is alone may touch it
};

} // namespace marlune
