#include "cli/session.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

#include "commands/panel_events.h"
#include "commands/reset_program.h"
#include "midi/midi_input.h"
#include "platform/signals.h"
#include "program/startup.h"
#include "project/global_config.h"
#include "setup/config_file.h"
#include "setup/midi_devices.h"
#include "transport/transport.h"

namespace marlune {

namespace {

constexpr int kPollMs = 1000;   // how often the devices are looked after
constexpr int kEventMs = 20;    // how often the progress is shown
constexpr int kSettleMs = 3000; // a server that stands still is waited for no longer
constexpr int kSettleStepMs = 5;
constexpr int kFarewellMs = 120; // longer than any port holds a message back

void drain(int descriptor) {
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t got = ::read(descriptor, &count, sizeof count);
}

} // namespace

// One device that is the renderer.
class Session::RenderDevices final : public OutputDevices {
  public:
    explicit RenderDevices(OutputPort* port) : port_(port) {}
    int count() override { return 1; }
    std::string name(int /*index*/) override { return "Renderer"; }
    OutputPort* open(int index) override { return index == 0 ? port_ : nullptr; }
    void close(OutputPort* /*port*/) override {}

  private:
    OutputPort* port_;
};

Session::Session(const SessionOptions& options) : logs_(options.log) {
    setAppShell(&shell);
    resetProgram();
    if (options.live) {
        startLive(options);
        return;
    }
    if (options.render != nullptr) renderDevices_ = std::make_unique<RenderDevices>(options.render);
    virtual_ = std::make_unique<VirtualEngine>(renderDevices_.get(), &log);
    engine_ = virtual_.get();
    setEngineComponent(engine_);
    setConfigFolder(options.configFolder);
    StartupHooks hooks;
    hooks.openDevices = false;
    startupMain("", hooks);
    setConfigFolder(""); // read, and never written from here
    if (renderDevices_) OpenMidiPort32(0);
}

void Session::startLive(const SessionOptions& options) {
    wake_ = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    platform_ = std::make_unique<Platform>(PlatformOptions{});
    live_ = std::make_unique<Engine>(platform_->clock(), platform_->outputs(), &log);
    engine_ = live_.get();
    setEngineComponent(engine_);
    setOutputDevices(&platform_->outputs());
    MIDIIn1.attach(&platform_->inputs(), wake_);
    setConfigFolder(options.configFolder);
    StartupHooks hooks;
    hooks.windowHandle = wake_;
    hooks.configured = [&] { chooseDevice(options.device); };
    startupMain("", hooks);
    setConfigFolder(""); // read, and never written from here
}

Session::~Session() {
    if (engine_ != nullptr) {
        StopPlay();
        SetMarluneHwnd32(-1);
    }
    if (live_) std::this_thread::sleep_for(std::chrono::milliseconds(kFarewellMs));
    MDIForm_Unload();
    MIDIIn1.attach(nullptr, -1);
    setOutputDevices(nullptr);
    setEngineComponent(nullptr);
    live_.reset();
    virtual_.reset();
    platform_.reset();
    if (wake_ >= 0) ::close(wake_);
    setAppShell(nullptr);
}

void Session::chooseDevice(const std::string& device) {
    if (device.empty() && config.midiOutDevice < 0) {
        std::fputs("No output is configured: the built-in synthesizer plays.\n", stderr);
        config.midiInDevice = config.midiOutDevice = config.syncOutDevice = 0;
    }
    if (device.empty()) return;
    OutputDevices& outputs = platform_->outputs();
    int index = -1;
    for (int i = 0; i < outputs.count(); ++i) {
        if (outputs.name(i) == device || std::to_string(i) == device) index = i;
    }
    if (index < 0) error_ = "No output device is called " + device + ". See marlune-cli ports.";
    config.midiOutDevice = config.syncOutDevice = index;
    if (config.midiInDevice < 0) config.midiInDevice = 0;
}

void Session::play(int bars, const std::function<void()>& each) {
    engine_->limitSteps(bars * kSteps);
    if (live_) waitForConnections();
    if (logs_) log.begin();
    playButton();
    if (live_) {
        playLive(each);
    } else {
        while (virtual_->advance()) {
            engineSpoke();
            log.collect();
            each();
        }
    }
    StopPlay();
    engine_->settle(); // the last releases go into the log as well
    log.collect();
}

// A new connection carries nothing at first, and what waits meanwhile would go out in a burst.
void Session::waitForConnections() {
    const CStopWatch watch;
    while (!platform_->settled() && watch.Elapsed() < kSettleMs) runEvents(kSettleStepMs);
}

void Session::runEvents(int ms) {
    const CStopWatch watch;
    do {
        pollfd wait{wake_, POLLIN, 0};
        ::poll(&wait, 1, std::max(0, ms - watch.Elapsed()));
        drain(wake_);
        engineSpoke();
        midiArrived();
        log.collect();
    } while (watch.Elapsed() < ms);
}

void Session::lookAfterDevices() {
    if (sinceDevicePoll_.Elapsed() < kPollMs) return;
    sinceDevicePoll_.Reset();
    for (const std::string& line : platform_->poll()) std::fprintf(stderr, "%s\n", line.c_str());
}

void Session::playLive(const std::function<void()>& each) {
    Signals signals;
    while (!engine_->halted() && !signals.take()) {
        runEvents(kEventMs);
        each();
        lookAfterDevices();
    }
}

} // namespace marlune
