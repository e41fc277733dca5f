// A JACK server that plays to nothing, and a second, independent client that watches our ports.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <jack/jack.h>
#include <jack/midiport.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "boundary/midi_bytes.h"

namespace marlune::test {

inline constexpr int kRate = 48000;
inline constexpr int kPeriod = 64;
inline constexpr std::int64_t kMs = 1'000'000;

// A name of its own for each process that tests, out of a few: the machine has room for few names of servers,
// and one that was killed keeps its own.
inline const std::string& serverName() {
    static const std::string name = [] {
        constexpr int kNames = 4;
        for (int number = 0;; number = (number + 1) % kNames, usleep(1000)) {
            std::string mine = "marlune-test-" + std::to_string(number);
            const int lock =
                open((testing::TempDir() + mine + ".lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
            if (flock(lock, LOCK_EX | LOCK_NB) == 0) return mine; // kept for the life of the process
            close(lock);
        }
    }();
    return name;
}

inline void sleepMs(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

// Long enough for any machine; what never comes fails.
inline bool waitFor(const std::function<bool()>& done) {
    for (const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
         std::chrono::steady_clock::now() < end; sleepMs(1))
        if (done()) return true;
    return done();
}

// In synchronous mode: a client that a busy machine keeps from running is waited for, no cycle is lost.
class Server {
  public:
    Server() {
        fflush(stdout); // else the child would print it again
        child_ = fork();
        if (child_ != 0) {
            // A client that came while the server was starting could block its name for the next one.
            waitFor([] {
                jack_client_t* const probe = jack_client_open("probe", JackNoStartServer, nullptr);
                return probe != nullptr && jack_client_close(probe) == 0;
            });
            return;
        }
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        close_range(3, ~0U, 0);
        if (freopen("/dev/null", "w", stdout) == nullptr || freopen("/dev/null", "w", stderr) == nullptr)
            _exit(1);
        execlp("jackd", "jackd", "-n", serverName().c_str(), "-S", "-r", "-d", "dummy", "-r",
               std::to_string(kRate).c_str(), "-p", std::to_string(kPeriod).c_str(), nullptr);
        _exit(1);
    }
    ~Server() {
        if (child_ <= 0) return;
        ::kill(child_, SIGTERM); // it takes its shared memory with it
        if (!waitFor([&] { return waitpid(child_, nullptr, WNOHANG) == child_; })) kill();
    }
    void signal(int number) const { ::kill(child_, number); }
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
        const bool done = waitFor([&] { return jack_connect(client_, from, to) == 0; });
        return done && pass(100); // a new connection carries nothing for some cycles
    }
    bool pass(int more) { // cycles of the server
        const int start = cycles;
        return waitFor([&] { return cycles - start >= more; });
    }
    int process(jack_nframes_t frames) {
        ++cycles;
        void* from = jack_port_get_buffer(in, frames);
        const auto start = static_cast<std::int64_t>(jack_last_frame_time(client_));
        for (jack_nframes_t i = 0; i < jack_midi_get_event_count(from); ++i) {
            jack_midi_event_t event;
            jack_midi_event_get(&event, from, i);
            if (count == kMost) continue;
            Event& kept = events[count];
            kept.frame = start + event.time;
            kept.message.size = static_cast<std::uint8_t>(std::min<std::size_t>(event.size, 3));
            std::copy_n(event.buffer, kept.message.size, kept.message.bytes);
            ++count;
        }
        const auto* sound = static_cast<const float*>(jack_port_get_buffer(ear, frames));
        for (jack_nframes_t i = 0; i < frames; ++i)
            if (std::abs(sound[i]) > 0.1F) heard = true;
        void* to = jack_port_get_buffer(out, frames);
        jack_midi_clear_buffer(to);
        const auto write = [&](const MidiMessage& message) {
            return jack_midi_event_write(to, frames - 1, message.bytes, message.size) == 0;
        };
        while (sendTail != sendHead.load(std::memory_order_acquire)) {
            const std::uint8_t exclusive[] = {0xF0, 1, 2, 0xF7};
            jack_midi_event_write(to, frames - 1, exclusive, sizeof exclusive); // not for us
            if (!write(outbox[sendTail % outbox.size()])) break;
            ++sendTail;
        }
        const int burst = floodPerCycle;
        for (int i = 0; i < burst; ++i) write(midiBytes(kControlChange, 12, i));
        if (burst > 0 && ++floodCycle % 50 == 0 && write(noteOn(1, 36 + floodCycle / 50 % 16, 64)))
            ++notesSent;
        return 0;
    }
    // Goes out with one of the next cycles, behind a system exclusive message; at most 1024 may wait.
    void send(int status, int data1, int data2) {
        outbox[sendHead % outbox.size()] = midiBytes(status, data1, data2);
        sendHead.fetch_add(1, std::memory_order_release);
    }
    // While floodPerCycle is above 0: that many controllers a cycle, and a note every 50 cycles.
    std::atomic<int> floodPerCycle{0}, notesSent{0};
    int floodCycle = 0;
    std::vector<MidiMessage> outbox{1024};
    std::atomic<unsigned> sendHead{0};
    unsigned sendTail = 0;
    static constexpr int kMost = 20000;
    std::vector<Event> events{kMost};
    std::atomic<int> count{0}, cycles{0};
    std::atomic<bool> heard{false};
    jack_port_t *in = nullptr, *out = nullptr, *ear = nullptr;

  private:
    jack_client_t* client_ = nullptr;
};

// Every test that needs the server.
class JackTest : public testing::Test {
  protected:
    void SetUp() override {
        if (std::system("command -v jackd >/dev/null 2>&1") != 0) GTEST_SKIP() << "no jackd on this machine";
        setenv("JACK_DEFAULT_SERVER", serverName().c_str(), 1);
        jack_set_error_function([](const char*) {});
        jack_set_info_function([](const char*) {});
        setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    }
};

} // namespace marlune::test
