// How long the export of a whole song takes, 1000 bars with every module busy and every knob moving at every
// tick, the file on disk included; beside it what libsmf, where it is installed, takes for the same events.
#include <benchmark/benchmark.h>

#ifdef MARLUNE_HAVE_LIBSMF
#include <smf.h>
#endif

#include "files/export_driver.h"
#include "files/export_sequencer.h"
#include "project/global_config.h"
#include "project/song_track.h"
#include "support/test_program.h"

namespace {

using namespace marlune;

// Everything sounds at every step, another pattern and another program in every bar.
void fillSong() {
    for (int k = 0; k < kKnobs; ++k) config.outputController[k] = 12 + k;
    for (int n = 0; n < kBanks * kPatterns; ++n) {
        for (BassModule& bass : project.bass) {
            BassPattern& pattern = bass.patterns[n / kPatterns][n % kPatterns];
            pattern.loopEnd = kSteps - 1;
            pattern.patch = n;
            for (int s = 0; s < kSteps; ++s) {
                pattern.steps[s].note = (n + s) % 13;
                pattern.steps[s].noteOn = true;
                pattern.steps[s].accent = s % 4 == 0;
            }
        }
        DrumPattern& drums = project.drum.patterns[n / kPatterns][n % kPatterns];
        drums.loopEnd = kSteps - 1;
        for (auto& hits : drums.drumOn) hits.fill(kDrumHit);
    }
    for (int bar = 0; bar < kSongBars; ++bar) {
        for (auto& bars : barTrack) {
            bars[bar].bank = static_cast<std::uint8_t>(bar / kPatterns % kBanks);
            bars[bar].patt = static_cast<std::uint8_t>(bar % kPatterns);
        }
    }
    for (int k = 0; k < kKnobs; ++k) {
        for (int t = 0; t < kSongTicks; ++t) knobTrack[k][t] = static_cast<std::uint8_t>(1 + (t + k) % 127);
    }
}

struct FullSong {
    FullSong() { fillSong(); }
    bool write(const std::string& name) {
        program.shell.fileNames = {name};
        songPosition.write().moduleStep = {};
        return ExportToMID("", 0, kSongTicks);
    }
    test::TestProgram program;
    test::TemporaryFolder folder;
};

void exportSong(benchmark::State& state) {
    FullSong song;
    const std::string name = song.folder.file("song.mid");
    for (auto _ : state) {
        std::remove(name.c_str());
        if (!song.write(name)) state.SkipWithError("not written");
    }
    state.counters["bytes"] = static_cast<double>(test::readBytes(name).size());
}
BENCHMARK(exportSong)->Unit(benchmark::kMillisecond);

struct Event {
    int track, delta, status, data1, data2;
};

class EventList final : public MidiFileWriter {
  public:
    int addTrack() override { return 0; }
    void chooseTrack(int track) override { track_ = track; }
    void event(int delta, int status, int data1, int data2) override {
        events.push_back({track_, delta, status, data1, data2});
    }
    void text(int /*type*/, std::string_view /*text*/) override {}
    void timeSignature(const std::array<std::uint8_t, 4>& /*bytes*/) override {}
    void tempo(int /*microseconds*/) override {}
    std::vector<Event> events;

  private:
    int track_ = 0;
};

// The events of that song, in the order in which they come up.
std::vector<Event> eventsOfTheSong() {
    const FullSong song;
    EventList list;
    songPosition.write().songMode = true;
    songPosition.write().songTick = 0;
    beginExportRun(list, 0);
    for (int t = 0; t < kSongTicks; ++t) ExportToMIDProcessTick();
    songPosition.write().songMode = false;
    return list.events;
}

void writeEvents(benchmark::State& state) {
    const std::vector<Event> events = eventsOfTheSong();
    const test::TemporaryFolder folder;
    for (auto _ : state) {
        MemoryMidiFile file;
        for (int track = 0; track < kExportTracks; ++track) file.addTrack();
        for (const Event& e : events) {
            file.chooseTrack(e.track);
            file.event(e.delta, e.status, e.data1, e.data2);
        }
        if (!file.finish(folder.file("a.mid"))) state.SkipWithError("not written");
    }
    state.counters["events"] = static_cast<double>(events.size());
}
BENCHMARK(writeEvents)->Unit(benchmark::kMillisecond);

#ifdef MARLUNE_HAVE_LIBSMF
// Once only, and the events are left to the end of the process: freeing them takes libsmf many seconds, and
// so does saving, since it reads the file back, compares, and frees what it read. Hence collecting on its own
// too.
void writeEventsWithLibsmf(benchmark::State& state, bool saved) {
    const std::vector<Event> events = eventsOfTheSong();
    const test::TemporaryFolder folder;
    for (auto _ : state) {
        smf_t* const file = smf_new();
        if (smf_set_ppqn(file, kMidiFileDivision) != 0) state.SkipWithError("refused");
        std::array<smf_track_t*, kExportTracks> tracks{};
        for (smf_track_t*& track : tracks) {
            track = smf_track_new();
            smf_add_track(file, track);
        }
        for (const Event& e : events) {
            const bool program = (e.status & 0xF0) == 0xC0;
            smf_event_t* const event = smf_event_new_from_bytes(e.status, e.data1, program ? -1 : e.data2);
            smf_track_add_event_delta_pulses(tracks[e.track], event, e.delta);
        }
        if (saved && smf_save(file, folder.file("b.mid").c_str()) != 0) state.SkipWithError("not written");
    }
    state.counters["events"] = static_cast<double>(events.size());
}
BENCHMARK_CAPTURE(writeEventsWithLibsmf, collected, false)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(writeEventsWithLibsmf, saved, true)->Unit(benchmark::kMillisecond)->Iterations(1);
#endif

} // namespace

BENCHMARK_MAIN();
