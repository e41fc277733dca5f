#include "cli/verbs.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "boundary/midi_bytes.h"
#include "cli/arguments.h"
#include "cli/wire_file.h"
#include "support/test_program.h"

namespace marlune {
namespace {

using test::readBytes;
using test::TemporaryFolder;
using test::writeBytes;

constexpr const char* kSong = EXAMPLES "/harbour_nights.mlp";
constexpr const char* kJam = EXAMPLES "/tide_pool.mlp";

TEST(Verbs, RefuseWhatDoesNotFitAndLeaveNoFile) {
    const TemporaryFolder folder;
    writeBytes(folder.file("bad.mlp"), {1, 2, 3});
    const std::string out = folder.file("out");
    const std::vector<Words> plays = {{},
                                      {kJam, "--bars"},
                                      {kJam, "--bars", "0"},
                                      {kJam, "--bar", "3"}, // without --song
                                      {kJam, "--loud"},
                                      {folder.file("bad.mlp"), "--fast", "--log", out}};
    for (const auto& words : plays) EXPECT_NE(playVerb(words), 0);
    for (const auto verb : {resaveVerb, renderVerb, exportVerb, importVerb, convertVerb})
        EXPECT_NE(verb({folder.file("bad.mlp"), out}), 0);
    EXPECT_FALSE(std::filesystem::exists(out));
    EXPECT_NE(resaveVerb({kJam, folder.file("no/such/folder")}), 0);
}

TEST(Verbs, FastPlayingLogsItFromTheBarTheSameEveryTime) {
    const TemporaryFolder folder;
    for (const char* name : {"a", "b"}) {
        const std::string log = folder.file(name);
        ASSERT_EQ(playVerb({kSong, "--fast", "--song", "--bar", "20", "--bars", "8", "--log", log}), 0);
    }
    const auto bytes = readBytes(folder.file("a"));
    EXPECT_EQ(bytes, readBytes(folder.file("b")));
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_NE(text.find("0 sync f2 30 02\n0 seq f2 30 02\n0 sync fb\n"), std::string::npos); // tick 304
}

TEST(WireLog, KeepsOnlyWhatIsWantedInTheOrderOfTime) {
    WireFile log;
    const auto send = [&](int ms, int value) {
        log.sent(ms * std::int64_t{1'000'000}, Role::seq, midiBytes(kControlChange, 7, value));
    };
    send(-25, 0);
    log.collect();
    EXPECT_EQ(log.text(), "");
    log.begin();
    for (const auto& [ms, value] : {std::pair(-25, 1), {-85, 2}, {-60, 3}, {-25, 4}, {0, 5}}) send(ms, value);
    log.collect();
    EXPECT_EQ(log.text(),
              "-85000 seq b0 07 01\n-85000 seq b0 07 02\n-60000 seq b0 07 03\n-25000 seq b0 07 04\n0 seq b0 "
              "07 05\n");
}

TEST(Verbs, ResaveGivesTheSameBytesAndExportAFile) {
    const TemporaryFolder folder;
    ASSERT_EQ(resaveVerb({kSong, folder.file("again.mlp")}), 0);
    EXPECT_EQ(readBytes(folder.file("again.mlp")), readBytes(kSong));
    std::filesystem::create_directory(folder.file("config"));
    ASSERT_EQ(exportVerb({kSong, folder.file("x.mid"), "--bar", "3", "--bars", "2", "--config",
                          folder.file("config")}),
              0);
    EXPECT_TRUE(std::filesystem::is_empty(folder.file("config")));                        // only read
    ASSERT_EQ(exportVerb({kSong, folder.file("x.mid"), "--bar", "3", "--bars", "4"}), 0); // replaces
    EXPECT_GT(readBytes(folder.file("x.mid")).size(), 500U);
}

// The demos sound good enough to be heard and to leave room: between -30 and -6 dBFS, without clipping.
TEST(Demos, RenderAtASensibleLevel) {
    if (!std::filesystem::exists("/usr/share/sounds/sf2/TimGM6mb.sf2")) GTEST_SKIP() << "no sound font";
    const TemporaryFolder folder;
    const std::vector<Words> runs = {
        {kJam, folder.file("o.wav"), "--bars", "8"},
        {kSong, folder.file("o.wav"), "--bars", "4"},
        {kSong, folder.file("o.wav"), "--song", "--bars", "76"},
    };
    for (const auto& run : runs) {
        ASSERT_EQ(renderVerb(run), 0);
        const auto bytes = readBytes(folder.file("o.wav"));
        double sum = 0, peak = 0;
        for (std::size_t i = 44; i < bytes.size(); i += 2) {
            const double value = static_cast<std::int16_t>(bytes[i] | bytes[i + 1] << 8) / 32768.0;
            sum += value * value;
            peak = std::max(peak, std::abs(value));
        }
        const double level = 10 * std::log10(sum * 2 / static_cast<double>(bytes.size() - 44));
        EXPECT_GT(level, -30);
        EXPECT_LT(level, -6);
        EXPECT_LT(peak, 32767 / 32768.0);
    }
}

} // namespace
} // namespace marlune
