// Standard MIDI Files, read: the header, and what the tracks say of notes, controllers, programs, tempo and
// names. Any thread.
//
// A strict reader of our own. The one of the libraries at hand that reads without a sequencer behind it
// (libsmf) brings GLib along and reads a broken file as far as it goes; here a file is whole or refused, and
// every byte is read inside the bounds of its chunk.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace marlune {

inline constexpr std::size_t kLongestMidiFile = 16U << 20; // bytes; a longer one is refused

struct MidiFileEvent {
    std::uint32_t tick; // from the start, limited to what 32 bits hold
    std::uint8_t status, data1, data2;
};

struct MidiFileTrack {
    std::string name;
    std::vector<MidiFileEvent> events; // channel messages in order
};

struct MidiSong {
    int format = 0;                 // 0 or 1
    int tempoMicroseconds = 500000; // per quarter note, the first that the file tells
    int tempoChanges = 0;           // further ones
    std::array<int, 2> meter{4, 4}; // the first, where there is one
    double stepsPerTick = 0;        // sixteenths; positive
    std::vector<MidiFileTrack> tracks;
};

// Nothing for formats but 0 and 1, and for a file that isn't whole: a chunk that reaches beyond the end,
// fewer tracks than the header says, an event that is cut, data without a status. Chunks of other types are
// skipped, a track may end without its End of Track, and what stands behind the last chunk is ignored.
std::optional<MidiSong> readMidiSong(std::span<const std::uint8_t> file);

} // namespace marlune
