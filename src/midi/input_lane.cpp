#include "midi/input_lane.h"

#include <algorithm>

#include "boundary/midi_bytes.h"

namespace marlune {

namespace {

constexpr int kNumberShift = 24;

InputLane::Arrival arrivalOf(std::uint64_t word) {
    InputLane::Arrival arrival{word >> kNumberShift, {}};
    for (int i = 0; i < 3; ++i) arrival.message.bytes[i] = static_cast<std::uint8_t>(word >> (8 * i));
    arrival.message.size = static_cast<std::uint8_t>(midiMessageLength(arrival.message.bytes[0]));
    return arrival;
}

} // namespace

void InputLane::push(const Arrival& arrival) noexcept {
    std::uint64_t word = arrival.number << kNumberShift;
    for (int i = 0; i < 3; ++i) word |= std::uint64_t{arrival.message.bytes[i]} << (8 * i);
    (statusKind(arrival.message.bytes[0]) == kNoteOn ? notes_ : others_).push(word);
    end_.store(arrival.number + 1, std::memory_order_release);
}

bool InputLane::take(Arrival& arrival, int& lost) noexcept {
    // What arrives between the two looks is left for the next time: it could overtake its predecessor.
    const std::uint64_t end = end_.load(std::memory_order_acquire) << kNumberShift;
    std::uint64_t note = end;
    std::uint64_t other = end;
    notes_.front(note, lost);
    others_.front(other, lost);
    if (std::min(note, other) >= end) return false;
    arrival = arrivalOf(std::min(note, other));
    (note < other ? notes_ : others_).pop();
    return true;
}

} // namespace marlune
