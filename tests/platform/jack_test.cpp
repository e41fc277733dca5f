// Our JACK client before a real server that plays to nothing, watched by a second, independent client.
#include "platform/jack_client.h"

#include <gtest/gtest.h>

#include "platform/devices.h"
#include "platform/platform.h"
#include "platform/synth_core.h"
#include "support/counting_sink.h"
#include "support/jack_peer.h"

namespace marlune {
namespace {

using namespace test;

class Jack : public test::JackTest {
  protected:
    // Sends n note-ons at even distances, each well before its time: a busy machine then moves none.
    void play(OutputLink& port, int n, std::int64_t gap) {
        const std::int64_t start = clock.nowNs() + 50 * kMs;
        for (int i = 0; i < n; ++i) {
            while (clock.nowNs() < start + i * gap - 30 * kMs)
                std::this_thread::sleep_for(std::chrono::microseconds(200));
            port.send({3, {0x90, static_cast<std::uint8_t>(i % 128), 100}}, start + i * gap);
        }
    }
    static bool reach(JackClient& jack) {
        return waitFor(20, [&] { return sleepMs(100), jack.poll(), jack.online(); });
    }
    SystemPlayClock clock;
};

const char kOurs[] = "Marlune 200Q:Marlune 200Q Out";

TEST_F(Jack, EventsFallOnTheirFramesAndBurstsArriveWhole) {
    Server server;
    Watcher watcher;
    JackClient jack(clock);
    ASSERT_TRUE(reach(jack));
    ASSERT_TRUE(watcher.connect(kOurs, "watcher:in"));
    // Where the machine is too busy for a server, cycles fail and take events along; not three times in a
    // row.
    constexpr int kNotes = 100;
    int exact = 0;
    for (int attempt = 0; attempt < 3 && exact < kNotes - 1; ++attempt) {
        watcher.count = exact = 0;
        play(jack.virtualOutput(), kNotes, 17 * kMs);
        ASSERT_TRUE(waitFor(500, [&] { return watcher.count == kNotes; })) << watcher.count;
        for (int i = 1; i < kNotes; ++i)
            exact += watcher.events[i].frame - watcher.events[i - 1].frame == 816;
    }
    EXPECT_GE(exact, kNotes * 9 / 10);
    watcher.count = 0;
    constexpr int kBurst = 4096; // more than a cycle's buffer holds
    const std::int64_t now = clock.nowNs();
    for (int i = 0; i < kBurst; ++i)
        jack.virtualOutput().send(
            {3, {0xB0, static_cast<std::uint8_t>(i & 127), static_cast<std::uint8_t>(i >> 7)}}, now);
    ASSERT_TRUE(waitFor(2000, [&] { return watcher.count == kBurst; })) << watcher.count;
    for (int i = 0; i < kBurst; ++i)
        ASSERT_EQ(watcher.events[i].message.bytes[1] + 128 * watcher.events[i].message.bytes[2], i);
}

TEST_F(Jack, AServerThatDiesAndReturnsStopsNothing) {
    auto server = std::make_unique<Server>();
    auto watcher = std::make_unique<Watcher>();
    JackClient jack(clock);
    ASSERT_TRUE(reach(jack));
    std::atomic<bool> done{false};
    std::jthread engine([&] { // as the engine does, on a clock that never falls back or leaps
        for (std::int64_t last = clock.nowNs(); !done; sleepMs(1)) {
            const std::int64_t now = clock.nowNs();
            jack.virtualOutput().send({3, {0x90, 60, 100}}, now);
            EXPECT_GE(now, last);
            EXPECT_LT(now - last, 1000 * kMs);
            last = now;
        }
    });
    EXPECT_TRUE(watcher->connect(kOurs, "watcher:in"));
    EXPECT_TRUE(waitFor(500, [&] { return watcher->count > 10; }));
    server->kill();
    EXPECT_TRUE(waitFor(2000, [&] { return !jack.online(); }));
    watcher = nullptr; // the library crashes where one of two clients looks for a new server before
    jack.poll();
    server = std::make_unique<Server>();
    watcher = std::make_unique<Watcher>();
    EXPECT_TRUE(reach(jack));
    EXPECT_TRUE(watcher->connect(kOurs, "watcher:in"));
    EXPECT_TRUE(waitFor(500, [&] { return watcher->count > 10; }));
    done = true;
}

TEST_F(Jack, DevicesOfOtherClientsAreReachedAndHeard) {
    Server server;
    auto watcher = std::make_unique<Watcher>();
    JackClient jack(clock);
    ASSERT_TRUE(reach(jack));
    const DeviceWorld world{{&jack}, &clock, {}};
    SystemOutputs outputs(world, [] { return nullptr; }, {});
    SystemInputs inputs(world, {});
    ASSERT_EQ(outputs.count(), 3);
    EXPECT_EQ(outputs.name(2), "watcher:in");
    EXPECT_EQ(inputs.name(1), "watcher:out");
    CountingSink sink;
    OutputPort* port = outputs.open(2);
    ASSERT_NE(port, nullptr);
    ASSERT_TRUE(inputs.open(1, sink));
    sleepMs(100);
    port->send({3, {0x90, 60, 100}}, clock.nowNs());
    watcher->sendNow = true;
    EXPECT_TRUE(waitFor(500, [&] { return watcher->count == 1 && sink.count == 1; }));
    EXPECT_EQ(sink.note, 64);
    watcher = nullptr;
    std::vector<std::string> texts;
    outputs.poll(texts);
    inputs.poll(texts);
    EXPECT_EQ(outputs.name(2), "watcher:in (absent)");
    watcher = std::make_unique<Watcher>();
    outputs.poll(texts);
    inputs.poll(texts);
    EXPECT_EQ(texts.size(), 4U);
    EXPECT_TRUE(waitFor(500, [&] { return watcher->count == 1; })) << "the note is released";
    EXPECT_EQ(watcher->events[0].message.bytes[1], 60);
    inputs.close();
    watcher->sendNow = true;
    port->send({3, {0x90, 61, 100}}, clock.nowNs());
    outputs.close(port); // what was sent before still goes out
    EXPECT_TRUE(waitFor(500, [&] { return watcher->count == 2; }));
    EXPECT_EQ(sink.count, 1);
}

TEST_F(Jack, TheSynthesizerSoundsThereAndOutlivesTheServer) {
    if (findSoundFont().empty()) GTEST_SKIP() << "no sound font on this machine";
    testing::internal::CaptureStderr();
    auto server = std::make_unique<Server>();
    Platform platform({});
    OutputPort* port = platform.outputs().open(0);
    ASSERT_NE(port, nullptr);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(
            waitFor(20, [&] { return sleepMs(100), platform.poll(), platform.soundDriver() == "jack"; }));
        auto watcher = std::make_unique<Watcher>();
        EXPECT_TRUE(watcher->connect("Marlune 200Q:Synth left", "watcher:ear"));
        EXPECT_TRUE(waitFor(20, [&] {
            port->send({3, {0x90, 40, 120}}, platform.clock().nowNs());
            sleepMs(100);
            port->send({3, {0x90, 40, 0}}, platform.clock().nowNs());
            return watcher->heard.load();
        }));
        if (round == 1) break;
        server->kill();
        watcher = nullptr;
        waitFor(1000, [&] { return sleepMs(20), platform.poll(), platform.soundDriver() != "jack"; });
        EXPECT_EQ(platform.soundDriver(), "");
        server = std::make_unique<Server>();
    }
    platform.outputs().close(port);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace marlune
