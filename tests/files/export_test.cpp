#include <sys/resource.h>
#include <unistd.h>
#include <csignal>

#include "files/export_driver.h"
#include "files/export_sequencer.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using test::randomProject;

struct Export : ProgramTest {
    // Exports from a bar and lets an independent program judge the file.
    void expectExported(int firstBar, int bars) {
        const std::string midi = folder.file("out.mid");
        config.outputController[0] = 0; // never reaches the file
        config.outputController[6] = -1;
        for (int k = kFirstDrumKnob; k < kKnobs; ++k) config.outputController[k] = 8 + k;
        for (int m = 0; m < kBassModules; ++m) project.bass[m].storedChannel = 5 + m;
        ASSERT_TRUE(saveProjectFile(folder.file("in.mlp")));
        songPosition.write().moduleStep = {3, 7, 11};
        songPosition.write().songTick = firstBar * kTicksPerBar;
        exportForm.Text1.text = std::to_string(bars);
        program.shell.fileNames = {midi};
        program.shell.answers = {BoxAnswer::ok};
        ASSERT_TRUE(exportForm.Command1_Click());
        if (std::system("/usr/bin/python3 -c 'import mido' 2>/dev/null") != 0)
            GTEST_SKIP() << "python3-mido is missing";
        const std::string check = "/usr/bin/python3 " CHECK_EXPORT " " + folder.file("in.mlp") + " " + midi +
                                  " " + std::to_string(firstBar) + " " +
                                  std::to_string(exportForm.exportBars);
        EXPECT_EQ(std::system(check.c_str()), 0) << "bar " << firstBar << ", " << bars << " bars";
    }
};

TEST_F(Export, EqualsWhatAnIndependentReaderExpects) {
    expectExported(0, 16); // a new project
    for (unsigned seed = 1; seed <= 4; ++seed) {
        randomProject(seed);
        expectExported(static_cast<int>(seed * 17), 40);
    }
    expectExported(998, 1000); // to the end of the song
    EXPECT_EQ(exportForm.exportBars, 2);
    expectExported(0, 1000);
    expectExported(5, -3);
    EXPECT_EQ(exportForm.exportBars, 1);
}

TEST_F(Export, IsAcceptedByASynthesizer) {
    randomProject(9);
    // A note in the last tick stays open, and the synthesizer would play it for ever: a silent bar.
    project.bass[0].patterns[0][0] = project.bass[1].patterns[0][0] = {};
    for (int m = 0; m < kBassModules; ++m) setBar(m, 3 * kTicksPerBar, 0, 0);
    const std::string midi = folder.file("out.mid");
    program.shell.fileNames = {midi};
    ASSERT_TRUE(ExportToMID("", 0, 64));
    if (std::system("command -v fluidsynth >/dev/null") != 0) GTEST_SKIP() << "fluidsynth is missing";
    const std::string font = "/usr/share/sounds/sf2/TimGM6mb.sf2";
    const std::string play = "timeout 60 fluidsynth -q -n -i -T raw -F " + folder.file("out.raw") + " " +
                             font + " " + midi + " >/dev/null 2>" + folder.file("errors");
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
        } else {
            ASSERT_EQ(time[current] - began[current], kFileTicksPerStep); // and each lasts one step
            began[current] = -1;
        }
    }
    void text(int, std::string_view) override {}
    void timeSignature(const std::array<std::uint8_t, 4>&) override {}
    void tempo(int) override {}
    int current = 0;
    std::array<int, kExportTracks> time{};
    std::array<int, kExportTracks> began{-1, -1, -1, -1, -1, -1, -1};
};

TEST_F(Export, BassNotesLastOneStepInAnyProject) {
    config.outputController[0] = 0; // never reaches the file
    for (unsigned seed = 20; seed < 30; ++seed) {
        randomProject(seed);
        songPosition.write().songTick = 0;
        songPosition.write().songMode = true;
        Ticker writer;
        beginExportRun(writer, 0);
        for (int t = 0; t < 1600; ++t) ExportToMIDProcessTick();
        songPosition.write().songMode = false;
    }
}

TEST_F(Export, LeavesNoTraceAndNoHalfFile) {
    randomProject(5);
    Check1_Click();
    recButton_Click();
    songPosition.write().songTick = 16 * 7 + 5;
    const ProjectRecord before = project;
    program.calls();
    program.shell.fileNames = {folder.file("a.mid")};
    exportForm.Text1.text = "20";
    ASSERT_TRUE(exportForm.Command1_Click());
    EXPECT_EQ(std::memcmp(&before, &project, sizeof before), 0);
    EXPECT_EQ(songPosition->songTick, 16 * 7 + 5);
    EXPECT_TRUE(songPosition->songMode && !recordingState->recordOn && !transportState->transportRunning);
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

TEST(MidiFile, IsWrittenToTheByte) {
    MemoryMidiFile file;
    file.event(0, 0x90, 1, 1); // no track yet
    file.addTrack();
    file.text(kMetaTrackName, "A");
    file.timeSignature({4, 2, 30, 8});
    file.tempo(500000);
    file.addTrack();
    file.event(0, 0x90, 36, 100);
    file.chooseTrack(0);
    file.event(127, 0xB1, 7, 300);
    file.chooseTrack(2); // there is none
    file.chooseTrack(1);
    file.event(128, 0xC2, 5, 9);
    file.event(0x0FFFFFFF, 0x80, 36, 0);
    file.event(-1, 0xF0, 1, 2); // not a channel message
    const std::vector<std::uint8_t> wanted{
        'M',  'T',  'h',  'd',  0,    0,    0,    6,    0,    1,    0,    2,    0,    0x78, //
        'M',  'T',  'r',  'k',  0,    0,    0,    0x1C, 0,    0xFF, 3,    1,    'A',  0,
        0xFF, 0x58, 4,    4,    2,    0x1E, 8,    0,    0xFF, 0x51, 3,    7,    0xA1, 0x20,
        0x7F, 0xB1, 7,    0x2C, 0,    0xFF, 0x2F, 0, //
        'M',  'T',  'r',  'k',  0,    0,    0,    0x13, 0,    0x90, 0x24, 0x64, 0x81, 0,
        0xC2, 5,    0xFF, 0xFF, 0xFF, 0x7F, 0x80, 0x24, 0,    0,    0xFF, 0x2F, 0};
    EXPECT_EQ(file.bytes(), wanted);
}

} // namespace
} // namespace marlune
