// Our JACK client before a real server that plays to nothing, watched by a second, independent client.
#include "platform/jack_client.h"

#include <gtest/gtest.h>

#include "platform/devices.h"
#include "platform/platform.h"
#include "platform/synth_core.h"
#include "support/jack_peer.h"
#include "support/test_program.h"

namespace marlune {
namespace {

using namespace test;

class Jack : public test::JackTest {
  protected:
    static bool reach(JackClient& jack) {
        return waitFor([&] { return jack.poll(), jack.online(); });
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
    // All are sent well ahead, so that a busy machine moves none; where it stops the server for longer than
    // that, they come late, but not three times.
    constexpr int kNotes = 100;
    constexpr int kFrames = kRate * 3 / 1000;
    int exact = 0;
    for (int attempt = 0; attempt < 3 && exact < kNotes * 9 / 10; ++attempt) {
        watcher.count = exact = 0;
        const std::int64_t start = clock.nowNs() + 400 * kMs;
        for (int i = 0; i < kNotes; ++i) jack.virtualOutput().send(noteOn(0, i, 100), start + 3 * i * kMs);
        ASSERT_TRUE(waitFor([&] { return watcher.count == kNotes; })) << watcher.count;
        for (int i = 1; i < kNotes; ++i)
            exact += watcher.events[i].frame - watcher.events[i - 1].frame == kFrames;
    }
    EXPECT_GE(exact, kNotes * 9 / 10);
    watcher.count = 0;
    constexpr int kBurst = 4096; // more than a cycle's buffer holds
    const std::int64_t now = clock.nowNs();
    for (int i = 0; i < kBurst; ++i)
        jack.virtualOutput().send(midiBytes(kControlChange, i & 127, i >> 7), now);
    ASSERT_TRUE(waitFor([&] { return watcher.count == kBurst; })) << watcher.count;
    for (int i = 0; i < kBurst; ++i)
        ASSERT_EQ(watcher.events[i].message.bytes[1] + 128 * watcher.events[i].message.bytes[2], i);
}

TEST_F(Jack, DevicesOfOtherClientsAreReachedAndHeard) {
    Server server;
    auto watcher = std::make_unique<Watcher>();
    JackClient jack(clock);
    ASSERT_TRUE(reach(jack));
    const DeviceWorld world{{&jack}, &clock, {}};
    SystemOutputs outputs(world, [] { return nullptr; }, {});
    SystemInputs inputs(world, {});
    EXPECT_EQ(outputs.name(2) + " " + inputs.name(1), "watcher:in watcher:out");
    CountingSink sink;
    OutputPort* port = outputs.open(2);
    ASSERT_NE(port, nullptr);
    ASSERT_TRUE(inputs.open(1, sink));
    ASSERT_TRUE(watcher->pass(100));
    port->send(noteOn(0, 60, 100), clock.nowNs());
    watcher->send(0x91, 64, 99);
    EXPECT_TRUE(waitFor([&] { return watcher->count == 1 && sink.count == 1; }));
    EXPECT_EQ(sink.note, 64);
    std::vector<std::string> texts;
    const auto poll = [&] { return outputs.poll(texts) && inputs.poll(texts); };
    watcher = nullptr;
    EXPECT_TRUE(poll());
    EXPECT_EQ(outputs.name(2), "watcher:in (absent)");
    watcher = std::make_unique<Watcher>();
    EXPECT_TRUE(poll());
    EXPECT_EQ(texts.size(), 4U);
    EXPECT_TRUE(waitFor([&] { return watcher->count == 1; })) << "the note is released";
    EXPECT_EQ(watcher->events[0].message.bytes[1], 60);
    inputs.close();
    watcher->send(0x91, 64, 99);
    port->send(noteOn(0, 61, 100), clock.nowNs());
    outputs.close(port); // what was sent before still goes out
    EXPECT_TRUE(waitFor([&] { return watcher->count == 2; }));
    EXPECT_EQ(sink.count, 1);
}

TEST_F(Jack, AServerThatStandsStillHoldsNobodyUpAndIsFoundOnceItGoesOn) {
    Server server;
    server.signal(SIGSTOP);
    { const JackClient jack(clock); } // begins and ends
    JackClient jack(clock);
    jack.poll();
    EXPECT_FALSE(jack.online());
    server.signal(SIGCONT);
    EXPECT_TRUE(reach(jack));
}

TEST_F(Jack, AServerThatDiesAndReturnsStopsNeitherMidiNorSound) {
    if (findSoundFont().empty()) GTEST_SKIP() << "no sound font on this machine";
    testing::internal::CaptureStderr();
    auto server = std::make_unique<Server>();
    Platform platform({});
    OutputPort* const sound = platform.outputs().open(0);
    OutputPort* const midi = platform.outputs().open(1);
    std::atomic<bool> done{false};
    std::jthread engine([&] { // sends as the engine does, on a clock that never falls back or leaps
        for (std::int64_t last = platform.clock().nowNs(); !done; sleepMs(1)) {
            const std::int64_t now = platform.clock().nowNs();
            EXPECT_GE(now, last);
            EXPECT_LT(now - last, 1000 * kMs);
            midi->send(noteOn(0, 60, 100), now);
            if (now / (100 * kMs) > last / (100 * kMs)) sound->send(noteOn(0, 40, 120), now);
            last = now;
        }
    });
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(waitFor([&] { return platform.poll(), platform.soundDriver() == "jack"; }));
        auto watcher = std::make_unique<Watcher>();
        EXPECT_TRUE(watcher->connect(kOurs, "watcher:in"));
        EXPECT_TRUE(watcher->connect("Marlune 200Q:Synth left", "watcher:ear"));
        EXPECT_TRUE(waitFor([&] { return watcher->heard && watcher->count > 10; }));
        if (round == 1) break;
        server->kill();
        watcher = nullptr; // the library crashes where one of two clients looks for a new server before
        EXPECT_TRUE(waitFor([&] { return platform.poll(), platform.soundDriver().empty(); }));
        server = std::make_unique<Server>();
    }
    done = true;
    engine.join();
    for (OutputPort* port : {sound, midi}) platform.outputs().close(port);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace marlune
