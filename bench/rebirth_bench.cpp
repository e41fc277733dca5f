// How long a song of full length takes to come in, of either format of ReBirth or a MIDI file of our own, and
// a ReBirth song to go through to a MIDI file.
#include <benchmark/benchmark.h>

#include "boundary/engine_component.h"
#include "commands/reset_program.h"
#include "engine/virtual_engine.h"
#include "import/midi_bars.h"
#include "program/startup.h"
#include "rebirth/rb40_convert.h"
#include "rebirth/rb40_writer.h"
#include "rebirth/rbs_generator.h"
#include "rebirth/rebirth_convert.h"
#include "rebirth/rebirth_import.h"

namespace {

using namespace marlune;

const RbsImage& song() {
    static const RbsImage image(test::rbsFile(test::randomSong(1, 1000)));
    return image;
}

void importSong(benchmark::State& state) {
    resetProgram();
    VirtualEngine engine(nullptr);
    setEngineComponent(&engine);
    for (auto _ : state) {
        if (importRbsImage(song(), false) != RebirthResult::done) state.SkipWithError("refused");
    }
    setEngineComponent(nullptr);
}
BENCHMARK(importSong)->Unit(benchmark::kMillisecond);

void convertSong(benchmark::State& state) {
    std::size_t size = 0;
    for (auto _ : state) {
        MemoryMidiFile file;
        if (!convertRbsImage(song(), {}, file)) state.SkipWithError("refused");
        size = file.bytes().size();
    }
    state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK(convertSong)->Unit(benchmark::kMillisecond);

const Rb40Song& song40() {
    static const Rb40Song song = test::randomRb40(1, 1000);
    return song;
}

// drums: as Rb40Drums.
void importSong40(benchmark::State& state) {
    resetProgram();
    VirtualEngine engine(nullptr);
    setEngineComponent(&engine);
    const auto bytes = test::rb40File(song40());
    const auto drums = static_cast<Rb40Drums>(state.range(0));
    for (auto _ : state) {
        if (importRb40Bytes(bytes, {false, drums}) != RebirthResult::done) state.SkipWithError("refused");
    }
    setEngineComponent(nullptr);
}
BENCHMARK(importSong40)->Arg(0)->Arg(2)->Unit(benchmark::kMillisecond);

void convertSong40(benchmark::State& state) {
    const auto bytes = test::rb40File(song40());
    for (auto _ : state) {
        MemoryMidiFile file;
        convertRb40(*readRb40(bytes), {}, file);
        benchmark::DoNotOptimize(file.bytes());
    }
}
BENCHMARK(convertSong40)->Unit(benchmark::kMillisecond);

// 1000 bars: 16 notes in each for both basslines, four hits a step, and their knobs.
std::vector<std::uint8_t> fullMidiFile() {
    MemoryMidiFile file;
    for (int track = 0; track < 3; ++track) {
        file.addTrack();
        const int channel = track == 2 ? 9 : track;
        for (int step = 0; step < kSongTicks; ++step) {
            for (int hit = 0; hit < (track == 2 ? 4 : 1); ++hit) {
                const int note = track == 2 ? 36 + 2 * hit : 36 + step / 16 % 31 % 12 + step % 5;
                file.event(0, 0x90 + channel, note, 90 + step % 20);
                file.event(hit == 0 ? 30 : 0, 0x80 + channel, note, 0);
            }
            file.event(0, 0xB0 + channel, 12 + step % 6, step % 128);
        }
    }
    return file.bytes();
}

void importMidi(benchmark::State& state) {
    resetProgram();
    VirtualEngine engine(nullptr);
    setEngineComponent(&engine);
    StartupHooks hooks;
    hooks.openDevices = false;
    startupMain("", hooks);
    const auto bytes = fullMidiFile();
    for (auto _ : state) {
        const auto midi = readMidiSong(bytes);
        const auto sources = midiSources(*midi);
        const auto draft = draftOfProject();
        draftMidi(*midi, sources, proposedChoices(sources), *draft);
        takeDraft(*draft);
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
    setEngineComponent(nullptr);
}
BENCHMARK(importMidi)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
