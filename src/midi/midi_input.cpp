#include "midi/midi_input.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "boundary/app_shell.h"
#include "boundary/midi_bytes.h"

namespace marlune {

MidiInput MIDIIn1;

namespace {

bool isNoteOn(const MidiMessage& message) {
    return statusKind(message.bytes[0]) == kNoteOn;
}

} // namespace

MidiInput::MidiInput() {
    for (int i = 0; i < kInputLinks; ++i) links_[i].owner = this, links_[i].number = i;
    for (auto& status : blocked_) status = false;
}

void MidiInput::attach(InputDevices* devices, int wakeDescriptor) {
    close();
    devices_ = devices;
    wake_.setDescriptor(wakeDescriptor);
    DeviceID = -1;
    for (auto& status : blocked_) status = false;
    started_ = true;
    setMessageEvents(true);
    takeArrived();
    queue_.clear();
    dropped_ = 0;
    learnt_ = -1;
}

int MidiInput::DeviceCount() {
    return devices_ != nullptr ? devices_->count() : 0;
}

std::string MidiInput::ProductName(int index) {
    return devices_ != nullptr ? devices_->name(index) : "";
}

void MidiInput::open() {
    if (open_ || devices_ == nullptr || DeviceID < 0) return;
    open_ = devices_->open(DeviceID, *this);
}

void MidiInput::close() {
    if (!open_) return;
    devices_->close();
    open_ = false;
}

void MidiInput::start() {
    started_ = true;
}

void MidiInput::stop() {
    started_ = false;
}

int MidiInput::MessageCount() {
    if (queue_.empty()) takeArrived();
    return static_cast<int>(queue_.size());
}

void MidiInput::takeArrived() {
    wake_.looking();
    std::vector<InputLane::Arrival> arrived;
    InputLane::Arrival next;
    for (Link& link : links_)
        while (link.lane.take(next, dropped_)) arrived.push_back(next);
    std::sort(arrived.begin(), arrived.end(),
              [](const auto& one, const auto& other) { return one.number < other.number; });
    for (const InputLane::Arrival& each : arrived) queue_.push_back(each.message);
    trim();
}

// The oldest controllers go first, notes only where nothing else is left.
void MidiInput::trim() {
    for (const bool notesToo : {false, true}) {
        if (queue_.size() <= kQueueSize) return;
        auto excess = static_cast<std::ptrdiff_t>(queue_.size() - kQueueSize);
        dropped_ += static_cast<int>(std::erase_if(queue_, [&](const MidiMessage& message) {
            return (notesToo || !isNoteOn(message)) && excess-- > 0;
        }));
    }
}

MidiMessage MidiInput::oldest() {
    return queue_.front();
}

void MidiInput::removeOldest() {
    if (!queue_.empty()) queue_.pop_front();
}

void MidiInput::setMessageEvents(bool events) {
    MessageEvents = events;
    events_ = events;
    wake_.looking(); // a wake-up of the polled mode's time may have passed unheard
}

void MidiInput::BlockStatus(int status, bool blocked) {
    blocked_[status & 0xFF] = blocked;
}

int MidiInput::takeDropped() {
    return std::exchange(dropped_, 0);
}

int MidiInput::takeLearnt() {
    return learnt_.exchange(-1);
}

void MidiInput::received(InputLane& lane, const MidiMessage& message) noexcept {
    const int status = message.bytes[0];
    if (message.size != midiMessageLength(status) || message.size == 0) return;
    if (((message.bytes[1] | message.bytes[2]) & 0x80) != 0) return; // data bytes index tables of 128
    if (statusKind(status) == kControlChange) learnt_ = message.bytes[1];
    if (!started_ || blocked_[status]) return;
    lane.push({arrivals_.fetch_add(1, std::memory_order_relaxed), message});
    if (events_) wake_.announce();
}

void MidiMsgEnable(bool enable) {
    MIDIIn1.stop();
    // Thrown away before any event runs: the one that announces these messages would read them.
    const bool waiting = MIDIIn1.MessageCount() > 0;
    while (MIDIIn1.MessageCount() > 0) MIDIIn1.removeOldest();
    MIDIIn1.takeDropped(); // what a queue that nobody read has cost is no news
    if (waiting) shell().letEventsRun();
    MIDIIn1.setMessageEvents(enable);
    MIDIIn1.start();
}

} // namespace marlune
