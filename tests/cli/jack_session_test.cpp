// The program before a real JACK server: what a second, independent client hears is what the program says it
// sends, and what it plays reaches the project.
#include <gtest/gtest.h>

#include <sstream>

#include "boundary/hex_text.h"
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

const SessionOptions kLive{.live = true, .configFolder = EXAMPLES "/starter", .device = "Marlune 200Q Out"};

void play(Session& session, bool song) {
    ASSERT_TRUE(loadProjectFile(EXAMPLES "/harbour_nights.mlp"));
    if (song) {
        SongSwitch(true);
        moveSongForward(9, true, true);
    }
    session.play(4, [] {});
}

class JackSession : public JackTest {};

TEST_F(JackSession, WhatIsHeardIsTheLogOfVirtualTime) {
    for (const bool song : {false, true}) {
        std::vector<Line> expected;
        {
            Session fast{SessionOptions{}};
            play(fast, song);
            expected = linesOf(fast.log.text());
        }
        Server server;
        Watcher watcher;
        Session session(kLive);
        ASSERT_TRUE(session.error().empty()) << session.error();
        ASSERT_TRUE(watcher.connect(kOut, "watcher:in"));
        session.runEvents(100);
        play(session, song);
        test::sleepMs(200);
        int first = 0; // before it, loading and the start send what a new project has
        while (first < watcher.count && watcher.events[first].message.bytes[0] < 0xF0) ++first;
        ASSERT_GT(expected.size(), 100U);
        int late = 0;
        for (int i = 0; i < static_cast<int>(expected.size()); ++i) {
            ASSERT_LT(first + i, watcher.count) << "heard too little; missing " << expected[i].bytes;
            const auto& event = watcher.events[first + i];
            ASSERT_EQ(hexText(event.message), expected[i].bytes) << "message " << i << " of the run";
            if (expected[i].us > expected.back().us - 1000) continue; // the stop comes when it comes
            const long long heard = (event.frame - watcher.events[first].frame) * 1000000 / kRate;
            const long long off = std::llabs(heard - (expected[i].us - expected[0].us));
            late += off > 1000000 / kRate ? 1 : 0;
        }
        EXPECT_LT(late, static_cast<int>(expected.size()) / 10);
    }
}

TEST_F(JackSession, WhatIsPlayedReachesTheProjectAndAFloodLosesNoNoteAndNoTime) {
    Server server;
    Watcher watcher;
    Session session(kLive);
    ASSERT_TRUE(watcher.connect("watcher:out", "Marlune 200Q:Marlune 200Q In"));
    ASSERT_TRUE(watcher.connect(kOut, "watcher:in"));
    const auto sendKeyAndKnob = [&](int key) {
        for (const int note : {36 + 4, 60 + key}) watcher.send(0x90, note, 100); // step 5 and its key
        for (int value = 0; value <= 80 + key; ++value) watcher.send(0xB0, 12, value);
        session.runEvents(500);
        EXPECT_EQ(project.bass[0].patterns[0][0].steps[4].note, key);
        EXPECT_EQ(project.knobValue[0], 80 + key);
    };
    sendKeyAndKnob(7);
    playButton(); // and the same through the ticks
    sendKeyAndKnob(9);
    watcher.count = 0;
    // What a note does is counted where it ends: each selects another step of 103B.
    int notes = 0;
    int step = project.bass[1].selStep;
    watcher.floodPerCycle = 20000 * kPeriod / kRate + 1;
    int slowest = 0;
    const CStopWatch watch;
    while (watch.Elapsed() < 10000) {
        const CStopWatch turn;
        session.runEvents(5);
        slowest = std::max(slowest, turn.Elapsed());
        const int now = project.bass[1].selStep;
        notes += (now - step + 16) % 16;
        step = now;
    }
    watcher.floodPerCycle = 0;
    session.runEvents(500);
    notes += (project.bass[1].selStep - step + 16) % 16;
    EXPECT_EQ(notes, watcher.notesSent);
    EXPECT_GT(watcher.notesSent, 100);
    EXPECT_LT(slowest, 100);
    // The clock went on evenly meanwhile.
    std::int64_t before = -1;
    std::int64_t widest = 0;
    for (int i = 0; i < watcher.count; ++i) {
        if (watcher.events[i].message.bytes[0] != 0xF8) continue;
        if (before >= 0) widest = std::max(widest, watcher.events[i].frame - before);
        before = watcher.events[i].frame;
    }
    const std::int64_t period = std::int64_t{kRate} * 60 / 24 / 140;
    EXPECT_GE(widest, period);
    EXPECT_LE(widest, period + kRate / 1000);
    playButton();
    SongSwitch(true);
    recButton_Click();
    playButton(); // and what is turned is recorded into the song
    session.runEvents(300);
    for (int value = 0; value <= 50; ++value) watcher.send(0xB0, 14, value);
    session.runEvents(700);
    const int until = songPosition->songTick;
    playButton();
    ASSERT_GT(until, 3);
    EXPECT_EQ(knobTrack[2][until - 1], 50);
    EXPECT_EQ(knobTrack[2][until + 5], 0);
}

} // namespace
} // namespace marlune
