// How far what a second JACK client receives lies from the grid of the tempo, beside a bare sleeping thread.
//
// usage: bench_jack_timing [SECONDS [RUNS]]   (default 60 and 5)
//
// A server of its own that plays to nothing, at periods of 64, 256 and 1024 frames; tempos 40, 140 and 240;
// the machine idle and with every core busy. The grid is laid through the median of what arrived: a fixed
// latency is no deviation. The bare thread sleeps until the same distances, and its deviations are its
// wake-ups'. Each figure is the median of the runs. Lines are rows of the table in docs/performance.md.
#include <fcntl.h>
#include <jack/jack.h>
#include <jack/midiport.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "boundary/engine_component.h"
#include "boundary/midi_bytes.h"
#include "engine/engine_runner.h"
#include "platform/platform.h"

namespace {

using namespace marlune;
using Steady = std::chrono::steady_clock;

constexpr int kRate = 48000;
constexpr const char* kServer = "marlune-bench";
constexpr const char* kOurs = "Marlune 200Q:Marlune 200Q Out";
constexpr int kClocksPerBeat = 24;

void sleepMs(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

class Server {
  public:
    explicit Server(int period) {
        std::fflush(stdout);
        child_ = fork();
        if (child_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            const int nowhere = open("/dev/null", O_WRONLY);
            dup2(nowhere, STDOUT_FILENO);
            dup2(nowhere, STDERR_FILENO);
            // In real time where that is granted; and a client that is late is waited for, so that what is
            // measured is when events are placed, not how many cycles this machine's load has failed.
            execlp("jackd", "jackd", "-n", kServer, "-S", geteuid() == 0 ? "-R" : "-r", "-d", "dummy", "-r",
                   std::to_string(kRate).c_str(), "-p", std::to_string(period).c_str(), nullptr);
            _exit(1);
        }
        sleepMs(500);
    }
    ~Server() {
        kill(child_, SIGTERM);
        waitpid(child_, nullptr, 0);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

  private:
    pid_t child_ = 0;
};

// Keeps the frames at which clock bytes arrive.
class Listener {
  public:
    explicit Listener(std::size_t room) : frames_(room) {
        client_ = jack_client_open("listener", JackNoStartServer, nullptr);
        if (client_ == nullptr) return;
        port_ = jack_port_register(client_, "in", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
        jack_set_process_callback(
            client_, [](jack_nframes_t n, void* self) { return static_cast<Listener*>(self)->process(n); },
            this);
        jack_activate(client_);
        for (int i = 0; i < 100 && jack_connect(client_, kOurs, jack_port_name(port_)) != 0; ++i) sleepMs(10);
        sleepMs(200);
    }
    ~Listener() {
        if (client_ != nullptr) jack_client_close(client_);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::vector<std::int64_t> frames() const {
        return {frames_.begin(), frames_.begin() + static_cast<std::ptrdiff_t>(count_.load())};
    }

  private:
    int process(jack_nframes_t count) {
        void* buffer = jack_port_get_buffer(port_, count);
        const auto start = static_cast<std::int64_t>(jack_last_frame_time(client_));
        for (jack_nframes_t i = 0; i < jack_midi_get_event_count(buffer); ++i) {
            jack_midi_event_t event;
            if (jack_midi_event_get(&event, buffer, i) != 0 || event.buffer[0] != kTimingClock) continue;
            if (count_ < frames_.size()) frames_[count_++] = start + event.time;
        }
        return 0;
    }

    jack_client_t* client_ = nullptr;
    jack_port_t* port_ = nullptr;
    std::vector<std::int64_t> frames_;
    std::atomic<std::size_t> count_{0};
};

// Deviations of p50, p99 and p99.9, in frames.
struct Figures {
    double p50 = 0, p99 = 0, p999 = 0;
};

// places: in frames, one for each clock of the grid.
Figures figuresOf(const std::vector<double>& places, int tempo) {
    if (places.size() < 10) return {NAN, NAN, NAN};
    const double distance = 60.0 * kRate / kClocksPerBeat / tempo;
    std::vector<double> off(places.size());
    for (std::size_t n = 0; n < places.size(); ++n) off[n] = places[n] - distance * static_cast<double>(n);
    std::vector<double> sorted = off;
    std::nth_element(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2),
                     sorted.end());
    const double middle = sorted[sorted.size() / 2];
    for (double& each : off) each = std::abs(each - middle);
    std::sort(off.begin(), off.end());
    const auto at = [&](double share) {
        return off[static_cast<std::size_t>(share * static_cast<double>(off.size() - 1))];
    };
    return {at(0.5), at(0.99), at(0.999)};
}

Figures medianOf(const std::vector<Figures>& runs) {
    const auto median = [&](double Figures::*field) {
        std::vector<double> values;
        values.reserve(runs.size());
        for (const Figures& each : runs) values.push_back(each.*field);
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    };
    return {median(&Figures::p50), median(&Figures::p99), median(&Figures::p999)};
}

struct Run {
    Figures ours, bare;
};

Run measure(int tempo, int seconds) {
    const auto clocks = static_cast<std::int64_t>(seconds) * tempo * kClocksPerBeat / 60;
    Platform platform({.stateFile = "", .sound = false});
    Engine engine(platform.clock(), platform.outputs());
    setEngineComponent(&engine);
    OpenMidiPort32(1);
    const Listener listener(static_cast<std::size_t>(clocks) + 1000);
    SetMarluneTempo32(tempo);
    StartMarluneTimer32(10, 0);
    std::vector<double> wakeUps;
    wakeUps.reserve(static_cast<std::size_t>(clocks));
    const std::chrono::duration<double> distance(60.0 / kClocksPerBeat / tempo);
    const auto start = Steady::now() + std::chrono::milliseconds(30);
    for (std::int64_t n = 0; n < clocks; ++n) {
        std::this_thread::sleep_until(
            start + std::chrono::duration_cast<Steady::duration>(distance * static_cast<double>(n)));
        wakeUps.push_back(std::chrono::duration<double>(Steady::now() - start).count() * kRate);
    }
    StopMarluneTimer32();
    setEngineComponent(nullptr);
    const std::vector<std::int64_t> heard = listener.frames();
    return {figuresOf({heard.begin(), heard.end()}, tempo), figuresOf(wakeUps, tempo)};
}

void measureAll(const char* load, int seconds, int runs) {
    for (const int period : {64, 256, 1024}) {
        const Server server(period);
        for (const int tempo : {40, 140, 240}) {
            std::vector<Figures> ours;
            std::vector<Figures> bare;
            for (int run = 0; run < runs; ++run) {
                const Run result = measure(tempo, seconds);
                ours.push_back(result.ours);
                bare.push_back(result.bare);
            }
            const Figures us = medianOf(ours);
            const Figures thread = medianOf(bare);
            std::printf("| %s | %d | %d | %.1f / %.1f / %.1f | %.1f / %.1f / %.1f |\n", load, period, tempo,
                        us.p50, us.p99, us.p999, thread.p50, thread.p99, thread.p999);
            std::fflush(stdout);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 60;
    const int runs = argc > 2 ? std::max(std::atoi(argv[2]), 1) : 5;
    setenv("JACK_DEFAULT_SERVER", kServer, 1);
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    std::printf(
        "| machine | period | tempo | received, p50 / p99 / p99.9 frames | bare thread "
        "|\n|---|---|---|---|---|\n");
    measureAll("idle", seconds, runs);
    std::atomic<bool> busy{true};
    std::vector<std::thread> burners(std::max(std::thread::hardware_concurrency(), 1U));
    for (std::thread& burner : burners)
        burner = std::thread([&busy] {
            for (volatile unsigned n = 0; busy.load(std::memory_order_relaxed);) n = n + 1;
        });
    measureAll("busy", seconds, runs);
    busy = false;
    for (std::thread& burner : burners) burner.join();
    return 0;
}
