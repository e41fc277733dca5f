// Whole ReBirth files through import and conversion: nothing but legal values may come out, and a refused
// file may leave no trace.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "commands/reset_program.h"
#include "program/startup.h"
#include "project/record_limits.h"
#include "project/song_track.h"
#include "rebirth/rebirth_convert.h"
#include "rebirth/rebirth_import.h"

namespace {

using namespace marlune;

constexpr std::size_t kLargestMidiFile = 13000000;

void require(bool holds) {
    if (!holds) std::abort();
}

void requireLegalProject() {
    ProjectRecord limited = project;
    limitRecord(limited);
    require(std::memcmp(&limited, &project, sizeof project) == 0);
    for (const auto& bars : barTrack) {
        for (const SongBar& bar : bars) require(bar.bank < kBanks && bar.patt < kPatterns);
    }
    for (const auto& knob : knobTrack) {
        require(std::all_of(knob.begin(), knob.end(), [](std::uint8_t value) { return value <= 127; }));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    resetProgram();
    const ProjectRecord before = project;
    const std::size_t length = std::min<std::size_t>(size, kRbsLongestFile);
    const RbsImage image(std::vector<std::uint8_t>(data, data + length));
    const bool taken = importRbsImage(image, false) == RebirthResult::done;
    if (taken) {
        requireLegalProject();
    } else {
        require(std::memcmp(&before, &project, sizeof project) == 0);
    }
    MemoryMidiFile file;
    require(convertRbsImage(image, {}, file) == taken);
    require(file.bytes().size() < kLargestMidiFile);
    return 0;
}
