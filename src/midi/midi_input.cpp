#include "midi/midi_input.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

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
    arrived_.reserve(kQueueSize);
    reading_.reserve(kQueueSize);
    for (auto& status : blocked_) status = false;
}

void MidiInput::attach(InputDevices* devices, int wakeDescriptor) {
    close();
    devices_ = devices;
    wake_ = wakeDescriptor;
    DeviceID = -1;
    for (auto& status : blocked_) status = false;
    started_ = true;
    setMessageEvents(true);
    const std::lock_guard lock(mutex_);
    arrived_.clear();
    reading_.clear();
    readPos_ = 0;
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
    if (readPos_ == reading_.size()) {
        readPos_ = 0;
        reading_.clear();
        const std::lock_guard lock(mutex_);
        std::swap(reading_, arrived_);
    }
    return static_cast<int>(reading_.size() - readPos_);
}

MidiMessage MidiInput::oldest() {
    return reading_[readPos_];
}

void MidiInput::removeOldest() {
    if (readPos_ < reading_.size()) ++readPos_;
}

void MidiInput::setMessageEvents(bool events) {
    MessageEvents = events;
    events_ = events;
}

void MidiInput::BlockStatus(int status, bool blocked) {
    blocked_[status & 0xFF] = blocked;
}

int MidiInput::takeDropped() {
    const std::lock_guard lock(mutex_);
    return std::exchange(dropped_, 0);
}

int MidiInput::takeLearnt() {
    return learnt_.exchange(-1);
}

void MidiInput::received(const MidiMessage& message) noexcept {
    const int status = message.bytes[0];
    if (message.size != midiMessageLength(status) || message.size == 0) return;
    if (((message.bytes[1] | message.bytes[2]) & 0x80) != 0) return; // data bytes index tables of 128
    if (statusKind(status) == kControlChange) learnt_ = message.bytes[1];
    if (!started_ || blocked_[status]) return;
    push(message);
    if (events_ && wake_ >= 0) {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(wake_, &one, sizeof one);
    }
}

void MidiInput::push(const MidiMessage& message) {
    const std::lock_guard lock(mutex_);
    if (arrived_.size() == kQueueSize) {
        ++dropped_;
        const auto victim = std::find_if_not(arrived_.begin(), arrived_.end(), isNoteOn);
        if (victim == arrived_.end() && !isNoteOn(message)) return;
        arrived_.erase(victim == arrived_.end() ? arrived_.begin() : victim);
    }
    arrived_.push_back(message);
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
