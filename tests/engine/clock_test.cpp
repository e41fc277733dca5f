#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "boundary/midi_bytes.h"
#include "engine/engine_script.h"
#include "engine/midi_clock.h"

namespace marlune::test {
namespace {

constexpr std::int64_t kMs = 1'000'000;

// A master whose clock bytes arrive with a uniform jitter, and the engine that follows them.
struct Followed : MemoryDevices, Player {
    Followed() : Player(this) {
        OpenMidiPort32(0);
        engine.offerClock(ClockKind::midi, &clock);
        SetClock32(indexOf(ClockKind::midi));
        setBass(0, 0, "C");
    }
    void send(int status, int data1 = 0, int data2 = 0) {
        clock.push(0, midiBytes(status, data1, data2), engine.nowNs());
        engine.playUntil(engine.nowNs());
    }
    // Clocks at a tempo that may change with their number; jitter: +-ms. Their true times go into sent.
    void clocks(int count, const std::function<double(int)>& tempo, double jitter = 0) {
        const double start = std::max<double>(static_cast<double>(engine.nowNs()) + 5e6, next);
        double ideal = start;
        for (int i = 0; i < count; ideal += 2.5e9 / tempo(i++)) {
            sent.push_back(ideal);
            const auto when =
                static_cast<std::int64_t>(ideal + jitter * 1e6 * (2.0 * dice(100'001) / 100'000 - 1));
            engine.playUntil(std::max(when, engine.nowNs()));
            send(kTimingClock);
        }
        next = ideal;
    }
    void clocks(int count, double tempo, double jitter = 0) {
        clocks(
            count, [tempo](int) { return tempo; }, jitter);
    }
    // Distance of the steps played from their clocks, ms, for the steps from..to.
    std::vector<double> apart(std::size_t from, std::size_t to) {
        std::vector<double> all;
        for (const Sent& s : ports[0].log)
            if (const std::size_t i = 6 * all.size(); text(s.message) == "on36" && i < sent.size())
                all.push_back((static_cast<double>(s.ns) - sent[i]) / 1e6);
        EXPECT_GE(all.size(), to);
        return {all.begin() + static_cast<long>(from), all.begin() + static_cast<long>(to)};
    }
    double worst(std::size_t from, std::size_t to) {
        double most = 0;
        for (const double each : apart(from, to)) most = std::max(most, std::abs(each));
        return most;
    }
    // Ticks since the last time, -1 unless they came one after the other.
    int steps() {
        int count = 0;
        bool whole = true;
        for (EngineMessage m; engine.takeMessage(m);)
            if (m.message == kTickMessage) whole = whole && m.wParam == tick++ % 16, ++count;
        return whole ? count : -1;
    }
    std::string wishes() {
        std::string line;
        for (EngineMessage m; engine.takeMessage(m);)
            if (m.message == kClockMessage) line += "?SPL"[m.wParam] + std::to_string(m.lParam) + ' ';
        return line;
    }
    int tick = 0;
    MidiClock clock;
    Dice dice;
    std::vector<double> sent;
    double next = 0;
};

TEST(FollowedClock, LocksWithinABeatAndLeavesATenthOfTheJitter) {
    for (const double tempo : {60.0, 120.0, 175.5, 240.0}) {
        Followed player;
        player.send(kClockStart);
        StartMarluneTimer32(20, 0);
        const int clocks = static_cast<int>(tempo * 24 * 3);
        player.clocks(clocks, tempo, 3);
        EXPECT_LT(player.worst(0, 4), 9)
            << tempo; // the first step sounds with the first clock, wherever that is
        EXPECT_LT(player.worst(4, 40), 3) << tempo;
        double squares = 0;
        const std::vector<double> late = player.apart(clocks / 12, clocks / 6);
        for (const double each : late) squares += each * each / static_cast<double>(late.size());
        EXPECT_LT(std::sqrt(squares), 3 / std::sqrt(3.0) / 10) << tempo;
        EXPECT_NEAR(player.clock.sight().tempo, tempo, tempo * 0.001);
        EXPECT_TRUE(player.clock.sight().locked);
        EXPECT_EQ(player.steps(), clocks / 6);
    }
}

TEST(FollowedClock, NoTempoCurveLosesOrDoublesAStep) {
    const std::function<double(int)> curves[] = {
        [](int i) { return 120 * std::pow(1.1, i / 96.0); },
        [](int i) { return 200 * std::pow(0.9, i / 96.0); },
        [](int i) { return i < 500 ? 90.0 : 180.0; },
        [](int i) { return 110 + 40 * std::sin(i / 40.0); },
    };
    for (const auto& curve : curves) {
        for (const double jitter : {0.0, 3.0}) {
            Followed player;
            player.send(kClockStart);
            StartMarluneTimer32(20, 0);
            player.clocks(600, curve, jitter);
            EXPECT_LT(player.worst(4, 80), 14 + 2 * jitter) << &curve - curves << ' ' << jitter;
            player.engine.playUntil(player.engine.nowNs() + 5000 * kMs); // at most two clocks ahead
            EXPECT_EQ(player.steps(), 101);
        }
    }
}

TEST(FollowedClock, AClockThatStopsIsWaitedForAndNoStepIsLost) {
    Followed player;
    player.send(kClockStart);
    StartMarluneTimer32(20, 0);
    player.clocks(61, 120);
    player.engine.playUntil(player.engine.nowNs() + 60'000 * kMs);
    EXPECT_FALSE(player.clock.sight().locked);
    player.clocks(61, 97);
    player.engine.playUntil(player.engine.nowNs() + 10'000 * kMs);
    EXPECT_EQ(player.steps(), 21); // 122 clocks, and neither of the two ahead begins one
}

TEST(FollowedClock, WhatTheMasterWishesAndWhereItBegins) {
    Followed player;
    player.send(kSongPosition, 5, 1); // within a bar: 133 sixteenths
    player.send(kClockContinue);
    EXPECT_EQ(player.wishes(), "L144 S144 ");
    StartMarluneTimer32(20, 0);
    player.clocks(11 * 6, 120);
    EXPECT_EQ(player.wire.take(Role::seq, false), ""); // the bar line is still to come
    player.clocks(1, 120);
    player.engine.playUntil(player.engine.nowNs() + 1);
    EXPECT_EQ(player.wire.take(Role::seq, false), "on36");
    player.send(kSongPosition, 0, 0); // not while it runs
    player.send(kClockStop);
    player.send(kClockStop);
    EXPECT_EQ(player.wishes(), "P160 ");
    StopMarluneTimer32();
    player.clocks(7, 120); // go on while stopped, and count for nothing
    player.send(kClockContinue);
    EXPECT_EQ(player.wishes(), "S160 ");
    player.send(kClockStop);
    player.send(kClockStart);
    EXPECT_EQ(player.wishes(), "P160 S0 ");
}

TEST(FollowedClock, AChangeOfTheSourceKeepsEveryStep) {
    Followed player;
    player.send(kClockStart);
    EXPECT_EQ(player.wishes(), "S0 ");
    StartMarluneTimer32(20, 0);
    player.clocks(50, 120);
    SetClock32(0);
    player.periods(41);
    SetClock32(indexOf(ClockKind::midi)); // joins at the same place of the master's bar
    player.clocks(96, 130, 1);
    player.clocks(96, 130, 1);
    EXPECT_GT(player.steps(), 35);
}

// A source with a grid of its own: periods of 20 ms from an origin that the test moves.
struct Grid final : ClockSource {
    void place(std::int64_t n, std::int64_t ns) noexcept override {
        std::int64_t at = (ns - origin + 20 * kMs - 1) / (20 * kMs);
        at += ((n - at) % 96 + 96) % 96;
        base = at - n;
    }
    std::int64_t timeOf(std::int64_t n) const noexcept override {
        return stands ? kNever : origin + (base + n) * 20 * kMs;
    }
    void runs(bool on) noexcept override { running += on ? "+" : "-"; }
    std::int64_t origin = 0, base = 0;
    bool stands = false;
    std::string running;
};

TEST(FollowedClock, AJumpOfItsTimeIsWaitedOut) {
    Followed player;
    Grid grid;
    player.engine.offerClock(ClockKind::link, &grid);
    SetClock32(indexOf(ClockKind::link));
    SetClockOffset32(5000); // five milliseconds later
    StartMarluneTimer32(20, 0);
    player.engine.playUntil(1000 * kMs);
    for (const int jump : {500, -700, 33, 10'000, -10'000}) {
        grid.origin += jump * kMs;
        player.engine.playUntil(player.engine.nowNs() + 3000 * kMs);
    }
    grid.stands = true;
    player.engine.playUntil(player.engine.nowNs() + 3000 * kMs);
    grid.stands = false;
    player.engine.playUntil(player.engine.nowNs() + 3000 * kMs);
    EXPECT_GT(player.steps(), 100);
    // Bars begin where the source has them, 5 ms later.
    std::int64_t last = 0;
    int step = 0;
    for (const Sent& s : player.ports[0].log)
        if (text(s.message) == "on36" && step++ % 16 == 0) last = s.ns;
    EXPECT_EQ((last - grid.origin) % (96 * 20 * kMs), 5 * kMs);
    StopMarluneTimer32();
    EXPECT_EQ(grid.running, "+-");
}

} // namespace
} // namespace marlune::test
