// A random user of the whole window program: clicks, drags, keys, menus, dialogs, hostile files and texts,
// MIDI, devices that come and go, in virtual time and without a display. What must hold at any moment is
// checked all along; the sanitizers of its build see the rest.
//
// usage: monkey SECONDS [SEED [LOG]]   (see tools/monkey/run)
//
// The same hands as a user's: events enter at the windows, so that what a modal dialog keeps away stays away,
// and they come by a descriptor, so that a routine that lets only painting through meets none of them. Every
// action is a line of LOG before it is done. Ends with 1 at the first broken promise; a program that does not
// come back to its event loop for a minute is ended.
#include <sys/eventfd.h>
#include <unistd.h>

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QWheelEvent>
#include <QWindow>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "boundary/sounding_notes.h"
#include "commands/panel_events.h"
#include "commands/reset_program.h"
#include "desktop/fd_pump.h"
#include "desktop/main_window.h"
#include "desktop/panel_widget.h"
#include "desktop/qt_shell.h"
#include "desktop/theme.h"
#include "engine/virtual_engine.h"
#include "files/project_file.h"
#include "midi/midi_input.h"
#include "program/open_project.h"
#include "program/recovery.h"
#include "program/startup.h"
#include "project/record_limits.h"
#include "project/song_track.h"
#include "setup/config_file.h"
#include "setup/midi_devices.h"

// What the toolkit's own tests send events with: at a window, as from the display.
Q_GUI_EXPORT void qt_handleMouseEvent(QWindow*, const QPointF&, const QPointF&, Qt::MouseButtons,
                                      Qt::MouseButton, QEvent::Type, Qt::KeyboardModifiers, int);
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow*, QEvent::Type, int, Qt::KeyboardModifiers, const QString&, bool,
                                    ushort);

namespace marlune {
namespace {

namespace fs = std::filesystem;

constexpr int kPatience = 60;   // s until the program counts as hung
constexpr int kDeepest = 8;     // routines that wait, one inside the other, before only answers are given
constexpr int kCheckEvery = 40; // actions

std::uint32_t virtualMs = 1000;

const char* const kHostile[] = {"",
                                "0",
                                "-1",
                                "1",
                                "16",
                                "999",
                                "1000",
                                "65536",
                                "-32768",
                                "2147483648",
                                "-2147483649",
                                "1e9",
                                "1e309",
                                "NaN",
                                "0x7f",
                                "&H7F",
                                "1.5",
                                "1,5",
                                " 12 ",
                                "+5",
                                "%s%n%x",
                                "\u00e4\u20ac\u4f60",
                                "\u0661\u0662",
                                "a\tb",
                                "../../x",
                                "/dev/null",
                                "<img src=\"/dev/zero\">",
                                "\u202eevil",
                                "12",
                                "127",
                                "128",
                                "60",
                                "140"};

// The ear at the output: only legal messages, and which notes sound.
struct Ear final : OutputPort {
    void send(const MidiMessage& message, std::int64_t /*due*/) noexcept override {
        legal = legal && message.size > 0 && message.size == midiMessageLength(message.bytes[0]);
        for (int i = 1; i < message.size; ++i) legal = legal && message.bytes[i] < 0x80;
        notes.read(message);
    }
    SoundingNotes notes;
    bool legal = true;
};

struct Devices final : OutputDevices, InputDevices {
    int count() override { return devices; }
    std::string name(int index) override { return "<b>Device</b> " + std::to_string(index); }
    OutputPort* open(int index) override { return index >= 0 && index < devices ? &ears[index] : nullptr; }
    void close(OutputPort* /*port*/) override {}
    bool open(int index, InputSinks& sinks) override {
        input = index >= 0 && index < devices ? &sinks.link(index % kInputLinks) : nullptr;
        return input != nullptr;
    }
    void close() override { input = nullptr; }
    int devices = 2;
    Ear ears[2];
    InputSink* input = nullptr;
};

class Monkey {
  public:
    Monkey(int seconds, unsigned seed, std::FILE* log);
    void liveOn(); // one life of the program, from its start to its end
    bool over() const { return std::chrono::steady_clock::now() > end_; }
    int actions = 0, lives = 0, checks = 0, rounds = 0;

  private:
    int below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename List>
    auto& one(List& list) {
        return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
    }
    void say(const std::string& line);
    [[noreturn]] void fail(const std::string& what);
    void makeFiles();
    void hostileSettings();

    void act();
    void actOnce(QWindow* at);
    void pass(int ms);
    void mouse(QWindow* at, QPoint place, QEvent::Type type, Qt::MouseButton button);
    void press(QWindow* at);
    void letGo();
    void wheel(QWindow* at);
    void key(QWindow* at);
    void tap(QWindow* at, int code, Qt::KeyboardModifiers with, const QString& text = {});
    void type(QWindow* at, const QString& text);
    void answerFileDialog(QFileDialog* dialog);
    void onChild(QWidget* window);
    void menu();
    void midi();
    void end(QWindow* at);
    QWindow* target();

    void check();
    void checkRoundTrip();

    std::mt19937 random_;
    std::FILE* log_;
    std::chrono::steady_clock::time_point end_;
    fs::path folder_;
    std::vector<fs::path> files_;
    Devices devices_;
    std::unique_ptr<VirtualEngine> engine_;
    std::unique_ptr<QtShell> shell_;
    int wake_ = eventfd(0, EFD_NONBLOCK);
    int depth_ = 0;
    bool resting_ = false;
    double owedMs_ = 0; // of the engine's time
    QPointer<QWindow> held_;
    QPoint place_;
    Qt::MouseButton button_ = Qt::NoButton;
    bool drag_ = false, twice_ = false; // what follows the press
    Qt::KeyboardModifiers mods_;
};

Monkey::Monkey(int seconds, unsigned seed, std::FILE* log)
    : random_(seed), log_(log), end_(std::chrono::steady_clock::now() + std::chrono::seconds(seconds)) {
    std::string name = (fs::temp_directory_path() / "marlune-monkey-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
    fs::create_directories(folder_ / "deep/er/still"); // a name such as ../../x stays inside
    fs::current_path(folder_ / "deep/er/still");
    makeFiles();
    std::thread([wake = wake_] {
        for (const std::uint64_t one = 1;; std::this_thread::sleep_for(std::chrono::milliseconds(1)))
            if (::write(wake, &one, sizeof one) < 0 && errno != EAGAIN) return;
    }).detach();
}

void Monkey::say(const std::string& line) {
    std::fprintf(log_, "%d %d %s\n", actions, depth_, line.c_str());
    std::fflush(log_);
}

void Monkey::fail(const std::string& what) {
    say("BROKEN " + what);
    std::fprintf(stderr, "monkey: after %d actions: %s\n", actions, what.c_str());
    std::abort();
}

void Monkey::makeFiles() {
    const auto put = [&](const std::string& name, const std::vector<std::uint8_t>& bytes) {
        const fs::path path = folder_ / "files" / name;
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        files_.push_back(path);
    };
    fs::create_directories(folder_ / "files/folder.mlp");
    const fs::path sources(MARLUNE_SOURCES);
    for (const char* place : {"examples", "fuzz/corpus/rbs", "fuzz/corpus/rb40", "fuzz/corpus/midi"}) {
        std::error_code none;
        for (const auto& entry : fs::directory_iterator(sources / place, none)) {
            if (!entry.is_regular_file()) continue;
            std::ifstream in(entry.path(), std::ios::binary);
            std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
            const std::string name = entry.path().filename().string();
            put(name, bytes);
            if (bytes.empty()) continue;
            for (int i = 0; i < 60; ++i)
                bytes[random_() % bytes.size()] = static_cast<std::uint8_t>(random_());
            put("hurt " + name, bytes);
            bytes.resize(random_() % bytes.size());
            put("<b>cut</b> & " + name, bytes);
        }
    }
    put("empty.mlp", {});
    fs::create_symlink("nowhere", folder_ / "files/dangling.mlp");
    files_.push_back(folder_ / "files/dangling.mlp");
    files_.push_back(folder_ / "files/folder.mlp");
    for (int i = 0; i < 3; ++i) files_.push_back(folder_ / ("files/saved" + std::to_string(i) + ".mlp"));
}

void Monkey::hostileSettings() {
    const int kind = below(4);
    if (kind > 1) return;
    for (const char* name : {"marlune.cfg", "labels.cfg", "windows.cfg"}) {
        std::ofstream file(folder_ / "config" / name, std::ios::binary);
        for (int i = 0; i < (kind == 0 ? 518 : below(600)); ++i) file.put(static_cast<char>(random_()));
    }
}

void Monkey::liveOn() {
    ++lives;
    say("START");
    fs::create_directories(folder_ / "config");
    hostileSettings();
    setMillisecondClock([] { return virtualMs; });
    resetMenus();
    engine_ = std::make_unique<VirtualEngine>(&devices_);
    shell_ = std::make_unique<QtShell>();
    setAppShell(shell_.get());
    setPanelView(&shell_->panel());
    setPanelForm(&shell_->panel());
    setEngineComponent(engine_.get());
    setOutputDevices(&devices_);
    MIDIIn1.attach(&devices_, -1);
    shell_->mayClose = MDIForm_QueryUnload;
    shell_->closing = MDIForm_Unload;
    resetProgram();
    setConfigFolder((folder_ / "config").string());
    shell_->setWindowFile(QString::fromStdString((folder_ / "config/windows.cfg").string()));
    shell_->setHelpFile(QStringLiteral(MARLUNE_SOURCES "/packaging/help.html"));
    StartupHooks hooks;
    hooks.showMainWindow = [this] {
        shell_->window().showCentred();
        shell_->openRemembered();
    };
    hooks.showSplash = [this](bool visible) { visible ? shell_->showSplash() : shell_->hideSplash(); };
    hooks.examplesFolder = MARLUNE_SOURCES "/examples";
    hooks.recoveryFolder = (folder_ / "recovery").string();
    hooks.randomSeed = static_cast<unsigned>(random_());
    {
        const FdPump hands(wake_, [this] { act(); });
        const std::string file = chance(50) ? one(files_).string() : "";
        say("with " + file);
        startupMain(file, hooks);
        if (!transportState->programClosing) QApplication::exec();
    }
    if (!transportState->programClosing) MDIForm_Unload();
    for (Ear& ear : devices_.ears)
        ear.notes.releaseAll([&](const MidiMessage&) { fail("a note after the end"); });
    setPanelView(nullptr);
    setPanelForm(nullptr);
    setAppShell(nullptr);
    shell_.reset();
    setEngineComponent(nullptr);
    setOutputDevices(nullptr);
    MIDIIn1.attach(nullptr, -1);
    engine_.reset();
    resetProgram();
    held_ = nullptr;
    button_ = Qt::NoButton;
}

// --- hands

QWindow* Monkey::target() {
    const auto windowOf = [](QWidget* widget) {
        return widget != nullptr ? widget->windowHandle() : nullptr;
    };
    if (QWindow* popup = windowOf(QApplication::activePopupWidget())) return popup;
    QWindow* modal = windowOf(QApplication::activeModalWidget());
    if (modal != nullptr && chance(90)) return modal;
    QList<QWindow*> shown;
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (window->isVisible()) shown.push_back(window);
    return shown.empty() ? nullptr : one(shown);
}

// Called whenever the event loop has time for a user: while a dialog runs, inside the action that opened it.
void Monkey::act() {
    alarm(kPatience); // the stack of a hang is told by the sanitizer
    ++depth_;
    pass(chance(1) ? below(3000) : below(40));
    if (resting_) return static_cast<void>(--depth_);
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    QWindow* const at = target();
    if (at == nullptr) {
    } else if (dialog != nullptr) {
        answerFileDialog(dialog); // and nothing else there: what it can reach is this machine's
    } else if (over() || depth_ > kDeepest) {
        end(at);
    } else {
        ++actions;
        if (actions % kCheckEvery == 0 && depth_ == 1) check();
        actOnce(at);
    }
    --depth_;
}

// Leaves whatever is open; at the bottom the program ends.
void Monkey::end(QWindow* at) {
    letGo();
    QWidget* const modal = QApplication::activeModalWidget();
    if (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    else if (modal != nullptr && chance(70))
        tap(modal->windowHandle(), Qt::Key_Escape, {});
    else if (modal != nullptr)
        onChild(modal);
    else if (depth_ == 1 && over()) {
        say("END");
        check();
        QApplication::exit(0);
    } else
        tap(at, Qt::Key_Escape, {});
}

void Monkey::pass(int ms) {
    virtualMs += static_cast<std::uint32_t>(ms);
    for (owedMs_ += ms; owedMs_ > 0 && engine_->advance();
         owedMs_ -= 2500.0 / std::max<int>(project.tempo, 1))
        if (chance(90)) engineSpoke();
    owedMs_ = std::min(owedMs_, 0.0);
    engineSpoke();
    if (chance(2)) tendRecovery();
    if (chance(2)) openMissingDevices();
}

void Monkey::actOnce(QWindow* at) {
    const int kind = below(100);
    if (button_ != Qt::NoButton && kind < 70) {
        const Qt::MouseButton button = button_;
        if (!held_ || !drag_ || kind < 20) letGo();
        if (held_ && std::exchange(twice_, false)) mouse(held_, place_, QEvent::MouseButtonDblClick, button);
        if (!drag_ || !held_ || button_ == Qt::NoButton) return;
        return mouse(held_, place_ += QPoint(below(81) - 40, below(81) - 40), QEvent::MouseMove,
                     Qt::NoButton);
    }
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal != nullptr && kind < 50) return onChild(modal);
    if (kind < 34) return press(at);
    if (kind < 42) return wheel(at);
    if (kind < 72) return key(at);
    if (kind < 80) return menu();
    if (kind < 87) return midi();
    if (kind < 89) return type(at, QString::fromUtf8(one(kHostile)));
    if (kind < 95) return tap(at, Qt::Key_Space, {}, QStringLiteral(" "));
    if (kind < 97) {
        devices_.devices = below(3);
        say("devices " + std::to_string(devices_.devices));
        return openMissingDevices();
    }
    if (kind < 99) return at->requestActivate();
    if (!chance(10)) return;
    say("close");
    if (modal == nullptr && depth_ == 1) shell_->window().close();
}

void Monkey::mouse(QWindow* at, QPoint place, QEvent::Type type, Qt::MouseButton button) {
    say("mouse " + std::to_string(type) + " button " + std::to_string(button) + " at " +
        std::to_string(place.x()) + "," + std::to_string(place.y()) + " of " + at->title().toStdString());
    if (type != QEvent::MouseMove) button_ = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
    qt_handleMouseEvent(at, place, at->mapToGlobal(place), button_, button, type, mods_,
                        static_cast<int>(virtualMs));
}

void Monkey::press(QWindow* at) {
    letGo();
    const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton,  Qt::LeftButton,
                                       Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
    const Qt::KeyboardModifier mods[] = {Qt::NoModifier,    Qt::NoModifier,      Qt::NoModifier,
                                         Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier};
    mods_ = one(mods);
    place_ = {below(std::max(at->width(), 1)), below(std::max(at->height(), 1))};
    held_ = at;
    const Qt::MouseButton button = one(buttons);
    drag_ = chance(25);
    twice_ = !drag_ && chance(20);
    mouse(at, place_, QEvent::MouseMove, Qt::NoButton);
    if (held_) mouse(held_, place_, QEvent::MouseButtonPress, button);
}

void Monkey::letGo() {
    const Qt::MouseButton was = std::exchange(button_, Qt::NoButton);
    if (was == Qt::NoButton || !held_) return;
    mouse(held_, place_, QEvent::MouseButtonRelease, was);
    mods_ = {};
}

void Monkey::wheel(QWindow* at) {
    const QPointF place(below(std::max(at->width(), 1)), below(std::max(at->height(), 1)));
    const int turn = (below(9) - 4) * (chance(80) ? 120 : 17);
    say("wheel " + std::to_string(turn));
    QWheelEvent event(place, at->mapToGlobal(place), {}, chance(85) ? QPoint(0, turn) : QPoint(turn, 0),
                      Qt::NoButton, chance(80) ? Qt::NoModifier : Qt::ControlModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(at, &event);
}

void Monkey::tap(QWindow* at, int code, Qt::KeyboardModifiers with, const QString& text) {
    const QPointer<QWindow> window(at);
    say("key " + QKeySequence(code | with).toString().toStdString());
    qt_handleKeyEvent(at, QEvent::KeyPress, code, with, text, false, 1);
    if (window && chance(5)) qt_handleKeyEvent(at, QEvent::KeyPress, code, with, text, true, 1);
    if (window) qt_handleKeyEvent(at, QEvent::KeyRelease, code, with, text, false, 1);
}

void Monkey::key(QWindow* at) {
    constexpr int kNamed[] = {
        Qt::Key_Return, Qt::Key_Escape,    Qt::Key_Tab,      Qt::Key_Insert, Qt::Key_Delete,  Qt::Key_Home,
        Qt::Key_End,    Qt::Key_PageUp,    Qt::Key_PageDown, Qt::Key_Left,   Qt::Key_Right,   Qt::Key_Up,
        Qt::Key_Down,   Qt::Key_F1,        Qt::Key_F2,       Qt::Key_F3,     Qt::Key_F4,      Qt::Key_F5,
        Qt::Key_F6,     Qt::Key_F7,        Qt::Key_F8,       Qt::Key_F9,     Qt::Key_F10,     Qt::Key_F11,
        Qt::Key_F12,    Qt::Key_Backspace, Qt::Key_Menu,     Qt::Key_Shift,  Qt::Key_Control, Qt::Key_Alt,
        Qt::Key_Enter,  Qt::Key_Space,     Qt::Key_Z,        Qt::Key_Y};
    const int code = chance(50) ? one(kNamed) : 0x20 + below(0x40);
    Qt::KeyboardModifiers with;
    for (const auto each : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier})
        if (chance(20)) with |= each;
    const bool plain = code < 0x80 && (with & ~Qt::ShiftModifier) == Qt::NoModifier;
    tap(at, code, with, plain ? QString(QChar(code)).toLower() : QString());
}

void Monkey::type(QWindow* at, const QString& text) {
    const QPointer<QWindow> window(at);
    tap(at, Qt::Key_A, Qt::ControlModifier);
    for (const QChar letter : text)
        if (window)
            tap(at, letter.unicode() < 0x80 ? int{letter.toUpper().unicode()} : int{Qt::Key_unknown}, {},
                letter);
}

// Every tenth time it is left; else a name of ours goes in, old or new.
void Monkey::answerFileDialog(QFileDialog* dialog) {
    auto* edit = dialog->findChild<QLineEdit*>();
    if (edit == nullptr || over() || chance(20)) return dialog->reject();
    const fs::path name = one(files_);
    say("file " + name.string());
    edit->setText(QString::fromStdString(name.string()));
    QMetaObject::invokeMethod(dialog, "accept", Qt::DirectConnection);
}

// A click into the middle of one of a dialog's controls, and perhaps a text.
void Monkey::onChild(QWidget* window) {
    QList<QWidget*> controls;
    for (QWidget* child : window->findChildren<QWidget*>())
        if (child->isVisible() && child->focusPolicy() != Qt::NoFocus) controls.push_back(child);
    if (controls.empty()) return tap(window->windowHandle(), Qt::Key_Return, {});
    QWidget* const child = one(controls);
    const QPointer<QWindow> handle(window->windowHandle());
    const QPoint place = child->mapTo(window, child->rect().center());
    const bool text = qobject_cast<QLineEdit*>(child) != nullptr;
    mouse(handle, place, QEvent::MouseButtonPress, Qt::LeftButton);
    if (handle) mouse(handle, place, QEvent::MouseButtonRelease, Qt::LeftButton);
    button_ = Qt::NoButton;
    if (handle && handle->isVisible() && text) type(handle, QString::fromUtf8(one(kHostile)));
}

void Monkey::menu() {
    if (QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr) return;
    QList<QAction*> entries;
    for (QAction* action : shell_->window().findChildren<QAction*>())
        if (action->isEnabled() && action->isVisible() && action->menu() == nullptr &&
            action != shell_->window().action(Menu::mnuFileExit))
            entries.push_back(action);
    QAction* const chosen = one(entries);
    say("menu " + chosen->text().toStdString());
    chosen->trigger();
}

void Monkey::midi() {
    say("midi");
    for (int left = below(20); left >= 0 && devices_.input != nullptr; --left) {
        MidiMessage message{static_cast<std::uint8_t>(1 + below(3)), {}};
        for (std::uint8_t& byte : message.bytes) byte = static_cast<std::uint8_t>(below(128));
        message.bytes[0] = static_cast<std::uint8_t>(0x80 + below(128));
        if (const int length = midiMessageLength(message.bytes[0]); length > 0 && chance(90))
            message.size = static_cast<std::uint8_t>(length);
        devices_.input->received(message);
        if (chance(50)) midiArrived();
    }
    midiArrived();
}

// --- promises

void Monkey::check() {
    letGo();
    if (shell_ == nullptr || transportState->programClosing) return;
    ++checks;
    std::string difference;
    if (!engine_->equalsRecord(project, &difference)) fail("the component's copy differs: " + difference);
    ProjectRecord limited = project;
    limitRecord(limited);
    if (std::memcmp(&limited, &project, sizeof project) != 0) fail("the record is out of its limits");
    for (const auto& bars : barTrack)
        for (const SongBar& bar : bars)
            if (bar.bank >= kBanks || bar.patt >= kPatterns) fail("a bar has no such pattern");
    for (const auto& knob : knobTrack)
        for (const std::uint8_t value : knob)
            if (value > kTopValue) fail("a knob of the song is out of its range");
    for (const int tick : {songPosition->songTick, songPosition->playedTick})
        if (tick < 0 || tick >= kSongTicks) fail("the position is " + std::to_string(tick));
    for (Ear& ear : devices_.ears) {
        if (!ear.legal) fail("an illegal message went out");
        if (transportState->transportRunning) continue;
        SoundingNotes(ear.notes).releaseAll([&](const MidiMessage& note) {
            fail("note " + std::to_string(note.bytes[1]) + " of channel " +
                 std::to_string(note.bytes[0] & 15) + " sounds while nothing plays");
        });
    }
    if (checks % 10 == 0) checkRoundTrip();
}

void Monkey::checkRoundTrip() {
    if (QApplication::activeModalWidget() != nullptr) return;
    ++rounds;
    say(std::string("round trip") + (transportState->transportRunning ? " playing" : "") +
        (songPosition->songMode ? " in song mode" : ""));
    const std::string name = (folder_ / "files/round.mlp").string();
    const std::vector<std::uint8_t> bytes = projectFileBytes();
    if (!saveProjectFile(name)) fail("a save failed");
    resting_ = true; // a move of the mode lets events run
    OpenOnLoad(name);
    resting_ = false;
    std::vector<std::uint8_t> now = projectFileBytes();
    constexpr std::size_t kTempoFlag =
        offsetof(ProjectRecord, tempoChanged); // a tick that was due has cleared it
    std::copy_n(bytes.begin() + kTempoFlag, sizeof project.tempoChanged, now.begin() + kTempoFlag);
    const auto apart =
        std::mismatch(bytes.begin(), bytes.end(), now.begin(), now.end()).first - bytes.begin();
    if (now != bytes) fail("what was saved does not load back, from byte " + std::to_string(apart) + " on");
}

} // namespace
} // namespace marlune

int main(int argc, char** argv) {
    using namespace marlune;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    applyTheme(app);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    const unsigned seed = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 1;
    std::FILE* const log = std::fopen(argc > 3 ? argv[3] : "/dev/null", "w");
    if (log == nullptr) return 2;
    std::signal(SIGALRM, [](int) { std::abort(); });
    Monkey monkey(seconds, seed, log);
    while (!monkey.over()) monkey.liveOn();
    std::printf("seed %u: %d actions in %d lives of the program, %d checks, %d round trips\n", seed,
                monkey.actions, monkey.lives, monkey.checks, monkey.rounds);
    return 0;
}
