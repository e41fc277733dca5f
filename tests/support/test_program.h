// A freshly started program around a test: a recorder before the real playback engine in virtual time, a
// recording display, a shell with scripted answers, ports in memory and a clock that the test moves.
#pragma once

#include <array>
#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "boundary/app_shell.h"
#include "boundary/hex_text.h"
#include "boundary/panel_view.h"
#include "commands/panel_events.h"
#include "engine/virtual_engine.h"
#include "midi/midi_input.h"

namespace marlune::test {

std::string joined(std::vector<std::string>& lines); // one blank between; forgets them

// Keeps the calls as text in order, "Set103Note32(0,1,2,3,5)", and hands them on.
class RecordingComponent final : public EngineComponent {
  public:
    explicit RecordingComponent(EngineComponent& behind) : behind_(behind) {}
    int call(const EngineCall& call) override;
    bool takeMessage(EngineMessage& message) override { return behind_.takeMessage(message); }
    std::vector<std::string> calls;

  private:
    struct PlacedModule {
        Selected playing, bar, next;
        int step = 0;
    };
    struct PlacingText {
        bool open = false, song = false, modulesPlaced = false;
        int tick = 0, after = 0;
        std::array<PlacedModule, kModules> modules{};
        std::string text() const;
    };
    bool placed(const EngineCall& call);

    EngineComponent& behind_;
    PlacingText placing_;
};

class RecordingView final : public PanelView {
  public:
    void showFrame(Control control, int index, int frame) override;
    void showText(Control control, int index, const std::string& text) override;
    void showLamp(int step, bool lit) override;
    void showEnabled(Control control, int index, bool enabled) override;
    std::vector<std::string> shown;
    int costMs = 0; // what showing a frame takes of the clock that tests move
};

class ScriptedShell final : public AppShell {
  public:
    void showTitle(const std::string& text) override { title = text; }
    void showPointer(Pointer pointer) override {
        asked.push_back(pointer == Pointer::normal ? "<arrow>" : "<hourglass>");
    }
    void showStatus(const std::string& text) override { status = text; }
    void showModified(bool on) override { modified = on; }
    void showPassing(const std::string& text) override { passing.push_back(status = text); }
    void showStatusBar(bool visible) override {
        asked.push_back((statusBar = visible) ? "<bar>" : "<no bar>");
    }
    void showMenu(Menu menu, const MenuState& state) override;
    void showPanel(bool visible) override { asked.push_back((panel = visible) ? "<panel>" : "<no panel>"); }
    void beep() override { asked.push_back("<beep>"); }
    BoxAnswer messageBox(const std::string& text, BoxIcon icon, BoxButtons buttons) override;
    std::string fileDialog(const FileDialog& dialog) override;
    void runModal(Form& form) override;
    void showModeless(Form& form) override {
        if (modeless) modeless(form);
    }
    void formChanged(Form& /*form*/) override {}
    void letEventsRun() override;
    void letPaintRun() override { asked.push_back("<paint>"); }
    void waitForEvents(int ms) override;
    void closeWindow() override { asked.push_back("<close>"); }
    void openHelp() override { asked.push_back("<help>"); }
    void showAbout() override { asked.push_back("<about>"); }

    std::string title, status;
    std::vector<std::string> passing; // texts of what has happened
    std::vector<std::string> asked;   // for what else, "<hourglass>", "<mnuEditUndo off>"
    bool statusBar = false, panel = false, modified = false;
    std::vector<std::string> boxes;               // texts of the message boxes
    std::deque<BoxAnswer> answers;                // to the next boxes; then the refusing button
    std::deque<std::string> fileNames;            // of the next file dialogs; then none
    std::vector<FileDialog> dialogs;              // as asked
    std::deque<std::function<void(Form&)>> modal; // what the user does in the next modal forms

    std::function<void(Form&)> modeless; // when a form is shown beside the rest

    // Runs an action once the virtual clock has reached that many ms from now, inside whatever waits then.
    void after(int ms, std::function<void()> action);

  private:
    std::multimap<std::uint32_t, std::function<void()>> timed_; // by the virtual clock
};

// Port in memory: what arrives is kept as text, "90 24 64", or heard where somebody listens.
class MemoryPort final : public OutputPort {
  public:
    void send(const MidiMessage& message, std::int64_t due) noexcept override {
        if (heard)
            heard(message, due);
        else
            sent.push_back(hexText(message));
    }
    std::vector<std::string> sent;
    std::function<void(const MidiMessage&, std::int64_t)> heard;
};

class MemoryDevices final : public OutputDevices, public InputDevices {
  public:
    int count() override { return devices; }
    std::string name(int index) override { return "Device " + std::to_string(index); }
    OutputPort* open(int index) override { return index >= 0 && index < devices ? &ports[index] : nullptr; }
    void close(OutputPort* /*port*/) override {}
    bool open(int index, InputSinks& sinks) override {
        for (int link = 0; link < kInputLinks; ++link)
            inputs[link] = index >= 0 && index < devices ? &sinks.link(link) : nullptr;
        input = inputs[0];
        return input != nullptr;
    }
    void close() override { input = nullptr; }

    int devices = 2;
    MemoryPort ports[2];
    InputSink* input = nullptr; // the first link
    std::array<InputSink*, kInputLinks> inputs{};
};

// An input's receiving end that counts.
struct CountingSink final : InputSink, InputSinks {
    InputSink& link(int /*number*/) noexcept override { return *this; }
    void received(const MidiMessage& message) noexcept override {
        note = message.bytes[1];
        ++count;
    }
    std::atomic<int> note{0}, count{0};
};

struct Options {
    bool devicesChosen = true; // output 0 and input 0 are open
    bool recorded = true;      // calls() tells of the calls; keeping them takes a third of a start's time
    std::string configFolder;
    std::string commandLine;
};

class TestProgram {
  public:
    explicit TestProgram(const Options& options = {});
    ~TestProgram();

    MemoryDevices devices;
    VirtualEngine engine;
    RecordingComponent recorder;
    RecordingView view;
    ScriptedShell shell;

    // What was recorded since the last time, one blank between; forgets it.
    std::string calls() { return joined(recorder.calls); }
    std::string shown() { return joined(view.shown); }
    std::string wire() { return joined(devices.ports[0].sent); } // port 0

    void play(int steps);                        // that many whole steps, all their messages delivered
    void midi(int status, int data1, int data2); // arrives at the input; read at once in event mode
    void click(Control control, int index = 0, bool second = false);
    void doubleClick(Control control, int index = 0);
    void drag(Control control, int index, double fromY, double toY, int moves = 4);

    // Empty when the component's copy of the patterns is that of the record, else the first difference.
    std::string copyDifference();

    static void advanceClock(int ms);
    static std::uint32_t now();
};

// The first steps of a module's current bass pattern as text, "C  E^! -  D_": note name, octave ^ or _,
// accent !, "-" a rest.
void setBassSteps(int module, const std::string& text);

// Fills the patterns, the song and the knob tracks with something of everything, within the ranges.
void randomProject(unsigned seed);

// A folder that vanishes with the object.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    [[nodiscard]] std::string file(const std::string& name) const { return path + "/" + name; }
    std::string path;
};

std::vector<std::uint8_t> readBytes(const std::string& path);
void writeBytes(const std::string& path, const std::vector<std::uint8_t>& bytes);

} // namespace marlune::test
