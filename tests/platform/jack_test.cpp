// Our JACK client before a real server that plays to nothing, watched by a second, independent client.
#include "platform/jack_client.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <jack/midiport.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <thread>

#include "platform/devices.h"
#include "platform/platform.h"
#include "platform/synth_core.h"

namespace marlune {
namespace {

constexpr int kRate = 48000;
constexpr int kPeriod = 64;
constexpr std::int64_t kMs = 1'000'000;

// One name for all: the machine has room for few names of servers, and one that was killed keeps its own.
const char kServerName[] = "marlune-test";

void sleepMs(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

bool waitFor(int ms, const std::function<bool()>& done) {
    for (int i = 0; i < ms; ++i, sleepMs(1))
        if (done()) return true;
    return false;
}

// In synchronous mode: a client that a busy machine keeps from running is waited for, its cycle is not thrown
// away.
class Server {
  public:
    Server() {
        fflush(stdout); // else the child would print it again
        child_ = fork();
        if (child_ != 0) {
            // A client that came while the server was starting could block its name for the next one.
            jack_client_t* probe = nullptr;
            waitFor(5000, [&] {
                return (probe = jack_client_open("probe", JackNoStartServer, nullptr)) != nullptr;
            });
            if (probe != nullptr) jack_client_close(probe);
            return;
        }
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        close_range(3, ~0U, 0);
        if (freopen("/dev/null", "w", stdout) == nullptr || freopen("/dev/null", "w", stderr) == nullptr)
            _exit(1);
        execlp("jackd", "jackd", "-n", kServerName, "-S", "-r", "-d", "dummy", "-r",
               std::to_string(kRate).c_str(), "-p", std::to_string(kPeriod).c_str(), nullptr);
        _exit(1);
    }
    ~Server() {
        if (child_ <= 0) return;
        ::kill(child_, SIGTERM); // it takes its shared memory with it
        if (!waitFor(2000, [&] { return waitpid(child_, nullptr, WNOHANG) == child_; })) kill();
    }
    void kill() {
        ::kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
        child_ = 0;
    }

  private:
    pid_t child_ = 0;
};

struct Event {
    std::int64_t frame;
    MidiMessage message;
};

// Records what arrives at its port "in", and can send from its port "out".
class Watcher {
  public:
    Watcher() {
        client_ = jack_client_open("watcher", JackNoStartServer, nullptr);
        if (client_ == nullptr) return;
        in = jack_port_register(client_, "in", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
        ear = jack_port_register(client_, "ear", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
        out = jack_port_register(client_, "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
        jack_set_process_callback(
            client_, [](jack_nframes_t n, void* self) { return static_cast<Watcher*>(self)->process(n); },
            this);
        jack_activate(client_);
    }
    ~Watcher() {
        if (client_ != nullptr) jack_client_close(client_);
    }
    bool connect(const char* from, const char* to) {
        const bool done = waitFor(2000, [&] { return jack_connect(client_, from, to) == 0; });
        sleepMs(100);
        return done;
    }
    int process(jack_nframes_t frames) {
        void* from = jack_port_get_buffer(in, frames);
        const auto start = static_cast<std::int64_t>(jack_last_frame_time(client_));
        for (jack_nframes_t i = 0; i < jack_midi_get_event_count(from); ++i) {
            jack_midi_event_t event;
            jack_midi_event_get(&event, from, i);
            if (count == kMost) continue;
            Event& kept = events[count];
            kept.frame = start + event.time;
            for (std::size_t b = 0; b < 3 && b < event.size; ++b) kept.message.bytes[b] = event.buffer[b];
            ++count;
        }
        const auto* sound = static_cast<const float*>(jack_port_get_buffer(ear, frames));
        for (jack_nframes_t i = 0; i < frames; ++i)
            if (std::abs(sound[i]) > 0.1F) heard = true;
        void* to = jack_port_get_buffer(out, frames);
        jack_midi_clear_buffer(to);
        const std::uint8_t bytes[2][4] = {{0xF0, 1, 2, 0xF7}, {0x91, 64, 99, 0}};
        if (sendNow.exchange(false)) {
            jack_midi_event_write(to, 3, bytes[0], 4); // not for us
            jack_midi_event_write(to, 5, bytes[1], 3);
        }
        return 0;
    }
    static constexpr int kMost = 20000;
    std::vector<Event> events{kMost};
    std::atomic<int> count{0};
    std::atomic<bool> sendNow{false}, heard{false};
    jack_port_t *in = nullptr, *out = nullptr, *ear = nullptr;

  private:
    jack_client_t* client_ = nullptr;
};

class Jack : public testing::Test {
  protected:
    void SetUp() override {
        if (std::system("command -v jackd >/dev/null 2>&1") != 0) GTEST_SKIP() << "no jackd on this machine";
        // One test at a time, also where several programs run them side by side.
        lock_ =
            open((testing::TempDir() + "marlune-jack-test.lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
        flock(lock_, LOCK_EX);
        setenv("JACK_DEFAULT_SERVER", kServerName, 1);
        jack_set_error_function([](const char*) {});
        jack_set_info_function([](const char*) {});
        setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    }
    void TearDown() override {
        unsetenv("JACK_DEFAULT_SERVER");
        if (lock_ >= 0) close(lock_);
    }
    // Sends n note-ons at even distances, each well before its time: a busy machine then moves none.
    void play(OutputLink& port, int n, std::int64_t gap) {
        const std::int64_t start = clock.nowNs() + 50 * kMs;
        for (int i = 0; i < n; ++i) {
            while (clock.nowNs() < start + i * gap - 30 * kMs)
                std::this_thread::sleep_for(std::chrono::microseconds(200));
            port.send({3, {0x90, static_cast<std::uint8_t>(i % 128), 100}}, start + i * gap);
        }
    }
    SystemPlayClock clock;
    int lock_ = -1;
};

const char kOurs[] = "Marlune 200Q:Marlune 200Q Out";

TEST_F(Jack, EventsFallOnTheirFramesAndBurstsArriveWhole) {
    Server server;
    Watcher watcher;
    JackClient jack(clock);
    ASSERT_TRUE(waitFor(2000, [&] { return jack.poll(), jack.online(); }));
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
        std::printf("  latency %.2f ms; %d of %d intervals exact\n",
                    static_cast<double>(jack.latencyNs()) / 1e6, exact, kNotes - 1);
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
    ASSERT_TRUE(waitFor(2000, [&] { return jack.poll(), jack.online(); }));
    std::atomic<bool> done{false};
    std::atomic<std::int64_t> longest{0};
    std::jthread engine([&] { // as the engine does: never waiting, on a clock that never falls back or leaps
        for (std::int64_t last = clock.nowNs(); !done;
             std::this_thread::sleep_for(std::chrono::milliseconds(1))) {
            const std::int64_t begun = monotonicNs(), now = clock.nowNs();
            jack.virtualOutput().send({3, {0x90, 60, 100}}, now);
            longest = std::max<std::int64_t>(longest, monotonicNs() - begun);
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
    std::int64_t begun = monotonicNs();
    jack.poll();
    std::printf("  closing after the server's death took %.1f ms\n",
                static_cast<double>(monotonicNs() - begun) / 1e6);
    server = std::make_unique<Server>();
    watcher = std::make_unique<Watcher>();
    begun = monotonicNs();
    EXPECT_TRUE(waitFor(20, [&] { return sleepMs(100), jack.poll(), jack.online(); }));
    EXPECT_TRUE(watcher->connect(kOurs, "watcher:in"));
    EXPECT_TRUE(waitFor(500, [&] { return watcher->count > 10; }));
    std::printf("  events again after %.2f s; longest send and clock reading %.3f ms\n",
                static_cast<double>(monotonicNs() - begun) / 1e9, static_cast<double>(longest) / 1e6);
    EXPECT_LT(monotonicNs() - begun, 2000 * kMs);
    done = true;
}

TEST_F(Jack, DevicesOfOtherClientsAreReachedAndHeard) {
    Server server;
    auto watcher = std::make_unique<Watcher>();
    JackClient jack(clock);
    ASSERT_TRUE(waitFor(2000, [&] { return jack.poll(), jack.online(); }));
    const DeviceWorld world{{&jack}, &clock, {}};
    SystemOutputs outputs(world, [] { return nullptr; }, {});
    SystemInputs inputs(world, {});
    ASSERT_EQ(outputs.count(), 3);
    EXPECT_EQ(outputs.name(2), "watcher:in");
    EXPECT_EQ(inputs.name(1), "watcher:out");
    struct Sink : InputSink {
        void received(const MidiMessage& message) noexcept override {
            note = message.bytes[1];
            ++count;
        }
        std::atomic<int> note{0}, count{0};
    } sink;
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
