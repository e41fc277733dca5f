// Importing ReBirth songs: generated ones against a plain model, and bytes worked out by hand.
#include "rebirth/rebirth_import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "core/song_track.h"
#include "core/startup.h"
#include "rebirth/rbs_generator.h"
#include "support/test_program.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace marlune::test {
namespace {

std::string text(const BassPattern& pattern) {
    std::string line;
    for (const BassStep& s : pattern.steps) {
        line += std::to_string(s.note) + (s.noteOn ? "" : "-") + (s.up ? "^" : "") + (s.down ? "_" : "") +
                (s.accent ? "! " : " ");
    }
    return line;
}

std::string rowText(const DrumPattern& pattern, int drum) {
    std::string line;
    for (const auto& step : pattern.drumOn) line += step[drum] != 0 ? 'x' : '.';
    return line;
}

void expectPatterns(const RbsSong& song) {
    constexpr int kRows[] = {1, 2, 3, 11, 6, 10, 9, 0};
    for (int p = 0; p < 32; ++p) {
        const DrumPattern& drums = project.drum.patterns[p / 8][p % 8];
        EXPECT_EQ(drums.loopEnd, song.drums.lengths[p] - 1);
        for (int m = 0; m < 2; ++m) {
            EXPECT_EQ(project.bass[m].patterns[p / 8][p % 8].loopEnd, song.basses[m].lengths[p] - 1);
        }
        for (int s = 0; s < 16; ++s) {
            SCOPED_TRACE("pattern " + std::to_string(p) + " step " + std::to_string(s));
            for (int m = 0; m < 2; ++m) {
                const BassStep& step = project.bass[m].patterns[p / 8][p % 8].steps[s];
                const RbsStep& made = song.basses[m].steps[p][s];
                EXPECT_EQ(step.note, made.semitone);
                EXPECT_EQ(step.noteOn, !made.rest);
                EXPECT_EQ(step.up - step.down, made.up - made.down);
                EXPECT_EQ(step.accent, made.accent);
            }
            for (int d = 0; d < 8; ++d)
                EXPECT_EQ(drums.drumOn[s][d], song.drums.hits[p][kRows[d]][s] ? 255 : 0);
        }
    }
}

// What each tick should hold, found by looking back from it.
int knobAt(const RbsTrack& track, int parameter, int tick, int start) {
    int value = parameter == 7 ? track.first : start;
    int found = 0;
    for (const RbsEvent& e : track.events) {
        const int at = e.time == 0 || e.time % 2 != 0 ? e.time / 2 : e.time / 2 + 1;
        if (e.parameter == parameter && at <= tick && at >= found) {
            value = e.value;
            found = at;
        }
    }
    return value;
}

void expectSong(const RbsSong& song) {
    constexpr int kBass[] = {17, 18, 19, 20, 7, 21};
    constexpr int kDrum[] = {17, 20, 34, 42, 32, 40, -1, 16};
    for (int m = 0; m < 3; ++m) {
        for (int bar = 0; bar < 60; ++bar) {
            int pattern = 0;
            for (const RbsEvent& e : song.tracks[m].events) {
                if (e.parameter == 14 && e.time / 32 <= bar) pattern = e.value;
            }
            EXPECT_EQ(barBank(m, 16 * bar) * 8 + barPatt(m, 16 * bar), pattern) << m << " bar " << bar;
        }
        for (int k = 0; k < (m == 2 ? 8 : 6); ++k) {
            const int knob = 6 * m + k;
            for (const int tick : {0, 1, 2, 3, 100, 101, 102, 479, 480, 481, 15999}) {
                const int expected = knob == 18 ? 0
                                                : knobAt(song.tracks[m], m == 2 ? kDrum[k] : kBass[k], tick,
                                                         project.knobValue[knob]);
                EXPECT_EQ(knobTrack[knob][tick], expected) << knob << " tick " << tick;
            }
        }
    }
}

// The program with a .rbs file that the next file dialog names.
struct Import : testing::Test {
    TestProgram program;
    TemporaryFolder folder;
    std::string name = folder.file("song.rbs");

    void given(const std::vector<std::uint8_t>& bytes) {
        writeBytes(name, bytes);
        projectDirty = false;
        program.shell.fileNames.push_back(name);
    }
    void song(const RbsSong& song) {
        given(rbsFile(song));
        mnuFileRebirthImport_Click();
    }
};

TEST_F(Import, TakesRandomSongsOver) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        const RbsSong generated = randomSong(seed, 30);
        for (int k = 12; k < 20; ++k) project.knobValue[k] = k;
        song(generated);
        EXPECT_FALSE(importCancelled);
        expectPatterns(generated);
        expectSong(generated);
        for (int m = 0; m < 2; ++m) {
            const auto& knobs = generated.basses[m].knobs;
            const int taken[] = {knobs[0], knobs[1], knobs[2], knobs[3], 0, knobs[4]};
            for (int k = 0; k < 6; ++k) EXPECT_EQ(project.knobValue[6 * m + k], taken[k]);
        }
        EXPECT_EQ(program.copyDifference(), "");
        EXPECT_TRUE(projectDirty);
    }
}

TEST_F(Import, PatternsAloneLeaveTheSong) {
    knobTrack[3].fill(77);
    barTrack[2].fill({5, 2});
    given(rbsFile(randomSong(4, 10)));
    mnuFileImportRebPatt_Click();
    EXPECT_EQ(knobTrack[3][500], 77);
    EXPECT_EQ(barTrack[2][3], (SongBar{5, 2}));
    expectPatterns(randomSong(4, 10));
    EXPECT_EQ(program.shell.dialogs[0].filter, "ReBirth file (*.rbs)|*.rbs");
}

TEST_F(Import, EventsLandOnTheirTicksAndBars) {
    RbsSong s;
    project.knobValue[13] = 44;
    s.tracks[0].first = 200; // more than a knob holds
    s.tracks[0].events = {{2, 17, 2},     {3, 17, 3},     {31, 14, 9},    {33, 14, 10},  {40, 14, 11},
                          {133, 17, 4},   {262, 14, 32},  {390, 17, 5},   {519, 14, 31}, {16000, 99, 0},
                          {31997, 18, 6}, {31998, 18, 7}, {32000, 14, 1}, {32001, 18, 8}};
    song(s);
    const auto& cutoff = knobTrack[0];
    EXPECT_EQ((std::array{cutoff[0], cutoff[1], cutoff[2], cutoff[65], cutoff[66], cutoff[195], cutoff[196]}),
              (std::array<std::uint8_t, 7>{0, 3, 2, 2, 4, 4, 5}));
    EXPECT_EQ(knobTrack[1][15997], 0);
    EXPECT_EQ(knobTrack[1][15998], 6);
    EXPECT_EQ(knobTrack[1][15999], 6); // 31998 would be tick 16000
    EXPECT_EQ(knobTrack[2][0], 0);     // which would lie here
    EXPECT_EQ(knobTrack[4][0], 127);
    EXPECT_EQ(knobTrack[13][9], 44); // no event: as the project had it
    const auto barsAre = [](int m, int first, int count, int pattern) {
        for (int bar = first; bar < first + count; ++bar) {
            EXPECT_EQ(barBank(m, 16 * bar) * 8 + barPatt(m, 16 * bar), pattern) << bar;
        }
    };
    barsAre(0, 0, 1, 9);
    barsAre(0, 1, 15, 11); // the later of two; 32 is no pattern
    barsAre(0, 16, 984, 31);
    barsAre(1, 0, 1000, 0);
    RbsSong late;
    late.tracks[1].events = {{3200, 14, 17}};
    song(late);
    barsAre(1, 0, 1000, 17); // before the first change as well
}

TEST_F(Import, TempoIsRoundedToEvenAndLimited) {
    RbsSong s;
    for (const auto& [microseconds, tempo] :
         {std::pair{342857, 175}, {480000, 125}, {1, 240}, {0xFFFFFF, 40}}) {
        s.microseconds = microseconds;
        song(s);
        EXPECT_EQ(project.tempo, tempo);
    }
}

TEST_F(Import, WhatIsTooShortTooLongOrWithoutTempoIsRefusedWhole) {
    const auto whole = rbsFile(randomSong(5, 8));
    const auto cut = [&](std::size_t size) {
        return std::vector(whole.begin(), whole.begin() + static_cast<long>(size));
    };
    auto noTempo = whole, hugeTrack = whole;
    std::fill_n(noTempo.begin() + 100, 3, 0);
    hugeTrack[18872] = 0xFF;
    const std::vector<std::uint8_t> refused[] = {{},         cut(103),   cut(12000),
                                                 cut(18868), cut(18875), cut(18868 + 99),
                                                 noTempo,    hugeTrack,  cut(whole.size() - 6)};
    project.knobValue[5] = 99;
    const ProjectRecord before = project;
    for (const auto& bytes : refused) {
        SCOPED_TRACE(&bytes - refused);
        std::string told;
        program.shell.modal.push_back([&](Form& form) { told = form.caption; });
        given(bytes);
        mnuFileRebirthImport_Click();
        EXPECT_EQ(told, "MarLune Converter");
        EXPECT_TRUE(importCancelled);
        EXPECT_FALSE(projectDirty);
        EXPECT_EQ(std::memcmp(&before, &project, sizeof project), 0);
    }
    given(cut(whole.size() - 5)); // the last five bytes of a chunk are not read
    mnuFileRebirthImport_Click();
    EXPECT_FALSE(importCancelled);
    projectDirty = false;
    mnuFileRebirthImport_Click(); // the dialog is left
    EXPECT_TRUE(importCancelled);
    EXPECT_EQ(importRebirthFile(folder.path, false), RebirthResult::unreadable);
}

TEST_F(Import, AsksAboutUnsavedWorkAndStopsTheTransport) {
    given(rbsFile(randomSong(6, 4)));
    projectDirty = true;
    transportRunning = true;
    mnuFileRebirthImport_Click(); // the box is cancelled
    EXPECT_FALSE(transportRunning);
    EXPECT_EQ(program.shell.boxes.size(), 1U);
    EXPECT_TRUE(program.shell.dialogs.empty());
}

TEST_F(Import, ATrackChunkMayBeSoLongAndNoLonger) {
    RbsSong s;
    s.tracks[0].events.assign(13468, {0, 99, 0}); // a size of 40413
    EXPECT_EQ(importRbsImage(RbsImage(rbsFile(s)), false), RebirthResult::done);
    s.tracks[0].events.back().time = 200; // one delta of two bytes
    EXPECT_EQ(importRbsImage(RbsImage(rbsFile(s)), false), RebirthResult::corrupt);
}

// Bytes by hand: offset and value.
TEST_F(Import, HandPackedBytesMeanWhatTheTablesSay) {
    std::vector<std::uint8_t> file(18868 + 22 + 3 * 14);
    const auto put = [&](std::size_t offset, std::initializer_list<int> bytes) {
        for (const int byte : bytes) file[offset++] = static_cast<std::uint8_t>(byte);
    };
    put(100, {0x07, 0xA1, 0x20});
    put(435, {0x7F, 0x00, 0x53});
    put(438, {0x04}); // top bit of 435
    put(439, {0x03});
    put(445, {0x70, 0x40});                                       // 446: top bit of 439
    put(508, {0x21, 0x43, 0x00, 0x65});                           // a flag byte at 510
    put(556, {1, 2, 0x7F, 3, 4, 5});                              // 558 holds top bits
    put(571, {5, 0x7F, 0x06, 0x7F, 1, 7, 0, 8, 0, 12, 0, 12, 0}); // 574 too
    put(5237, {6, 0x7F, 7, 8, 9, 10});
    put(5252, {11, 0, 2, 0});                                       // phase 4: flag byte 5254
    put(9954, {0x10, 0, 0, 0, 0x7F, 0x41, 0, 0, 0x2A});             // accent row, 9958 flags, bass drum row
    put(18872, {0, 0, 0, 14, 0, 200, 0, 9, 129, 5, 17, 33, 0, 17}); // ends inside an event
    for (const std::size_t track : {0U, 1U, 2U}) put(18890 + 14 * track + 4, {0, 0, 0, 6}); // no data
    given(file);
    mnuFileRebirthImport_Click();
    ASSERT_FALSE(importCancelled);
    EXPECT_EQ(text(project.bass[0].patterns[0][0]).substr(0, 14), "5-^! 7_ 12 0 0");
    EXPECT_EQ(text(project.bass[1].patterns[0][0]).substr(0, 4), "11 0");
    const auto loops = [](const auto& bank) {
        std::array<int, 8> ends{};
        for (std::size_t p = 0; p < 8; ++p) ends[p] = bank[p].loopEnd;
        return ends;
    };
    EXPECT_THAT(loops(project.bass[0].patterns[0]), testing::ElementsAre(15, 15, 0, 0, 5, 3, 8, 3));
    EXPECT_THAT(loops(project.bass[0].patterns[2]), testing::ElementsAre(0, 0, 7, 0, 0, 0, 0, 0));
    EXPECT_THAT(loops(project.drum.patterns[0]), testing::ElementsAre(2, 1, 4, 3, 6, 5, 0, 0));
    EXPECT_EQ(rowText(project.drum.patterns[0][0], 0), "x..x............");
    EXPECT_EQ(rowText(project.drum.patterns[0][0], kAccentRow), ".x..............");
    std::vector<int> knobs(project.knobValue.begin(), project.knobValue.begin() + 12);
    EXPECT_THAT(knobs, testing::ElementsAre(1, 2, 3, 4, 0, 5, 6, 7, 8, 9, 0, 10));
    EXPECT_EQ(project.tempo, 120);
    EXPECT_THAT((std::array{knobTrack[4][0], knobTrack[0][65], knobTrack[0][66], knobTrack[0][68]}),
                testing::ElementsAre(9, 1, 33, 33));
}

// What the fuzzer was started from, and what it found on the way.
TEST(RebirthCorpus, HarmsNothing) {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(MARLUNE_RBS_CORPUS)) {
        const auto bytes = readBytes(entry.path());
        EXPECT_EQ(LLVMFuzzerTestOneInput(bytes.data(), bytes.size()), 0);
        ++files;
    }
    EXPECT_GE(files, 5);
    resetProgram();
}

} // namespace
} // namespace marlune::test
