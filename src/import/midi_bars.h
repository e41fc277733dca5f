// Notes of a MIDI file as patterns: bars of sixteen sixteenths, equal ones as one pattern.
// User-interface thread; reads the MIDI map of the studio, writes nothing but the draft.
#pragma once

#include <array>
#include <vector>

#include "import/midi_sources.h"
#include "import/music_draft.h"

namespace marlune {

inline constexpr int kNoSource = -1;

struct MidiChoices {
    std::array<int, kModules> source{kNoSource, kNoSource, kNoSource}; // of each module
    bool highest = true;   // which note of a step a bassline takes: the highest, else the last
    int accentAbove = 100; // a higher velocity is an accent
    bool asSong = true;    // bars and knob movements as well
    bool operator==(const MidiChoices&) const = default;
};

// The modules' own channels where these have notes; else the drums on channel 10 and the basslines by pitch,
// the lowest first. Accents are what exceeds the basslines' velocity.
MidiChoices proposedChoices(const std::vector<MidiSource>& sources);

// A module without a source stays as it is; one with a source gets its patterns from A1 on and keeps the
// rest, but for an empty one that follows the song's end. Beyond 32 patterns a bar takes the one that differs
// least.
//
// Basslines: moved by whole octaves to where most notes can be played, single ones further. A note held over
// several steps goes on as rests of its pitch, which don't release it; one that overlaps the next slides.
// Accents are what exceeds the threshold, and what a controller of the accent knob has announced by that very
// velocity. Programs of the channel become patches. Drums: rows by their default notes. Controllers of the
// channel move the knobs that are mapped to them; levels and accents that no controller tells are taken from
// the velocities.
void draftMidi(const MidiSong& song, const std::vector<MidiSource>& sources, const MidiChoices& choices,
               MusicDraft& draft);

} // namespace marlune
