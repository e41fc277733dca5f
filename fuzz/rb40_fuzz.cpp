// Songs of ReBirth 2 through reader, import and conversion: nothing but legal values may come out, and a
// refused file may leave no trace.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "commands/reset_program.h"
#include "program/startup.h"
#include "project/record_limits.h"
#include "project/song_track.h"
#include "rebirth/rb40_convert.h"
#include "rebirth/rebirth_import.h"

namespace {

using namespace marlune;

void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes(data, data + std::min(size, kRb40LongestFile));
    const auto song = readRb40(bytes);
    for (const Rb40Drums drums : {Rb40Drums::of808, Rb40Drums::of909, Rb40Drums::both}) {
        resetProgram();
        const ProjectRecord before = project;
        const bool taken = importRb40Bytes(bytes, {false, drums}) == RebirthResult::done;
        require(taken == song.has_value());
        ProjectRecord limited = taken ? project : before;
        if (taken) limitRecord(limited);
        require(std::memcmp(&limited, &project, sizeof project) == 0);
        if (!taken) return 0;
        for (const auto& bars : barTrack)
            for (const SongBar& bar : bars) require(bar.bank < kBanks && bar.patt < kPatterns);
        for (const auto& knob : knobTrack)
            for (const std::uint8_t value : knob) require(value <= kTopValue);
    }
    MemoryMidiFile file;
    convertRb40(*song, {}, file);
    return 0;
}
