#include "support/test_program.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/project_record.h"
#include "core/run_state.h"
#include "core/startup.h"
#include "midi/config_file.h"
#include "midi/global_config.h"
#include "midi/hex_text.h"
#include "midi/midi_devices.h"
#include "playback/pattern_push.h"

namespace marlune::test {

namespace {

std::uint32_t virtualNow = 0;

std::string joined(std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += (text.empty() ? "" : " ") + line;
    lines.clear();
    return text;
}

std::string named(Control control, int index) {
    const ControlInfo& info = controlInfo(control);
    return info.count == 1 ? info.name : std::string(info.name) + "(" + std::to_string(index) + ")";
}

} // namespace

int RecordingComponent::call(const EngineCall& call) {
    const EntryInfo& info = entryInfo(call.entry);
    std::string text = std::string(info.name) + "(";
    for (int i = 0; i < info.arguments; ++i) text += (i > 0 ? "," : "") + std::to_string(call.arguments[i]);
    calls.push_back(text + ")");
    return behind_.call(call);
}

void RecordingView::showFrame(Control control, int index, int frame) {
    shown.push_back(named(control, index) + "=" + std::to_string(frame));
}

void RecordingView::showText(Control control, int index, const std::string& text) {
    shown.push_back(named(control, index) + "=\"" + text + "\"");
}

void RecordingView::showLamp(int step, bool lit) {
    shown.push_back("lamp(" + std::to_string(step) + ")=" + (lit ? "on" : "off"));
}

void RecordingView::showEnabled(Control control, int index, bool enabled) {
    shown.push_back(named(control, index) + (enabled ? " enabled" : " disabled"));
}

BoxAnswer ScriptedShell::messageBox(const std::string& text, BoxIcon /*icon*/, BoxButtons buttons) {
    boxes.push_back(text);
    if (answers.empty()) return buttons == BoxButtons::ok ? BoxAnswer::ok : BoxAnswer::cancel;
    const BoxAnswer answer = answers.front();
    answers.pop_front();
    return answer;
}

std::string ScriptedShell::fileDialog(const FileDialog& dialog) {
    dialogs.push_back(dialog);
    if (fileNames.empty()) return {};
    std::string name = fileNames.front();
    fileNames.pop_front();
    return name;
}

void ScriptedShell::runModal(Form& form) {
    if (!modal.empty()) {
        const auto act = modal.front();
        modal.pop_front();
        act(form);
    }
    form.hide();
}

void ScriptedShell::letEventsRun() {
    for (std::size_t i = 0; i < timed_.size();) {
        if (timed_[i].due > virtualNow) {
            ++i;
            continue;
        }
        const auto action = timed_[i].action;
        timed_.erase(timed_.begin() + static_cast<std::ptrdiff_t>(i));
        action();
        i = 0;
    }
}

void ScriptedShell::waitForEvents(int ms) {
    virtualNow += static_cast<std::uint32_t>(std::clamp(ms, 1, 5));
    letEventsRun();
}

void ScriptedShell::after(int ms, std::function<void()> action) {
    timed_.push_back({virtualNow + static_cast<std::uint32_t>(ms), std::move(action)});
}

void MemoryPort::send(const MidiMessage& message, std::int64_t /*due*/) noexcept {
    sent.push_back(hexText(message));
}

bool MemoryDevices::open(int index, InputSink& sink) {
    if (index < 0 || index >= devices) return false;
    input = &sink;
    return true;
}

TestProgram::TestProgram(const Options& options) : engine(&devices), recorder(engine) {
    virtualNow = 1000;
    setMillisecondClock([] { return virtualNow; });
    setAppShell(&shell);
    setPanelView(&view);
    resetProgram();
    setEngineComponent(options.recorded ? static_cast<EngineComponent*>(&recorder) : &engine);
    setOutputDevices(&devices);
    MIDIIn1.attach(&devices, -1);
    setConfigFolder(options.configFolder);
    StartupHooks hooks;
    hooks.randomSeed = 1;
    hooks.configured = [&options] {
        if (options.devicesChosen) config.midiInDevice = config.midiOutDevice = 0;
    };
    startupMain(options.commandLine, hooks);
    calls();
    shown();
    wire();
}

TestProgram::~TestProgram() {
    setConfigFolder("");
    MDIForm_Unload();
    setEngineComponent(nullptr);
    setPanelView(nullptr);
    setAppShell(nullptr);
    setOutputDevices(nullptr);
    MIDIIn1.attach(nullptr, -1);
    setMillisecondClock(nullptr);
    resetProgram();
}

std::string TestProgram::calls() {
    return joined(recorder.calls);
}

std::string TestProgram::shown() {
    return joined(view.shown);
}

std::string TestProgram::wire() {
    return joined(devices.ports[0].sent);
}

void TestProgram::play(int steps) {
    for (int period = 0; period < 6 * steps; ++period) {
        engine.advance();
        engineSpoke();
    }
}

void TestProgram::midi(int status, int data1, int data2) {
    MidiMessage message{static_cast<std::uint8_t>(midiMessageLength(status)),
                        {static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                         static_cast<std::uint8_t>(data2)}};
    if (devices.input != nullptr) devices.input->received(message);
    midiArrived();
}

void TestProgram::click(Control control, int index) {
    panelPointer(control, index, {.action = PointerAction::press});
    panelPointer(control, index, {.action = PointerAction::release});
}

void TestProgram::doubleClick(Control control, int index) {
    click(control, index);
    panelPointer(control, index, {.action = PointerAction::press, .second = true});
    panelPointer(control, index, {.action = PointerAction::release, .second = true});
}

void TestProgram::drag(Control control, int index, double fromY, double toY, int moves) {
    panelPointer(control, index, {.action = PointerAction::press, .y = fromY});
    for (int i = 1; i <= moves; ++i) {
        panelPointer(control, index, {.action = PointerAction::move, .y = fromY + (toY - fromY) * i / moves});
    }
    panelPointer(control, index, {.action = PointerAction::release, .y = toY});
}

std::string TestProgram::copyDifference() {
    std::string difference;
    engine.equalsRecord(project, &difference);
    return difference;
}

void TestProgram::advanceClock(int ms) {
    virtualNow += static_cast<std::uint32_t>(ms);
}

std::uint32_t TestProgram::now() {
    return virtualNow;
}

void setBassSteps(int module, const std::string& text) {
    constexpr const char* kNames[] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B", "C'"};
    std::istringstream words(text);
    std::string word;
    for (int s = 0; words >> word && s < kSteps; ++s) {
        BassStep& step = currentBass(module).steps[s];
        const auto flag = [&word](char mark) {
            const auto at = word.find(mark);
            if (at == std::string::npos) return false;
            word.erase(at, 1);
            return true;
        };
        step.accent = flag('!');
        step.up = flag('^');
        step.down = flag('_');
        step.noteOn = !flag('-');
        for (int n = 0; n < 13; ++n) {
            if (word == kNames[n]) step.note = n;
        }
    }
    const Selection at = selectionOf(project, module);
    pushPatternToEngine(module, at.currBank, at.currPatt);
}

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "marlune-XXXXXX").string();
    path = ::mkdtemp(name.data());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path, ignored);
}

std::vector<std::uint8_t> readBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeBytes(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

} // namespace marlune::test
