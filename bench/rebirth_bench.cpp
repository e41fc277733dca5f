// How long a ReBirth song of full length takes to come in, and to go through to a MIDI file.
#include <benchmark/benchmark.h>

#include "boundary/engine_component.h"
#include "commands/reset_program.h"
#include "engine/virtual_engine.h"
#include "program/startup.h"
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

} // namespace

BENCHMARK_MAIN();
