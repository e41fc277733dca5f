// The MIDI input: chosen device, block list, and the queue between the device's thread and the program.
//
// User-interface thread, except for what arrives: each link of the open device delivers into a lane of its
// own, from a thread of its own, which neither waits nor makes a system call beyond a semaphore's post.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

#include "boundary/clock_source.h"
#include "boundary/midi_ports.h"
#include "midi/input_lane.h"
#include "midi/input_wake.h"

namespace marlune {

class MidiInput final : public InputSinks {
  public:
    static constexpr std::size_t kQueueSize = 8192;

    MidiInput();

    // The devices to choose from (null: none) and a descriptor that gets eight bytes when messages arrive in
    // event mode, once for all that come before MessageCount() is asked again (-1: none). Closes what is
    // open.
    void attach(InputDevices* devices, int wakeDescriptor);

    int DeviceCount();
    std::string ProductName(int index);
    int DeviceID = -1; // negative selects nothing

    void open(); // opens DeviceID; stays closed where that fails
    void close();
    [[nodiscard]] bool isOpen() const { return open_; }

    void start(); // lets messages into the queue
    void stop();

    int MessageCount();   // messages queued
    MidiMessage oldest(); // the oldest queued message; MessageCount() must be above 0
    void removeOldest();

    // True: arrivals wake the event loop, which then reads them; false: they wait to be polled.
    bool MessageEvents = true;
    void setMessageEvents(bool events);

    void BlockStatus(int status, bool blocked);
    [[nodiscard]] bool isBlocked(int status) const { return blocked_[status & 0xFF].load(); }

    // Messages that a full queue has cost since the last call: the oldest controllers go first, notes last.
    int takeDropped();

    // The last controller number that arrived on any channel since the last call, -1 for none; heard before
    // the block list and whether receiving is started or not.
    int takeLearnt();

    // Who else hears the clock messages, before the block list; null: nobody. While no device is open.
    void setTap(ClockTap* tap) { tap_ = tap; }

    InputSink& link(int number) noexcept override { return links_[number]; }

  private:
    struct Link final : InputSink {
        void received(const MidiMessage& message) noexcept override { owner->received(lane, message); }
        void clocked(const MidiMessage& message, std::int64_t when) noexcept override {
            if (owner->tap_ != nullptr) owner->tap_->heard(number, message, when);
            received(message);
        }
        MidiInput* owner = nullptr;
        int number = 0;
        InputLane lane;
    };

    void received(InputLane& lane, const MidiMessage& message) noexcept; // the link's thread
    void takeArrived();
    void trim();

    InputDevices* devices_ = nullptr;
    ClockTap* tap_ = nullptr;
    bool open_ = false;
    std::array<std::atomic<bool>, 256> blocked_;
    std::atomic<bool> started_{true};
    std::atomic<bool> events_{true};
    std::atomic<int> learnt_{-1};

    std::array<Link, kInputLinks> links_;
    std::atomic<std::uint64_t> arrivals_{0};
    std::deque<MidiMessage> queue_;
    int dropped_ = 0;
    InputWake wake_; // last: its thread ends before the rest
};

extern MidiInput MIDIIn1;

// Empties the input queue and chooses between event mode (true) and polled mode (false).
void MidiMsgEnable(bool enable);

} // namespace marlune
