// MIDI files through the reader, and with every hundredth input through the import: nothing but legal values
// may come out.
#include <algorithm>
#include <cstring>

#include "commands/reset_program.h"
#include "import/midi_bars.h"
#include "project/record_limits.h"
#include "turns.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace marlune;
    using fuzz::require;
    static fuzz::Turn whole(100);
    const auto song = readMidiSong({data, std::min(size, kLongestMidiFile)});
    if (!song) return 0;
    const auto sources = midiSources(*song);
    if (sources.empty() || !whole.due()) return 0;
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
            require(std::ranges::all_of(knob, [](std::uint8_t value) { return value <= kTopValue; }));
    }
    return 0;
}
