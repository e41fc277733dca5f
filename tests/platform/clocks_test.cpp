// Engines that follow the transport of a real JACK server, and each other by Link.
#include <gtest/gtest.h>
#include <jack/transport.h>

#include "engine/engine_runner.h"
#include "platform/devices.h"
#include "platform/jack_client.h"
#include "platform/link_clock.h"
#include "support/jack_peer.h"
#include "support/test_program.h"

namespace marlune {
namespace {

using namespace test;

// Another client that moves the transport and knows which of the server's frames it is at.
class Master {
  public:
    Master() : client_(jack_client_open("master", JackNoStartServer, nullptr)) {
        jack_set_process_callback(
            client_,
            [](jack_nframes_t, void* self) {
                auto& here = *static_cast<Master*>(self);
                jack_position_t position{};
                if (jack_transport_query(here.client_, &position) == JackTransportRolling)
                    here.offset =
                        static_cast<std::int64_t>(jack_last_frame_time(here.client_)) - position.frame;
                return 0;
            },
            this);
        jack_activate(client_);
    }
    ~Master() { jack_client_close(client_); }
    Master(const Master&) = delete;
    Master& operator=(const Master&) = delete;
    void start(jack_nframes_t frame) {
        jack_transport_locate(client_, frame);
        jack_transport_start(client_);
    }
    void stop() { jack_transport_stop(client_); }
    [[nodiscard]] jack_position_t position() const {
        jack_position_t position{};
        jack_transport_query(client_, &position);
        return position;
    }
    [[nodiscard]] bool rolling() const {
        return jack_transport_query(client_, nullptr) == JackTransportRolling;
    }
    std::atomic<std::int64_t> offset{0}; // server's frames minus those of the transport

  private:
    jack_client_t* client_;
};

// The next wish of a clock that an engine reports, "S144".
std::string wish(Engine& engine) {
    EngineMessage message;
    const bool came = waitFor([&] {
        while (engine.takeMessage(message))
            if (message.message == kClockMessage) return true;
        return false;
    });
    return came ? "?SPL"[message.wParam] + std::to_string(message.lParam) : "nothing";
}

// All 16 steps play a note.
void fill(Engine& engine) {
    for (int s = 0; s < kSteps; ++s) engine.call({Entry::Set103NoteOn32, {0, 0, 0, s, -1}});
}

class JackClock : public JackTest {};

TEST_F(JackClock, TheTransportIsFollowedToTheFrameAndLed) {
    Server server;
    Watcher watcher;
    SystemPlayClock clock;
    JackClient jack(clock);
    ASSERT_TRUE(waitFor([&] { return jack.poll(), jack.online(); }));
    Master master;
    ASSERT_TRUE(watcher.connect("Marlune 200Q:Marlune 200Q Out", "watcher:in"));
    SystemOutputs outputs({{&jack}, &clock, {}}, [] { return nullptr; }, {});
    Engine engine(clock, outputs);
    engine.offerClock(ClockKind::jack, &jack.transport());
    jack.transport().setTempo(120);
    jack.transport().choose(true, true, false);
    engine.call({Entry::OpenMidiPort32, {1}});
    engine.call({Entry::SetClock32, {indexOf(ClockKind::jack)}});
    fill(engine);
    constexpr int kSixteenth = kRate / 8, kBar = 16 * kSixteenth;
    master.start(2 * kBar + kBar * 3 / 4); // from within a bar: the next one begins
    std::string first = wish(engine);
    if (first == "L48") first = wish(engine); // seen before it rolled
    EXPECT_EQ(first, "S48");
    engine.call({Entry::StartMarluneTimer32, {20, 0}});
    std::vector<std::int64_t> notes;
    ASSERT_TRUE(waitFor([&] {
        notes.clear();
        for (int i = 0; i < watcher.count; ++i)
            if (const Event& e = watcher.events[i]; e.message.bytes[0] == 0x90 && e.message.bytes[2] > 0)
                notes.push_back(e.frame - master.offset);
        return notes.size() >= 12;
    }));
    for (std::size_t i = 0; i < notes.size(); ++i)
        EXPECT_NEAR(static_cast<double>(notes[i]), 3.0 * kBar + static_cast<double>(i) * kSixteenth, 1) << i;
    master.start(10 * kBar);
    EXPECT_EQ(wish(engine), "L160");
    master.stop();
    EXPECT_EQ(wish(engine), "P160");
    engine.call({Entry::StopMarluneTimer32, {}});
    ASSERT_TRUE(waitFor([&] { return !master.rolling(); }));
    // Led: we say where and when, and which bar and beat that is; nothing of it comes back as a wish.
    jack.transport().setTempo(100);
    jack.transport().choose(true, true, true);
    jack.transport().command(true, 7 * 16);
    ASSERT_TRUE(
        waitFor([&] { return master.rolling() && (master.position().valid & JackPositionBBT) != 0; }));
    const jack_position_t at = master.position();
    EXPECT_EQ(at.bar, 8);
    EXPECT_EQ(at.beats_per_minute, 100);
    const double beats = (at.bar - 1) * 4.0 + at.beat - 1 + at.tick / at.ticks_per_beat;
    EXPECT_NEAR(beats, at.frame * 100 / (60.0 * kRate), 0.001);
    jack.transport().command(false, 0);
    ASSERT_TRUE(waitFor([&] { return !master.rolling(); }));
    master.start(4 * kBar); // another's start is followed, however short ours was
    std::string next = wish(engine);
    while (next[0] == 'P' || next[0] == 'L') next = wish(engine);
    EXPECT_EQ(next[0], 'S');
}

// One instance: its session, its engine, and its notes at their due times.
struct Instance final : OutputPort, OutputDevices {
    explicit Instance(PlayClock& clock) : link(makeLinkClock()), engine(clock, *this) {
        engine.offerClock(ClockKind::link, link.get());
        link->enable(true, true, 120);
        engine.call({Entry::OpenMidiPort32, {0}});
        engine.call({Entry::SetClock32, {indexOf(ClockKind::link)}});
        fill(engine);
    }
    void send(const MidiMessage& m, std::int64_t due) noexcept override {
        if (m.bytes[0] == 0x90 && m.bytes[2] > 0 && played < static_cast<int>(notes.size()))
            notes[played++] = due;
    }
    int count() override { return 1; }
    std::string name(int /*index*/) override { return "timeline"; }
    OutputPort* open(int /*index*/) override { return this; }
    void close(OutputPort* /*port*/) override {}

    std::array<std::int64_t, 1000> notes{};
    std::atomic<int> played{0};
    std::unique_ptr<LinkClock> link;
    Engine engine; // last: it ends before what it plays by
};

TEST(Link, TwoInstancesStartTogetherStayTogetherAndStopTogether) {
    if (makeLinkClock() == nullptr) GTEST_SKIP() << "built without Link";
    SystemPlayClock clock;
    Instance one(clock), other(clock);
    if (!waitFor([&] { return one.link->sight().peers == 1 && other.link->sight().peers == 1; }))
        GTEST_SKIP() << "no network interface that sessions could meet on";
    other.link->setTempo(150);
    EXPECT_TRUE(waitFor([&] { return std::abs(one.link->sight().tempo - 150) < 0.001; }));
    one.engine.call({Entry::StartMarluneTimer32, {20, 0}});
    EXPECT_EQ(wish(other.engine), "S-1");
    other.engine.call({Entry::StartMarluneTimer32, {20, 0}});
    ASSERT_TRUE(waitFor([&] { return other.played >= 40 && one.played >= 40; }));
    one.link->setTempo(170);
    ASSERT_TRUE(waitFor([&] { return other.played >= 80 && one.played >= 80; }));
    for (int i = 0; i < 80; ++i) EXPECT_LT(std::abs(one.notes[i] - other.notes[i]), 2 * kMs) << i;
    EXPECT_NEAR(static_cast<double>(one.notes[39] - one.notes[0]) / kMs, 39 * 100.0,
                60); // 150 for most of it
    one.engine.call({Entry::StopMarluneTimer32, {}});
    EXPECT_EQ(wish(other.engine), "P-1");
}

} // namespace
} // namespace marlune
