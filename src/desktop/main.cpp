// Marlune 200Q: the instrument in a window. Everything is put together here.
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

#include <QApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QTimer>

#include "boundary/engine_component.h"
#include "boundary/menus.h"
#include "commands/panel_events.h"
#include "commands/reset_program.h"
#include "desktop/accessible.h"
#include "desktop/fd_pump.h"
#include "desktop/main_window.h"
#include "desktop/panel_widget.h"
#include "desktop/qt_shell.h"
#include "desktop/sound_meter.h"
#include "desktop/theme.h"
#include "engine/engine_runner.h"
#include "midi/midi_input.h"
#include "platform/config_folder.h"
#include "platform/instance_lock.h"
#include "platform/platform.h"
#include "platform/settings_file.h"
#include "platform/signals.h"
#include "program/recovery.h"
#include "program/startup.h"
#include "project/run_state.h"
#include "setup/config_file.h"
#include "setup/midi_devices.h"
#include "transport/clock_follow.h"

namespace marlune {

namespace {

constexpr int kDevicePollMs = 1000;
constexpr int kClockLookMs = 50;

// A descriptor on which other threads announce something.
class WakeDescriptor {
  public:
    WakeDescriptor() : fd(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
    ~WakeDescriptor() { ::close(fd); }
    WakeDescriptor(const WakeDescriptor&) = delete;
    WakeDescriptor& operator=(const WakeDescriptor&) = delete;
    const int fd;
};

// The whole command line counts as one file name.
std::string commandLine(const QStringList& arguments) {
    return arguments.mid(1).join(' ').toStdString();
}

// The manual: beside the program, where it is installed, or in the sources that it was built from.
QString helpFile() {
    const QString folder = QApplication::applicationDirPath();
    for (const char* place :
         {"/marlune.html", "/../share/marlune200q/help.html", "/../../../packaging/help.html"}) {
        if (QFileInfo::exists(folder + place)) return folder + place;
    }
    return {};
}

// The demo songs and the starter: where they are installed, or in the sources.
std::string examplesFolder() {
    const QString folder = QApplication::applicationDirPath();
    for (const char* place : {"/../share/marlune200q/examples", "/../../../examples"}) {
        if (QFileInfo::exists(folder + place)) return (folder + place).toStdString();
    }
    return {};
}

// Devices, engine and the pumps that bring their messages here; connected while it lives.
class Machine {
  public:
    explicit Machine(const std::string& folder)
        : platform_({.stateFile = folder + "/devices.state", .room = roomWanted(folder)}),
          engine_(platform_.clock(), platform_.outputs()) {
        setEngineComponent(&engine_);
        setOutputDevices(&platform_.outputs());
        MIDIIn1.attach(&platform_.inputs(), midiWake_.fd);
        MIDIIn1.setTap(&engine_);
        Clocks& clocks = platform_.clocks();
        clocks.offerMidi(engine_.midiClock());
        engine_.offerClock(ClockKind::link, clocks.linkSource());
        engine_.offerClock(ClockKind::jack, clocks.jackSource());
        setClockRoom(&clocks);
        QObject::connect(&clockLook_, &QTimer::timeout, tendClock);
        QObject::connect(&devicePoll_, &QTimer::timeout, [this] {
            for (const std::string& line : platform_.poll()) shell().showPassing(line);
            openMissingDevices();
            lookAtClock();
        });
        devicePoll_.start(kDevicePollMs);
    }
    ~Machine() {
        SetMarluneHwnd32(-1);
        setClockRoom(nullptr);
        MIDIIn1.attach(nullptr, -1);
        MIDIIn1.setTap(nullptr);
        setOutputDevices(nullptr);
        setEngineComponent(nullptr);
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    [[nodiscard]] int windowHandle() const { return engineWake_.fd; }
    [[nodiscard]] Platform& platform() { return platform_; }

  private:
    // Our own clock has nothing to show that changes.
    void lookAtClock() {
        const bool follows = clockState->chosen.kind != ClockKind::internal;
        if (follows && !clockLook_.isActive()) clockLook_.start(kClockLookMs);
        if (!follows) clockLook_.stop();
    }

    WakeDescriptor engineWake_, midiWake_;
    Platform platform_;
    Engine engine_;
    FdPump enginePump_{engineWake_.fd, engineSpoke};
    FdPump midiPump_{midiWake_.fd, midiArrived};
    QTimer devicePoll_, clockLook_;
};

// Ends the program without a question: unsaved work is kept, every note released, the settings written.
void endUnasked() {
    keepRecovery();
    MDIForm_Unload();
}

void endBySignal() {
    endUnasked();
    QApplication::exit(0);
}

// A lost display ends the process from inside the toolkit, with everything still standing.
void endByExit() {
    if (transportState->programClosing || engineComponent() == nullptr) return;
    setPanelView(nullptr);
    setAppShell(nullptr);
    endUnasked();
}

pid_t mainProcess = 0; // until the program has ended

int run(int argc, char** argv) {
    const Signals terminations;
    QApplication app(argc, argv);
    applyTheme(app);
    installPanelAccessibility();
    resetMenus(); // the window is built from them
    QtShell qt;
    setAppShell(&qt);
    setPanelView(&qt.panel());
    setPanelForm(&qt.panel());
    qt.setHelpFile(helpFile());

    InstanceLock lock;
    StartupHooks hooks;
    if (!lock.acquire()) {
        hooks.anotherInstanceRuns = [] { return true; };
        startupMain("", hooks);
        return 1;
    }
    const std::string folder = configFolder();
    Machine machine(folder);
    const FdPump signalPump(terminations.fd(), endBySignal);
    qt.window().showSound({.peak = [&machine] { return machine.platform().soundPeak(); },
                           .mute = [&machine](bool on) { machine.platform().muteSound(on); },
                           .sounding = [&machine] { return !machine.platform().soundDriver().empty(); }});
    qt.mayClose = MDIForm_QueryUnload;
    qt.closing = MDIForm_Unload;
    resetProgram();
    setConfigFolder(folder);
    qt.setWindowFile(QString::fromStdString(folder) + "/windows.cfg");
    hooks.showMainWindow = [&qt] {
        qt.window().showCentred();
        qt.openRemembered();
    };
    hooks.showSplash = [&qt](bool visible) { visible ? qt.showSplash() : qt.hideSplash(); };
    hooks.windowHandle = machine.windowHandle();
    hooks.examplesFolder = examplesFolder();
    hooks.randomSeed = static_cast<unsigned>(QDateTime::currentMSecsSinceEpoch());
    hooks.recoveryFolder = stateFolder() + "/recovery";
    std::atexit(endByExit);
    mainProcess = ::getpid();
    QTimer recovery;
    QObject::connect(&recovery, &QTimer::timeout, tendRecovery);
    QObject::connect(&app, &QGuiApplication::commitDataRequest, keepRecovery);
    recovery.start(kDevicePollMs);
    startupMain(commandLine(QApplication::arguments()), hooks);
    return transportState->programClosing ? 0 : QApplication::exec();
}

} // namespace

} // namespace marlune

// Parts of the toolkit leave by this when their display is lost, past everything that would tidy up. Stands
// before the C library's, for this process alone and not for its children.
extern "C" void _exit(int status) {
    if (std::exchange(marlune::mainProcess, 0) == ::getpid() && ::gettid() == ::getpid())
        marlune::endByExit();
    ::syscall(SYS_exit_group, status);
    __builtin_unreachable();
}

int main(int argc, char** argv) {
    return marlune::run(argc, argv);
}
