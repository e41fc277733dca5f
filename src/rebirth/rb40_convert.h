// A song of ReBirth 2 as a Standard MIDI File: meta events, notes and knobs of the two basslines, and a track
// for each drum unit that sounds. Any thread.
#pragma once

#include "rebirth/rb40_song.h"
#include "rebirth/rebirth_convert.h"

namespace marlune {

// What lies behind kLongestConversionBars is left out.
void convertRb40(const Rb40Song& song, const ConverterOptions& options, MidiFileWriter& writer,
                 const ConversionProgress& progress = {});

} // namespace marlune
