// Who plays what in a MIDI file: its channels, and the tracks of a channel that several share. Any thread.
#pragma once

#include <string>
#include <vector>

#include "import/midi_song.h"

namespace marlune {

struct MidiNote {
    double start, end; // sixteenths from the start of the file
    int pitch, velocity;
};

inline constexpr int kEveryTrack = -1;

struct MidiSource {
    int channel = 0; // 0..15; its controllers and programs belong to the source
    int track = kEveryTrack;
    std::string label;           // "Channel 10: 96 notes", "Channel 10, Snare: 16 notes"
    std::vector<MidiNote> notes; // in the order of their starts; none is empty
};

// Every source that has notes. A note without an end rings to the end of its track, one struck again ends
// there.
std::vector<MidiSource> midiSources(const MidiSong& song);

// The sixteenth that a place belongs to: the nearest.
int nearestStep(double place);

} // namespace marlune
