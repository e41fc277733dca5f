// The words of MIDI: status bytes and the messages built of them. Arguments are in range: channel 0..15,
// data 0..127.
#pragma once

#include <algorithm>

#include "boundary/limits.h"
#include "boundary/midi_ports.h"

namespace marlune {

inline constexpr int kNoteOff = 0x80;
inline constexpr int kNoteOn = 0x90;
inline constexpr int kPolyPressure = 0xA0;
inline constexpr int kControlChange = 0xB0;
inline constexpr int kProgramChange = 0xC0;
inline constexpr int kChannelPressure = 0xD0;
inline constexpr int kPitchBend = 0xE0;
inline constexpr int kSystem = 0xF0; // and above: no channel
inline constexpr int kSongPosition = 0xF2;
inline constexpr int kTimingClock = 0xF8;
inline constexpr int kClockStart = 0xFA;
inline constexpr int kClockContinue = 0xFB;
inline constexpr int kClockStop = 0xFC;
inline constexpr int kActiveSensing = 0xFE;

// The message a status byte begins, without its channel; and that channel, 0..15.
constexpr int statusKind(int status) {
    return status & 0xF0;
}
constexpr int channelOfStatus(int status) {
    return status & 0x0F;
}

// A value as the data byte of a message, limited to what one holds.
constexpr int limitedData(int value) {
    return std::clamp(value, 0, kTopValue);
}

// status must have a length (midiMessageLength); data keeps its low seven bits.
constexpr MidiMessage midiBytes(int status, int data1 = 0, int data2 = 0) {
    return {static_cast<std::uint8_t>(midiMessageLength(status)),
            {static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1 & 0x7F),
             static_cast<std::uint8_t>(data2 & 0x7F)}};
}

constexpr MidiMessage noteOn(int channel, int note, int velocity) {
    return midiBytes(kNoteOn + channel, note, velocity);
}

// A note ends with a note-on of velocity 0, everywhere in this program.
constexpr MidiMessage release(int channel, int note) {
    return noteOn(channel, note, 0);
}

// position: in sixteenths, 0..15999, the unit of the message.
constexpr MidiMessage songPositionPointer(int position) {
    return midiBytes(kSongPosition, position, position >> 7);
}

} // namespace marlune
