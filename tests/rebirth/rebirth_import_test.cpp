// Importing ReBirth songs: generated ones against a plain model, and bytes worked out by hand.
#include "rebirth/rebirth_import.h"

#include "commands/reset_program.h"
#include "rebirth/rbs_generator.h"
#include "support/corpus.h"
#include "support/program_test.h"

namespace marlune::test {
namespace {

std::string text(const RbsStep& s) {
    return std::to_string(s.semitone) + (s.rest ? "-" : "") + (s.up ? "^" : "") + (s.down ? "_" : "") +
           (s.accent ? "!" : "");
}

void expectPatterns(const RbsSong& song) {
    constexpr int kRows[] = {1, 2, 3, 11, 6, 10, 9, 0};
    for (int p = 0; p < 32; ++p) {
        const DrumPattern& drums = project.drum.patterns[p / 8][p % 8];
        EXPECT_EQ(drums.loopEnd, song.drums.lengths[p] - 1);
        for (int i = 0; i < 16 * 8; ++i) {
            EXPECT_EQ(drums.drumOn[i / 8][i % 8], song.drums.hits[p][kRows[i % 8]][i / 8] ? 255 : 0) << p;
        }
        for (int m = 0; m < 2; ++m) {
            const BassPattern& bass = project.bass[m].patterns[p / 8][p % 8];
            EXPECT_EQ(bass.loopEnd, song.basses[m].lengths[p] - 1);
            for (int s = 0; s < 16; ++s) {
                RbsStep made = song.basses[m].steps[p][s];
                if (made.up && made.down) made.up = made.down = false;
                const BassStep& got = bass.steps[s];
                EXPECT_EQ(text({got.note, got.up, got.down, got.accent, !got.noteOn}), text(made))
                    << "pattern " << p << " step " << s;
            }
        }
    }
}

// Bars in a row that hold one pattern.
void expectBars(int module, int first, int count, int pattern) {
    for (int bar = first; bar < first + count; ++bar) {
        EXPECT_EQ(barBank(module, 16 * bar) * 8 + barPatt(module, 16 * bar), pattern) << bar;
    }
}

// What moves each knob; 18 is moved by none.
constexpr int kParameters[] = {17, 18, 19, 20, 7, 21, 17, 18, 19, 20, 7, 21, 17, 20, 34, 42, 32, 40, 99, 16};

// What a knob holds at a tick, looked for among the events.
int knobAt(const RbsTrack& track, int knob, int tick) {
    int value = knob == 18 ? 0 : kParameters[knob] == 7 ? track.first : int{project.knobValue[knob]};
    int found = 0;
    for (const RbsEvent& e : track.events) {
        const int at = e.time == 0 || e.time % 2 != 0 ? e.time / 2 : e.time / 2 + 1;
        if (e.parameter != kParameters[knob] || at > tick || at < found) continue;
        value = e.value;
        found = at;
    }
    return value;
}

void expectSong(const RbsSong& song) {
    for (int bar = 0; bar < 3 * 60; ++bar) {
        int pattern = 0;
        for (const RbsEvent& e : song.tracks[bar / 60].events)
            if (e.parameter == 14 && e.time / 32 <= bar % 60) pattern = e.value;
        expectBars(bar / 60, bar % 60, 1, pattern);
    }
    for (int knob = 0; knob < kKnobs; ++knob)
        for (const int tick : {0, 1, 2, 3, 100, 101, 102, 479, 480, 481, 15999})
            EXPECT_EQ(knobTrack[knob][tick], knobAt(song.tracks[std::min(knob / 6, 2)], knob, tick))
                << knob << " tick " << tick;
}

// The program with a .rbs file that the next file dialog names.
struct Import : ProgramTest {
    std::string name = folder.file("song.rbs");

    void given(const std::vector<std::uint8_t>& bytes) {
        writeBytes(name, bytes);
        editingState.write().projectDirty = false;
        program.shell.fileNames.push_back(name);
    }
    void song(const RbsSong& song) {
        given(rbsFile(song));
        mnuFileRebirthImport_Click();
    }
};

TEST_F(Import, TakesRandomSongsOver) {
    for (const unsigned seed : {1U, 2U}) {
        const RbsSong generated = randomSong(seed, 30);
        song(generated);
        expectPatterns(generated);
        expectSong(generated);
        for (int m = 0; m < 2; ++m) {
            const auto& knobs = generated.basses[m].knobs;
            const int taken[] = {knobs[0], knobs[1], knobs[2], knobs[3], 0, knobs[4]};
            for (int k = 0; k < 6; ++k) EXPECT_EQ(project.knobValue[6 * m + k], taken[k]);
        }
        EXPECT_EQ(program.copyDifference(), "");
        EXPECT_TRUE(editingState->projectDirty);
    }
    knobTrack[3].fill(77); // what patterns alone leave
    barTrack[2].fill({5, 2});
    given(rbsFile(randomSong(4, 10)));
    mnuFileImportRebPatt_Click();
    EXPECT_EQ(knobTrack[3][500], 77);
    expectBars(2, 0, 1000, 2 * 8 + 5);
    expectPatterns(randomSong(4, 10));
    EXPECT_EQ(program.shell.dialogs[0].filter, "ReBirth file (*.rbs)|*.rbs");
}

// Bytes worked out by hand from the places and the packing, so that generator and reader can't err together.
TEST_F(Import, HandPackedBytesAreReadAsMeant) {
    std::vector<std::uint8_t> file(18868 + 22 + 2 * 14 + 8); // up to the size of the last chunk
    const auto put = [&](std::size_t offset, std::initializer_list<int> bytes) {
        for (const int byte : bytes) file[offset++] = static_cast<std::uint8_t>(byte);
    };
    put(100, {0x07, 0xA1, 0x20});
    put(435, {0x7F, 0x00, 0x53, 0x04, 0x03});                     // 438: top bit of 435
    put(445, {0x70, 0x40});                                       // 446: top bit of 439
    put(556, {1, 2, 0x7F, 3, 4, 5});                              // 558 holds top bits
    put(571, {5, 0x7F, 0x06, 0x7F, 1, 7, 0, 8, 0, 12, 0, 12, 0}); // 574 too
    put(5252, {11, 0, 2, 0});
    put(9954, {0x10, 0, 0, 0, 0x7F, 0x41, 0, 0, 0x2A});             // accent row, 9958 flags, bass drum row
    put(18872, {0, 0, 0, 14, 0, 200, 0, 9, 129, 5, 17, 33, 0, 17}); // ends inside an event
    for (const std::size_t track : {0U, 1U}) put(18890 + 14 * track + 4, {0, 0, 0, 6}); // no data
    given(file);
    mnuFileRebirthImport_Click();
    std::string steps, drums, loops;
    for (const BassStep& s : project.bass[0].patterns[0][0].steps)
        steps += text({s.note, s.up, s.down, s.accent, !s.noteOn}) + " ";
    for (const auto& rows : project.drum.patterns[0][0].drumOn)
        drums += rows[kAccentRow] != 0 ? '>' : rows[0] != 0 ? 'x' : '.';
    for (const BassPattern& pattern : project.bass[0].patterns[0])
        loops += std::to_string(pattern.loopEnd) + " ";
    EXPECT_EQ(steps.substr(0, 14), "5-^! 7_ 12 0 0");
    EXPECT_EQ(project.bass[1].patterns[0][0].steps[0].note, 11);
    EXPECT_EQ(drums, "x>.x............");
    EXPECT_EQ(loops, "15 15 0 0 5 3 8 3 ");
    EXPECT_EQ(project.bass[0].patterns[2][2].loopEnd, 7);
    EXPECT_EQ(project.knobValue[5] * 100 + project.knobValue[3] * 10 + project.knobValue[2], 543);
    EXPECT_EQ(project.tempo, 120);
    EXPECT_EQ(knobTrack[4][0] * 10000 + knobTrack[0][65] * 100 + knobTrack[0][66], 90133);
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
    expectBars(0, 0, 1, 9);
    expectBars(0, 1, 15, 11); // the later of two; 32 is no pattern
    expectBars(0, 16, 984, 31);
    expectBars(1, 0, 1000, 0);
}

TEST_F(Import, EveryParameterMovesItsKnobAndTheTempoIsRoundedToEvenAndLimited) {
    RbsSong s;
    for (int knob = 0; knob < kKnobs; ++knob) {
        s.tracks[std::min(knob / 6, 2)].events.push_back({3, kParameters[knob], 50 + knob});
    }
    s.tracks[1].events.push_back({3200, 14, 17});
    for (const auto& [microseconds, tempo] :
         {std::pair{342857, 175}, {480000, 125}, {1, 240}, {0xFFFFFF, 40}}) {
        s.microseconds = microseconds;
        song(s);
        EXPECT_EQ(project.tempo, tempo);
    }
    for (int knob = 0; knob < kKnobs; ++knob) {
        EXPECT_EQ(knobTrack[knob][1], knob == 18 ? 0 : 50 + knob);
        EXPECT_EQ(knobTrack[knob][15999], knobTrack[knob][1]) << knob;
    }
    expectBars(1, 0, 1000, 17); // before the first change as well
}

TEST_F(Import, WhatIsTooShortTooLongOrWithoutTempoIsRefusedWhole) {
    const auto whole = rbsFile(randomSong(5, 8));
    const auto cut = [&](std::size_t size) {
        return std::vector(whole.begin(), whole.begin() + static_cast<long>(size));
    };
    std::vector<std::vector<std::uint8_t>> refused(2, whole);
    std::fill_n(refused[0].begin() + 100, 3, 0);
    refused[1][18872] = 0xFF; // a huge track
    for (const std::size_t size : {0, 103, 12000, 18868, 18875, 18868 + 99}) refused.push_back(cut(size));
    refused.push_back(cut(whole.size() - 6));
    project.knobValue[5] = 99;
    const ProjectRecord before = project;
    for (const auto& bytes : refused) {
        SCOPED_TRACE(bytes.size());
        std::string told;
        program.shell.modal.push_back([&](Form& form) { told = form.caption; });
        given(bytes);
        mnuFileRebirthImport_Click();
        EXPECT_EQ(told, "MarLune Converter");
        EXPECT_FALSE(editingState->projectDirty);
        EXPECT_EQ(std::memcmp(&before, &project, sizeof project), 0);
    }
    given(cut(whole.size() - 5)); // the last five bytes of a chunk are not read
    mnuFileRebirthImport_Click();
    EXPECT_TRUE(editingState->projectDirty);
    editingState.write().projectDirty = false;
    mnuFileRebirthImport_Click(); // the dialog is left
    EXPECT_FALSE(editingState->projectDirty);
    EXPECT_EQ(importRebirthFile(folder.path, {}), RebirthResult::unreadable);
}

TEST_F(Import, AsksAboutUnsavedWorkAndStopsTheTransport) {
    editingState.write().projectDirty = true;
    transportState.write().transportRunning = true;
    mnuFileRebirthImport_Click(); // the box is cancelled
    EXPECT_FALSE(transportState->transportRunning);
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

TEST(RebirthCorpus, HarmsNothing) {
    expectHarmless("rbs");
    expectHarmless("rb40");
    resetProgram();
}

} // namespace
} // namespace marlune::test
