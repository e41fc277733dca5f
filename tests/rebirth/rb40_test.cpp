// Songs of ReBirth 2: written by the test and read back, against a plain model of what the project must hold.
#include <gmock/gmock.h>

#include <cmath>
#include <set>

#include "import/midi_song.h"
#include "project/record_limits.h"
#include "rebirth/drum_choice.h"
#include "rebirth/rb40_convert.h"
#include "rebirth/rb40_writer.h"
#include "rebirth/rebirth_import.h"
#include "support/program_test.h"

namespace marlune::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Rb40, WhatIsWrittenIsRead) {
    for (unsigned seed = 1; seed < 8; ++seed) {
        const Rb40Song song = randomRb40(seed, 40);
        EXPECT_EQ(readRb40(rb40File(song, seed)), song) << seed;
    }
}

// The pattern of each bar by the events up to its end, -1 for none.
template <typename Unit>
int patternAt(const Unit& unit, int bar) {
    int on = unit.start[0], pattern = unit.start[1];
    for (const Rb40Event& e : unit.track) {
        if (e.position < 32 * (bar + 1) && e.controller == 0) on = e.value;
        if (e.position < 32 * (bar + 1) && e.controller == 1) pattern = e.value;
    }
    return on != 0 && pattern < 32 ? pattern : -1;
}

template <typename Unit>
int settingAt(const Unit& unit, int setting, int tick) {
    int value = unit.start[setting];
    for (const Rb40Event& e : unit.track)
        if (e.controller == setting && e.position < 2 * (tick + 1)) value = e.value;
    return value;
}

// Row and setting of each drum row here, of 808 and 909.
constexpr int kRows[2][8] = {{1, 2, 7, 11, 6, 10, 9, 0}, {1, 2, 7, 8, 6, 9, 10, 0}};
constexpr int kLevels[2][8] = {{3, 6, 20, 28, 18, 26, 23, 2}, {3, 7, 21, 22, 20, 22, 25, 2}};
constexpr int kBassLevels[6] = {3, 4, 5, 6, 8, 7};

bool hit(const Rb40Song& song, int unit, int pattern, int step, int row) {
    const auto& cells = song.drums[unit].patterns[pattern].cells[step];
    if (cells[kRows[unit][row]] != 0) return true;
    if (row != 7 || unit == 0) return false;
    for (int other = 0; other < 7; ++other)
        if (cells[kRows[unit][other]] == 2) return true;
    return false;
}

std::string text(int pitch, bool up, bool down, bool slide, bool accent, bool rest) {
    return std::to_string(pitch) + (up ? "^" : "") + (down ? "_" : "") + (slide ? "~" : "") +
           (accent ? "!" : "") + (rest ? "-" : "");
}

bool silent(int module, int bar) {
    const int number = barBank(module, 16 * bar) * 8 + barPatt(module, 16 * bar);
    for (int s = 0; s < 16; ++s) {
        if (module < 2 && project.bass[module].patterns[number / 8][number % 8].steps[s].noteOn) return false;
        for (int d = 0; module == 2 && d < 7; ++d)
            if (project.drum.patterns[number / 8][number % 8].drumOn[s][d] != 0) return false;
    }
    return true;
}

int barNumber(int module, int bar) {
    return barBank(module, 16 * bar) * 8 + barPatt(module, 16 * bar);
}

struct Rb40Import : ProgramTest {
    std::string report;
    void take(const Rb40Song& song, const RebirthImportOptions& options = {}) {
        ASSERT_EQ(importRb40Bytes(rb40File(song), options, &report), RebirthResult::done);
        EXPECT_EQ(program.copyDifference(), "");
    }
    void given(const Bytes& bytes) {
        writeBytes(folder.file("song.rbs"), bytes);
        program.shell.fileNames.push_back(folder.file("song.rbs"));
    }
};

TEST_F(Rb40Import, TakesBasslinesAndKnobsOfRandomSongs) {
    for (const unsigned seed : {1U, 2U}) {
        const Rb40Song song = randomRb40(seed, 60);
        take(song);
        EXPECT_EQ(project.tempo,
                  std::clamp(static_cast<int>(std::nearbyint(song.milliTempo / 1000.0)), 40, 240));
        EXPECT_EQ(editingState->proposedName, "Caf\xC3\xA9 - " + std::to_string(seed));
        for (int i = 0; i < 2 * 1000; ++i) {
            const int m = i / 1000, bar = i % 1000;
            const int expected = patternAt(song.basses[m], bar);
            if (expected < 0)
                ASSERT_TRUE(silent(m, bar)) << m << " bar " << bar;
            else
                ASSERT_EQ(barNumber(m, bar), expected) << m << " bar " << bar;
        }
        std::set<int> played[2];
        for (int i = 0; i < 2 * 60; ++i) played[i / 60].insert(patternAt(song.basses[i / 60], i % 60));
        for (int i = 0; i < 2 * 32; ++i) {
            if (!played[i / 32].contains(i % 32)) continue; // one of the others may have become the empty one
            const Rb40BassPattern& made = song.basses[i / 32].patterns[i % 32];
            const BassPattern& got = project.bass[i / 32].patterns[i % 32 / 8][i % 8];
            EXPECT_EQ(got.loopEnd, made.length - 1);
            for (int s = 0; s < 16; ++s) {
                const Rb40BassStep& m = made.steps[s];
                const BassStep& g = got.steps[s];
                EXPECT_EQ(text(g.note, g.up, g.down, g.slide, g.accent, !g.noteOn),
                          text(m.pitch, m.up && !m.down, m.down && !m.up, m.slide, m.accent, m.rest));
            }
        }
        for (int knob = 0; knob < 12; ++knob) {
            const int setting = kBassLevels[knob % 6];
            for (int tick = 0; tick < 1000; ++tick) {
                const int value = settingAt(song.basses[knob / 6], setting, tick);
                ASSERT_EQ(knobTrack[knob][tick], setting == 8 ? (value != 0 ? 127 : 0) : value) << knob;
            }
        }
    }
}

TEST_F(Rb40Import, TakesEitherDrumUnit) {
    const Rb40Song song = randomRb40(3, 50);
    for (int unit = 0; unit < 2; ++unit) {
        take(song, {false, unit == 0 ? Rb40Drums::of808 : Rb40Drums::of909});
        for (int bar = 0; bar < 60; ++bar) {
            const int p = patternAt(song.drums[unit], bar);
            if (p < 0)
                ASSERT_TRUE(silent(2, bar));
            else
                ASSERT_EQ(barNumber(2, bar), p);
            for (int i = 0; p >= 0 && i < 16 * 8; ++i) {
                EXPECT_EQ(project.drum.patterns[p / 8][p % 8].drumOn[i / 8][i % 8],
                          hit(song, unit, p, i / 8, i % 8) ? 255 : 0)
                    << p << " step " << i / 8 << " row " << i % 8;
            }
        }
        for (int row = 0; row < 8; ++row)
            for (int tick = 0; tick < 900; ++tick)
                EXPECT_EQ(knobTrack[12 + row][tick], settingAt(song.drums[unit], kLevels[unit][row], tick))
                    << row;
    }
}

// One bar each of 808 pattern 0 with 909 pattern 1, of the 909 alone, and of lengths that don't fit.
TEST_F(Rb40Import, MergesDrumUnitsWhereTheirLengthsFit) {
    Rb40Song song;
    song.milliTempo = 120000;
    song.loopEndBars = 4;
    for (auto& unit : song.drums) unit.start[0] = 1;
    auto& a = song.drums[0];
    auto& b = song.drums[1];
    a.patterns[0].length = 4;
    a.patterns[0].cells[1][1] = 1;                                            // bass drum, repeated
    for (const int s : {0, 3, 9}) b.patterns[1].cells[s][2] = s == 9 ? 2 : 1; // snare, accented at the tenth
    b.patterns[1].cells[5][7] = 3;                                            // a flam on the clap
    b.patterns[1].cells[6][3] = 1;                                            // a tom
    b.patterns[2].length = 7;
    b.patterns[2].cells[2][2] = 1;
    a.track = {{32, 0, 0}, {64, 0, 1}, {96, 1, 3}};
    b.track = {{0, 1, 1}, {64, 1, 2}, {96, 1, 32}};
    const auto rows = [](int bar) {
        const DrumPattern& p = project.drum.patterns[0][barNumber(2, bar)];
        std::string line;
        for (int s = 0; s <= p.loopEnd; ++s) {
            int bits = 0;
            for (int row = 0; row < 8; ++row) bits |= p.drumOn[s][row] != 0 ? 1 << row : 0;
            line += bits == 0 ? "." : bits > 127 ? "!" : std::to_string(bits);
        }
        return line;
    };
    take(song, {false, Rb40Drums::both});
    EXPECT_EQ(rows(0), "21.2.5...!...1..");
    EXPECT_EQ(rows(1), "2..2.4...!......");
    EXPECT_EQ(rows(2), "..2....");
    EXPECT_EQ(rows(3), "................");
    EXPECT_EQ(report,
              "4 bars, patterns 0 + 0 + 4, 0 events. Not as it was: 1 drum patterns of lengths that don't "
              "fit, 1 tom hit, 1 flams.");
}

TEST_F(Rb40Import, ASongThatIsTooLongOrTooFullIsToldSo) {
    Rb40Song song;
    song.milliTempo = 999000;
    song.basses[0].start = {1, 0};
    for (auto& pattern : song.basses[0].patterns) pattern.steps[0].rest = false;
    for (int p = 0; p < 32; ++p) song.basses[0].track.push_back({64 * p, 1, static_cast<std::uint8_t>(p)});
    song.basses[0].track.push_back({2048, 0, 0});
    song.basses[0].track.push_back({32000, 3, 9});
    song.basses[0].track.push_back({32 * 1002, 1, 4});
    take(song);
    EXPECT_EQ(project.tempo, 240);
    EXPECT_EQ(barNumber(0, 999), 31); // goes on, since none of 32 is empty
    EXPECT_EQ(knobTrack[0][15999], 0);
    EXPECT_THAT(report,
                testing::StartsWith("1000 bars, patterns 32 + 0 + 0, 0 events. Not as it was: 936 bars of "
                                    "103A without an empty pattern, 2 bars behind bar 1000"));
}

TEST_F(Rb40Import, IsOneStepOfUndoInEitherModeAndPatternsAloneLeaveTheSong) {
    for (const bool songMode : {false, true}) {
        const auto before = captureMusic();
        if (songMode) Check1_Click();
        editingState.write().projectDirty = false;
        given(rb40File(randomRb40(5, 20)));
        program.shell.modal.push_back([&](Form& form) {
            auto& choice = dynamic_cast<DrumChoice&>(form);
            EXPECT_THAT(choice.Combo1.items[0], testing::MatchesRegex("808 \\([0-9]+ hits\\)"));
            choice.Combo1.selected = 1;
            choice.Command1_Click();
        });
        menuClicked(Menu::mnuFileRebirthImport);
        EXPECT_FALSE(songPosition->songMode);
        EXPECT_EQ(program.copyDifference(), "");
        EXPECT_EQ(undoSteps(), 1);
        EXPECT_TRUE(editingState->projectDirty);
        mnuEditUndo_Click();
        EXPECT_EQ(program.copyDifference(), "");
        EXPECT_EQ(captureMusic(), before);
        clearUndoHistory();
    }
    editingState.write().projectDirty = false;
    barTrack[0].fill({3, 3});
    given(rb40File(randomRb40(6, 20)));
    program.shell.modal.push_back([](Form& form) { dynamic_cast<DrumChoice&>(form).Command1_Click(); });
    mnuFileImportRebPatt_Click();
    EXPECT_EQ(barNumber(0, 500), 27);
    EXPECT_EQ(program.shell.passing.back().substr(0, 7), "0 bars,");
    // The project's next save proposes the title; the form that is left takes nothing.
    program.shell.dialogs.clear();
    askProjectName(true);
    EXPECT_EQ(program.shell.dialogs[0].fileName, "Caf\xC3\xA9 - 6");
    editingState.write().projectDirty = false;
    const auto before = captureMusic();
    given(rb40File(randomRb40(7, 20)));
    program.shell.modal.push_back([](Form& form) { dynamic_cast<DrumChoice&>(form).Command2_Click(); });
    mnuFileRebirthImport_Click();
    EXPECT_EQ(captureMusic(), before);
    EXPECT_FALSE(editingState->projectDirty);
}

// Every place where a size or a type stands, cut and changed in turn: read, or refused without a trace.
TEST_F(Rb40Import, BrokenChunksAreRefusedWhole) {
    const Bytes whole = rb40File(randomRb40(4, 6));
    int refused = 0;
    const auto attempt = [&](const Bytes& bytes) {
        const ProjectRecord before = project;
        const RebirthResult result = importRb40Bytes(bytes, {false, Rb40Drums::both});
        if (result == RebirthResult::done) {
            ProjectRecord limited = project;
            limitRecord(limited);
            EXPECT_EQ(std::memcmp(&limited, &project, sizeof project), 0);
            return;
        }
        ++refused;
        EXPECT_EQ(std::memcmp(&before, &project, sizeof project), 0);
    };
    for (std::size_t size = 0; size < whole.size(); size += 97)
        attempt(Bytes(whole.begin(), whole.begin() + size));
    const int cuts = refused;
    EXPECT_EQ(cuts, static_cast<int>((whole.size() + 96) / 97));
    std::minstd_rand random(1);
    for (std::size_t i = 0; i + 8 < whole.size(); ++i) {
        const std::string type(whole.begin() + i, whole.begin() + i + 4);
        if (!std::set<std::string>{"CAT ", "GLOB", "DEVL", "303 ", "808 ", "909 ", "TRKL", "TRAK"}.contains(
                type))
            continue;
        for (int k = 0; k < 12; ++k) {
            Bytes bytes = whole;
            bytes[i + (k < 4 ? 0 : 4 + random() % 8)] = static_cast<std::uint8_t>(k < 8 ? 0xFF : random());
            attempt(bytes);
        }
    }
    EXPECT_GT(refused, cuts + 60);
    std::string told;
    program.shell.modal.push_back([&](Form& form) { told = form.caption; });
    given(Bytes(whole.begin(), whole.end() - 60));
    editingState.write().projectDirty = false;
    mnuFileRebirthImport_Click();
    EXPECT_EQ(told, "MarLune Converter");
    EXPECT_FALSE(editingState->projectDirty);
}

// "track: time status data1 data2" of each note and controller.
std::multiset<std::string> events(const MidiSong& song, const std::string& track) {
    std::multiset<std::string> lines;
    for (const MidiFileTrack& t : song.tracks) {
        for (const MidiFileEvent& e : t.events)
            if (t.name == track)
                lines.insert(std::to_string(e.tick) + " " + std::to_string(e.status) + " " +
                             std::to_string(e.data1) + " " + std::to_string(e.data2));
    }
    return lines;
}

TEST_F(Rb40Import, IsConvertedWithSlidesAccentsAndBothDrumUnits) {
    Rb40Song song;
    song.milliTempo = 125000;
    song.loopEndBars = 1;
    auto& bass = song.basses[0];
    bass.start = {1, 0, 0, 10, 11, 12, 13, 14};
    bass.patterns[0].length = 8;
    bass.patterns[0].steps[0] = {4, true, false, true, false, false};  // E, up, slides
    bass.patterns[0].steps[1] = {0, false, true, false, false, false}; // C, accented
    bass.track = {{5, 3, 99}};
    song.mixer = {{6, 6, 77}};
    for (auto& drums : song.drums) {
        drums.start[0] = 1;
        drums.patterns[0].cells[15][1] = 2;
    }
    song.drums[0].start[3] = 64;
    song.drums[1].start = {1, 0, 64, 128 - 1};
    ConverterOptions options;
    options.top.slides = options.top.accents = true;
    const auto converted = [&] {
        MemoryMidiFile file;
        convertRb40(song, options, file);
        return *readMidiSong(file.bytes());
    };
    const MidiSong midi = converted();
    EXPECT_EQ(midi.tempoMicroseconds, 480000);
    EXPECT_THAT(
        events(midi, "Top 303"),
        testing::UnorderedElementsAre("0 144 64 90", "35 128 64 90", "30 144 48 127", "60 128 48 127",
                                      "240 144 64 90", "275 128 64 90", "270 144 48 127", "300 128 48 127"));
    EXPECT_THAT(events(midi, "Top 303 Knobs"),
                testing::UnorderedElementsAre("0 176 12 10", "0 176 13 11", "0 176 14 12", "0 176 15 13",
                                              "0 176 16 14", "75 176 12 99", "90 176 7 77"));
    EXPECT_THAT(events(midi, "808 "), testing::UnorderedElementsAre("450 153 36 50", "465 137 36 50"));
    EXPECT_THAT(events(midi, "909 "), testing::UnorderedElementsAre("450 153 36 113", "465 137 36 113"));
    song.drums[1].start[0] = 0;
    options.top.slides = options.top.accents = false;
    EXPECT_EQ(converted().tracks.size(), 6U);
    EXPECT_TRUE(events(converted(), "Top 303").contains("30 144 48 90"));
    EXPECT_TRUE(events(converted(), "Top 303").contains("30 128 64 90"));
}

} // namespace
} // namespace marlune::test
