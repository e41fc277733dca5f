// The MIDI input: chosen device, block list, and the queue between the device's thread and the program.
//
// received() comes from a thread of the device; everything else belongs to the user-interface thread.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

#include "boundary/midi_ports.h"

namespace marlune {

class MidiInput final : public InputSink {
  public:
    static constexpr std::size_t kQueueSize = 8192;

    MidiInput();

    // The devices to choose from (null: none) and a descriptor that gets eight bytes when a message arrives
    // in event mode (-1: none). Closes what is open.
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

    void received(const MidiMessage& message) noexcept override;

  private:
    void push(const MidiMessage& message);

    InputDevices* devices_ = nullptr;
    int wake_ = -1;
    bool open_ = false;
    std::array<std::atomic<bool>, 256> blocked_;
    std::atomic<bool> started_{true};
    std::atomic<bool> events_{true};
    std::atomic<int> learnt_{-1};

    // The device fills `arrived_`; the reader takes it as a whole by exchanging the two, so that the lock is
    // held for a few instructions. Neither ever grows beyond its first capacity.
    std::mutex mutex_;
    std::vector<MidiMessage> arrived_;
    int dropped_ = 0;
    std::vector<MidiMessage> reading_;
    std::size_t readPos_ = 0;
};

extern MidiInput MIDIIn1;

// Empties the input queue and chooses between event mode (true) and polled mode (false).
void MidiMsgEnable(bool enable);

} // namespace marlune
