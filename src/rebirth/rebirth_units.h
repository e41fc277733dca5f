// Everything that the import and the converter take from one ReBirth song. Any thread.
#pragma once

#include <array>

#include "rebirth/drum_patterns.h"
#include "rebirth/rbs_image.h"
#include "rebirth/song_tracks.h"
#include "rebirth/three03_patterns.h"

namespace marlune {

// What became of a command on a .rbs file. Only done has changed anything.
enum class RebirthResult {
    done,
    unreadable, // not a file that can be read
    corrupt,    // too short, broken chunks, a track chunk too long, or no tempo
    notWritten, // the output file could not be written
    left,       // a dialog was left
};

inline constexpr const char* kCorruptRebirthFile = "Corrupt ReBirth file.";

inline constexpr int kDrumSongTrack = 2; // of the song; 0 top, 1 middle, 3 has no use

struct RebirthUnits {
    std::array<Three03_Patterns, 2> basses; // top, middle
    Drum_Patterns drums;
    std::array<Song_Tracks, kRbsTracks> tracks;

    // Loads the decoders. False for a corrupt file; the units are of no use then.
    bool readRbsUnits(const RbsImage& image);
};

int microsecondsPerQuarter(const RbsImage& image); // 24 bits
int barCountOf(const RbsImage& image);             // song length, 0..98175 bars

} // namespace marlune
