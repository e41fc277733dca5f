#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "support/test_program.h"
#include "util/files.h"
#include "util/le_int.h"
#include "util/stop_watch.h"
#include "util/tempo_calc.h"
#include "util/text_number.h"

namespace marlune {
namespace {

using test::readBytes;
using test::TemporaryFolder;
using test::writeBytes;

TEST(StoredNumbers, LieLittleEndianAndKeepOddTruthValues) {
    const Le16 minusTwo = -2;
    const Le32 large = 0x01020304;
    EXPECT_EQ(reinterpret_cast<const std::uint8_t*>(&minusTwo)[0], 0xFE);
    EXPECT_EQ(reinterpret_cast<const std::uint8_t*>(&large)[0], 4);
    EXPECT_EQ(minusTwo, -2);
    EXPECT_EQ(Le8{300}, 44);
    std::uint8_t raw[2] = {7, 0};
    const Flag16 odd = *reinterpret_cast<const Flag16*>(raw);
    const Flag16 copy = odd;
    EXPECT_TRUE(copy);
    EXPECT_EQ(reinterpret_cast<const std::uint8_t*>(&copy)[0], 7);
    EXPECT_EQ(Flag16{true}.number(), -1);
}

TEST(TextNumbers, AreReadByTheirStart) {
    const struct {
        const char* text;
        double leading;
        bool numeric;
    } rows[] = {{"12", 12, true},  {" 12 ", 12, true}, {"-5", -5, true},   {"12abc", 12, false},
                {"abc", 0, false}, {"", 0, false},     {"1.5", 1.5, true}, {".5", .5, true},
                {"+7", 7, true},   {"+-7", 0, false},  {"1e2", 100, true}, {"inf", 0, false},
                {"nan", 0, false}, {"0x10", 0, false}, {"-", 0, false},    {"012", 12, true},
                {"1 2", 1, false}};
    for (const auto& row : rows) {
        EXPECT_EQ(leadingNumber(row.text), row.leading) << row.text;
        EXPECT_EQ(isNumeric(row.text), row.numeric) << row.text;
    }
    EXPECT_EQ(leadingInteger("99999999999999999999"), 2147483647);
    EXPECT_EQ(leadingInteger("-1e999"), -2147483647 - 1);
}

TEST(Rounding, TakesHalvesToTheEvenNeighbour) {
    EXPECT_EQ(roundHalfEven(0.5), 0);
    EXPECT_EQ(roundHalfEven(1.5), 2);
    EXPECT_EQ(roundHalfEven(-2.5), -2);
    EXPECT_EQ(roundHalfEven(2.51), 3);
    EXPECT_EQ(decimalText(62.5) + decimalText(-0.0) + signedText(1.39) + signedText(-2), "62.50 1.39-2");
}

TEST(TempoSums, CountWholeMillisecondsToAStep) {
    EXPECT_EQ(BpmToMs(140, 16), 1712);
    EXPECT_EQ(BpmToMs(120, 0.5), 62.5);
    EXPECT_EQ(BpmToMs(0, 16) + BpmToMs(120, 0) + BpmToMs(15001, 4), 0);
    EXPECT_DOUBLE_EQ(bpmConvert(120, 240), -12);
    EXPECT_EQ(bpmConvert(0, 100), 0);
}

std::uint32_t wrappingNow = 0xFFFFFFF0U;

TEST(StopWatch, RunsOnAcrossTheWrapOfItsClock) {
    setMillisecondClock([] { return wrappingNow; });
    CStopWatch watch;
    wrappingNow += 40;
    EXPECT_EQ(watch.Elapsed(), 40);
    watch.Reset();
    EXPECT_EQ(watch.Elapsed(), 0);
    setMillisecondClock(nullptr);
}

TEST(FileNames, AreTakenApart) {
    EXPECT_EQ(extractFileName("C:\\songs\\a.mlp"), "a.mlp");
    EXPECT_EQ(extractFileName("/songs/b"), "b");
    EXPECT_EQ(extractFileName("c"), "c");
    EXPECT_EQ(withoutExtension("/x/a.mlp"), "/x/a");
    EXPECT_EQ(withoutExtension("a.7lp"), "a.7lp");
    EXPECT_EQ(withoutExtension("song"), "song");
    EXPECT_EQ(withoutExtension(".mlp"), "");
}

TEST(Reading, FailsAtOnceOnWhatIsNoRegularFile) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.file("fifo").c_str(), 0600), 0);
    EXPECT_FALSE(readFileStart(folder.file("fifo"), 10).ok);
    EXPECT_FALSE(readFileStart(folder.path, 10).ok);
    EXPECT_FALSE(readFileStart(folder.file("missing"), 10).ok);
    writeBytes(folder.file("large"), std::vector<std::uint8_t>(100, 7));
    const FileBytes start = readFileStart(folder.file("large"), 10);
    EXPECT_TRUE(start.ok);
    EXPECT_EQ(start.size, 100U);
    EXPECT_EQ(start.bytes.size(), 10U);
}

TEST(Writing, FollowsTheUsersLinkAndNoPlantedOne) {
    const TemporaryFolder folder;
    writeBytes(folder.file("real"), {1});
    std::filesystem::permissions(folder.file("real"), std::filesystem::perms(0640));
    std::filesystem::create_symlink("real", folder.file("link"));
    const std::vector<std::uint8_t> bytes = {1, 2, 3};
    EXPECT_TRUE(writeFileAtomically(folder.file("link"), bytes));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
    EXPECT_EQ(readBytes(folder.file("real")), bytes);
    EXPECT_EQ(std::filesystem::status(folder.file("real")).permissions(), std::filesystem::perms(0640));
    EXPECT_FALSE(writeFileAtomically(folder.file("no/such/folder"), bytes));
    EXPECT_FALSE(writeFileAtomically(folder.path, bytes));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}),
              2); // no temporary file stays
}

// Kills a writing process at random moments: the file is always the old or the new one, whole.
TEST(Writing, SurvivesBeingKilledAtAnyMoment) {
    const TemporaryFolder folder;
    const std::string file = folder.file("project");
    const std::vector<std::uint8_t> contents[2] = {std::vector<std::uint8_t>(600000, 1),
                                                   std::vector<std::uint8_t>(700000, 2)};
    writeBytes(file, contents[0]);
    int seen[2] = {0, 0};
    for (int round = 0; round < 200; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (int i = 0;; ++i) writeFileAtomically(file, contents[i % 2]);
        }
        ::usleep(static_cast<useconds_t>(200 + round * 37 % 4000));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const auto found = readBytes(file);
        ASSERT_TRUE(found == contents[0] || found == contents[1])
            << found.size() << " bytes after round " << round;
        ++seen[found == contents[1] ? 1 : 0];
    }
    EXPECT_GT(seen[0], 0);
    EXPECT_GT(seen[1], 0); // the kills did hit a process that was writing
}

} // namespace
} // namespace marlune
