#include "cli/verbs.h"

#include <gtest/gtest.h>

#include <sndfile.h>

#include <filesystem>

#include "boundary/midi_bytes.h"
#include "cli/arguments.h"
#include "cli/wire_file.h"
#include "rebirth/rb40_writer.h"
#include "support/sound_measures.h"
#include "support/test_program.h"

namespace marlune {
namespace {

using namespace test;

constexpr const char* kSong = EXAMPLES "/harbour_nights.mlp";
constexpr const char* kJam = EXAMPLES "/tide_pool.mlp";
constexpr const char* kSlow = EXAMPLES "/slow_lantern.mlp";

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

std::string told(int (*verb)(const Words&), const Words& words) {
    testing::internal::CaptureStdout();
    const int status = verb(words);
    return (status == 0 ? "" : "failed: ") + testing::internal::GetCapturedStdout();
}

TEST(Verbs, SongsOfOthersComeInAndAreToldOf) {
    const TemporaryFolder folder;
    const std::string mid = folder.file("song.mid"), rbs = folder.file("song.rbs"),
                      out = folder.file("o.mlp");
    ASSERT_EQ(exportVerb({kSong, mid, "--bars", "20"}), 0);
    EXPECT_EQ(told(importVerb, {mid, out, "--103b", "0"}), "20 bars, patterns 5 + 0 + 4, 1202 events.\n");
    EXPECT_EQ(
        told(infoVerb, {out}),
        "file: o.mlp\nformat: Marlune project\ntempo: 132\nbars: 21\npatterns:\n  103A: 31 sounding, 5 in "
        "the song\n  103B: 32 sounding, 1 in the song\n  109: 4 sounding, 5 in the song\nmoving knobs: 10\n");
    EXPECT_EQ(
        told(infoVerb, {mid, "--json"}),
        "{\"file\": \"song.mid\", \"format\": \"Standard MIDI File 1\", \"tracks\": 7, \"tempo\": "
        "132.000132000132, \"tempo_changes\": 0, \"meter\": \"4/4\", \"bars\": 20, \"notes\": [\"Channel 1, "
        "103A Bassline: 168 notes\", \"Channel 2, 103B Bassline: 33 notes\", \"Channel 10, 109 Drummer: 229 "
        "notes\"]}\n");
    Rb40Song song = test::randomRb40(1, 12);
    song.drums[0].patterns[3].cells[0][3] = 1;
    writeBytes(rbs, test::rb40File(song));
    const std::string both = told(importVerb, {rbs, out, "--drums", "both"});
    EXPECT_EQ(both.substr(0, 7), "12 bars");
    EXPECT_NE(both, told(importVerb, {rbs, out, "--drums", "808"}));
    EXPECT_EQ(told(infoVerb, {rbs}).substr(0, 90),
              "file: song.rbs\nformat: ReBirth 2 song\ntitle: Caf\xC3\xA9 / 1\ntempo: 125.915\nbars: "
              "12\nunits:\n  fi");
    EXPECT_EQ(convertVerb({rbs, mid, "--slides"}), 0);
    for (const Words& refused : {Words{rbs, out, "--drums", "707"}, {mid, out, "--109", "5"}, {mid}})
        EXPECT_NE(importVerb(refused), 0);
    EXPECT_NE(infoVerb({folder.path}), 0);
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
