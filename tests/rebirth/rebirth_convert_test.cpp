// Converting ReBirth songs: the file as mido reads it, against a model that counts in absolute time.
#include "rebirth/rebirth_convert.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cmath>
#include <map>

#include "rebirth/converter_form.h"
#include "rebirth/rbs_generator.h"
#include "support/program_test.h"

namespace marlune::test {
namespace {

// A line of dump_midi.py.
std::string line(int track, int time, std::initializer_list<int> bytes) {
    std::string text = std::to_string(track) + " " + std::to_string(time);
    for (const int byte : bytes) text += " " + std::to_string(byte);
    return text + "\n";
}

std::string nameLine(int track, const std::string& name) {
    return std::to_string(track) + " name " + name + "\n";
}

// A stretch in which a unit plays one pattern from its first step. done: how many events have been read by
// then.
struct Stretch {
    int from, to, pattern;
    std::size_t done;
};

// Pattern events lie on different bar lines here, so that each switches between playing and silence.
std::vector<Stretch> stretches(const RbsTrack& track) {
    std::vector<Stretch> result;
    int from = 0;
    int pattern = track.events[0].value;
    int heard = pattern; // behind a switch the pattern of the last stretch goes on
    bool on = track.events[1].value == 1;
    for (std::size_t i = 2; i < track.events.size(); ++i) {
        const RbsEvent& e = track.events[i];
        const bool last = i + 1 == track.events.size();
        if (!last && e.parameter != 14 && e.parameter != 15) continue;
        const bool toggles = !last && e.parameter == 15;
        const bool nowOn = toggles ? e.value == 1 : on;
        if (!toggles || !nowOn) heard = pattern;
        if (toggles ? !nowOn : on) result.push_back({from, e.time, heard, i + 1});
        if (!last && !toggles) pattern = e.value;
        on = nowOn;
        from = e.time;
    }
    return result;
}

std::string bassModel(const RbsSong& song, int unit, const UnitOptions& options) {
    const int track = 2 * unit + 1;
    std::string text = nameLine(track, unit == 0 ? "Top 303" : "Mid 303");
    const RbsBass& bass = song.basses[unit];
    for (const Stretch& s : stretches(song.tracks[unit])) {
        for (int step = 0; step < (s.to - s.from) / 2; ++step) {
            const RbsStep& played = bass.steps[s.pattern][step % bass.lengths[s.pattern]];
            const int octave = played.up == played.down ? 1 : played.up ? 2 : 0;
            const int note = options.baseNote + played.semitone + 12 * octave;
            const int velocity = played.rest ? 0 : options.velocity;
            const int at = 15 * s.from + 30 * step;
            text += line(track, at, {0x8F + options.channel, note, velocity});
            text += line(track, at + 30, {0x7F + options.channel, note, velocity});
        }
    }
    return text;
}

std::string knobModel(const RbsSong& song, int unit, const UnitOptions& options) {
    const int track = 2 * unit + 2;
    std::string text = nameLine(track, unit == 0 ? "Top 303 Knobs" : "Mid 303 Knobs");
    std::map<int, int> controllers = {{7, 7}, {10, 10}, {12, 12}};
    for (const int value : {options.cutoff, options.reso, options.envMod, options.decay, options.accent}) {
        controllers[14 + static_cast<int>(controllers.size())] = value;
    }
    int now = 0;
    for (const RbsEvent& e : song.tracks[unit].events) {
        if (e.parameter == 14 || e.parameter == 15 || e.parameter == 22 || e.time == now) continue;
        now = e.time;
        text += e.parameter == 16
                    ? line(track, 15 * now, {0xDF + options.channel, e.value, 0})
                    : line(track, 15 * now, {0xAF + options.channel, controllers.at(e.parameter), e.value});
    }
    return text;
}

std::string drumModel(const RbsSong& song, int channel) {
    struct Voice {
        int row, note, level, pairSwitch = 0;
        bool when = false;
    };
    constexpr Voice kVoices[] = {
        {1, 36, 17},           {2, 38, 20},     {3, 64, 23, 25, true}, {3, 36, 23, 25},
        {4, 63, 26, 28, true}, {4, 47, 26, 28}, {5, 62, 29, 31, true}, {5, 50, 29, 31},
        {6, 75, 32, 33, true}, {6, 37, 32, 33}, {7, 44, 34, 35, true}, {7, 75, 34, 35},
        {8, 56, 36},           {9, 51, 37},     {10, 46, 40},          {11, 42, 42}};
    std::string text = nameLine(5, "808 ");
    for (const Stretch& s : stretches(song.tracks[2])) {
        std::map<int, int> last;
        for (std::size_t i = 0; i < s.done; ++i) {
            last[song.tracks[2].events[i].parameter] = song.tracks[2].events[i].value;
        }
        for (int half = 0; half < s.to - s.from; ++half) {
            const auto& rows = song.drums.hits[s.pattern];
            const std::size_t step = half / 2 % song.drums.lengths[s.pattern];
            const int status = (half % 2 == 0 ? 0x8F : 0x7F) + channel, at = 15 * (s.from + half);
            const double more = rows[0][step] ? std::nearbyint(last[16] * 28 / 128.0) : 0;
            if (rows[0][step]) text += line(5, at, {status, 0, 0});
            for (const Voice& v : kVoices) {
                if (!rows[v.row][step] || (v.pairSwitch != 0 && (last[v.pairSwitch] > 0) != v.when)) continue;
                text += line(5, at, {status, v.note, last[v.level] * 100 / 128 + static_cast<int>(more)});
            }
        }
    }
    return text;
}

std::string model(const RbsSong& song, const ConverterOptions& options) {
    const int t = song.microseconds;
    std::string text = "file 1 120 6\n" + nameLine(0, "Marlune Converter") +
                       "0 text Marlune 200q ReBirth to MIDI Converter v1.00\x04 $\a\x03" + "e\n" +
                       line(0, 0, {0xFF, 0x58, 4, 4, 2, 30, 8}) +
                       line(0, 0, {0xFF, 0x51, 3, t >> 16, t >> 8 & 0xFF, t & 0xFF});
    text += bassModel(song, 0, options.top) + knobModel(song, 0, options.top);
    text += bassModel(song, 1, options.mid) + knobModel(song, 1, options.mid);
    return text + drumModel(song, options.drumsChannel);
}

TEST(Conversion, OfRandomSongsIsReadByOthersAsMeant) {
    const TemporaryFolder folder;
    std::string files, expected;
    ConverterOptions options{{40, 77, 3, 20, 21, 22, 23, 24}, {24, 127, 16, 0, 127, 1, 2, 3}, 1};
    for (const unsigned seed : {11U, 12U, 13U, 14U}) {
        const RbsSong song = randomSong(seed, 40);
        const std::string name = folder.file(std::to_string(seed));
        writeBytes(name + ".rbs", rbsFile(song));
        ASSERT_EQ(convertRebirthFile(name + ".rbs", name + ".mid", options), RebirthResult::done);
        files += name + ".mid ";
        expected += model(song, options);
        options = {};
    }
    // By the system's python, for which mido is packaged.
    const std::string dump = "/usr/bin/python3 " MARLUNE_DUMP_MIDI " " + files + ">" + folder.file("dump");
    const int status = WEXITSTATUS(std::system(dump.c_str()));
    if (status == 77 || status == 127) GTEST_SKIP() << "python3 has no module named mido";
    EXPECT_EQ(status, 0);
    const auto dumped = readBytes(folder.file("dump"));
    const std::string text(dumped.begin(), dumped.end());
    // The first difference, not ten thousand lines.
    const auto differs = std::mismatch(text.begin(), text.end(), expected.begin(), expected.end());
    const auto at = static_cast<std::size_t>(differs.first - text.begin());
    EXPECT_EQ(text.substr(at, 80), expected.substr(std::min(at, expected.size()), 80)) << "at " << at;
    EXPECT_GT(text.size(), 100000U);
}

// Times in half-steps, by hand: what the top unit's two tracks hold.
TEST(Conversion, KeepsTimeAcrossSilenceSkippedEventsAndTheEnd) {
    const auto converted = [](const RbsSong& song) {
        MemoryMidiFile file;
        EXPECT_TRUE(convertRbsImage(RbsImage(rbsFile(song)), {}, file));
        const auto bytes = file.bytes();
        return std::string(bytes.begin(), bytes.end());
    };
    const auto bytes = [](std::initializer_list<int> values) {
        std::string text;
        for (const int value : values) text += static_cast<char>(value);
        return text;
    };
    RbsSong song;
    song.basses[0].lengths[3] = 1;
    song.tracks[0].events = {{0, 14, 32}, {0, 14, 3},   {0, 15, 0},    {32, 15, 1}, {35, 14, 4},
                             {36, 22, 1}, {36, 14, 32}, {37, 17, 200}, {40, 16, 5}, {42, 14, 40}};
    // 480 ticks of silence, three half-steps of pattern 3 that end on a note-on, then pattern 4 to the end.
    const std::string on = bytes({0, 0x90, 48, 90}), step = on + bytes({30, 0x80, 48, 90});
    const std::string notes = bytes({0x83, 0x60}) + step.substr(1) + on + step + step + step + on;
    EXPECT_THAT(converted(song), testing::HasSubstr("Top 303" + notes + bytes({0, 0xFF, 0x2F})));
    EXPECT_THAT(converted(song), testing::HasSubstr("Top 303 Knobs" + bytes({0x84, 0x2B, 0xB0, 12, 127, 45,
                                                                             0xE0, 5, 0, 0, 0xFF, 0x2F, 0})));
    // The walk ends at the first pattern event behind the song's last bar.
    song.bars = 1;
    song.tracks[0].events = {{0, 14, 3},  {0, 15, 1},  {2, 14, 3}, {32, 14, 3},
                             {33, 14, 3}, {35, 14, 3}, {60, 15, 0}};
    const auto count = [&](int bars) {
        song.bars = bars;
        const std::string text = converted(song);
        const std::size_t start = text.find("Top 303");
        return (text.find("MTrk", start) - start - 7 - 4) / 4;
    };
    EXPECT_EQ(count(1), 33U);
    EXPECT_EQ(count(2), 60U);
}

// The form on a song whose name the first file dialog gives.
struct ConverterForm : ProgramTest {
    Rebirth_to_MIDI& form = rebirthToMidiForm;
    std::string out = folder.file("out.mid");

    void run(const std::function<void()>& entries,
             const std::vector<std::uint8_t>& bytes = rbsFile(RbsSong{})) {
        writeBytes(folder.file("song.rbs"), bytes);
        program.shell.dialogs.clear();
        program.shell.fileNames = {folder.file("song.rbs"), out};
        program.shell.modal.push_back([&](Form&) {
            entries();
            form.OK_Button_Click();
        });
        mnuFileConvert_Click();
        EXPECT_FALSE(form.loaded());
    }
};

TEST_F(ConverterForm, StartsWithDefaultsAndLimitsWhatIsEntered) {
    run([&] {
        EXPECT_EQ(form.TOP_303_Base_Note.text + form.MID_303_MIDI_Channel.text + form.DRUMS_MIDI_Channel.text,
                  "36210");
        EXPECT_TRUE(form.TOP_303_convert_Knobs.checked && form.MID_303_convert_Knobs.checked);
        form.TOP_303_MIDI_Channel.text = "0";
        form.MID_303_MIDI_Channel.text = "99";
        form.TOP_303_Note_Velocity.text = "128";
        form.MID_303_Cutoff.text = "";
        form.DRUMS_MIDI_Channel.text = "17";
    });
    const ConverterOptions& o = form.options;
    EXPECT_THAT((std::array{o.top.channel, o.mid.channel, o.top.velocity, o.mid.cutoff, o.mid.accent,
                            o.drumsChannel}),
                testing::ElementsAre(1, 16, 127, 0, 16, 16));
    EXPECT_GT(readBytes(out).size(), 100U);
    EXPECT_EQ(program.shell.dialogs[1].fileName, folder.file("song"));
    EXPECT_EQ(program.shell.dialogs[0].title + program.shell.dialogs[1].title,
              "Select ReBirth Song for conversionOutput MIDI File to ");
    EXPECT_FALSE(editingState->projectDirty);
}

TEST_F(ConverterForm, WritesNothingWhenLeftOrRefused) {
    run([&] { form.DRUMS_MIDI_Channel.text = ""; });
    EXPECT_EQ(program.shell.dialogs.size(), 1U);
    run([&] { program.shell.fileNames.clear(); });
    EXPECT_EQ(program.shell.dialogs.size(), 2U);
    std::string told;
    run([&] { program.shell.modal.push_back([&](Form& error) { told = error.caption; }); }, {1, 2, 3});
    EXPECT_EQ(told, "MarLune Converter");
    EXPECT_TRUE(readBytes(out).empty());
    writeBytes(out, {5});
    run([&] {}); // the question about the file that exists is answered no, and the dialog then left
    EXPECT_EQ(readBytes(out).size(), 1U);
    EXPECT_EQ(program.shell.dialogs.size(), 3U);
}

} // namespace
} // namespace marlune::test
