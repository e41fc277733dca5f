#include <sys/resource.h>
#include <unistd.h>
#include <csignal>

#include "export/export_driver.h"
#include "export/export_sequencer.h"
#include "support/program_test.h"

namespace marlune {
namespace {

void randomProject(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(count));
    };
    for (BassModule& bass : project.bass) {
        bass.lastPatch = -1;
        for (auto& bank : bass.patterns) {
            for (BassPattern& pattern : bank) {
                for (BassStep& step : pattern.steps) {
                    step.note = below(13);
                    step.noteOn = below(3) != 0;
                    step.accent = below(4) == 0;
                    step.up = below(4) == 0;
                    step.down = !step.up && below(4) == 0;
                }
                pattern.loopEnd = below(3) == 0 ? 15 : below(16);
                pattern.patch = below(3) == 0 ? below(128) : -1;
            }
        }
    }
    for (auto& bank : project.drum.patterns) {
        for (DrumPattern& pattern : bank) {
            pattern.loopEnd = below(2) == 0 ? 15 : below(16);
            for (auto& rows : pattern.drumOn) {
                for (Le8& cell : rows) cell = below(4) == 0 ? 255 : 0;
            }
        }
    }
    for (auto& bars : barTrack) {
        SongBar bar;
        for (SongBar& entry : bars) {
            if (below(3) == 0)
                bar = {static_cast<std::uint8_t>(below(8)), static_cast<std::uint8_t>(below(4))};
            entry = bar;
        }
    }
    for (int k = 0; k < kKnobs; ++k) {
        for (int t = 0; t < kSongTicks; ++t) {
            const bool moves = t > 0 && below(k < 4 ? 2 : 40) != 0;
            knobTrack[k][t] =
                moves ? knobTrack[k][t - 1] : static_cast<std::uint8_t>(below(5) == 0 ? 0 : below(128));
        }
    }
}

// Exports from a bar and lets an independent program judge the file.
void expectExported(TestProgram& program, const TemporaryFolder& folder, int firstBar, int bars) {
    const std::string midi = folder.file("out.mid");
    ASSERT_TRUE(saveProjectFile(folder.file("in.mlp")));
    moduleStep = {};
    songTick = firstBar * kTicksPerBar;
    exportForm.Text1.text = std::to_string(bars);
    program.shell.fileNames = {midi};
    program.shell.answers = {BoxAnswer::ok};
    ASSERT_TRUE(exportForm.Command1_Click());
    if (std::system("/usr/bin/python3 -c 'import mido' 2>/dev/null") != 0)
        GTEST_SKIP() << "python3-mido is missing";
    const std::string check = std::string("/usr/bin/python3 ") + CHECK_EXPORT + " " + folder.file("in.mlp") +
                              " " + midi + " " + std::to_string(firstBar) + " " + std::to_string(exportBars);
    EXPECT_EQ(std::system(check.c_str()), 0) << "bar " << firstBar << ", " << bars << " bars";
}

TEST(Export, EqualsWhatAnIndependentReaderExpects) {
    TestProgram program;
    const TemporaryFolder folder;
    expectExported(program, folder, 0, 16); // a new project
    for (unsigned seed = 1; seed <= 4; ++seed) {
        randomProject(seed);
        expectExported(program, folder, static_cast<int>(seed * 17), 40);
    }
    expectExported(program, folder, 998, 1000); // to the end of the song
    EXPECT_EQ(exportBars, 2);
    expectExported(program, folder, 0, 1000);
    expectExported(program, folder, 5, -3);
    EXPECT_EQ(exportBars, 1);
}

TEST(Export, IsAcceptedByASynthesizer) {
    TestProgram program;
    const TemporaryFolder folder;
    randomProject(9);
    const std::string midi = folder.file("out.mid");
    program.shell.fileNames = {midi};
    ASSERT_TRUE(ExportToMID("", 0, 64));
    if (std::system("command -v fluidsynth >/dev/null") != 0) GTEST_SKIP() << "fluidsynth is missing";
    const std::string font = "/usr/share/sounds/sf2/TimGM6mb.sf2";
    const std::string play = "fluidsynth -q -n -i -T raw -F " + folder.file("out.raw") + " " + font + " " +
                             midi + " >/dev/null 2>" + folder.file("errors");
    EXPECT_EQ(std::system(play.c_str()), 0);
    EXPECT_GT(std::filesystem::file_size(folder.file("out.raw")), 44100U);
}

// Events of one track as (time, status, data...), out of the writer's calls.
class Ticker final : public MidiFileWriter {
  public:
    int addTrack() override { return 0; }
    void chooseTrack(int track) override { current = track; }
    void event(int delta, int status, int data1, int data2) override {
        ASSERT_GE(delta, 0);
        time[current] += delta;
        if ((status & 0xF0) == 0xB0) {
            ASSERT_GT(data1, 0); // controller 0 is played live only
        }
        if ((status & 0xF0) != 0x90 || current == kDrumTrack) return;
        if (data2 > 0) {
            ASSERT_EQ(began[current], -1); // no two notes of a voice overlap
            began[current] = time[current];
            pitch = data1;
        } else {
            ASSERT_EQ(time[current] - began[current], kFileTicksPerStep); // and each lasts one step
            began[current] = -1;
        }
    }
    void text(int, std::string_view) override {}
    void timeSignature(const std::array<std::uint8_t, 4>&) override {}
    void tempo(int) override {}
    int current = 0, pitch = 0;
    std::array<int, kExportTracks> time{};
    std::array<int, kExportTracks> began{-1, -1, -1, -1, -1, -1, -1};
};

TEST(Export, BassNotesLastOneStepInAnyProject) {
    for (unsigned seed = 20; seed < 30; ++seed) {
        TestProgram program;
        randomProject(seed);
        config.outputController[0] = 0; // never reaches the file
        songMode = true;
        Ticker writer;
        beginExportRun(writer, 0);
        for (int t = 0; t < 1600; ++t) ExportToMIDProcessTick();
        songMode = false;
    }
}

TEST(Export, LeavesNoTraceAndNoHalfFile) {
    TestProgram program;
    const TemporaryFolder folder;
    randomProject(5);
    Check1_Click();
    recButton_Click();
    songTick = 16 * 7 + 5;
    const ProjectRecord before = project;
    program.calls();
    program.shell.fileNames = {folder.file("a.mid")};
    exportForm.Text1.text = "20";
    ASSERT_TRUE(exportForm.Command1_Click());
    EXPECT_EQ(std::memcmp(&before, &project, sizeof before), 0);
    EXPECT_EQ(songTick, 16 * 7 + 5);
    EXPECT_TRUE(songMode && !recordOn && !transportRunning);
    EXPECT_EQ(program.calls(), ""); // the component hears nothing of it

    const auto whole = readBytes(folder.file("a.mid"));
    program.shell.fileNames = {folder.file("a.mid"), folder.file("b.mid")};
    program.shell.answers = {BoxAnswer::cancel}; // don't replace: the dialog comes back
    program.shell.modeless = [&](Form&) { program.shell.after(0, [] { exportMeter.Command1_Click(); }); };
    ASSERT_TRUE(exportForm.Command1_Click()); // cancelled after the first bars
    EXPECT_EQ(readBytes(folder.file("a.mid")), whole);
    EXPECT_LT(readBytes(folder.file("b.mid")).size(), whole.size());
    EXPECT_GT(readBytes(folder.file("b.mid")).size(), 100U);

    program.shell.modeless = nullptr;
    program.shell.fileNames = {folder.file("no/such/folder.mid")};
    EXPECT_FALSE(exportForm.Command1_Click());
    EXPECT_EQ(std::memcmp(&before, &project, sizeof before), 0);
    program.shell.fileNames = {folder.file("c.mid")};
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{1000, limit.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small); // a disk that is full
    EXPECT_FALSE(exportForm.Command1_Click());
    setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 2);
    exportForm.Text1.text = "all";
    EXPECT_FALSE(exportForm.Command1_Click());
    EXPECT_EQ(program.shell.boxes.back(), "Enter the number of Bars to export (1 to 1000)");
}

} // namespace
} // namespace marlune
