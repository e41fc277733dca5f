// Standard MIDI Files into patterns: the command, and the same without dialogs. User-interface thread.
#pragma once

#include <functional>
#include <string>

#include "import/midi_bars.h"

namespace marlune {

inline constexpr const char* kCorruptMidiFile = "This is no MIDI file that can be read.";

// Whether the file begins as a MIDI file does.
bool looksLikeMidiFile(const std::string& path);

// Asks about unsaved work, for a file, and who plays what. Refused files change nothing.
void mnuFileImportMidi_Click();

// choose: may change what is proposed; false leaves the import. False as well, with nothing changed, for a
// file that can't be read or has no notes; `report` then says so, else what was taken.
bool importMidiFile(
    const std::string& path,
    const std::function<bool(const MidiSong&, const std::vector<MidiSource>&, MidiChoices&)>& choose,
    std::string& report);

} // namespace marlune
