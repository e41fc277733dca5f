#include "support/test_program.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <utility>

#include "boundary/menus.h"
#include "boundary/midi_bytes.h"
#include "commands/reset_program.h"
#include "program/startup.h"
#include "project/global_config.h"
#include "project/pattern_push.h"
#include "project/project_record.h"
#include "project/run_state.h"
#include "project/song_track.h"
#include "setup/config_file.h"
#include "setup/midi_devices.h"

namespace marlune::test {

namespace {

std::uint32_t virtualNow = 0;

std::string named(Control control, int index) {
    const ControlInfo& info = controlInfo(control);
    return info.count == 1 ? info.name : std::string(info.name) + "(" + std::to_string(index) + ")";
}

} // namespace

std::string joined(std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : std::exchange(lines, {})) text += (text.empty() ? "" : " ") + line;
    return text;
}

// What belongs to a placing is one entry: "song(33 B4>C5@1 A1/A2>A2@0 ...)" tells the tick and for each
// module what plays, the bar's pattern where that is another, the next one, and the step; "patterns(...)"
// likewise; "33#5" where five ticks have been taken since the start.
bool RecordingComponent::placed(const EngineCall& call) {
    const auto& [first, second, third, fourth, fifth] = call.arguments;
    PlacedModule& module = placing_.modules[first >= 0 && first < kModules ? first : 0];
    switch (call.entry) {
        case Entry::BeginPlacing32: placing_ = {.open = true, .after = first}; return true;
        case Entry::EndPlacing32:
            placing_.open = false;
            calls.push_back(placing_.text());
            return true;
        case Entry::SetSongTick32: placing_.tick = first; return placing_.open;
        case Entry::SetCurrPatt32: module.playing.patt = second; return placing_.open;
        case Entry::SetCurrGroup32: module.playing.bank = second; return placing_.open;
        case Entry::SetCurrBarPatt32:
            module.bar.patt = second;
            placing_.song = true;
            return placing_.open;
        case Entry::SetCurrBarGroup32: module.bar.bank = second; return placing_.open;
        case Entry::SetNextPatt32:
        case Entry::SetNextBarPatt32: module.next.patt = second; return placing_.open;
        case Entry::SetNextGroup32:
        case Entry::SetNextBarGroup32: module.next.bank = second; return placing_.open;
        case Entry::SetModuleTick32:
            module.step = second;
            placing_.modulesPlaced = true;
            return placing_.open;
        default: return false;
    }
}

std::string RecordingComponent::PlacingText::text() const {
    const std::string position = std::to_string(tick) + (after > 0 ? "#" + std::to_string(after) : "");
    if (!modulesPlaced) return "position(" + position + ")";
    const auto digit = [](Selected at) {
        return std::string(1, static_cast<char>('A' + at.bank)) + std::to_string(at.patt + 1);
    };
    std::string text = (song ? "song(" : "patterns(") + position;
    for (const PlacedModule& m : modules) {
        text += " " + digit(m.playing) + (song && m.bar != m.playing ? "/" + digit(m.bar) : "") + ">" +
                digit(m.next) + "@" + std::to_string(m.step);
    }
    return text + ")";
}

int RecordingComponent::call(const EngineCall& call) {
    if (placed(call)) return behind_.call(call);
    const EntryInfo& info = entryInfo(call.entry);
    std::string text = std::string(info.name) + "(";
    for (int i = 0; i < info.arguments; ++i) text += (i > 0 ? "," : "") + std::to_string(call.arguments[i]);
    calls.push_back(text + ")");
    return behind_.call(call);
}

void RecordingView::showFrame(Control control, int index, int frame) {
    shown.push_back(named(control, index) + "=" + std::to_string(frame));
    if (costMs > 0) TestProgram::advanceClock(costMs);
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

void ScriptedShell::showMenu(Menu menu, const MenuState& state) {
    std::string text;
    for (const MenuRow& row : menuRows()) {
        if (row.id == menu && menu != Menu::separator)
            text = row.name + (state.caption == row.caption ? "" : " \"" + state.caption + "\"");
    }
    asked.push_back("<" + text + (state.visible ? "" : " hidden") + (state.enabled ? "" : " off") +
                    (state.checked ? " checked" : "") + ">");
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
    while (!timed_.empty() && timed_.begin()->first <= virtualNow) timed_.extract(timed_.begin()).mapped()();
}

void ScriptedShell::waitForEvents(int ms) {
    virtualNow += static_cast<std::uint32_t>(std::clamp(ms, 1, 5));
    letEventsRun();
}

void ScriptedShell::after(int ms, std::function<void()> action) {
    timed_.emplace(virtualNow + static_cast<std::uint32_t>(ms), std::move(action));
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
    shell.asked.clear();
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

void TestProgram::play(int steps) {
    for (int period = 0; period < 6 * steps; ++period) {
        engine.advance();
        engineSpoke();
    }
}

void TestProgram::midi(int status, int data1, int data2) {
    if (devices.input != nullptr) devices.input->received(midiBytes(status, data1, data2));
    midiArrived();
}

void TestProgram::click(Control control, int index, bool second) {
    panelPointer(control, index, {.action = PointerAction::press, .second = second});
    panelPointer(control, index, {.action = PointerAction::release, .second = second});
}

void TestProgram::doubleClick(Control control, int index) {
    click(control, index);
    click(control, index, true);
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
    std::istringstream words(text);
    std::string word;
    for (int s = 0; words >> word && s < kSteps; ++s) {
        BassStep& step = currentBass(module).steps[s];
        const auto has = [&word](char mark) { return word.find(mark) != std::string::npos; };
        step.accent = has('!');
        step.up = has('^');
        step.down = has('_');
        step.noteOn = !has('-');
        const std::size_t note = std::string("C D EF G A B").find(word[0]); // none for a mere "-"
        if (note != std::string::npos) step.note = static_cast<int>(note) + has('#') + 12 * has('\'');
    }
    const Selection at = selectionOf(project, module);
    pushPatternToEngine(module, at.currBank, at.currPatt);
}

void randomProject(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(count));
    };
    for (BassModule& bass : project.bass) {
        bass.lastPatch = -1;
        for (int p = 0; p < kBanks * kPatterns; ++p) {
            BassPattern& pattern = bass.patterns[p / kPatterns][p % kPatterns];
            for (BassStep& step : pattern.steps) {
                step.note = below(13);
                step.noteOn = below(3) != 0;
                step.slide = below(2) != 0;
                step.accent = below(4) == 0;
                step.up = below(4) == 0;
                step.down = !step.up && below(4) == 0;
            }
            pattern.loopEnd = below(3) == 0 ? 15 : below(16);
            pattern.patch = below(3) == 0 ? below(128) : -1;
        }
    }
    for (int p = 0; p < kBanks * kPatterns; ++p) {
        DrumPattern& pattern = project.drum.patterns[p / kPatterns][p % kPatterns];
        pattern.loopEnd = below(2) == 0 ? 15 : below(16);
        for (auto& rows : pattern.drumOn) {
            for (Le8& cell : rows) cell = below(4) == 0 ? kDrumHit : 0;
        }
    }
    for (int bar = 0, bank = 0, patt = 0; bar < 3 * kSongBars; ++bar) {
        if (below(3) == 0) {
            bank = below(kBanks);
            patt = below(kPatterns);
        }
        setBar(bar / kSongBars, bar % kSongBars * kTicksPerBar, bank, patt);
    }
    for (int k = 0; k < kKnobs; ++k) {
        for (int t = 0, value = below(128); t < kSongTicks; ++t) {
            if (below(k < 4 ? 2 : 40) == 0) value = below(5) == 0 ? 0 : below(128);
            knobTrack[k][t] = static_cast<std::uint8_t>(value);
        }
    }
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
