// The live playback component: one real-time thread for the life of the object.
//
//   user-interface thread                     engine thread
//   entry point --> ring of commands -------> carried out in order, at once
//   takeMessage() <-- ring of messages <----- periods at their deadlines on the play clock
//
// The engine thread never allocates, logs, locks or waits for the other one. While the timer runs it has
// real-time priority where the system grants that, a low one: whatever a sound server does in real time comes
// first. Calls in bulk, as a load makes them, are carried out as a normal thread, playing or not.
#pragma once

#include <array>
#include <atomic>
#include <deque>
#include <thread>

#include "engine/engine_core.h"
#include "engine/midi_clock.h"
#include "engine/playback_engine.h"
#include "util/semaphore.h"
#include "util/spsc_ring.h"

namespace marlune {

// All public routines: one thread, that of the user interface. They return before the engine thread has
// carried them out, except where they say that they wait; such a wait lasts microseconds.
class Engine final : public PlaybackEngine, public ClockTap, private MessageSink {
  public:
    // clock, devices and log outlive the engine. Devices are opened and closed on the calling thread.
    // log: called on the engine thread; may be null.
    Engine(PlayClock& clock, OutputDevices& devices, WireLog* log = nullptr);
    // Stops, releases what sounds, closes the ports.
    ~Engine() override;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // None is ever lost: with 32768 calls ahead of it a call waits until there is room.
    //   SetMarluneHwnd32: an eventfd, non-blocking, or -1. Once for each batch of messages, and when the step
    //     limit is reached, 8 bytes are written to it. Waits: the former descriptor can be closed afterwards.
    //   StartMarluneTimer32: waits, so that halted() speaks of this start. While running it stops first.
    //   StopMarluneTimer32: waits; no tick comes after it, and all messages still queued are dropped, those
    //   of
    //     patterns and cues with their ticks, as if the stop had come before them.
    //   Open: closes the role's open port first. Close: waits until what sounds is released.
    int call(const EngineCall& call) override;

    // In order and complete, as long as no more than 16384 wait (a quarter of an hour at the highest tempo).
    bool takeMessage(EngineMessage& message) override;

    void limitSteps(int steps) override;
    bool halted() const override { return halted_.load(std::memory_order_acquire); }

    void settle() override;
    // Settles first.
    bool equalsRecord(const ProjectRecord& record, std::string* difference = nullptr) override;

    // A source for SetClock32 beside the MIDI clock; before that is called. It outlives the engine.
    void offerClock(ClockKind kind, ClockSource* source) { core_.offerClock(kind, source); }

    // The way in of the MIDI clock; any thread.
    void heard(int link, const MidiMessage& message, std::int64_t when) noexcept override;
    const ClockSource& midiClock() const { return midiClock_; }

    // Whether the engine thread has real-time priority now. Settled by the calls that wait.
    bool hasRealTimePriority() const { return realTime_.load(std::memory_order_acquire); }

  private:
    enum class Order : std::uint8_t { entry, setWindow, setPort, limit, settle, quit };
    struct Command {
        Order order = Order::entry;
        bool acknowledge = false;
        Role role = Role::seq;
        OutputPort* port = nullptr;
        EngineCall call{};
    };

    // User-interface thread.
    void queueCommand(const Command& command);
    int openPort(Role role, int device);
    void closePort(Role role);

    // Engine thread.
    void run() noexcept;
    void carryOut(const Command& command, std::int64_t now) noexcept;
    void playPeriod(std::int64_t now) noexcept;
    void announce() noexcept;
    void sleep(std::int64_t now) noexcept;
    void setRealTime(bool wanted) noexcept;
    void post(const EngineMessage& message) noexcept override;

    PlayClock& clock_;
    OutputDevices& devices_;
    std::array<OutputPort*, kRoles> ports_{}; // user-interface thread

    std::deque<EngineMessage> kept_; // user-interface thread: what a clock wished before a stop

    SpscRing<Command, 32768> commands_;
    SpscRing<EngineMessage, 16384> messages_;
    Semaphore wake_;                  // wakes the engine thread
    Semaphore done_;                  // acknowledges a command
    std::atomic<bool> asleep_{false}; // the engine thread needs a wake-up for the next command
    std::atomic<bool> halted_{false};
    std::atomic<bool> realTime_{false};

    std::atomic<bool> hears_{false};  // the MIDI clock is followed
    std::atomic<bool> nudged_{false}; // something was heard since the engine thread looked

    MidiClock midiClock_;
    EngineCore core_; // engine thread
    int window_ = -1;
    bool posted_ = false;
    int callsInARow_ = 0;
    std::int64_t lastCallNs_ = 0;
    bool wantsRealTime_ = false;
    bool quit_ = false;
    std::thread thread_; // last: everything stands before it runs
};

} // namespace marlune
