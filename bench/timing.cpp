// How late the engine sends at 240 beats a minute, beside a bare sleeping thread in the same run.
//
// usage: bench_timing [SECONDS]   (default 60), once with an idle machine and once with every core busy.
// Lateness is the time of a send on the clock less the message's ideal time. The bare thread sleeps until the
// same distances (std::this_thread::sleep_until), half a period aside so that the two do not meet.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "engine/engine_runner.h"

namespace {

using namespace marlune;
using Steady = std::chrono::steady_clock;

constexpr int kTempo = 240;
constexpr std::int64_t kPeriodNs = 60'000'000'000 / 24 / kTempo;

std::int64_t steadyNs() {
    return Steady::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

struct SteadyClock final : PlayClock {
    std::int64_t nowNs() noexcept override { return steadyNs(); }
};

struct MeasuringPort final : OutputPort {
    explicit MeasuringPort(std::size_t room) { lateness.reserve(room); }
    void send(const MidiMessage& /*message*/, std::int64_t due) noexcept override {
        const std::int64_t late = steadyNs() - due;
        if (lateness.size() < lateness.capacity()) lateness.push_back(late);
    }
    std::vector<std::int64_t> lateness;
};

struct MeasuringDevices final : OutputDevices {
    explicit MeasuringDevices(OutputPort& only) : port(only) {}
    int count() override { return 1; }
    std::string name(int /*index*/) override { return "measuring"; }
    OutputPort* open(int index) override { return index == 0 ? &port : nullptr; }
    void close(OutputPort* /*port*/) override {}
    OutputPort& port;
};

void print(const char* what, std::vector<std::int64_t> lateness) {
    if (lateness.empty()) return;
    std::sort(lateness.begin(), lateness.end());
    const auto at = [&lateness](double share) {
        const auto index = static_cast<std::size_t>(share * static_cast<double>(lateness.size() - 1));
        return static_cast<double>(lateness[index]) / 1000.0;
    };
    std::printf("  %-22s %8zu sends  p50 %8.1f us  p99 %8.1f us  p99.9 %8.1f us  worst %8.1f us\n", what,
                lateness.size(), at(0.5), at(0.99), at(0.999), at(1.0));
}

// A note on every step of all three modules, so that steps carry several messages.
void fillPatterns() {
    for (int step = 0; step < 16; ++step) {
        for (int module = 0; module < 2; ++module) {
            Set103Note32(module, 0, 0, step, step % 12);
            Set103NoteOn32(module, 0, 0, step, -1);
        }
        for (int drum = 0; drum < 3; ++drum) Set109bOn32(0, 0, step, drum, 1);
    }
}

void measure(const char* load, int seconds) {
    const std::int64_t periods = seconds * (1'000'000'000 / kPeriodNs);
    MeasuringPort port(static_cast<std::size_t>(periods) * 4 + 1000);
    MeasuringDevices devices(port);
    SteadyClock clock;
    Engine engine(clock, devices);
    setEngineComponent(&engine);
    OpenMidiPort32(0);
    OpenSyncPort32(0);
    fillPatterns();

    std::vector<std::int64_t> bare;
    bare.reserve(static_cast<std::size_t>(periods));
    SetMarluneTempo32(kTempo);
    StartMarluneTimer32(10, 0);
    std::thread sleeper([&bare, periods] {
        const auto anchor = Steady::now() + std::chrono::nanoseconds(kStartDelayNs + kPeriodNs / 2);
        for (std::int64_t n = 0; n < periods; ++n) {
            const auto due = anchor + std::chrono::nanoseconds(n * kPeriodNs);
            std::this_thread::sleep_until(due);
            bare.push_back((Steady::now() - due) / std::chrono::nanoseconds(1));
        }
    });
    sleeper.join();
    StopMarluneTimer32();
    std::printf("%s, %d s%s\n", load, seconds,
                engine.hasRealTimePriority() ? "" : " (no real-time priority granted)");
    print("engine", port.lateness);
    print("bare sleeping thread", bare);
    setEngineComponent(nullptr);
}

} // namespace

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 60;
    measure("idle", seconds);

    std::atomic<bool> busy{true};
    std::vector<std::thread> burners(std::max(std::thread::hardware_concurrency(), 1U));
    for (std::thread& burner : burners) {
        burner = std::thread([&busy] {
            for (volatile unsigned n = 0; busy.load(std::memory_order_relaxed);) n = n + 1;
        });
    }
    measure("every core busy", seconds);
    busy = false;
    for (std::thread& burner : burners) burner.join();
    return 0;
}
