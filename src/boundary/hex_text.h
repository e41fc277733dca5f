// MIDI messages for people to read.
#pragma once

#include <string>

#include "boundary/midi_ports.h"

namespace marlune {

// The bytes in hexadecimal, one blank between: "90 24 64".
inline std::string hexText(const MidiMessage& message) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (int i = 0; i < message.size; ++i) {
        if (i > 0) text += ' ';
        text += {kDigits[message.bytes[i] >> 4], kDigits[message.bytes[i] & 15]};
    }
    return text;
}

} // namespace marlune
