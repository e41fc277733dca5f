// A ReBirth song as a Standard MIDI File of six tracks: meta events, notes and knobs of the two basslines,
// and drums. The project has no part in it. Any thread.
#pragma once

#include <functional>
#include <string>

#include "files/midi_file_writer.h"
#include "rebirth/rebirth_units.h"

namespace marlune {

// All values as MIDI has them; channels count from 1.
struct UnitOptions {
    int baseNote = 36; // 0..127; a plain step of semitone 0 sounds an octave higher
    int velocity = 90; // 0..127
    int channel = 1;   // 1..16
    int cutoff = 12, reso = 13, envMod = 14, decay = 15, accent = 16; // controllers, 0..127
    // Of songs of ReBirth 2 only: sliding notes overlap the next, accented ones have the highest velocity,
    // knob movements are written.
    bool slides = false, accents = false, knobs = true;
};

struct ConverterOptions {
    UnitOptions top;
    UnitOptions mid{.channel = 2};
    int drumsChannel = 10; // 1..16
};

// The legal range of each, for whoever fills the options from outside.
struct OptionLimits {
    int lowest, highest;
};
inline constexpr OptionLimits kDataByteLimits{0, 127};
inline constexpr OptionLimits kChannelLimits{1, 16};

// A converted song is at most this long, whatever the file says: about four times what a song of the project
// has, and a file of 12 MB at the very worst. What lies behind is left out.
inline constexpr int kLongestConversionBars = 4096;

// Copyright text of either format; it is followed by six bytes that are no text.
inline constexpr const char* kConverterText =
    "Marlune 200q ReBirth to MIDI Converter v1.00\x04\x20\x24\x07\x03\x65";

using ConversionProgress = std::function<void(int percent)>; // 0..100

// False, with nothing written, for a corrupt file.
bool convertRbsImage(const RbsImage& image, const ConverterOptions& options, MidiFileWriter& writer,
                     const ConversionProgress& progress = {});

// From file to file, either format; the output is written as a whole or not at all.
RebirthResult convertRebirthFile(const std::string& in, const std::string& out,
                                 const ConverterOptions& options, const ConversionProgress& progress = {});

} // namespace marlune
