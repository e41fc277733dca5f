// How far from the beat of others the program plays, and how soon: p50, p99 and worst of the distance, lock
// time.
//
// usage: bench_sync [SECONDS]   (default 300), with a display for Hydrogen: xvfb-run -a
// build/release/bin/bench_sync
//
//   link   two sessions of Ableton Link, an engine each: distance of the same notes
//   midi   a clock on a JACK port whose bytes lie up to 3 ms beside their frames, uniformly; the tempo goes
//   up and down
//          by 10 % within a bar every 16 bars: distance of notes from the undisturbed clock
//   jack   a master that rolls a server's transport: distance of notes from its sixteenths, in frames of the
//   server;
//          Hydrogen follows the same transport in the same run, where it is installed and there is a display
// A server of its own that plays to nothing. Locked: from the first of eight notes within 2 ms on.
#include <jack/transport.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

#include "engine/engine_runner.h"
#include "platform/devices.h"
#include "platform/jack_client.h"
#include "platform/link_clock.h"
#include "support/jack_peer.h"

namespace {

using namespace marlune;
using namespace marlune::test;

constexpr double kTempo = 120;
constexpr int kClocksPerStep = 6;

void fill(Engine& engine) {
    for (int s = 0; s < 16; ++s) engine.call({Entry::Set103NoteOn32, {0, 0, 0, s, -1}});
}

void start(Engine& engine) {
    engine.call({Entry::StartMarluneTimer32, {20, 0}});
}

// Starts when the clock wishes it; ticks are thrown away.
bool serve(Engine& engine) {
    bool started = false;
    for (EngineMessage message; engine.takeMessage(message);) {
        if (message.message != kClockMessage || message.wParam != ClockWish::start) continue;
        start(engine);
        started = true;
    }
    return started;
}

void serveFor(Engine& engine, int ms) {
    for (int passed = 0; passed < ms; passed += 2, sleepMs(2)) serve(engine);
}

// at: ms from the beginning; apart: ms.
struct Note {
    double at, apart;
};

void print(const char* what, const std::vector<Note>& notes) {
    if (notes.size() < 100) {
        std::printf("%-10s too few notes: %zu\n", what, notes.size());
        return;
    }
    constexpr std::size_t kRow = 8;
    std::size_t locked = 0;
    for (std::size_t i = 0; i < notes.size() && i - locked < kRow; ++i)
        if (std::abs(notes[i].apart) >= 2) locked = i + 1;
    std::vector<double> late;
    for (std::size_t i = std::min(locked, notes.size() - 1); i < notes.size(); ++i)
        late.push_back(std::abs(notes[i].apart));
    std::sort(late.begin(), late.end());
    const auto share = [&](double part) {
        return late[static_cast<std::size_t>(part * (double(late.size()) - 1))];
    };
    std::printf("%-10s %6zu notes  p50 %8.3f ms  p99 %8.3f ms  worst %8.3f ms  locked after %.0f ms\n", what,
                notes.size(), share(0.5), share(0.99), share(1),
                locked < notes.size() ? notes[locked].at : -1);
    std::fflush(stdout);
}

// --- Link

struct Instance final : OutputPort, OutputDevices {
    explicit Instance(PlayClock& clock) : link(makeLinkClock()), engine(clock, *this) {
        engine.offerClock(ClockKind::link, link.get());
        link->enable(true, true, kTempo);
        engine.call({Entry::OpenMidiPort32, {0}});
        engine.call({Entry::SetClock32, {indexOf(ClockKind::link)}});
        fill(engine);
        notes.resize(100'000);
    }
    void send(const MidiMessage& m, std::int64_t due) noexcept override {
        if (m.bytes[0] == 0x90 && m.bytes[2] > 0 && played < static_cast<int>(notes.size()))
            notes[played++] = due;
    }
    int count() override { return 1; }
    std::string name(int /*index*/) override { return "notes"; }
    OutputPort* open(int /*index*/) override { return this; }
    void close(OutputPort* /*port*/) override {}
    std::vector<std::int64_t> notes;
    std::atomic<int> played{0};
    std::unique_ptr<LinkClock> link;
    Engine engine;
};

void measureLink(int seconds) {
    if (makeLinkClock() == nullptr) return;
    SystemPlayClock clock;
    Instance one(clock), other(clock);
    if (!waitFor([&] { return one.link->sight().peers == 1; })) return;
    start(one.engine);
    waitFor([&] { return serve(other.engine); });
    for (int s = 0; s < seconds; ++s) {
        serveFor(one.engine, 1000);
        serve(other.engine);
        if (s % 20 == 10) (s % 40 == 10 ? one : other).link->setTempo(kTempo + s % 7);
    }
    std::vector<Note> notes;
    notes.reserve(one.notes.size());
    for (int i = 0; i < std::min(one.played, other.played); ++i)
        notes.push_back({static_cast<double>(one.notes[i] - one.notes[0]) / 1e6,
                         static_cast<double>(one.notes[i] - other.notes[i]) / 1e6});
    print("link", notes);
}

// --- A server's client that sends a clock, moves the transport, and hears us and another program.

class Band {
  public:
    struct Due {
        std::int64_t frame;
        MidiMessage message;
    };

    Band() : client_(jack_client_open("band", JackNoStartServer, nullptr)) {
        const char* names[] = {"ours", "rival"};
        for (int i = 0; i < 2; ++i) {
            in_[i] = jack_port_register(client_, names[i], JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
            heard[i].resize(200'000);
            placed[i].resize(200'000);
        }
        clock_ = jack_port_register(client_, "clock", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
        jack_set_process_callback(
            client_, [](jack_nframes_t n, void* self) { return static_cast<Band*>(self)->process(n); }, this);
        jack_activate(client_);
    }
    ~Band() { jack_client_close(client_); }
    Band(const Band&) = delete;
    Band& operator=(const Band&) = delete;

    bool connect(const char* from, const char* to) { return jack_connect(client_, from, to) == 0; }
    jack_client_t* client() { return client_; }
    std::int64_t frame() { return jack_frame_time(client_); }
    void play(const std::vector<Due>& what) {
        schedule = &what;
        next_ = 0;
        sends = true;
    }

    std::vector<std::int64_t> heard[2];  // frames of note-ons
    std::vector<std::int64_t> placed[2]; // and where the transport was then
    std::atomic<int> count[2]{};
    std::atomic<bool> sends{false};
    std::atomic<std::int64_t> offset{0}; // the server's frames minus those of the transport
    const std::vector<Due>* schedule = nullptr;

  private:
    int process(jack_nframes_t frames) {
        const std::int64_t now = jack_last_frame_time(client_);
        jack_position_t position{};
        if (jack_transport_query(client_, &position) == JackTransportRolling) offset = now - position.frame;
        for (int p = 0; p < 2; ++p) {
            void* from = jack_port_get_buffer(in_[p], frames);
            for (jack_nframes_t i = 0; i < jack_midi_get_event_count(from); ++i) {
                jack_midi_event_t event;
                jack_midi_event_get(&event, from, i);
                if (event.size == 3 && (event.buffer[0] & 0xF0) == 0x90 && event.buffer[2] > 0) {
                    placed[p][count[p]] = now + event.time - offset;
                    heard[p][count[p]++] = now + event.time;
                }
            }
        }
        void* to = jack_port_get_buffer(clock_, frames);
        jack_midi_clear_buffer(to);
        while (sends && next_ < schedule->size() && (*schedule)[next_].frame < now + frames) {
            const Due& due = (*schedule)[next_++];
            const auto at = static_cast<jack_nframes_t>(std::max<std::int64_t>(due.frame - now, 0));
            jack_midi_event_write(to, at, due.message.bytes, due.message.size);
        }
        return 0;
    }

    jack_client_t* client_;
    jack_port_t* in_[2];
    jack_port_t* clock_;
    std::size_t next_ = 0;
};

struct ClockIn final : InputSink, InputSinks {
    explicit ClockIn(Engine& to) : engine(to) {}
    InputSink& link(int /*number*/) noexcept override { return *this; }
    void received(const MidiMessage& /*message*/) noexcept override {}
    void clocked(const MidiMessage& message, std::int64_t when) noexcept override {
        engine.heard(0, message, when);
    }
    Engine& engine;
};

// The program's engine on the server, its notes at "band:ours".
struct Follower {
    explicit Follower(Band& band)
        : jack(clock),
          outputs({{&jack}, &clock, {}}, [] { return nullptr; }, {}),
          inputs({{&jack}, &clock, {}}, {}),
          engine(clock, outputs),
          in(engine) {
        engine.offerClock(ClockKind::jack, &jack.transport());
        engine.call({Entry::OpenMidiPort32, {1}});
        fill(engine);
        waitFor([&] { return band.connect("Marlune 200Q:Marlune 200Q Out", "band:ours"); });
        sleepMs(300);
    }
    void follow(ClockKind kind) { engine.call({Entry::SetClock32, {indexOf(kind)}}); }
    SystemPlayClock clock;
    JackClient jack;
    SystemOutputs outputs;
    SystemInputs inputs;
    Engine engine;
    ClockIn in;
};

void measureMidi(Band& band, int seconds) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> jitter(-0.003 * kRate, 0.003 * kRate);
    std::vector<Band::Due> schedule;
    std::vector<double> steps;
    double frame = static_cast<double>(band.frame()) + kRate;
    const double first = frame;
    double tempo = kTempo;
    schedule.push_back({static_cast<std::int64_t>(frame) - kRate / 10, midiBytes(kClockStart)});
    for (int i = 0; frame < first + seconds * static_cast<double>(kRate); ++i) {
        const int bar = i / 96 % 16;
        if (bar == 7) tempo *= std::pow(1.1, 1 / 96.0);
        if (bar == 15) tempo /= std::pow(1.1, 1 / 96.0);
        if (i % kClocksPerStep == 0) steps.push_back(frame);
        schedule.push_back({static_cast<std::int64_t>(frame + jitter(random)), midiBytes(kTimingClock)});
        frame += kRate * 2.5 / tempo;
    }
    std::sort(schedule.begin(), schedule.end(),
              [](const auto& a, const auto& b) { return a.frame < b.frame; });
    Follower follower(band);
    for (int i = 0; i < follower.inputs.count(); ++i)
        if (follower.inputs.name(i) == "band:clock") follower.inputs.open(i, follower.in);
    follower.follow(ClockKind::midi);
    band.count[0] = 0;
    for (Band::Due& due : schedule) due.frame += band.frame() + kRate - static_cast<std::int64_t>(first);
    for (double& step : steps) step += static_cast<double>(schedule[0].frame) + kRate / 10.0 - first;
    band.play(schedule);
    serveFor(follower.engine, seconds * 1000 + 500);
    band.sends = false;
    std::vector<Note> notes;
    for (int i = 0; i < std::min<int>(band.count[0], static_cast<int>(steps.size())); ++i)
        notes.push_back({(steps[i] - steps[0]) * 1000 / kRate,
                         (static_cast<double>(band.heard[0][i]) - steps[i]) * 1000 / kRate});
    print("midi", notes);
}

// --- The transport, with a peer beside

std::string demoSong() {
    return "/usr/share/hydrogen/data/demo_songs/TR808kit-demo.h2song";
}

// The peer with a song of 120 beats whose first instrument, a kick on the beat, goes to a MIDI port.
pid_t startPeer(const std::string& folder) {
    std::ifstream song(demoSong()), settings("/usr/share/hydrogen/data/hydrogen.default.conf");
    if (!song || !settings || getenv("DISPLAY") == nullptr) return 0;
    const auto changed = [](std::ifstream& in, const std::string& name,
                            const std::vector<std::pair<std::string, std::string>>& pairs) {
        std::string text((std::istreambuf_iterator<char>(in)), {});
        for (const auto& [from, to] : pairs)
            for (std::size_t at = text.find(from); at != std::string::npos;
                 at = text.find(from, at + to.size()))
                text.replace(at, from.size(), to);
        std::ofstream(name) << text;
    };
    std::filesystem::create_directory(folder + "/.hydrogen");
    changed(song, folder + "/song.h2song",
            {{"<bpm>125</bpm>", "<bpm>120</bpm>"},
             {"<midiOutChannel>-1</midiOutChannel>", "<midiOutChannel>0</midiOutChannel>"}});
    changed(settings, folder + "/.hydrogen/hydrogen.conf",
            {{"<showDevelWarning>true", "<showDevelWarning>false"},
             {"<driverName>ALSA</driverName>", "<driverName>JACK-MIDI</driverName>"}});
    const pid_t child = fork();
    if (child != 0) return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setenv("HOME", folder.c_str(), 1);
    if (freopen("/dev/null", "w", stdout) == nullptr || freopen("/dev/null", "w", stderr) == nullptr)
        _exit(1);
    execlp("hydrogen", "hydrogen", "-n", "-d", "jack", "-s", (folder + "/song.h2song").c_str(), nullptr);
    _exit(1);
}

std::vector<Note> besideTheGrid(const Band& band, int port) {
    constexpr double kSixteenth = kRate * 15 / kTempo;
    std::vector<Note> notes;
    for (int i = 0; i < band.count[port]; ++i) {
        const auto at = static_cast<double>(band.placed[port][i]);
        notes.push_back({at * 1000 / kRate, (at - std::round(at / kSixteenth) * kSixteenth) * 1000 / kRate});
    }
    return notes;
}

void measureTransport(Band& band, int seconds) {
    Follower follower(band);
    follower.jack.transport().setTempo(kTempo);
    follower.jack.transport().choose(true, true, false);
    follower.follow(ClockKind::jack);
    char folder[] = "/tmp/bench-sync-XXXXXX";
    const pid_t peer = mkdtemp(folder) != nullptr ? startPeer(folder) : 0;
    if (peer != 0) sleepMs(8000);
    // The welcome of a development version, where there is one.
    if (peer != 0 && std::system("xdotool mousemove 448 368 click 1") != 0)
        std::printf("no xdotool: the peer may wait for a click\n");
    for (int i = 0; peer != 0 && i < 30 && !band.connect("Hydrogen-midi:TX", "band:rival"); ++i) sleepMs(500);
    if (peer != 0) sleepMs(3000);
    band.count[0] = band.count[1] = 0;
    jack_transport_locate(band.client(), 0);
    jack_transport_start(band.client());
    serveFor(follower.engine, seconds * 1000);
    jack_transport_stop(band.client());
    print("jack", besideTheGrid(band, 0));
    print("hydrogen", besideTheGrid(band, 1));
    if (peer != 0) kill(peer, SIGKILL);
    std::filesystem::remove_all(folder);
}

} // namespace

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::max(std::atoi(argv[1]), 30) : 300;
    jack_set_error_function([](const char*) {});
    jack_set_info_function([](const char*) {});
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    setenv("JACK_DEFAULT_SERVER", serverName().c_str(), 1);
    std::printf("%d s each, a server of %d Hz with periods of %d frames\n", seconds, kRate, kPeriod);
    measureLink(seconds);
    const Server server;
    Band band;
    measureMidi(band, seconds);
    measureTransport(band, seconds);
    return 0;
}
