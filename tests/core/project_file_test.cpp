#include <sys/stat.h>

#include "support/program_test.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace marlune {
namespace {

constexpr std::size_t kCountAt = 19232;
constexpr std::size_t kEntriesAt = 19236;
constexpr const char* kRefusal = "File Open Error : \nThe file being opened is not a valid Marlune file.";

void putCount(std::vector<std::uint8_t>& bytes, std::int32_t count) {
    std::memcpy(&bytes[kCountAt], &count, 4);
}

// A project with something in every corner of the record and of the tracks, within the ranges.
void scramble(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(count));
    };
    for (BassModule& bass : project.bass) {
        for (auto& bank : bass.patterns) {
            for (BassPattern& pattern : bank) {
                for (BassStep& step : pattern.steps) {
                    step.note = below(13);
                    step.noteOn = below(2) != 0;
                    step.slide = below(2) != 0;
                    step.accent = below(2) != 0;
                }
                pattern.loopEnd = below(16);
                pattern.patch = below(129) - 1;
            }
        }
        bass.lastNote = below(256);
        bass.reservedStep[1] = below(256);
    }
    for (auto& byte : project.reservedHead) byte = below(256);
    for (auto& rows : project.drum.patterns[1][2].drumOn) rows[3] = below(256);
    for (Le16& value : project.knobValue) value = below(128);
    for (auto& bars : barTrack) {
        for (SongBar& bar : bars)
            bar = {static_cast<std::uint8_t>(below(8)), static_cast<std::uint8_t>(below(4))};
    }
    for (auto& row : knobTrack) {
        for (int t = below(50); t < kSongTicks; t += 1 + below(400)) {
            std::fill(row.begin() + t, row.end(), static_cast<std::uint8_t>(below(128)));
        }
    }
}

TEST(ProjectFile, OfANewProjectHasTheKnownLayout) {
    TestProgram program;
    const TemporaryFolder folder;
    project.bass[1].patterns[3][7].patch = 0x55;
    project.tempo = 141;
    ASSERT_TRUE(saveProjectFile(folder.file("new.mlp")));
    const auto bytes = readBytes(folder.file("new.mlp"));
    ASSERT_EQ(bytes.size(), 43404U);
    EXPECT_EQ(bytes[0], 91);
    EXPECT_EQ(bytes[6333 + 196 * 31 + 194], 0x55); // patch of the last pattern of 103B
    EXPECT_EQ(bytes[17436], 141);
    EXPECT_EQ(bytes[kCountAt] + 256 * bytes[kCountAt + 1], 3020);
    EXPECT_EQ(bytes[kEntriesAt + 8 * 3012 + 1] * 256 + bytes[kEntriesAt + 8 * 3012], 12 * 16000 % 65536);
    EXPECT_EQ(bytes[kEntriesAt + 8 * 3012 + 4], 100); // knob 12 at tick 0
}

TEST(ProjectFile, ComesBackByteForByte) {
    const TemporaryFolder folder;
    for (unsigned seed = 1; seed <= 5; ++seed) {
        TestProgram program;
        scramble(seed);
        selectionOf(project, 2).nextPatt = 5; // a cue waits
        ASSERT_TRUE(saveProjectFile(folder.file("a.mlp")));
        for (auto& row : knobTrack) row.fill(1);
        ASSERT_TRUE(loadProjectFile(folder.file("a.mlp")));
        EXPECT_EQ(program.copyDifference(), "");
        ASSERT_TRUE(saveProjectFile(folder.file("b.mlp")));
        auto first = readBytes(folder.file("a.mlp"));
        const auto second = readBytes(folder.file("b.mlp"));
        EXPECT_EQ(first, second) << seed;
    }
}

TEST(ProjectFile, RefusesWhatIsNone) {
    TestProgram program;
    const TemporaryFolder folder;
    ASSERT_TRUE(saveProjectFile(folder.file("good.mlp")));
    const auto good = readBytes(folder.file("good.mlp"));
    std::vector<std::vector<std::uint8_t>> bad(8, good);
    bad[0].clear();
    bad[1].resize(19231);
    bad[2].resize(19232);
    bad[3].resize(kEntriesAt + 8 * 3020); // the one byte beyond is missing
    putCount(bad[4], 2999);
    putCount(bad[5], 323001);
    putCount(bad[6], -1);
    bad[7][kEntriesAt + 8 * 3019 + 5] = 1; // high byte of data, in an entry
    bad[7][kEntriesAt + 8 * 3005] = 77;    // behind one that is never met
    for (std::size_t i = 0; i < bad.size(); ++i) {
        writeBytes(folder.file("bad.mlp"), bad[i]);
        program.shell.boxes.clear();
        EXPECT_FALSE(loadProjectFile(folder.file("bad.mlp"))) << i;
        EXPECT_EQ(program.shell.boxes, std::vector<std::string>{kRefusal}) << i;
    }
    ASSERT_EQ(::mkfifo(folder.file("fifo").c_str(), 0600), 0);
    EXPECT_FALSE(loadProjectFile(folder.file("fifo")));
    EXPECT_FALSE(loadProjectFile(folder.path));
    EXPECT_TRUE(loadProjectFile(folder.file("good.mlp")));
}

TEST(ProjectFile, MakesWildValuesSafeAndCarriesTheRest) {
    TestProgram program;
    const TemporaryFolder folder;
    ASSERT_TRUE(saveProjectFile(folder.file("wild.mlp")));
    auto bytes = readBytes(folder.file("wild.mlp"));
    std::fill(bytes.begin(), bytes.begin() + kCountAt, std::uint8_t{0xEE});
    for (std::size_t at = kEntriesAt; at < bytes.size(); at += 8) bytes[at + 4] = 0xFF;
    std::fill(bytes.begin() + kEntriesAt, bytes.begin() + kEntriesAt + 4, std::uint8_t{0x7F});
    writeBytes(folder.file("wild.mlp"), bytes);
    ASSERT_TRUE(loadProjectFile(folder.file("wild.mlp")));
    EXPECT_EQ(project.bass[0].currBank, 3);
    EXPECT_EQ(project.bass[1].patterns[2][5].loopEnd, 0); // 0xEEEE is negative
    EXPECT_EQ(project.bass[1].patterns[2][5].patch, -1);
    EXPECT_EQ(project.bass[0].selStep, 15);
    EXPECT_EQ(project.drum.selDrum, 7);
    EXPECT_EQ(project.tempo, 40);
    EXPECT_EQ(project.noteMap[5].mapPatt[1], -1);
    EXPECT_EQ(project.bass[0].storedChannel, 15);
    EXPECT_EQ(barBank(0, 0), 3);
    EXPECT_EQ(barPatt(1, 500), 7);
    EXPECT_EQ(knobTrack[4][100], 127);
    EXPECT_EQ(project.bass[0].patterns[0][0].steps[0].note, static_cast<std::int16_t>(0xEEEE)); // carried
    EXPECT_EQ(project.drum.patterns[0][0].drumOn[3][3], 0xEE);
    playButton();
    program.play(64);
    StopPlay();
}

// Cut and bent in deterministic ways; what the fuzzer looks at aborts where something is wrong.
TEST(ProjectFile, CutAndBentOnesPlayAndComeBackAsSavedOnce) {
    const auto whole = readBytes(MARLUNE_EXAMPLES "/tide_pool.mlp");
    ASSERT_GT(whole.size(), 40000U);
    std::mt19937 random(11);
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kCountAt - 1, kCountAt, kEntriesAt,
                                   kEntriesAt + 5, std::size_t{30000}, whole.size() - 1}) {
        EXPECT_EQ(LLVMFuzzerTestOneInput(whole.data(), size), 0);
    }
    for (int round = 0; round < 20; ++round) {
        auto bent = whole;
        for (int n = 0; n < 200; ++n) bent[random() % bent.size()] = static_cast<std::uint8_t>(random());
        EXPECT_EQ(LLVMFuzzerTestOneInput(bent.data(), bent.size()), 0);
    }
}

TEST(ProjectFile, OpensInTheModeOfTheLastSave) {
    TestProgram program;
    const TemporaryFolder folder;
    Check1_Click();
    project.bass[0].patterns[0][0].loopEnd = 3; // song mode's own doing, not saved
    ASSERT_TRUE(saveProjectFile(folder.file("song.mlp")));
    Check1_Click();
    ASSERT_TRUE(loadProjectFile(folder.file("song.mlp")));
    EXPECT_TRUE(songMode);
    EXPECT_EQ(project.bass[0].patterns[0][0].loopEnd, 15);
    EXPECT_EQ(program.copyDifference(), "");
    TestProgram fresh;
    ASSERT_TRUE(loadProjectFile(folder.file("song.mlp")));
    EXPECT_FALSE(songMode);
}

TEST(SaveCommands, AskForANameAndBeforeReplacing) {
    TestProgram program;
    const TemporaryFolder folder;
    writeBytes(folder.file("old.mlp"), {1, 2, 3});
    projectDirty = true;
    program.shell.fileNames = {folder.file("old.mlp"), folder.file("new.mlp")};
    program.shell.answers = {BoxAnswer::cancel};
    mnuFileSavePatt_Click();
    EXPECT_EQ(program.shell.boxes[0],
              folder.file("old.mlp") + " already exists. Do\nyou want to replace it ?");
    EXPECT_EQ(program.shell.dialogs[1].fileName, folder.file("old"));
    EXPECT_EQ(readBytes(folder.file("old.mlp")).size(), 3U);
    EXPECT_EQ(program.shell.title, "Marlune 200Q [ new.mlp ]");
    EXPECT_FALSE(projectDirty);
    mnuFileSavePatt_Click(); // has a name now
    EXPECT_EQ(program.shell.dialogs.size(), 2U);
    mnuSaveAs_Click(); // left without a name
    EXPECT_EQ(program.shell.dialogs.size(), 3U);
    EXPECT_EQ(projectFileName, folder.file("new.mlp"));
}

TEST(SaveCommands, LoseNothingWhenWritingFails) {
    TestProgram program;
    projectFileName = "/proc/no/such/place.mlp";
    projectDirty = true;
    const std::string title = program.shell.title;
    mnuFileSavePatt_Click();
    EXPECT_TRUE(projectDirty);
    EXPECT_EQ(program.shell.title, title);
    EXPECT_TRUE(program.shell.boxes.empty());
    EXPECT_EQ(program.shell.status, "Can't save place.mlp. The file on disk is as it was.");
    program.shell.answers = {BoxAnswer::yes};
    EXPECT_TRUE(wannaSaveYourWorkCancel()); // wanted to save, could not: give up
}

TEST(OpenCommand, KeepsPlayingAndTakesTheNameEvenOfABadFile) {
    TestProgram program;
    const TemporaryFolder folder;
    project.tempo = 97;
    test::setBassSteps(0, "C D E F");
    ASSERT_TRUE(saveProjectFile(folder.file("a.mlp")));
    project.tempo = 200;
    test::setBassSteps(0, "G G G G");
    playButton();
    program.play(5);
    projectDirty = false;
    program.shell.fileNames = {folder.file("a.mlp")};
    mnuFileOpenPatt_Click();
    EXPECT_TRUE(transportRunning);
    EXPECT_EQ(project.tempo, 97);
    EXPECT_EQ(shownText(Control::tempoBPM, 0), "97");
    program.play(3);
    EXPECT_EQ(program.copyDifference(), "");
    writeBytes(folder.file("bad.mlp"), {1});
    projectDirty = false;
    program.shell.fileNames = {folder.file("bad.mlp")};
    mnuFileOpenPatt_Click();
    EXPECT_EQ(projectFileName, folder.file("bad.mlp"));
    StopPlay();
}

} // namespace
} // namespace marlune
