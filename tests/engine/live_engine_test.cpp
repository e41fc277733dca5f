#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <chrono>
#include <memory>

#include "engine/engine_runner.h"
#include "engine/engine_script.h"

namespace marlune::test {
namespace {

void rest(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

// The machine's, or where the test's hand puts it.
struct TestClock final : PlayClock {
    std::int64_t nowNs() noexcept override {
        rest(stallMs.exchange(0));
        const auto steady = std::chrono::steady_clock::now().time_since_epoch();
        return hand >= 0 ? hand.load() : steady / std::chrono::nanoseconds(1);
    }
    std::atomic<std::int64_t> hand{-1};
    std::atomic<int> stallMs{0}; // the next look at the clock takes that long
};

struct LivePlayer {
    LivePlayer() { setEngineComponent(&engine); }
    ~LivePlayer() { setEngineComponent(nullptr); }
    TestClock clock;
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

// A line each; the time only where it is ideal, which that of a stop is not.
std::vector<std::string> told(const Recorder& wire) {
    std::vector<std::string> lines;
    for (const Sent& s : wire.log) {
        lines.push_back(text(s.message) + (s.role == Role::sync ? " sync " : " seq ") +
                        (s.ns < 23 * 15'000'000 ? std::to_string(s.ns) : ""));
    }
    return lines;
}

TEST(LiveEngine, SendsWhatTheVirtualOneSendsMessageForMessage) {
    Player still;
    startPiece(still.engine);
    while (still.engine.advance()) {}
    StopMarluneTimer32();
    LivePlayer live;
    OpenMidiPort32(0);
    const int window = eventfd(0, EFD_NONBLOCK);
    SetMarluneHwnd32(window);
    startPiece(live.engine);
    while (!live.engine.halted()) rest(2);
    StopMarluneTimer32();
    EXPECT_GT(live.wire.log.size(), 400U);
    EXPECT_THAT(told(live.wire), testing::ElementsAreArray(told(still.wire)));
    SetMarluneHwnd32(-1);
    std::uint64_t wakeUps = 0;
    ASSERT_EQ(read(window, &wakeUps, sizeof wakeUps), static_cast<ssize_t>(sizeof wakeUps));
    EXPECT_EQ(wakeUps, 24U + 1U); // one for what each step has to say, and the limit
    close(window);
}

TEST(LiveEngine, HammeredWhilePlayingItLosesNoCallAndNoTick) {
    LivePlayer live;
    OpenMidiPort32(0);
    OpenSyncPort32(0);
    ProjectRecord record = emptyRecord();
    Dice dice;
    SetMarluneTempo32(1000);
    StartMarluneTimer32(1, 0);
    int ticks = 0;
    for (int n = 0; n < 40'000; ++n) {
        const int module = dice(2), patt = dice(8), step = dice(16), note = dice(13);
        Set103Note32(module, 0, patt, step, note);
        Set103NoteOn32(module, 0, patt, step, -1);
        Set109bOn32(0, patt, step, note % 7, 1);
        record.bass[module].patterns[0][patt].steps[step].note = note;
        record.bass[module].patterns[0][patt].steps[step].noteOn = true;
        record.drum.patterns[0][patt].drumOn[step][note % 7] = kDrumHit;
        SetNextPatt32(dice(3), patt);
        if (n % 100 == 0) Set103Chan32(module, step), SetController32(patt, note);
        if (n % 100 == 0) SetMarluneTempo32(800 + step), SetMarluneTimerInterval32(1, 0);
        if (n % 500 == 0) rest(5);
        for (EngineMessage m; live.engine.takeMessage(m);) {
            if (m.message != kTickMessage) continue;
            ASSERT_EQ(m.wParam, ticks++ % 16); // round the bar of pattern mode
        }
    }
    std::string difference;
    EXPECT_TRUE(live.engine.equalsRecord(record, &difference)) << difference;
    rest(20);
    StopMarluneTimer32();
    const std::size_t sent = live.wire.log.size();
    EngineMessage late;
    rest(60);
    EXPECT_FALSE(live.engine.takeMessage(late));
    EXPECT_EQ(live.wire.log.size(), sent);
    EXPECT_GT(ticks, 20);
    EXPECT_TRUE(Sounding(live.devices.ports[0].log).on.empty());
}

TEST(LiveEngine, MoreCallsThanTheRingHoldsArriveInOrder) {
    LivePlayer live;
    OpenMidiPort32(1);
    live.clock.stallMs = 200; // of the engine's thread
    for (int n = 0; n < 50'000; ++n) SendShortMessage32(0xB0, n / 128 % 128, n % 128);
    CloseMidiPort32();
    const auto& log = live.devices.ports[1].log;
    ASSERT_EQ(log.size(), 50'000U);
    for (int n = 0; n < 50'000; ++n) {
        ASSERT_EQ(log[n].message.bytes[1] * 128 + log[n].message.bytes[2], n % 16384);
    }
}

TEST(LiveEngine, ClosingAndLeavingReleaseEveryNoteAsInVirtualTime) {
    for (const bool live : {true, false}) {
        MemoryDevices devices;
        TestClock clock;
        std::unique_ptr<PlaybackEngine> engine = std::make_unique<VirtualEngine>(&devices);
        if (live) engine = std::make_unique<Engine>(clock, devices);
        setEngineComponent(engine.get());
        EXPECT_EQ(OpenMidiPort32(7), 0);
        EXPECT_EQ(OpenMidiPort32(0), 1);
        EXPECT_EQ(OpenSyncPort32(0), 1);
        SendShortMessage32(0x93, 60, 90);
        SendShortMessage32(0x93, 64, 90);
        CloseMidiPort32();
        EXPECT_EQ(devices.ports[0].take(Role::seq, true), "3:on60@90 3:on64@90 3:off60 3:off64");
        OpenMidiPort32(1);
        SendShortMessage32(0x90, 1, 1);
        StartMarluneTimer32(5, 0);
        setEngineComponent(nullptr);
        engine.reset();
        EXPECT_EQ(text(devices.ports[1].log.back().message), "off1");
        EXPECT_EQ(devices.ports[0].users + devices.ports[1].users, 0);
    }
}

TEST(LiveEngine, ALateWakeUpIsCaughtUpAStallIsSkippedInPhaseAndASleepGoesOnWhereItWas) {
    LivePlayer live;
    live.clock.hand = 0;
    setPanel();
    setBass(0, 0, "C D E F G A B");
    DefineController32(0, 12);
    SetMarluneTempo32(250); // periods of 10 ms, the first after 25
    StartMarluneTimer32(1, 0);
    const auto until = [&](int ms) {
        live.clock.hand = (25 + ms) * std::int64_t{1'000'000};
        live.engine.settle(); // what is due is played before it returns
        std::string line;
        for (const Sent& s : std::exchange(live.wire.log, {}))
            if (s.role == Role::seq) line += text(s.message) + '@' + std::to_string(s.ns / 1'000'000) + ' ';
        live.wire.log.reserve(1000);
        return line + messages(live.engine);
    };
    EXPECT_EQ(until(49), "FA@0 F8@0 on36@0 F8@10 F8@20 F8@30 F8@40 t0:0,0,0");
    PrepareController32(0, 55);
    live.engine.settle(); // the call is carried out before time goes on
    EXPECT_EQ(until(335), "off36@335 FC@335 cc12=55@335 t1:1,1,1 t2:2,2,2 t3:3,3,3 t4:4,4,4 t5:5,5,5");
    EXPECT_EQ(until(371), "spp6@360 FB@360 F8@360 off45@360 on47@360 F8@370 t6:6,6,6");
    EXPECT_EQ(until(60'000), "off47@380 F8@380 "); // the log's time has stood still
    EXPECT_EQ(until(60'049), "F8@390 F8@400 F8@410 F8@420 off47@420 on36@420 t7:0,7,7");
}

TEST(LiveEngine, ALateStartLosesNothing) {
    LivePlayer live;
    live.clock.hand = 0;
    setPanel();
    setBass(0, 0, "C D");
    StartMarluneTimer32(10, 0);
    live.clock.hand = 300'000'000;
    live.engine.settle();
    EXPECT_EQ(live.wire.take(Role::seq, true), "FA F8 on36");
    EXPECT_EQ(messages(live.engine), "t0:0,0,0");
}

// The policy and priority that the engine's thread has while it sends.
struct PriorityPort final : OutputPort {
    void send(const MidiMessage& /*message*/, std::int64_t /*due*/) noexcept override {
        sched_param parameters{};
        int policy = 0;
        pthread_getschedparam(pthread_self(), &policy, &parameters);
        last = policy == SCHED_FIFO ? parameters.sched_priority : 0;
    }
    std::atomic<int> last{-1};
};
struct PriorityDevices final : OutputDevices {
    int count() override { return 1; }
    std::string name(int /*index*/) override { return ""; }
    OutputPort* open(int /*index*/) override { return &port; }
    void close(OutputPort* /*port*/) override {}
    PriorityPort port;
};

TEST(LiveEngine, HasALowRealTimePriorityWhileItPlaysAndNoneForALoad) {
    TestClock clock;
    clock.hand = 0;
    PriorityDevices devices;
    Engine engine(clock, devices);
    setEngineComponent(&engine);
    OpenMidiPort32(0);
    const auto afterCalls = [&](int count) {
        for (int n = 0; n < count; ++n) SendShortMessage32(kControlChange, 1, 1);
        engine.settle();
        return devices.port.last.load();
    };
    EXPECT_EQ(afterCalls(1), 0);
    StartMarluneTimer32(10, 0);
    const int playing = afterCalls(1);
    EXPECT_EQ(playing > 0, engine.hasRealTimePriority());
    EXPECT_LT(playing, 5); // what clients of a JACK server have where nobody asks for more
    EXPECT_EQ(afterCalls(5000), 0);
    clock.hand = 20'000'000; // the load is over
    EXPECT_EQ(afterCalls(1), playing);
    StopMarluneTimer32();
    EXPECT_EQ(afterCalls(1), 0);
    setEngineComponent(nullptr);
    if (playing == 0) GTEST_SKIP() << "no real-time priority is granted here";
}

} // namespace
} // namespace marlune::test
