// MIDI files through reader and import: nothing but legal values may come out, and a refused file may leave
// no trace.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "commands/reset_program.h"
#include "import/midi_bars.h"
#include "program/startup.h"
#include "project/record_limits.h"

namespace {

using namespace marlune;

void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto song = readMidiSong({data, std::min(size, kLongestMidiFile)});
    if (!song) return 0;
    const auto sources = midiSources(*song);
    if (sources.empty()) return 0;
    resetProgram();
    MidiChoices choices = proposedChoices(sources);
    for (const bool asSong : {true, false}) {
        choices.asSong = asSong;
        choices.highest = !asSong;
        const auto draft = draftOfProject();
        limitRecord(draft->record);
        draftMidi(*song, sources, choices, *draft);
        ProjectRecord limited = draft->record;
        limitRecord(limited);
        require(std::memcmp(&limited, &draft->record, sizeof limited) == 0);
        for (const auto& bars : draft->bars)
            for (const SongBar& bar : bars) require(bar.bank < kBanks && bar.patt < kPatterns);
        for (const auto& knob : draft->knobs)
            for (const std::uint8_t value : knob) require(value <= kTopValue);
    }
    return 0;
}
