// Standard MIDI Files in: what the reader takes and refuses, what becomes of notes, and our own exports.
#include "import/midi_import.h"

#include <gmock/gmock.h>

#include <cmath>
#include "commands/reset_program.h"
#include "files/export_driver.h"
#include "files/midi_file_writer.h"
#include "import/midi_form.h"
#include "song/song_place.h"

#include "support/corpus.h"
#include "support/program_test.h"

namespace marlune::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A file by its header fields and the bytes of its tracks.
Bytes smf(int format, int tracks, int division, const std::vector<Bytes>& data) {
    Bytes out{'M', 'T', 'h', 'd', 0, 0, 0, 6, 0};
    for (const int byte : {format, tracks >> 8, tracks, division >> 8, division})
        out.push_back(static_cast<std::uint8_t>(byte));
    for (const Bytes& track : data) {
        out.insert(out.end(), {'M', 'T', 'r', 'k', 0, 0, static_cast<std::uint8_t>(track.size() >> 8),
                               static_cast<std::uint8_t>(track.size())});
        out.insert(out.end(), track.begin(), track.end());
    }
    return out;
}

// "steps channel data1 data2 kind" of every event, or "refused".
std::string read(const Bytes& bytes) {
    const auto song = readMidiSong(bytes);
    if (!song) return "refused";
    std::string text;
    for (const MidiFileTrack& track : song->tracks) {
        text += track.name + "[";
        for (const MidiFileEvent& e : track.events)
            text += " " + std::to_string(e.tick) + ":" + hexText({3, {e.status, e.data1, e.data2}});
        text += " ]";
    }
    return text + " " + std::to_string(song->tempoMicroseconds) + "+" + std::to_string(song->tempoChanges) +
           " " + std::to_string(std::lround(1000 * song->stepsPerTick));
}

TEST(MidiSong, TakesWhatIsWholeAndRefusesTheRest) {
    const Bytes note{0, 0x90, 60, 64, 0x81, 0, 60, 0}; // running status, a delta of two bytes
    const Bytes rich{0,    0xFF, 3,    2, 'H', 'i',  0,    0xFF, 0x51, 3, 9, 0, 0,    5,    0xF0, 2,  1,
                     0xF7, 0,    0xC1, 7, 0,   0xFF, 0x51, 3,    8,    0, 0, 0, 0xFF, 0x2F, 0,    99, 99};
    const auto cut = [&](std::size_t less) {
        Bytes bytes = smf(0, 1, 96, {note});
        bytes.resize(bytes.size() - less);
        return bytes;
    };
    Bytes between = smf(1, 2, 0xE728, {note}); // 25 frames of 40
    between.insert(between.end(), {'X', 'Y', 'Z', ' ', 0, 0, 0, 1, 0xFF});
    const Bytes second = smf(1, 1, 96, {rich});
    between.insert(between.end(), second.begin() + 14, second.end());
    const struct {
        Bytes bytes;
        const char* expected;
    } kCases[] = {
        {smf(0, 1, 96, {note}), "[ 0:90 3c 40 128:90 3c 00 ] 500000+0 42"},
        {smf(1, 1, 24, {rich}), "Hi[ 5:c1 07 00 ] 589824+1 167"},
        {between, "[ 0:90 3c 40 128:90 3c 00 ]Hi[ 5:c1 07 00 ] 589824+1 7"},
        {smf(0, 1, 96, {{0, 0x90, 60, 64, 9}}), "refused"},                       // a delta alone
        {smf(0, 1, 96, {{0, 60, 64}}), "refused"},                                // no status
        {smf(0, 1, 96, {{0, 0x90, 60, 64, 0, 0xF0, 1, 1, 0, 60, 0}}), "refused"}, // none behind an exclusive
        {smf(0, 1, 96, {{0, 0x90, 200, 64}}), "refused"},
        {smf(0, 1, 96, {{0, 0xF2, 1, 1}}), "refused"},
        {smf(0, 1, 96, {{0x81, 0x81, 0x81, 0x81, 0, 0x90, 1, 1}}), "refused"},
        {smf(0, 1, 96, {{0, 0xFF, 1, 100, 1}}), "refused"},
        {smf(2, 1, 96, {note}), "refused"},
        {smf(0, 2, 96, {note, note}), "refused"},
        {smf(1, 2, 96, {note}), "refused"}, // a track too few
        {smf(1, 0, 96, {}), "refused"},
        {smf(0, 1, 0, {note}), "refused"},
        {cut(1), "refused"},
        {cut(note.size() + 3), "refused"},
        {{}, "refused"},
    };
    for (const auto& c : kCases) EXPECT_EQ(read(c.bytes), c.expected);
}

TEST(MidiSong, BrokenBytesDoNoHarm) {
    MemoryMidiFile file;
    file.addTrack();
    for (int i = 0; i < 200; ++i) file.event(i % 40, 0x90 + i % 3, 36 + i % 50, i % 5 == 0 ? 0 : 90);
    const Bytes whole = file.bytes();
    std::minstd_rand random(1);
    for (int i = 0; i < 600; ++i) {
        Bytes bytes = whole;
        for (int k = 0; k < 3; ++k) bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        look(bytes);
    }
    expectHarmless("midi");
    resetProgram();
}

struct MidiImport : ProgramTest {
    std::string report;
    std::string name = folder.file("song.mid");

    // Takes a file of one track; each note is step, channel, pitch, velocity, length in half-steps.
    void take(const std::vector<std::array<int, 5>>& notes,
              const std::function<void(MidiChoices&)>& change = {}) {
        std::vector<std::array<int, 4>> events; // half-step, status, data
        for (const auto& [step, channel, pitch, velocity, length] : notes) {
            events.push_back({2 * step, 0x90 + channel, pitch, velocity});
            events.push_back({2 * step + length, 0x80 + channel, pitch, 0});
        }
        std::ranges::stable_sort(events, {}, [](const auto& e) { return e[0]; });
        MemoryMidiFile file;
        file.addTrack();
        int now = 0;
        for (const auto& [time, status, data1, data2] : events) {
            file.event(15 * (time - now), status, data1, data2);
            now = time;
        }
        writeBytes(name, file.bytes());
        const auto choose = [&](const MidiSong&, const std::vector<MidiSource>&, MidiChoices& choices) {
            if (change) change(choices);
            return true;
        };
        ASSERT_TRUE(importMidiFile(name, choose, report)) << report;
        EXPECT_EQ(program.copyDifference(), "");
    }
    // Steps of a bar: note, octave, accent, slide; a rest has its note in brackets.
    static std::string bar(int module, int number) {
        const SongBar at = barTrack[module][number];
        std::string text;
        for (const BassStep& s : project.bass[module].patterns[at.bank][at.patt].steps) {
            const std::string note = std::to_string(s.note) + (s.up ? "^" : "") + (s.down ? "_" : "");
            text += s.noteOn ? note + (s.accent ? "!" : "") + (s.slide ? "~" : "") + " " : "(" + note + ") ";
        }
        return text.substr(0, text.size() - 1);
    }
};

TEST_F(MidiImport, BassNotesBecomeStepsWithSlidesAccentsAndHeldRests) {
    take({{0, 0, 36, 90, 3}, {1, 0, 60, 120, 2}, {4, 0, 24, 90, 8}, {4, 0, 31, 90, 2}, {10, 0, 48, 90, 1}});
    EXPECT_EQ(bar(0, 0), "0~ 12^! (0) (0) 7_ (0) (0) (0) (0) (0) 12 (0) (0) (0) (0) (0)");
    EXPECT_EQ(bar(0, 1), "(0) (0) (0) (0) (0) (0) (0) (0) (0) (0) (0) (0) (0) (0) (0) (0)");
    EXPECT_EQ(report, "1 bar, patterns 1 + 0 + 0, 4 events. Not as it was: 1 notes of chords in 103A.");
    EXPECT_EQ(knobTrack[5][1] * 1000 + knobTrack[5][0], 120000); // accents are as loud as they were
    // A held note goes on as rests of its pitch; behind one of the lowest pitch a rest of another ends it.
    take({{0, 0, 38, 90, 8}, {8, 0, 36, 90, 2}}, [](MidiChoices& c) { c.highest = false; });
    EXPECT_EQ(bar(0, 0), "2 (2) (2) (2) (0) (0) (0) (0) 0 (1) (1) (1) (1) (1) (1) (1)");
    // The lowest notes would lie below; the octave in which most notes fit is taken, the others are folded.
    take({{0, 0, 90, 90, 2}, {1, 0, 91, 90, 2}, {2, 0, 20, 90, 2}});
    EXPECT_EQ(bar(0, 0).substr(0, 10), "6^ 7^ 8_ (");
    EXPECT_THAT(report, testing::HasSubstr("103A moved by -3 octaves, 1 notes of 103A in another octave."));
    // The last of a chord rather than its highest; one note a half-step late belongs to the step behind.
    take({{4, 0, 48, 90, 2}, {4, 0, 36, 90, 2}}, [](MidiChoices& c) { c.highest = c.asSong = false; });
    EXPECT_TRUE(project.bass[0].patterns[0][0].steps[4].noteOn);
    EXPECT_EQ(project.bass[0].patterns[0][0].steps[4].note, 0);
}

TEST_F(MidiImport, DrumsFollowTheMapOfTheModuleAndTheirVelocities) {
    take({{0, 9, 36, 80, 1},
          {0, 9, 42, 60, 1},
          {4, 9, 38, 120, 1},
          {4, 9, 36, 120, 1},
          {8, 9, 99, 80, 1},
          {20, 9, 48, 120, 1},
          {20, 9, 36, 70, 1}});
    std::string rows;
    for (int s = 0; s < 32; ++s) {
        const SongBar at = barTrack[2][s / 16];
        for (int row = 0; row < 8; ++row)
            if (project.drum.patterns[at.bank][at.patt].drumOn[s % 16][row] == 255)
                rows += std::to_string(s) + ":" + std::to_string(row) + " ";
    }
    EXPECT_EQ(rows, "0:0 0:3 4:0 4:1 4:7 20:0 20:6 ");
    EXPECT_EQ((std::array{knobTrack[12][0], knobTrack[15][0], knobTrack[19][4], knobTrack[12][20],
                          knobTrack[18][20]}),
              (std::array<std::uint8_t, 5>{80, 60, 120, 70, 120}));
    EXPECT_EQ(report,
              "2 bars, patterns 0 + 0 + 2, 6 events. Not as it was: 1 hits on other notes than the drums'.");
}

TEST_F(MidiImport, EqualBarsAreOnePatternAndThereAreNoMoreThan32) {
    std::vector<std::array<int, 5>> notes;
    for (int bar = 0; bar < 40; ++bar) { // five pairs of bars are alike, and one differs in a single step
        notes.push_back({16 * bar, 0, 36 + bar % 35 % 12, 90, 2});
        notes.push_back({16 * bar + 1 + bar % 35 / 12, 0, 40, 90, 2});
    }
    take(notes);
    EXPECT_EQ(report,
              "40 bars, patterns 32 + 0 + 0, 80 events. Not as it was: 3 bars of 103A beyond 32 patterns.");
    EXPECT_EQ(barTrack[0][35], barTrack[0][0]);
    EXPECT_EQ(barTrack[0][39], barTrack[0][4]);
    notes = {{0, 0, 36, 90, 2}, {16 * 1001, 0, 40, 90, 2}};
    take(notes);
    EXPECT_THAT(report, testing::AllOf(testing::StartsWith("1000 bars, patterns 2"),
                                       testing::HasSubstr("2 bars behind bar 1000")));
}

// A project exported, taken in by a fresh program and exported again: the two files are the same.
TEST_F(MidiImport, OwnExportsComeBack) {
    const auto exported = [&](const std::string& file) {
        program.shell.fileNames.push_back(folder.file(file));
        placeSong(0);
        stepsToZero();
        ExportToMID("Song", 0, 16 * 60);
        return readBytes(folder.file(file));
    };
    for (const char* example : {"harbour_nights", "slow_lantern", "tide_pool"}) {
        ASSERT_TRUE(loadProjectFile(std::string(EXAMPLES) + "/" + example + ".mlp"));
        for (auto& bass : project.bass)
            for (auto& pattern : bass.patterns[0])
                pattern.patch = static_cast<int>(&pattern - &bass.patterns[0][0]);
        const Bytes first = exported(std::string(example) + ".mid");
        ASSERT_GT(first.size(), 4000U);
        editingState.write().projectDirty = false;
        mnuFileNew_Click();
        const auto as = [](const MidiSong&, const std::vector<MidiSource>&, MidiChoices&) { return true; };
        ASSERT_TRUE(importMidiFile(folder.file(std::string(example) + ".mid"), as, report));
        EXPECT_TRUE(exported(std::string(example) + "2.mid") == first) << example;
    }
}

TEST_F(MidiImport, TheFormShowsWhatComesOfItAndIsOneStepOfUndo) {
    take({{0, 0, 36, 90, 2}, {0, 3, 40, 90, 2}, {16, 3, 41, 90, 2}, {0, 9, 36, 90, 2}});
    barTrack[2].fill({5, 1});
    clearUndoHistory();
    const auto before = captureMusic();
    Check1_Click();
    editingState.write().projectDirty = false;
    program.shell.fileNames.push_back(name);
    program.shell.modal.push_back([&](Form&) {
        MidiImportForm& form = midiImportForm;
        EXPECT_THAT(form.Combo2.items, testing::ElementsAre("None", "Channel 1: 1 note", "Channel 4: 2 notes",
                                                            "Channel 10: 1 note"));
        EXPECT_EQ(form.Combo1.selected * 100 + form.Combo2.selected * 10 + form.Combo3.selected, 123);
        EXPECT_EQ(form.Text1.text, "100");
        EXPECT_EQ(form.Label1.text, "2 bars, patterns 2 + 2 + 2, 4 events.");
        form.Combo1.selected = 0;
        form.Form_Timer();
        EXPECT_EQ(form.Label1.text, "2 bars, patterns 0 + 2 + 2, 3 events.");
        form.Command1_Click();
    });
    menuClicked(Menu::mnuFileImportMidi);
    EXPECT_FALSE(songPosition->songMode);
    EXPECT_EQ(program.shell.passing.back(), "2 bars, patterns 0 + 2 + 2, 3 events.");
    EXPECT_EQ(editingState->proposedName, "song");
    EXPECT_EQ(undoSteps(), 1);
    mnuEditUndo_Click();
    EXPECT_EQ(captureMusic(), before);
    editingState.write().projectDirty = false;
    writeBytes(name, {'M', 'T', 'h', 'd'});
    program.shell.fileNames.push_back(name);
    menuClicked(Menu::mnuFileImportMidi);
    EXPECT_EQ(program.shell.boxes.back(), kCorruptMidiFile);
    EXPECT_EQ(captureMusic(), before);
    EXPECT_FALSE(editingState->projectDirty);
}

} // namespace
} // namespace marlune::test
