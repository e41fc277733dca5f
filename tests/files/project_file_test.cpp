#include <gmock/gmock.h>
#include <sys/stat.h>

#include "panel/editing.h"
#include "support/corpus.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kCountAt = 19232;
constexpr std::size_t kEntriesAt = 19236;

struct ProjectFile : ProgramTest {
    std::string name = folder.file("a.mlp");

    Bytes saved() {
        EXPECT_TRUE(saveProjectFile(name));
        return readBytes(name);
    }
    bool loads(const Bytes& bytes) {
        writeBytes(name, bytes);
        return loadProjectFile(name);
    }
};

TEST_F(ProjectFile, ComesBackByteForByte) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        test::randomProject(seed);
        std::mt19937 random(seed); // and in what has no meaning here
        for (auto& byte : project.reservedHead) byte = static_cast<int>(random() % 256);
        for (auto& rows : project.drum.patterns[1][2].drumOn) rows[3] = static_cast<int>(random() % 256);
        for (BassModule& bass : project.bass) bass.reservedStep[1] = static_cast<int>(random() % 256);
        for (Le16& value : project.knobValue) value = static_cast<int>(random() % 128);
        selectionOf(project, 2).nextPatt = 5; // a cue waits
        const Bytes first = saved();
        for (auto& row : knobTrack) row.fill(1);
        ASSERT_TRUE(loadProjectFile(name));
        EXPECT_EQ(program.copyDifference(), "");
        EXPECT_EQ(saved(), first) << seed;
    }
    for (auto& row : knobTrack)
        for (int t = 0; t < kSongTicks; ++t)
            row[t] = static_cast<std::uint8_t>(t % 2); // as many changes as can be
    const Bytes first = saved();
    ASSERT_EQ(first.size(), kEntriesAt + 8 * 323001);
    ASSERT_TRUE(loadProjectFile(name));
    EXPECT_EQ(saved(), first);
}

TEST_F(ProjectFile, RefusesWhatIsNone) {
    const Bytes good = saved();
    ASSERT_EQ(good.size(), 43404U);
    EXPECT_EQ(good[0], 91);
    std::vector<Bytes> bad(8, good);
    const auto putCount = [&bad](int i, std::int32_t count) { std::memcpy(&bad[i][kCountAt], &count, 4); };
    bad[0].clear();
    bad[1].resize(19231);
    bad[2].resize(19232);
    bad[3].resize(kEntriesAt + 8 * 3020); // the one byte beyond is missing
    putCount(4, 2999);
    putCount(5, 323001);
    putCount(6, -1);
    bad[7][kEntriesAt + 8 * 3019 + 5] = 1; // high byte of data, in an entry
    bad[7][kEntriesAt + 8 * 3005] = 77;    // behind one that is never met
    for (std::size_t i = 0; i < bad.size(); ++i) EXPECT_FALSE(loads(bad[i])) << i;
    EXPECT_THAT(program.shell.boxes,
                testing::AllOf(testing::SizeIs(8),
                               testing::Each("File Open Error : \nThe file being opened is not a valid "
                                             "Marlune file.")));
    ASSERT_EQ(::mkfifo(folder.file("fifo").c_str(), 0600), 0);
    EXPECT_FALSE(loadProjectFile(folder.file("fifo")));
    EXPECT_FALSE(loadProjectFile(folder.path));
    EXPECT_TRUE(loads(good));
}

TEST_F(ProjectFile, MakesWildValuesSafeAndCarriesTheRest) {
    Bytes bytes = saved();
    std::fill(bytes.begin(), bytes.begin() + kCountAt, std::uint8_t{0xEE});
    for (std::size_t at = kEntriesAt; at < bytes.size(); at += 8) bytes[at + 4] = 0xFF;
    std::fill(bytes.begin() + kEntriesAt, bytes.begin() + kEntriesAt + 4, std::uint8_t{0x7F});
    ASSERT_TRUE(loads(bytes));
    const BassModule& bass = project.bass[0];
    const BassPattern& pattern = bass.patterns[2][5];
    EXPECT_THAT((std::array<int, 4>{bass.currBank, bass.currPatt, bass.selStep, bass.storedChannel}),
                ElementsAre(3, 7, 15, 15));
    EXPECT_THAT((std::array<int, 3>{pattern.loopEnd, pattern.patch, project.noteMap[5].mapPatt[1]}),
                ElementsAre(0, -1, -1)); // 0xEEEE is negative
    EXPECT_THAT((std::array<int, 2>{project.drum.selDrum, project.tempo}), ElementsAre(7, 40));
    EXPECT_THAT((std::array<int, 3>{barBank(0, 0), barPatt(1, 500), knobTrack[4][100]}),
                ElementsAre(3, 7, 127));
    EXPECT_EQ(pattern.steps[0].note, static_cast<std::int16_t>(0xEEEE)); // carried
    EXPECT_EQ(project.drum.patterns[0][0].drumOn[3][3], 0xEE);
    playButton();
    program.play(64);
}

// Cut and bent in deterministic ways; what the fuzzer looks at aborts where something is wrong.
TEST(BadProjectFile, CutOrBentPlaysAndComesBackAsSavedOnce) {
    const Bytes whole = readBytes(MARLUNE_EXAMPLES "/tide_pool.mlp");
    ASSERT_GT(whole.size(), 40000U);
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kCountAt - 1, kCountAt, kEntriesAt,
                                   kEntriesAt + 5, std::size_t{30000}, whole.size() - 1}) {
        test::look({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
    }
    std::mt19937 random(11);
    for (int round = 0; round < 20; ++round) {
        Bytes bent = whole;
        for (int n = 0; n < 200; ++n) bent[random() % bent.size()] = static_cast<std::uint8_t>(random());
        test::look(bent);
    }
    test::expectHarmless("project");
}

TEST_F(ProjectFile, OpensInTheModeOfTheLastSave) {
    Check1_Click();
    project.bass[0].patterns[0][0].loopEnd = 3; // song mode's own doing, not saved
    project.tempo = 151;                        // but this outlasts song mode
    saved();
    Check1_Click();
    ASSERT_TRUE(loadProjectFile(name));
    EXPECT_TRUE(songPosition->songMode);
    EXPECT_EQ(project.bass[0].patterns[0][0].loopEnd, 15);
    EXPECT_EQ(project.tempo, 151);
    EXPECT_EQ(program.copyDifference(), "");
    TestProgram fresh;
    ASSERT_TRUE(loadProjectFile(name));
    EXPECT_FALSE(songPosition->songMode);
}

using SaveCommands = ProgramTest;
using OpenCommand = ProgramTest;

TEST_F(SaveCommands, LoseNothingWhenWritingFails) {
    editingState.write().projectFileName = "/proc/no/such/place.mlp";
    editingState.write().projectDirty = true;
    const std::string title = program.shell.title;
    mnuFileSavePatt_Click();
    EXPECT_TRUE(editingState->projectDirty);
    EXPECT_EQ(program.shell.title, title);
    EXPECT_EQ(test::joined(program.shell.boxes), "Can't save place.mlp.\nThe file on disk is as it was.");
    program.shell.answers = {BoxAnswer::yes};
    EXPECT_TRUE(wannaSaveYourWorkCancel()); // wanted to save, could not: give up
}

TEST_F(OpenCommand, KeepsPlayingAndTakesTheNameEvenOfABadFile) {
    project.tempo = 97;
    test::setBassSteps(0, "C D E F");
    ASSERT_TRUE(saveProjectFile(folder.file("a.mlp")));
    project.tempo = 200;
    test::setBassSteps(0, "G G G G");
    playButton();
    program.play(5);
    editingState.write().projectDirty = false;
    program.shell.fileNames = {folder.file("a.mlp")};
    mnuFileOpenPatt_Click();
    EXPECT_TRUE(transportState->transportRunning);
    EXPECT_EQ(project.tempo, 97);
    EXPECT_EQ(shownText(Control::tempoBPM, 0), "97");
    program.play(3);
    EXPECT_EQ(program.copyDifference(), "");
    writeBytes(folder.file("bad.mlp"), {1});
    editingState.write().projectDirty = false;
    program.shell.fileNames = {folder.file("bad.mlp")};
    mnuFileOpenPatt_Click();
    EXPECT_EQ(editingState->projectFileName, folder.file("bad.mlp"));
}

TEST_F(OpenCommand, IsOneStepOfUndoAndABadFileIsNotOverwrittenUnasked) {
    test::setBassSteps(0, "C D E F");
    ASSERT_TRUE(saveProjectFile(folder.file("good.mlp")));
    Bytes half = readBytes(folder.file("good.mlp"));
    half.resize(half.size() - 2000);
    writeBytes(folder.file("half.mlp"), half);
    for (const char* file : {"half.mlp", "good.mlp"}) {
        nameProject(folder.file("mine.mlp"));
        const ProjectRecord before = project;
        test::setBassSteps(0, "G G G G");
        const Bytes mine = projectFileBytes();
        program.shell.answers = {BoxAnswer::no};
        program.shell.fileNames = {folder.file(file)};
        menuClicked(Menu::mnuFileOpenPatt);
        EXPECT_NE(projectFileBytes(), mine);
        EXPECT_EQ(editingState->projectFileName, folder.file(file));
        if (file[0] == 'h') {
            program.shell.answers = {BoxAnswer::cancel};
            program.shell.fileNames.clear();
            mnuFileSavePatt_Click(); // asks, and the dialog behind it is left
            EXPECT_EQ(program.shell.boxes.back(),
                      folder.file(file) + " already exists. Do\nyou want to replace it ?");
            EXPECT_EQ(readBytes(folder.file(file)), half);
        }
        menuClicked(Menu::mnuEditUndo);
        EXPECT_EQ(projectFileBytes(), mine);
        EXPECT_EQ(editingState->projectFileName, folder.file("mine.mlp"));
        EXPECT_TRUE(editingState->projectDirty && program.shell.modified);
        EXPECT_EQ(program.copyDifference(), "");
        project = before;
    }
}

} // namespace
} // namespace marlune
