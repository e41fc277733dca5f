#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <random>

#include "engine/engine_runner.h"
#include "engine/engine_script.h"

namespace marlune::test {
namespace {

struct SteadyClock final : PlayClock {
    std::int64_t nowNs() noexcept override {
        return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
    }
};

struct HandClock final : PlayClock {
    std::int64_t nowNs() noexcept override { return now.load(); }
    std::atomic<std::int64_t> now{0};
};

void rest(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

struct LivePlayer {
    LivePlayer() { setEngineComponent(&engine); }
    ~LivePlayer() { setEngineComponent(nullptr); }
    void waitForHalt() {
        while (!engine.halted()) rest(2);
    }
    SteadyClock clock;
    MemoryDevices devices;
    Recorder wire;
    Engine engine{clock, devices, &wire};
};

// A piece of music with everything in it, 24 steps of 15 ms.
void startPiece(PlaybackEngine& engine) {
    setPanel();
    setBass(0, 0, "C C- E^! G_ A#");
    setBass(0, 1, "D D- F");
    setBass(1, 0, "E- G B!");
    Set103Patch32(0, 0, 1, 4);
    setDrums(0, "0 2 17 23 - 6");
    DefineController32(0, 12);
    PrepareController32(0, 55);
    SetNextPatt32(0, 1);
    SetSyncOffset32(2);
    engine.limitSteps(24);
    SetMarluneTempo32(1000);
    StartMarluneTimer32(1, 0);
}

TEST(LiveEngine, SendsWhatTheVirtualOneSendsMessageForMessage) {
    Player still;
    startPiece(still.engine);
    while (still.engine.advance()) {}
    StopMarluneTimer32();
    LivePlayer live;
    OpenMidiPort32(0);
    startPiece(live.engine);
    live.waitForHalt();
    StopMarluneTimer32();

    ASSERT_EQ(live.wire.log.size(), still.wire.log.size());
    bool playing = false;
    for (std::size_t i = 0; i < live.wire.log.size(); ++i) {
        const Sent& a = live.wire.log[i];
        const Sent& b = still.wire.log[i];
        ASSERT_EQ(text(a.message), text(b.message)) << i;
        ASSERT_EQ(a.role, b.role) << i;
        playing |= text(a.message) == "FA";
        // What the stop itself sends has no ideal time; the halt lasted as long as it lasted.
        if (playing && b.ns < 23 * 15'000'000) {
            ASSERT_EQ(a.ns, b.ns) << i << ' ' << text(a.message);
        }
    }
    EXPECT_GT(live.wire.log.size(), 400U);
}

TEST(LiveEngine, HammeredWhilePlayingItLosesNoCallAndNoTick) {
    LivePlayer live;
    OpenMidiPort32(0);
    OpenSyncPort32(0);
    ProjectRecord record = emptyRecord();
    std::mt19937 random(3);
    const auto pick = [&random](int count) { return static_cast<int>(random() % count); };
    SetMarluneTempo32(1000);
    StartMarluneTimer32(1, 0);
    int ticks = 0;
    for (int n = 0; n < 40'000; ++n) {
        const int module = pick(2);
        const int patt = pick(8);
        const int step = pick(16);
        const int note = pick(13);
        Set103Note32(module, 0, patt, step, note);
        Set103NoteOn32(module, 0, patt, step, -1);
        Set109bOn32(0, patt, step, note % 7, 1);
        record.bass[module].patterns[0][patt].steps[step].note = note;
        record.bass[module].patterns[0][patt].steps[step].noteOn = true;
        record.drum.patterns[0][patt].drumOn[step][note % 7] = kDrumHit;
        SetNextPatt32(pick(3), patt);
        if (n % 100 == 0) Set103Chan32(module, step), SetController32(patt, note);
        if (n % 100 == 0) SetMarluneTempo32(800 + step), SetMarluneTimerInterval32(1, 0);
        if (n % 500 == 0) rest(5);
        for (EngineMessage m; live.engine.takeMessage(m);) {
            if (m.message != kTickMessage) continue;
            ASSERT_EQ(m.wParam, ticks);
            ++ticks;
        }
    }
    std::string difference;
    EXPECT_TRUE(live.engine.equalsRecord(record, &difference)) << difference;
    StopMarluneTimer32();
    EngineMessage late;
    EXPECT_FALSE(live.engine.takeMessage(late));
    const std::size_t sent = live.wire.log.size();
    rest(60);
    EXPECT_FALSE(live.engine.takeMessage(late));
    EXPECT_EQ(live.wire.log.size(), sent);
    EXPECT_GT(ticks, 20);
    EXPECT_TRUE(Sounding(live.devices.ports[0].log).on.empty());
}

TEST(LiveEngine, MoreCallsThanTheRingHoldsArriveInOrder) {
    LivePlayer live;
    OpenMidiPort32(1);
    for (int n = 0; n < 50'000; ++n) SendShortMessage32(0xB0 + n % 16, n / 128 % 128, n % 128);
    CloseMidiPort32();
    const auto& log = live.devices.ports[1].log;
    ASSERT_EQ(log.size(), 50'000U);
    for (int n = 0; n < 50'000; ++n) {
        ASSERT_EQ(log[n].message.bytes[0], 0xB0 + n % 16);
        ASSERT_EQ(log[n].message.bytes[1] * 128 + log[n].message.bytes[2], n % 16384);
    }
}

TEST(LiveEngine, ClosingAndLeavingReleaseEveryNoteAsInVirtualTime) {
    for (const bool live : {true, false}) {
        MemoryDevices devices;
        SteadyClock clock;
        std::unique_ptr<PlaybackEngine> engine;
        if (live) {
            engine = std::make_unique<Engine>(clock, devices);
        } else {
            engine = std::make_unique<VirtualEngine>(&devices);
        }
        setEngineComponent(engine.get());
        EXPECT_EQ(OpenMidiPort32(7), 0);
        EXPECT_EQ(OpenMidiPort32(0), 1);
        EXPECT_EQ(OpenSyncPort32(0), 1);
        SendShortMessage32(0x93, 60, 90);
        SendShortMessage32(0x93, 64, 90);
        CloseMidiPort32();
        EXPECT_TRUE(Sounding(devices.ports[0].log).on.empty());
        EXPECT_EQ(devices.ports[0].log.size(), 4U);
        OpenMidiPort32(1);
        SendShortMessage32(0x90, 1, 1);
        StartMarluneTimer32(5, 0);
        setEngineComponent(nullptr);
        engine.reset();
        EXPECT_EQ(text(devices.ports[1].log.back().message), "off1");
        EXPECT_EQ(devices.ports[0].users + devices.ports[1].users, 0);
    }
}

TEST(LiveEngine, TheDescriptorWakesOnceForEachBatch) {
    LivePlayer live;
    const int window = eventfd(0, EFD_NONBLOCK);
    SetMarluneHwnd32(window);
    live.engine.limitSteps(8);
    SetMarluneTempo32(1000);
    StartMarluneTimer32(1, 0);
    live.waitForHalt();
    SetMarluneHwnd32(-1);
    std::uint64_t count = 0;
    ASSERT_EQ(read(window, &count, sizeof count), static_cast<ssize_t>(sizeof count));
    EXPECT_EQ(count, 8U + 1U); // the ticks, and the limit
    close(window);
}

TEST(LiveEngine, ALateWakeUpIsCaughtUpAtTheIdealTimesAndAStallIsNot) {
    HandClock clock;
    MemoryDevices devices;
    Recorder wire;
    Engine engine(clock, devices, &wire);
    setEngineComponent(&engine);
    OpenSyncPort32(0);
    SetMarluneTempo32(250); // periods of 10 ms
    StartMarluneTimer32(1, 0);
    const auto& log = devices.ports[0].log;
    const auto settle = [&engine] { engine.equalsRecord({}); }; // what is due is played before it returns
    clock.now = 25'000'000 + 99'000'000;
    settle();
    ASSERT_EQ(log.size(), 1U + 10U);
    for (int n = 0; n < 10; ++n) EXPECT_EQ(log[n + 1].ns, 25'000'000 + n * 10'000'000);
    clock.now = 60'000'000'000;
    settle();
    EXPECT_EQ(log.size(), 1U + 11U);
    EXPECT_EQ(log.back().ns, 60'000'000'000);
    StopMarluneTimer32();
    setEngineComponent(nullptr);
}

} // namespace
} // namespace marlune::test
