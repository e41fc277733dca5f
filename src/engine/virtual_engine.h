// The playback component in virtual time: nothing passes until advance() is called.
#pragma once

#include <array>
#include <deque>

#include "engine/engine_core.h"
#include "engine/playback_engine.h"

namespace marlune {

// One thread. Calls are carried out at once, at the time of the last period played.
class VirtualEngine final : public PlaybackEngine, private MessageSink {
  public:
    // devices: null for an engine without ports, on which the opening calls fail. log: may be null.
    explicit VirtualEngine(OutputDevices* devices = nullptr, WireLog* log = nullptr);
    // Stops, which releases what sounds, and closes the ports.
    ~VirtualEngine() override;
    VirtualEngine(const VirtualEngine&) = delete;
    VirtualEngine& operator=(const VirtualEngine&) = delete;

    int call(const EngineCall& call) override;
    bool takeMessage(EngineMessage& message) override;
    void limitSteps(int steps) override { core_.limitSteps(steps); }
    bool halted() const override { return core_.halted(); }
    void settle() override {}
    bool equalsRecord(const ProjectRecord& record, std::string* difference = nullptr) override {
        return core_.patterns().equalsRecord(record, difference);
    }

    // A source for SetClock32; outlives the engine.
    void offerClock(ClockKind kind, ClockSource* source) { core_.offerClock(kind, source); }
    // Plays what is due until then, and takes in what a source has heard; for sources with a time of their
    // own.
    void playUntil(std::int64_t ns);

    // Plays the next period at its time; false, and nothing happens, where none comes: the timer stands, is
    // held or is halted.
    bool advance();

    // Virtual time in ns, 0 at construction; ports get it as the due time.
    std::int64_t nowNs() const { return now_; }

  private:
    void post(const EngineMessage& message) noexcept override { messages_.push_back(message); }
    int openPort(Role role, int device);
    void closePort(Role role);

    OutputDevices* devices_;
    std::array<OutputPort*, kRoles> ports_{};
    std::deque<EngineMessage> messages_;
    EngineCore core_;
    std::int64_t now_ = 0;
};

} // namespace marlune
