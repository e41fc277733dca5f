#include "cli/verbs.h"

#include <gtest/gtest.h>

#include <sndfile.h>

#include <filesystem>

#include "boundary/midi_bytes.h"
#include "cli/wire_file.h"
#include "support/sound_measures.h"
#include "support/test_program.h"

namespace marlune {
namespace {

using namespace test;

constexpr const char* kSong = EXAMPLES "/harbour_nights.mlp";
constexpr const char* kJam = EXAMPLES "/tide_pool.mlp";
constexpr const char* kSlow = EXAMPLES "/slow_lantern.mlp";

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

Sound soundOf(const std::string& name) {
    SF_INFO info{};
    SNDFILE* file = sf_open(name.c_str(), SFM_READ, &info);
    Sound sound(2 * static_cast<std::size_t>(info.frames));
    sf_read_float(file, sound.data(), static_cast<sf_count_t>(sound.size()));
    sf_close(file);
    return sound;
}

double seconds(const Sound& sound) {
    return static_cast<double>(sound.size()) / 2 / 44100;
}

TEST(Demos, RenderAtALevelThatFitsBesideOtherMusic) {
    const TemporaryFolder folder;
    const std::string name = folder.file("o.wav");
    const std::vector<Words> runs = {
        {kJam, name, "--bars", "8"},
        {kSong, name, "--bars", "4"},
        {kSong, name, "--song", "--bars", "76"},
        {kSlow, name, "--song", "--bars", "32"},
    };
    for (const auto& run : runs) {
        ASSERT_EQ(renderVerb(run), 0);
        const Sound sound = soundOf(name);
        const double level = levelOf(sound, 44100, 0, seconds(sound));
        EXPECT_GT(level, -20);
        EXPECT_LT(level, -12);
        EXPECT_LT(truePeak(sound), -1);
        EXPECT_GT(energyAbove(Sound(sound.begin(), sound.begin() + 8 * 88200), 44100, 10000), 0.002);
    }
}

TEST(Render, GivesTheSameBytesAgainAndOneFileForEachModule) {
    const TemporaryFolder folder;
    for (const char* name : {"a.wav", "b.wav"})
        ASSERT_EQ(renderVerb({kSong, folder.file(name), "--bars", "3", "--song", "--bar", "18"}), 0);
    EXPECT_EQ(readBytes(folder.file("a.wav")), readBytes(folder.file("b.wav")));
    ASSERT_EQ(renderVerb({kJam, folder.file("all.wav"), "--bars", "2", "--bits", "24", "--rate", "48000"}),
              0);
    ASSERT_EQ(
        renderVerb({kJam, folder.file("s.wav"), "--bars", "2", "--bits", "24", "--rate", "48000", "--stems"}),
        0);
    const Sound all = soundOf(folder.file("all.wav"));
    Sound sum(all.size());
    for (const char* stem : {"s-103A.wav", "s-103B.wav", "s-109.wav"}) {
        const Sound part = soundOf(folder.file(stem));
        ASSERT_EQ(part.size(), all.size()) << stem;
        EXPECT_GT(levelOf(part, 48000, 0, 3), -45) << stem;
        for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += part[i];
    }
    for (std::size_t i = 0; i < sum.size(); ++i) sum[i] -= all[i];
    EXPECT_LT(levelOf(sum, 48000, 0, 3),
              levelOf(all, 48000, 0, 3) - 15); // but for the limiter the same sound
    const Words wrong[] = {{"--rate", "44101"}, {"--bits", "20"}};
    for (const Words& words : wrong)
        EXPECT_EQ(renderVerb({kJam, folder.file("x.wav"), words[0], words[1]}), 1);
    EXPECT_FALSE(std::filesystem::exists(folder.file("x.wav")));
    EXPECT_EQ(renderVerb({kJam, "/nowhere/x.wav"}), 1);
}

} // namespace
} // namespace marlune
