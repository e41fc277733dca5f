// How far what a second JACK client receives lies from the grid of the tempo: our clock, beside a bare
// sleeping thread and the notes of Hydrogen, where that is installed, on the same server in the same run.
//
// usage: bench_jack_timing [SECONDS [RUNS]]   (default 60 and 5; "2 1" for a quick look)
//
// A server of its own that plays to nothing, at periods of 64, 256 and 1024 frames; tempos 40, 140 and 240;
// the machine idle, with every core busy, and with the window's controls being clicked, dragged and turned
// all the time in the process that plays. The grid is laid through the median of what arrived: a fixed
// latency is no deviation. The bare thread sleeps until the same distances, and its deviations are its
// wake-ups'. Hydrogen plays a note on every sixteenth. Each figure is the median of the runs. Lines are rows
// of the table in docs/performance.md.
#include <fcntl.h>
#include <jack/jack.h>
#include <jack/midiport.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "boundary/engine_component.h"
#include "boundary/midi_bytes.h"
#include "commands/panel_events.h"
#include "commands/reset_program.h"
#include "desktop/fd_pump.h"
#include "desktop/main_window.h"
#include "desktop/panel_widget.h"
#include "desktop/qt_shell.h"
#include "engine/engine_runner.h"
#include "panel/knobs.h"
#include "platform/platform.h"
#include "program/startup.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "setup/midi_devices.h"
#include "transport/transport.h"

namespace {

using namespace marlune;
using Steady = std::chrono::steady_clock;

constexpr int kRate = 48000;
constexpr const char* kServer = "marlune-bench";
constexpr const char* kOurs = "Marlune 200Q:Marlune 200Q Out";
constexpr const char* kHydrogens = "Hydrogen-midi:TX";
constexpr int kClocksPerBeat = 24;
constexpr int kNotesPerBeat = 4;

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
        for (int i = 0; i < 100; ++i, sleepMs(50)) {
            jack_client_t* const probe = jack_client_open("probe", JackNoStartServer, nullptr);
            if (probe != nullptr && jack_client_close(probe) == 0) return;
        }
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

// Hydrogen without a window, playing a song of sixteenths with the server's transport. None where it isn't
// installed or doesn't come.
class Hydrogen {
  public:
    explicit Hydrogen(int tempo) : home_(std::filesystem::temp_directory_path() / "marlune-bench-hydrogen") {
        const std::string shared = "/usr/share/hydrogen/data/";
        std::string song = fileText(shared + "demo_songs/GM_kit_demo1.h2song");
        std::string settings = fileText(shared + "hydrogen.default.conf");
        if (song.empty() || settings.empty()) return;
        std::string pattern =
            "<patternList><pattern><name>row</name><category></category><size>192</size>"
            "<denominator>4</denominator><info></info><noteList>";
        for (int position = 0; position < 192; position += 12)
            pattern +=
                "<note><position>" + std::to_string(position) +
                "</position><leadlag>0</leadlag><velocity>0.8</velocity><pan>0</pan><pitch>0</pitch>"
                "<probability>1</probability><key>C0</key><length>-1</length><instrument>0</instrument>"
                "<note_off>false</note_off></note>";
        replace(song, "<patternList>", "</patternList>", pattern + "</noteList></pattern></patternList>");
        std::string order = "<patternSequence>";
        for (int bar = 0; bar < 300; ++bar) order += "<group><patternID>row</patternID></group>";
        replace(song, "<patternSequence>", "</patternSequence>", order + "</patternSequence>");
        replace(song, "<bpm>", "</bpm>", "<bpm>" + std::to_string(tempo) + "</bpm>");
        replace(song, "<humanize_time>", "</humanize_time>", "<humanize_time>0</humanize_time>");
        replace(song, "<humanize_velocity>", "</humanize_velocity>",
                "<humanize_velocity>0</humanize_velocity>");
        replace(song, "<midiOutChannel>", "</midiOutChannel>", "<midiOutChannel>0</midiOutChannel>");
        replace(settings, "<driverName>", "</driverName>", "<driverName>JACK-MIDI</driverName>");
        replace(settings, "<showDevelWarning>", "</showDevelWarning>",
                "<showDevelWarning>false</showDevelWarning>");
        std::filesystem::create_directories(home_ / ".hydrogen");
        std::ofstream(home_ / "row.h2song") << song;
        std::ofstream(home_ / ".hydrogen/hydrogen.conf") << settings;
        child_ = fork();
        if (child_ != 0) return;
        setpgid(0, 0); // it has a child of its own
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        const int nowhere = open("/dev/null", O_RDWR);
        for (const int each : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, each);
        setenv("HOME", home_.c_str(), 1);
        jack_set_error_function([](const char*) {});
        jack_set_info_function([](const char*) {});
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        execlp("hydrogen", "hydrogen", "-n", "-d", "jack", "-s", (home_ / "row.h2song").c_str(), nullptr);
        _exit(1);
    }
    ~Hydrogen() {
        if (child_ <= 0) return;
        kill(-child_, SIGTERM); // gently: a client that dies at once can cost the server some cycles
        for (int i = 0; i < 30 && waitpid(child_, nullptr, WNOHANG) == 0; ++i) sleepMs(100);
        kill(-child_, SIGKILL);
        waitpid(child_, nullptr, 0);
        sleepMs(500);
    }
    Hydrogen(const Hydrogen&) = delete;
    Hydrogen& operator=(const Hydrogen&) = delete;

    // Its output, once it is there; false after 20 s.
    [[nodiscard]] bool plays(jack_client_t* client) const {
        for (int i = 0; i < 200 && child_ > 0 && client != nullptr; ++i, sleepMs(100))
            if (jack_port_by_name(client, kHydrogens) != nullptr) return true;
        return false;
    }

  private:
    static std::string fileText(const std::string& path) {
        std::ostringstream all;
        all << std::ifstream(path).rdbuf();
        return all.str();
    }
    // The first stretch of a text between two words, these included.
    static void replace(std::string& in, const std::string& from, const std::string& to,
                        const std::string& by) {
        const std::size_t start = in.find(from);
        const std::size_t end = start == std::string::npos ? start : in.find(to, start);
        if (end != std::string::npos) in.replace(start, end + to.size() - start, by);
    }

    std::filesystem::path home_;
    pid_t child_ = 0;
};

// Keeps the frames at which our clock bytes and Hydrogen's notes arrive.
class Listener {
  public:
    explicit Listener(std::size_t room) : clocks_(room), notes_(room) {
        client_ = jack_client_open("listener", JackNoStartServer, nullptr);
        if (client_ == nullptr) return;
        for (Ear* ear : {&clocks_, &notes_})
            ear->port = jack_port_register(client_, ear == &clocks_ ? "clocks" : "notes",
                                           JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
        jack_set_process_callback(
            client_, [](jack_nframes_t n, void* self) { return static_cast<Listener*>(self)->process(n); },
            this);
        jack_activate(client_);
    }
    ~Listener() {
        if (client_ != nullptr) jack_client_close(client_);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // Whether Hydrogen is heard as well.
    bool connect(const Hydrogen* hydrogen) {
        const auto hear = [this](const char* from, const Ear& ear) {
            for (int i = 0; i < 1000 && jack_connect(client_, from, jack_port_name(ear.port)) != 0; ++i)
                sleepMs(10);
        };
        hear(kOurs, clocks_);
        const bool both = hydrogen != nullptr && hydrogen->plays(client_);
        if (both) hear(kHydrogens, notes_);
        sleepMs(200);
        return both;
    }
    void roll(bool on) { on ? jack_transport_start(client_) : jack_transport_stop(client_); }
    void rewind() { jack_transport_locate(client_, 0); }

    std::vector<double> clocks() const { return clocks_.places(0); }
    std::vector<double> notes() const { return notes_.places(4); } // its first events are none of its song

  private:
    struct Ear {
        explicit Ear(std::size_t room) : frames(room) {}
        std::vector<double> places(std::size_t without) const {
            const std::size_t all = count.load();
            const auto begin = frames.begin() + static_cast<std::ptrdiff_t>(std::min(without, all));
            return {begin, frames.begin() + static_cast<std::ptrdiff_t>(all)};
        }
        std::vector<std::int64_t> frames;
        std::atomic<std::size_t> count{0};
        jack_port_t* port = nullptr;
    };

    int process(jack_nframes_t count) {
        const auto start = static_cast<std::int64_t>(jack_last_frame_time(client_));
        for (Ear* ear : {&clocks_, &notes_}) {
            void* buffer = jack_port_get_buffer(ear->port, count);
            for (jack_nframes_t i = 0; i < jack_midi_get_event_count(buffer); ++i) {
                jack_midi_event_t event;
                if (jack_midi_event_get(&event, buffer, i) != 0 || event.size == 0) continue;
                const bool note =
                    statusKind(event.buffer[0]) == kNoteOn && event.size == 3 && event.buffer[2] != 0;
                if (ear == &clocks_ ? event.buffer[0] != kTimingClock : !note) continue;
                if (ear->count < ear->frames.size()) ear->frames[ear->count++] = start + event.time;
            }
        }
        return 0;
    }

    jack_client_t* client_ = nullptr;
    Ear clocks_, notes_;
};

// Deviations of p50, p99 and p99.9, in frames.
struct Figures {
    double p50 = 0, p99 = 0, p999 = 0;
};

// places: in frames, one for each clock of the grid.
Figures figuresOf(const std::vector<double>& places, int tempo, int perBeat = kClocksPerBeat) {
    if (places.size() < 10) return {NAN, NAN, NAN};
    const double distance = 60.0 * kRate / perBeat / tempo;
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
    Figures ours, bare, hydrogen;
};

// Who plays our clock: the engine alone, or the whole program with hands on its window.
class Player {
  public:
    virtual ~Player() = default;
    virtual void start(int tempo) = 0;
    virtual void wait(std::atomic<bool>& over) = 0;
};

class EngineAlone final : public Player {
  public:
    EngineAlone() {
        setEngineComponent(&engine_);
        OpenMidiPort32(1);
    }
    ~EngineAlone() override {
        StopMarluneTimer32();
        setEngineComponent(nullptr);
    }
    void start(int tempo) override {
        SetMarluneTempo32(tempo);
        StartMarluneTimer32(10, 0);
    }
    void wait(std::atomic<bool>& over) override {
        while (!over) sleepMs(10);
    }

  private:
    Platform platform_{{.stateFile = "", .sound = false}};
    Engine engine_{platform_.clock(), platform_.outputs()};
};

// Whatever the panel has, but for transport and tempo, at a few hundred touches a second.
class HandsOnTheWindow final : public Player {
  public:
    HandsOnTheWindow() {
        resetMenus();
        shell_ = std::make_unique<QtShell>();
        setAppShell(shell_.get());
        setPanelView(&shell_->panel());
        setPanelForm(&shell_->panel());
        setEngineComponent(&engine_);
        setOutputDevices(&platform_.outputs());
        resetProgram();
        StartupHooks hooks;
        hooks.windowHandle = wake_;
        hooks.openDevices = false;
        hooks.showMainWindow = [this] { shell_->window().showCentred(); };
        startupMain("", hooks);
        OpenMidiPort32(1);
        for (const PlacedControl& each : placedControls()) {
            constexpr Control kLeft[] = {
                Control::PlayHit,    Control::startStopButton, Control::playSongButton, Control::stopButton,
                Control::RecButton,  Control::Check1,          Control::ResetButton,    Control::prevButton,
                Control::nextButton, Control::RwdStep,         Control::FwdStep,        Control::knobTempo};
            if (each.interactive && std::ranges::find(kLeft, each.control) == std::end(kLeft))
                controls_.push_back(&each);
        }
    }
    ~HandsOnTheWindow() override {
        StopPlay();
        MDIForm_Unload();
        setPanelView(nullptr);
        setPanelForm(nullptr);
        setAppShell(nullptr);
        shell_.reset();
        setOutputDevices(nullptr);
        setEngineComponent(nullptr);
        resetProgram();
        close(wake_);
    }
    void start(int tempo) override {
        project.tempo = tempo;
        refreshTempo();
        playButton();
    }
    void wait(std::atomic<bool>& over) override {
        while (!over) {
            const PlacedControl& c = *controls_[random_() % controls_.size()];
            const double y = 15.0 * (c.rect.y + c.rect.height / 2.0);
            panelPointer(c.control, c.index, {.action = PointerAction::press, .y = y});
            for (int move = 1; move <= 3; ++move) {
                panelPointer(c.control, c.index, {.action = PointerAction::move, .y = y - 150.0 * move});
                QCoreApplication::processEvents(QEventLoop::AllEvents);
            }
            panelPointer(c.control, c.index, {.action = PointerAction::release, .y = y});
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            sleepMs(2);
        }
    }

  private:
    const int wake_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    Platform platform_{{.stateFile = "", .sound = false}};
    Engine engine_{platform_.clock(), platform_.outputs()};
    std::unique_ptr<QtShell> shell_;
    FdPump pump_{wake_, engineSpoke};
    std::vector<const PlacedControl*> controls_;
    std::minstd_rand random_{1};
};

Run measure(Player& player, const Hydrogen* hydrogen, int tempo, int seconds) {
    const auto clocks = static_cast<std::int64_t>(seconds) * tempo * kClocksPerBeat / 60;
    Listener listener(static_cast<std::size_t>(clocks) + 1000);
    const bool beside = listener.connect(hydrogen);
    if (beside) listener.rewind(), listener.roll(true);
    player.start(tempo);
    std::vector<double> wakeUps;
    wakeUps.reserve(static_cast<std::size_t>(clocks));
    std::atomic<bool> over{false};
    std::thread bare([&] {
        const std::chrono::duration<double> distance(60.0 / kClocksPerBeat / tempo);
        const auto start = Steady::now() + std::chrono::milliseconds(30);
        for (std::int64_t n = 0; n < clocks; ++n) {
            std::this_thread::sleep_until(
                start + std::chrono::duration_cast<Steady::duration>(distance * static_cast<double>(n)));
            wakeUps.push_back(std::chrono::duration<double>(Steady::now() - start).count() * kRate);
        }
        over = true;
    });
    player.wait(over);
    bare.join();
    if (beside) listener.roll(false);
    return {figuresOf(listener.clocks(), tempo), figuresOf(wakeUps, tempo),
            figuresOf(listener.notes(), tempo, kNotesPerBeat)};
}

template <typename Playing>
void measureAll(const char* load, int seconds, int runs) {
    const auto print = [](const Figures& figures) {
        if (std::isnan(figures.p50))
            std::printf(" - |");
        else
            std::printf(" %.1f / %.1f / %.1f |", figures.p50, figures.p99, figures.p999);
    };
    for (const int period : {64, 256, 1024}) {
        const Server server(period);
        for (const int tempo : {40, 140, 240}) {
            const Hydrogen hydrogen(tempo);
            std::vector<Figures> ours, bare, theirs;
            for (int run = 0; run < runs; ++run) {
                Playing player;
                const Run result = measure(player, &hydrogen, tempo, seconds);
                ours.push_back(result.ours);
                bare.push_back(result.bare);
                theirs.push_back(result.hydrogen);
            }
            std::printf("| %s | %d | %d |", load, period, tempo);
            for (const auto* runsOf : {&ours, &bare, &theirs}) print(medianOf(*runsOf));
            std::printf("\n");
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
    jack_set_error_function([](const char*) {});
    jack_set_info_function([](const char*) {});
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication app(argc, argv);
    std::printf(
        "| machine | period | tempo | received, p50 / p99 / p99.9 frames | bare thread | Hydrogen |\n"
        "|---|---|---|---|---|---|\n");
    measureAll<EngineAlone>("idle", seconds, runs);
    measureAll<HandsOnTheWindow>("hands", seconds, runs);
    std::atomic<bool> busy{true};
    std::vector<std::thread> burners(std::max(std::thread::hardware_concurrency(), 1U));
    for (std::thread& burner : burners)
        burner = std::thread([&busy] {
            for (volatile unsigned n = 0; busy.load(std::memory_order_relaxed);) n = n + 1;
        });
    measureAll<EngineAlone>("busy", seconds, runs);
    busy = false;
    for (std::thread& burner : burners) burner.join();
    return 0;
}
