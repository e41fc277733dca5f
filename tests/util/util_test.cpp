#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "support/test_program.h"
#include "util/stop_watch.h"
#include "util/text_number.h"
#include "util/whole_file.h"

namespace marlune {
namespace {

using test::readBytes;
using test::TemporaryFolder;
using test::writeBytes;

TEST(TextNumbers, AreReadByTheirStart) {
    const std::tuple<const char*, double, bool> rows[] = {
        {"12", 12, true},  {" 12 ", 12, true}, {"-5", -5, true},  {"12abc", 12, false}, {"abc", 0, false},
        {"", 0, false},    {"1.5", 1.5, true}, {".5", .5, true},  {"+7", 7, true},      {"+-7", 0, false},
        {"1e2", 1, false}, {"inf", 0, false},  {"nan", 0, false}, {"0x10", 0, false},   {"-", 0, false},
        {"012", 12, true}, {"1 2", 1, false}};
    for (const auto& [text, leading, numeric] : rows) {
        EXPECT_EQ(leadingNumber(text), leading) << text;
        EXPECT_EQ(isNumeric(text), numeric) << text;
    }
    EXPECT_EQ(leadingInteger("99999999999999999999"), 2147483647);
    EXPECT_EQ(leadingInteger("-99999999999999999999"), -2147483647 - 1);
}

TEST(Rounding, TakesHalvesToTheEvenNeighbour) {
    for (const auto& [value, rounded] : {std::pair{0.5, 0}, {1.5, 2}, {-2.5, -2}, {2.51, 3}})
        EXPECT_EQ(roundHalfEven(value), rounded);
    EXPECT_EQ(decimalText(62.5) + decimalText(-0.0) + signedText(1.39) + signedText(-2), "62.50 1.39-2");
}

std::uint32_t wrappingNow = 0xFFFFFFF0U;

TEST(StopWatch, RunsOnAcrossTheWrapOfItsClock) {
    setMillisecondClock([] { return wrappingNow; });
    CStopWatch watch;
    wrappingNow += 40;
    EXPECT_EQ(watch.Elapsed(), 40);
    setMillisecondClock(nullptr);
}

TEST(FileNames, AreTakenApart) {
    EXPECT_EQ(extractFileName("C:\\songs\\a.mlp") + extractFileName("/b") + extractFileName("c"), "a.mlpbc");
    EXPECT_EQ(withoutExtension("a.7lp") + withoutExtension("song") + withoutExtension(".mlp"), "a.7lpsong");
}

TEST(Reading, GivesTheStartOfALargeFile) {
    const TemporaryFolder folder;
    writeBytes(folder.file("large"), std::vector<std::uint8_t>(100, 7));
    const FileBytes start = readFileStart(folder.file("large"), 10);
    EXPECT_TRUE(start.ok && start.size == 100 && start.bytes.size() == 10);
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
    std::filesystem::create_symlink("nowhere", folder.file("dangling"));
    EXPECT_FALSE(writeFileAtomically(folder.file("dangling"), bytes));
    std::filesystem::remove(folder.file("dangling"));
    const pid_t limited = ::fork(); // a limit on file sizes is a failed write as well
    if (limited == 0) {
        const rlimit limit{2, 2};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        ::_exit(writeFileAtomically(folder.file("real"), std::vector<std::uint8_t>(9)) ? 1 : 0);
    }
    int status = -1;
    ::waitpid(limited, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(readBytes(folder.file("real")), bytes);
    std::filesystem::permissions(folder.file("real"), std::filesystem::perms(0444));
    EXPECT_FALSE(writeFileAtomically(folder.file("real"), {}));
    EXPECT_EQ(readBytes(folder.file("real")), bytes);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 2); // nothing else stays
}

// Kills a writing process at random moments: the file is always the old or the new one, whole.
TEST(Writing, SurvivesBeingKilledAtAnyMoment) {
    const TemporaryFolder folder;
    const std::string file = folder.file("project");
    const std::vector<std::uint8_t> contents[2] = {std::vector<std::uint8_t>(600000, 1),
                                                   std::vector<std::uint8_t>(700000, 2)};
    writeBytes(file, contents[0]);
    int seen[2] = {0, 0};
    for (int round = 0; round < 200 || (round < 2000 && seen[1] == 0); ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (int i = 0;; ++i) writeFileAtomically(file, contents[i % 2]);
        }
        ::usleep(static_cast<useconds_t>(200 + round * 37 % (4000 + 20 * round)));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const auto found = readBytes(file);
        ASSERT_TRUE(found == contents[0] || found == contents[1])
            << found.size() << " bytes after round " << round;
        ++seen[found == contents[1] ? 1 : 0];
    }
    EXPECT_GT(seen[0], 0);
    EXPECT_GT(seen[1], 0); // the kills did hit a process that was writing
    EXPECT_TRUE(writeFileAtomically(file, contents[0]));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}),
              1); // nothing is left of them
}

} // namespace
} // namespace marlune
