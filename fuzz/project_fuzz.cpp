// Project files. Every input goes through the reader; what it made is packed and read again with every
// hundredth; with every thousandth the whole program loads it, plays in both modes, saves and loads: what was
// saved once comes back the same.
#include <cstring>
#include <vector>

#include "files/project_file.h"
#include "project/record_limits.h"
#include "project/run_state.h"
#include "project/song_packing.h"
#include "project/song_track.h"
#include "song/mode_switch.h"
#include "support/test_program.h"
#include "transport/transport.h"
#include "turns.h"

namespace {

using namespace marlune;
using fuzz::require;

void readAlone(const FileBytes& file) {
    static fuzz::Turn roundTrip(100);
    if (file.bytes.size() < sizeof(ProjectRecord)) return;
    ProjectRecord record;
    std::memcpy(&record, file.bytes.data(), sizeof record);
    limitRecord(record);
    const auto entries = packedSongOf(file);
    if (!entries || !unpackSong(*entries) || !roundTrip.due()) return;
    ProjectRecord again = record;
    limitRecord(again);
    require(std::memcmp(&again, &record, sizeof record) == 0);
    for (const auto& bars : barTrack)
        for (const SongBar& bar : bars) require(bar.bank < kBanks && bar.patt < kPatterns);
    const auto bars = barTrack;
    const auto knobs = knobTrack;
    const std::vector<std::uint8_t> packed = packSong();
    clearSongTracks();
    require(unpackSong(packed) && bars == barTrack && knobs == knobTrack);
}

void playWhole(const std::vector<std::uint8_t>& bytes) {
    static const test::TemporaryFolder folder;
    test::writeBytes(folder.file("in.mlp"), bytes);
    test::Options options;
    options.recorded = false;
    test::TestProgram program(options);
    loadProjectFile(folder.file("in.mlp"));
    require(program.copyDifference().empty());
    playButton();
    program.play(18);
    Check1_Click();
    program.play(18);
    StopPlay();
    Check1_Click();
    saveProjectFile(folder.file("a.mlp"));
    loadProjectFile(folder.file("a.mlp"));
    saveProjectFile(folder.file("b.mlp"));
    require(test::readBytes(folder.file("a.mlp")) == test::readBytes(folder.file("b.mlp")));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::Turn whole(1000);
    const FileBytes file{.ok = true, .size = size, .bytes = {data, data + size}};
    readAlone(file);
    if (whole.due()) playWhole(file.bytes);
    return 0;
}
