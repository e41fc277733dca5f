// The program before a real JACK server: what a second, independent client hears is what the program says it
// sends, and what it plays reaches the project.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "boundary/hex_text.h"
#include "boundary/midi_bytes.h"
#include "cli/session.h"
#include "files/project_file.h"
#include "project/run_state.h"
#include "project/song_track.h"
#include "song/mode_switch.h"
#include "song/song_moves.h"
#include "support/jack_peer.h"
#include "transport/transport.h"

namespace marlune {
namespace {

using test::JackTest;
using test::kPeriod;
using test::kRate;
using test::Server;
using test::Watcher;

constexpr const char* kOut = "Marlune 200Q:Marlune 200Q Out";

struct Line {
    long long us;
    std::string bytes;
};

// The lines of the sequencer's output in a log, from Start or the song position on.
std::vector<Line> linesOf(const std::string& log) {
    std::vector<Line> lines;
    std::istringstream text(log);
    std::string role;
    for (Line line; text >> line.us >> role && std::getline(text >> std::ws, line.bytes);)
        if (role == "seq" && (!lines.empty() || line.bytes[0] == 'f')) lines.push_back(line);
    return lines;
}

const SessionOptions kLive{
    .live = true, .configFolder = EXAMPLES "/starter", .device = "Marlune 200Q Out", .log = true};

void play(Session& session, bool song) {
    ASSERT_TRUE(loadProjectFile(EXAMPLES "/harbour_nights.mlp"));
    if (song) {
        SongSwitch(true);
        moveSongForward(9, true, true);
    }
    session.play(2, [] {});
}

class JackSession : public JackTest {};

TEST_F(JackSession, WhatIsHeardIsTheLogOfVirtualTime) {
    for (const bool song : {false, true}) {
        std::vector<Line> expected;
        {
            SessionOptions options;
            options.log = true;
            Session fast(options);
            play(fast, song);
            expected = linesOf(fast.log.text());
        }
        Server server;
        Watcher watcher;
        SessionOptions options = kLive;
        if (song) options.device = "watcher:in"; // our own connection, which has to stand first
        Session session(options);
        ASSERT_TRUE(session.error().empty()) << session.error();
        ASSERT_TRUE(song || watcher.connect(kOut, "watcher:in"));
        play(session, song);
        ASSERT_GT(expected.size(), 100U);
        int first = 0; // before it, loading and the start send what a new project has
        ASSERT_TRUE(test::waitFor([&] {
            while (first < watcher.count && watcher.events[first].message.bytes[0] < 0xF0) ++first;
            return watcher.count - first >= static_cast<int>(expected.size());
        })) << "heard too little";
        int late = 0;
        for (int i = 0; i < static_cast<int>(expected.size()); ++i) {
            const auto& event = watcher.events[first + i];
            ASSERT_EQ(hexText(event.message), expected[i].bytes) << "message " << i << " of the run";
            if (expected[i].us > expected.back().us - 1000) continue; // the stop comes when it comes
            const long long heard = (event.frame - watcher.events[first].frame) * 1000000 / kRate;
            const long long off = std::llabs(heard - (expected[i].us - expected[0].us));
            late += off > 1000000 / kRate ? 1 : 0;
        }
        std::string logged, wanted; // to the very last release
        for (const Line& line : linesOf(session.log.text())) logged += line.bytes + ' ';
        for (const Line& line : expected) wanted += line.bytes + ' ';
        EXPECT_EQ(logged, wanted);
        EXPECT_LT(late, static_cast<int>(expected.size()) / 10);
    }
}

TEST_F(JackSession, WhatIsPlayedReachesTheProjectAndAFloodLosesNoNoteAndNoTime) {
    Server server;
    Watcher watcher;
    Session session(kLive);
    ASSERT_TRUE(watcher.connect("watcher:out", "Marlune 200Q:Marlune 200Q In"));
    ASSERT_TRUE(watcher.connect(kOut, "watcher:in"));
    const auto runUntil = [&](const std::function<bool()>& done) {
        return test::waitFor([&] { return session.runEvents(5), done(); });
    };
    const auto sendKeyAndKnob = [&](int key) {
        for (const int note : {36 + 4, 60 + key}) watcher.send(0x90, note, 100); // step 5 and its key
        for (int value = 0; value <= 80 + key; ++value) watcher.send(0xB0, 12, value);
        EXPECT_TRUE(runUntil([&] { return project.knobValue[0] == 80 + key; }));
        EXPECT_EQ(project.bass[0].patterns[0][0].steps[4].note, key);
    };
    sendKeyAndKnob(7);
    playButton(); // and the same through the ticks
    sendKeyAndKnob(9);
    watcher.count = 0;
    // What a note does is counted where it ends: each selects another step of 103B.
    int notes = 0;
    int step = project.bass[1].selStep;
    watcher.floodPerCycle = 20000 * kPeriod / kRate + 1;
    const auto countNotes = [&] {
        const int now = project.bass[1].selStep;
        notes += (now - step + 16) % 16;
        step = now;
    };
    EXPECT_TRUE(runUntil([&] { return countNotes(), watcher.notesSent > 50; }));
    watcher.floodPerCycle = 0;
    EXPECT_TRUE(runUntil([&] { return countNotes(), notes >= watcher.notesSent; }));
    EXPECT_EQ(notes, watcher.notesSent);
    // The clock went on evenly meanwhile: a busy machine may make a message late, and the next one early.
    std::int64_t before = -1;
    int clocks = 0;
    int even = 0;
    const std::int64_t period = std::int64_t{kRate} * 60 / 24 / 140;
    for (int i = 0; i < watcher.count; ++i) {
        if (watcher.events[i].message.bytes[0] != kTimingClock) continue;
        even += before >= 0 && std::abs(watcher.events[i].frame - before - period) <= 1 ? 1 : 0;
        before = watcher.events[i].frame;
        ++clocks;
    }
    EXPECT_GT(clocks, 50);
    EXPECT_GE(even, clocks * 9 / 10);
    playButton();
    SongSwitch(true);
    recButton_Click();
    playButton(); // and what is turned is recorded into the song
    EXPECT_TRUE(runUntil([] { return songPosition->songTick > 2; }));
    for (int value = 0; value <= 50; ++value) watcher.send(0xB0, 14, value);
    int arrived = 0;
    EXPECT_TRUE(runUntil([&] {
        if (arrived == 0 && project.knobValue[2] == 50) arrived = songPosition->songTick;
        return arrived > 0 && songPosition->songTick > arrived + 2;
    }));
    const int until = songPosition->songTick;
    playButton();
    EXPECT_EQ(knobTrack[2][until - 1], 50);
    EXPECT_EQ(knobTrack[2][until + 5], 0);
}

} // namespace
} // namespace marlune
