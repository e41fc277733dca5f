#include <gtest/gtest.h>

#include "engine/engine_script.h"

namespace marlune::test {
namespace {

constexpr std::int64_t kSixteenthNs = 15'000'000'000; // at one beat a minute

TEST(EngineTime, EveryTempoKeepsItsPlaceForTenMinutes) {
    for (int tempo = kMinTempo; tempo <= kMaxTempo; ++tempo) {
        Player player;
        SetMarluneTempo32(tempo);
        StartMarluneTimer32(1, 0);
        const int steps = tempo * 4 * 10;
        player.periods(1 + steps * kPeriodsPerStep);
        ASSERT_EQ(player.engine.nowNs() - 25'000'000, steps * kSixteenthNs / tempo) << tempo;
    }
}

TEST(EngineTime, ATempoServesOneStartOrChangeAndMillisecondsHoldWithoutIt) {
    Player player;
    std::int64_t now = 25'000'000 - 17'000'000;
    const auto passed = [&](int periods) {
        player.periods(periods);
        return player.engine.nowNs() - std::exchange(now, player.engine.nowNs());
    };
    StartMarluneTimer32(17, 0);
    EXPECT_EQ(passed(7), 7 * 17'000'000);
    SetMarluneTempo32(140);
    EXPECT_EQ(passed(1), 17'000'000); // waits for the change of rate
    SetMarluneTimerInterval32(17, 0);
    EXPECT_EQ(passed(60), 10 * kSixteenthNs / 140);
    SetMarluneTimerInterval32(10, 0); // the tempo was used up
    EXPECT_EQ(passed(3), 30'000'000);
    SetMarluneTempo32(-5); // none
    SetMarluneTimerInterval32(20, 0);
    EXPECT_EQ(passed(4), 80'000'000);
}

TEST(EngineTime, AHeldStartWaitsAndCountsFromItsRelease) {
    Player player;
    HoldTicks32(-1);
    StartMarluneTimer32(20, 0);
    EXPECT_FALSE(player.engine.advance());
    HoldTicks32(0);
    EXPECT_TRUE(player.engine.advance());
    EXPECT_EQ(player.engine.nowNs(), 25'000'000);
    HoldTicks32(-1); // too late for this start
    EXPECT_TRUE(player.engine.advance());
    StopMarluneTimer32();
    StartMarluneTimer32(20, 0);
    HoldTicks32(0);
    EXPECT_TRUE(player.engine.advance());
    EXPECT_EQ(player.engine.nowNs(), 45'000'000 + 25'000'000);
}

TEST(EngineTime, TheLogCountsFromTheFirstStep) {
    Player player;
    setBass(0, 0, "C");
    SetSyncOffset32(3);
    player.wire.log.clear();
    SendShortMessage32(0xB0, 7, 1);
    SetMarluneTempo32(125); // periods of 20 ms
    StartMarluneTimer32(1, 0);
    SendShortMessage32(0xB0, 7, 2);
    player.periods(5);
    SendShortMessage32(0xB0, 7, 3);
    std::string times;
    for (const Sent& s : player.wire.log) {
        if (s.role == Role::seq) times += text(s.message) + '@' + std::to_string(s.ns / 1'000'000) + ' ';
    }
    EXPECT_EQ(times, "cc7=1@-25 cc7=2@-85 FA@-60 F8@-60 F8@-40 F8@-20 F8@0 on36@0 F8@20 cc7=3@20 ");
}

TEST(EngineTime, ALimitHaltsTheTimerAfterWholeSteps) {
    for (const int offset : {-2, 0, 2}) {
        Player player;
        setBass(0, 0, "C");
        SetSyncOffset32(offset);
        player.engine.limitSteps(3);
        StartMarluneTimer32(20, 0);
        int periods = 0;
        while (player.engine.advance()) ++periods;
        EXPECT_EQ(periods, 18 + std::max(offset, 0));
        EXPECT_TRUE(player.engine.halted());
        EXPECT_EQ(player.wire.take(Role::seq, false), "on36 on36 on36"); // nothing is released
        EXPECT_EQ(player.messages(), "t0:0,0,0 t1:0,1,1 t2:0,2,2");
        StartMarluneTimer32(20, 0);
        EXPECT_TRUE(player.engine.advance());
    }
}

} // namespace
} // namespace marlune::test
