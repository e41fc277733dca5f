// Songs of ReBirth, of both formats, through the readers, and with every hundredth input through import and
// conversion: nothing but legal values may come out, and a refused file may leave no trace.
#include <algorithm>
#include <cstring>

#include "commands/reset_program.h"
#include "project/record_limits.h"
#include "project/song_track.h"
#include "rebirth/rb40_convert.h"
#include "rebirth/rebirth_convert.h"
#include "rebirth/rebirth_import.h"
#include "turns.h"

namespace {

using namespace marlune;
using fuzz::require;

void requireLegalProject() {
    ProjectRecord limited = project;
    limitRecord(limited);
    require(std::memcmp(&limited, &project, sizeof project) == 0);
    for (const auto& bars : barTrack)
        for (const SongBar& bar : bars) require(bar.bank < kBanks && bar.patt < kPatterns);
    for (const auto& knob : knobTrack)
        require(std::ranges::all_of(knob, [](std::uint8_t value) { return value <= kTopValue; }));
}

// Into an empty program; whether the song was taken.
template <typename Import>
bool taken(Import import) {
    resetProgram();
    const ProjectRecord before = project;
    const bool done = import() == RebirthResult::done;
    if (done) requireLegalProject();
    require(done || std::memcmp(&before, &project, sizeof project) == 0);
    return done;
}

void old(const std::vector<std::uint8_t>& bytes, fuzz::Turn& whole) {
    constexpr std::size_t kLargestMidiFile = 13000000;
    const std::size_t length = std::min<std::size_t>(bytes.size(), kRbsLongestFile);
    const RbsImage image({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)});
    const bool read = RebirthUnits().readRbsUnits(image);
    if (!whole.due()) return;
    require(taken([&] { return importRbsImage(image, false); }) == read);
    MemoryMidiFile file;
    require(convertRbsImage(image, {}, file) == read && file.bytes().size() < kLargestMidiFile);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::Turn wholeOld(100), whole(100);
    const std::vector<std::uint8_t> bytes(data, data + std::min(size, kRb40LongestFile));
    if (!isRb40(bytes)) return old(bytes, wholeOld), 0;
    const auto song = readRb40(bytes);
    if (!whole.due()) return 0;
    for (const Rb40Drums drums : {Rb40Drums::of808, Rb40Drums::of909, Rb40Drums::both})
        require(taken([&] { return importRb40Bytes(bytes, {false, drums}); }) == song.has_value());
    MemoryMidiFile file;
    if (song) convertRb40(*song, {}, file);
    return 0;
}
