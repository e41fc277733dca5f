// The program before a real JACK server: what a second, independent client hears is what the program says it
// sends, and what it plays reaches the project.
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "cli/session.h"
#include "core/project_file.h"
#include "core/song_track.h"
#include "midi/global_config.h"
#include "midi/hex_text.h"
#include "midi/midi_input.h"
#include "panel/mode_switch.h"
#include "panel/panel_events.h"
#include "playback/song_moves.h"
#include "playback/transport.h"
#include "support/jack_peer.h"

namespace marlune {
namespace {

using test::JackTest;
using test::kPeriod;
using test::kRate;
using test::Server;
using test::Watcher;

constexpr const char* kOut = "Marlune 200Q:Marlune 200Q Out";
constexpr const char* kIn = "Marlune 200Q:Marlune 200Q In";

struct Line {
    long long us;
    std::string bytes;
};

// The lines of one role in a log.
std::vector<Line> linesOf(const std::string& log, const std::string& role) {
    std::vector<Line> lines;
    std::istringstream text(log);
    for (std::string line; std::getline(text, line);) {
        std::istringstream words(line);
        Line parsed;
        std::string found;
        words >> parsed.us >> found;
        std::getline(words >> std::ws, parsed.bytes);
        if (found == role) lines.push_back(parsed);
    }
    return lines;
}

SessionOptions liveOptions() {
    SessionOptions options;
    options.live = true;
    options.configFolder = EXAMPLES "/starter";
    options.device = "Marlune 200Q Out";
    return options;
}

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
        std::string fastLog;
        {
            Session fast{SessionOptions{}};
            play(fast, song);
            fastLog = fast.log.text();
        }
        const auto expected = linesOf(fastLog, "seq");
        Server server;
        Watcher watcher;
        Session session(liveOptions());
        ASSERT_TRUE(session.error().empty()) << session.error();
        ASSERT_TRUE(watcher.connect(kOut, "watcher:in"));
        session.runEvents(100);
        play(session, song);
        test::sleepMs(200);
        // Loading and the start send what a new project has; the run itself begins with Start or the
        // position.
        int first = 0;
        while (first < watcher.count && watcher.events[first].message.bytes[0] != 0xFA &&
               watcher.events[first].message.bytes[0] != 0xF2) {
            ++first;
        }
        std::size_t begin = 0;
        while (begin < expected.size() && expected[begin].bytes[0] != 'f') ++begin;
        int late = 0;
        long long worst = 0;
        for (std::size_t i = begin; i < expected.size(); ++i) {
            const int at = first + static_cast<int>(i - begin);
            ASSERT_LT(at, watcher.count) << "heard too little; missing " << expected[i].bytes;
            const auto& event = watcher.events[at];
            ASSERT_EQ(hexText(event.message), expected[i].bytes) << "message " << i - begin << " of the run";
            if (expected[i].us > expected.back().us - 1000) continue; // the stop comes when it comes
            const long long heard = (event.frame - watcher.events[first].frame) * 1000000 / kRate;
            const long long off = std::llabs(heard - (expected[i].us - expected[begin].us));
            worst = std::max(worst, off);
            late += off > 1000000 / kRate ? 1 : 0;
        }
        std::printf("  %zu messages, worst distance from their frame %lld us, %d off\n",
                    expected.size() - begin, worst, late);
        EXPECT_LT(late, static_cast<int>(expected.size()) / 10);
    }
}

TEST_F(JackSession, RemoteControlReachesTheProjectInEveryState) {
    Server server;
    Watcher watcher;
    Session session(liveOptions());
    ASSERT_TRUE(watcher.connect("watcher:out", kIn));
    const auto sweep = [&](int controller, int last) {
        for (int value = 0; value <= last; ++value) watcher.send(0xB0, controller, value);
        session.runEvents(300);
    };
    const auto runToTick = [&](int tick) { // a busy machine takes its time
        for (int turn = 0; turn < 200 && songTick < tick; ++turn) session.runEvents(50);
    };
    watcher.send(0x90, 36 + 4, 100); // stopped: step 5, key 7
    watcher.send(0x90, 60 + 7, 100);
    watcher.send(0x99, 36 + 2, 100);
    sweep(12, 90);
    EXPECT_EQ(project.bass[0].patterns[0][0].steps[4].note, 7);
    EXPECT_EQ(project.drum.patterns[0][0].drumOn[2][0], 255);
    EXPECT_EQ(project.knobValue[0], 90);
    playButton(); // running: the same through the ticks
    watcher.send(0x91, 36 + 9, 100);
    watcher.send(0x91, 60 + 2, 100);
    sweep(13, 77);
    EXPECT_EQ(project.bass[1].patterns[0][0].steps[9].note, 2);
    EXPECT_EQ(project.knobValue[1], 77);
    playButton();
    SongSwitch(true);
    recButton_Click();
    playButton(); // and recorded into the song
    runToTick(2);
    sweep(14, 50);
    runToTick(songTick + 3);
    const int until = songTick;
    playButton();
    EXPECT_GT(until, 3);
    EXPECT_EQ(knobTrack[2][until - 1], 50);
    EXPECT_EQ(knobTrack[2][until + 5], 0);
}

TEST_F(JackSession, AFloodOfControllersLosesNoNoteAndNoTime) {
    Server server;
    Watcher watcher;
    Session session(liveOptions());
    ASSERT_TRUE(watcher.connect("watcher:out", kIn));
    ASSERT_TRUE(watcher.connect(kOut, "watcher:in"));
    playButton();
    session.runEvents(500);
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
    std::printf("  %d notes in %d ms of flood, slowest turn of the event loop %d ms\n", notes,
                watch.Elapsed(), slowest);
    EXPECT_LT(slowest, 100);
    // The clock went on evenly meanwhile.
    std::int64_t before = -1;
    std::int64_t widest = 0;
    int clocks = 0;
    for (int i = 0; i < watcher.count; ++i) {
        if (watcher.events[i].message.bytes[0] != 0xF8) continue;
        if (before >= 0) widest = std::max(widest, watcher.events[i].frame - before);
        before = watcher.events[i].frame;
        ++clocks;
    }
    const std::int64_t period = std::int64_t{kRate} * 60 / 24 / 140;
    std::printf("  %d clocks, widest gap %lld frames where %lld are right\n", clocks,
                static_cast<long long>(widest), static_cast<long long>(period));
    EXPECT_LE(widest, period + kRate / 1000);
    playButton();
}

} // namespace
} // namespace marlune
