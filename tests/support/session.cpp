#include "support/session.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "boundary/form.h"
#include "boundary/limits.h"
#include "boundary/menus.h"
#include "edit/undo_history.h"
#include "midi/midi_input.h"
#include "panel/editing.h"
#include "panel/refresh.h"
#include "project/pattern_push.h"
#include "project/run_state.h"
#include "song/mode_switch.h"
#include "song/song_place.h"
#include "support/session_text.h"

namespace marlune::test {

namespace {

Control controlNamed(const std::string& name) {
    for (int c = 0; c < kControls; ++c)
        if (name == controlInfo(static_cast<Control>(c)).name) return static_cast<Control>(c);
    throw std::runtime_error("no control " + name);
}

Menu menuNamed(const std::string& name) {
    for (const MenuRow& row : menuRows())
        if (name == row.name) return row.id;
    throw std::runtime_error("no menu " + name);
}

// A form's layout with what stands in it, and its controls by number.
class DialogText final : public FormBuilder {
  public:
    using FormBuilder::beginFrame;
    void beginFrame(const std::string& title) override { text += " {" + title; }
    void endFrame() override { text += " }"; }
    void beginRow() override { text += " ("; }
    void endRow() override { text += " )"; }
    void label(const Label& label) override { text += " '" + label.text + "'"; }
    void textBox(const std::string& name, TextBox& box, int width, FormEvent focus) override {
        text += " " + name + "[" + box.text + "]" + std::to_string(width) + (box.enabled ? "" : " off");
        boxes.push_back(&box);
        focuses.push_back(std::move(focus));
    }
    void digitsBox(const std::string& name, TextBox& box, int width) override {
        textBox(name, box, width, {});
        text += "#";
    }
    void checkBox(CheckBox& box, FormEvent click) override {
        text += " " + box.caption + (box.checked ? "[x]" : "[ ]") + (box.enabled ? "" : " off");
        checks.push_back(&box);
        clicks.push_back(std::move(click));
    }
    void comboBox(const std::string& name, ComboBox& box) override {
        text += " " + name + "<" + std::to_string(box.selected) + " of";
        for (const std::string& item : box.items) text += " " + item;
        text += ">";
        lists.push_back(&box);
    }
    void progressBar(ProgressBar& bar) override { text += " " + std::to_string(bar.value) + "%"; }
    void button(Button& button, Role role, FormEvent click) override {
        text += " " +
                std::string(role == Role::accept   ? "!"
                            : role == Role::reject ? "x"
                                                   : "") +
                button.caption + (button.enabled ? "" : " off");
        presses.push_back(std::move(click));
    }

    std::string text;
    std::vector<TextBox*> boxes;
    std::vector<CheckBox*> checks;
    std::vector<ComboBox*> lists;
    std::vector<FormEvent> focuses, clicks, presses;
};

} // namespace

std::string layoutOf(Form& form) {
    DialogText controls;
    form.describe(controls);
    return controls.text;
}

Session::Session(TestProgram& program) : program_(program), last_(look()) {
    verbs["song"] = [](int, int, int) { Check1_Click(); };
    verbs["play"] = [this](int steps, int, int) { program_.play(steps); };
}

Session::Look Session::look() const {
    return {project,
            barTrack,
            knobTrack,
            {{"tick", songPosition->songTick},
             {"run", transportState->transportRunning},
             {"song", songPosition->songMode},
             {"rec", recordingState->recordOn},
             {"edit", editingState->editSel},
             {"ctrl", editingState->ctrlDown},
             {"undo", undoSteps()},
             {"input", !MIDIIn1.isOpen()       ? 0
                       : MIDIIn1.MessageEvents ? 1
                                               : 2},
             {"changed", editingState->projectDirty}},
            program_.shell.status,
            program_.shell.title};
}

void Session::useDialog(Form& form, const std::string& actions) {
    DialogText controls;
    form.describe(controls);
    dialogs_ += " " + form.caption + ":" + controls.text;
    std::istringstream words(actions);
    for (std::string word; words >> word;) {
        std::ranges::replace(word, '_', ' ');
        unsigned status = 0, data1 = 0, data2 = 0;
        if (std::sscanf(word.c_str(), "m%x.%x.%x", &status, &data1, &data2) == 3)
            program_.midi(static_cast<int>(status), static_cast<int>(data1), static_cast<int>(data2));
        if (word == "timer") form.Form_Timer();
        if (word == "look") {
            dialogs_ += " |" + layoutOf(form) + (MIDIIn1.isOpen() ? "" : " (input rests)");
        }
        if (word.find_first_of("0123456789") == std::string::npos || word[0] == 'm') continue;
        const bool letter = std::isalpha(word[0]) != 0;
        const auto number = static_cast<std::size_t>(std::stoi(word.substr(letter ? 1 : 0)));
        const std::string value = word.substr(std::min(word.find('=') + 1, word.size()));
        if (!letter) controls.boxes.at(number)->text = word.find('=') == std::string::npos ? "" : value;
        if (word[0] == 'l') controls.lists.at(number)->selected = std::stoi(value);
        if (word[0] == 'f' && controls.focuses.at(number)) controls.focuses.at(number)();
        if (word[0] == 'b') controls.presses.at(number)();
        if (word[0] == 'k' && !form.Form_KeyDown(static_cast<int>(number))) dialogs_ += " unused " + word;
        if (word[0] != 'c') continue;
        controls.checks.at(number)->checked = !controls.checks.at(number)->checked;
        if (controls.clicks.at(number)) controls.clicks.at(number)();
    }
}

// What was there before, and what answers and comes later.
bool Session::prepare(const std::string& verb, std::istringstream& words) {
    std::string name, rest;
    int at = 0, last = 0, value = 0;
    const auto place = [&name] { return Selected{name.at(0) - 'A', name.at(1) - '1'}; };
    if (verb == "after" && words >> at && std::getline(words >> std::ws, rest)) {
        program_.shell.after(at, [this, rest] { act(rest); });
    } else if (verb == "repeat" && words >> at && std::getline(words >> std::ws, rest)) {
        for (; at > 0; --at) act(rest);
    } else if (verb == "cell" && words >> at >> last >> value) {
        currentDrum().drumOn[at - 1][last] = static_cast<std::uint8_t>(value);
        pushPatternToEngine(kDrumModule, project.drum.currBank, project.drum.currPatt);
        refresh109Patt(project.drum.selDrum);
    } else if (verb == "bar" && words >> at >> value >> name) {
        setBar(at, (value - 1) * kTicksPerBar, place().bank, place().patt);
    } else if (verb == "curve" && words >> at >> value >> last) {
        const int length = last + 1 - value;
        for (int v = 0; words >> v; value += length, last += length)
            std::fill(knobTrack[at].begin() + value - 1, knobTrack[at].begin() + last,
                      static_cast<std::uint8_t>(v));
    } else if (verb == "bass" && words >> at && std::getline(words, rest)) {
        setBassSteps(at, rest);
        refreshAll();
    } else if (verb == "loop" && words >> at >> name >> value) {
        if (at == kDrumModule)
            project.drum.patterns[place().bank][place().patt].loopEnd = value - 1;
        else
            project.bass[at].patterns[place().bank][place().patt].loopEnd = value - 1;
        pushPatternToEngine(at, place().bank, place().patt);
        refreshAll();
    } else if (verb == "to" && words >> at) {
        placeSong(at - 1);
    } else if (verb == "answer" && words >> name) {
        program_.shell.answers.push_back(name == "yes"  ? BoxAnswer::yes
                                         : name == "no" ? BoxAnswer::no
                                         : name == "ok" ? BoxAnswer::ok
                                                        : BoxAnswer::cancel);
    } else if (verb == "file" && words >> name) {
        program_.shell.fileNames.push_back(name);
    } else if (verb == "cost" && words >> at) {
        program_.view.costMs = at;
    } else if (verb == "focus-lost") {
        panelFocusLost();
    } else if (verb == "marks") { // stay from line to line
        marksAnew = false;
    } else if (verb == "fine" && words >> name >> at >> value) {
        for (const auto action : {PointerAction::press, PointerAction::move, PointerAction::release})
            panelPointer(controlNamed(name), at,
                         {.action = action,
                          .y = action == PointerAction::press ? 3000.0 : 3000.0 - value,
                          .fine = true});
    } else if (verb == "wait" && words >> at) {
        TestProgram::advanceClock(at);
    } else if (verb == "wire") {
        const std::vector<std::string>& sent = program_.devices.ports[0].sent;
        for (std::size_t i = 0, end = 0; i < sent.size(); i = end) { // "f8*6" for six clocks
            end = static_cast<std::size_t>(
                std::find_if(sent.begin() + static_cast<std::ptrdiff_t>(i), sent.end(),
                             [&](const std::string& message) { return message != sent[i]; }) -
                sent.begin());
            dialogs_ += (i > 0 ? ", " : " ") + sent[i] + (end - i > 1 ? "*" + std::to_string(end - i) : "");
        }
    } else {
        return false;
    }
    return true;
}

void Session::act(const std::string& line) {
    std::istringstream words(line);
    std::string verb, name;
    int a = 0, b = 0;
    words >> verb;
    if (verb == "key" || verb == "down" || verb == "up") {
        words >> name >> b;
        const int code = name.size() == 1 ? name[0] : std::stoi(name);
        if (verb != "up") Form_KeyDown(code, b);
        if (verb != "down") Form_KeyUp(code, b);
    } else if (verb == "dialog") {
        const std::string actions = line.substr(verb.size());
        program_.shell.modal.push_back([this, actions](Form& form) { useDialog(form, actions); });
    } else if (verb == "midi") {
        int status = 0;
        words >> std::hex >> status >> a >> b;
        program_.midi(status, a, b);
    } else if (verb == "menu") {
        words >> name;
        menuClicked(menuNamed(name));
    } else if (prepare(verb, words)) {
        return;
    } else if (const auto own = verbs.find(verb); own != verbs.end()) {
        int c = 0;
        words >> a >> b >> c;
        own->second(a, b, c);
    } else {
        words >> name >> a >> b;
        const Control control = controlNamed(name);
        if (verb == "click") program_.click(control, a);
        if (verb == "right" || verb == "away") {
            const PointerEvent event{.leftButton = verb == "away", .y = 3000, .inside = false};
            PointerEvent next = event;
            panelPointer(control, a, event);
            next.action = PointerAction::move;
            next.y -= 300;
            panelPointer(control, a, next);
            next.action = PointerAction::release;
            next.inside = verb == "right";
            panelPointer(control, a, next);
        }
        if (verb == "double") program_.doubleClick(control, a);
        if (verb == "drag") program_.drag(control, a, 5000, 5000 - b);
        if (verb == "wheel") panelWheel(control, a, b);
        if (verb == "enter") panelPress(control, a);
        if (verb == "hold")
            program_.shell.after(a,
                                 [control] { panelPointer(control, 0, {.action = PointerAction::release}); });
        if (verb == "press" || verb == "hold") panelPointer(control, verb == "hold" ? 0 : a, {.y = 1.0 * b});
        if (verb == "move") panelPointer(control, a, {.action = PointerAction::move, .y = 1.0 * b});
        if (verb == "shift")
            panelPointer(control, a, {.action = PointerAction::move, .y = 1.0 * b, .fine = true});
        if (verb == "release") panelPointer(control, a, {.action = PointerAction::release, .y = 1.0 * b});
        held_ = verb == "press" || (held_ && verb != "release");
    }
}

std::string Session::calls() {
    std::vector<std::string> entries;
    const auto& told = program_.recorder.calls;
    const auto place = [&told](std::size_t at) { // "103A A1" of a call about a pattern
        int m = 0, bank = 0, patt = 0;
        if (std::sscanf(told[at].c_str(), "Set103%*[A-Za-z]32(%d,%d,%d", &m, &bank, &patt) == 3)
            return std::string(kModuleNames[m]) + " " + digit(bank, patt);
        if (std::sscanf(told[at].c_str(), "Set109%*[A-Za-z]32(%d,%d", &bank, &patt) == 2)
            return "109 " + digit(bank, patt);
        return std::string();
    };
    // What follows the bar, as "next(A1 B2 A1)": six calls, pattern and bank of each module.
    const auto nextBars = [&told](std::size_t at) {
        std::string text;
        for (int m = 0; m < kModules && at + 2 * m + 1 < told.size(); ++m) {
            int module = 0, bank = 0, patt = 0;
            if (std::sscanf(told[at + 2 * m].c_str(), "SetNextBarPatt32(%d,%d", &module, &patt) != 2)
                return text;
            if (std::sscanf(told[at + 2 * m + 1].c_str(), "SetNextBarGroup32(%d,%d", &module, &bank) != 2)
                return text;
            if (module == m) text += (m > 0 ? " " : "") + digit(bank, patt);
        }
        return text;
    };
    for (std::size_t i = 0; i < told.size();) {
        if (const std::string next = nextBars(i); next.size() == 3 * kModules - 1) {
            entries.push_back("next(" + next + ")");
            i += 2 * kModules;
            continue;
        }
        std::size_t end = i;
        const std::string first = place(i);
        while (!first.empty() && end < told.size() && place(end) == first) ++end;
        const bool whole = end - i >= 82; // as many as a bassline has
        if (whole && entries.size() >= 2 && entries.back().starts_with("pattern(") &&
            entries[entries.size() - 2] == "pattern(109 A1)") { // a push of all
            entries.back() = "pattern(" + first + ")";
            i = end;
            continue;
        }
        entries.push_back(whole ? "pattern(" + first + ")" : told[i]);
        i = whole ? end : i + 1;
    }
    program_.calls();
    return listed(entries);
}

std::string Session::said(const Look& was) {
    std::string text = std::exchange(dialogs_, {});
    for (; boxes_ < program_.shell.boxes.size(); ++boxes_) text += " [" + program_.shell.boxes[boxes_] + "]";
    for (; files_ < program_.shell.dialogs.size(); ++files_) {
        const FileDialog& file = program_.shell.dialogs[files_];
        text += std::string(file.save ? " save" : " open") + "(" +
                file.fileName.substr(file.fileName.rfind('/') + 1) + " " + file.title + file.filter + " " +
                file.defaultExtension + ")";
    }
    for (; passing_ < program_.shell.passing.size(); ++passing_)
        text += " " + program_.shell.passing[passing_];
    for (const std::string& each : std::exchange(program_.shell.asked, {})) text += " " + each;
    if (program_.shell.status != was.status) text += " status \"" + program_.shell.status + "\"";
    if (program_.shell.title != was.title) text += " title \"" + program_.shell.title + "\"";
    return text;
}

std::string Session::changed(const Look& was, const Look& is) {
    std::string text;
    for (std::size_t i = 0; i < is.state.size(); ++i) {
        if (is.state[i] != was.state[i])
            text += std::string(" ") + is.state[i].first + std::to_string(is.state[i].second);
    }
    if (is.record.tempo != was.record.tempo) text += " tempo=" + std::to_string(is.record.tempo);
    const std::string knobs = trackChanged(
        was.record.knobValue, is.record.knobValue, [](int value) { return std::to_string(value); }, 0);
    if (!knobs.empty()) text += " knobs" + knobs;
    for (int m = 0; m < kBassModules; ++m) text += patternsChanged(was.record.bass[m], is.record.bass[m], m);
    text += patternsChanged(was.record.drum, is.record.drum, kDrumModule);
    for (int m = 0; m < kModules; ++m) {
        const std::string bars =
            trackChanged(was.bars[m], is.bars[m], [](SongBar bar) { return digit(bar.bank, bar.patt); });
        if (!bars.empty()) text += std::string(" bars ") + kModuleNames[m] + bars;
    }
    Alike tracks;
    for (int k = 0; k < kKnobs; ++k) {
        tracks.add("track" + std::to_string(k),
                   trackChanged(was.knobs[k], is.knobs[k], [](int v) { return std::to_string(v); }));
    }
    text += tracks.all();
    return text;
}

std::string Session::apart() {
    if (held_ || transportState->transportRunning) return "";
    std::string text = program_.copyDifference();
    if (!text.empty()) text = " COPY " + text;
    const bool dirty = editingState->projectDirty;
    refreshAll();
    refreshTransport();
    if (!dirty) forgetUnsavedChanges();
    const std::string stale = program_.shown();
    program_.calls();
    program_.wire();
    return text + (stale.empty() ? "" : " STALE " + stale);
}

std::string Session::tell(const std::string& transcript) {
    std::istringstream lines(transcript);
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("   ")) continue; // the rest of a long line
        if (line.starts_with("# ")) {
            text += line + "\n";
            continue;
        }
        std::string after; // a script's line may be folded, too
        while (line.find(':') == std::string::npos && lines.peek() == ' ' && std::getline(lines, after))
            line += after.substr(3);
        line.erase(std::min(line.find(':'), line.size()));
        if (line.empty()) {
            text += "\n";
            continue;
        }
        const bool quiet = line.starts_with("- ");
        if (marksAnew) forgetUnsavedChanges();
        program_.wire();
        last_ = look();
        std::istringstream actions(quiet ? line.substr(2) : line);
        for (std::string action; std::getline(actions, action, ';');)
            act(action.substr(action.find_first_not_of(' ')));
        const Look is = look();
        const std::string parts[] = {calls(), listed(std::exchange(program_.view.shown, {})), said(last_),
                                     changed(last_, is)};
        std::string row;
        for (const std::string& part : parts) {
            if (!part.empty() && !quiet)
                row += (row.empty() ? " " : " | ") + part.substr(part[0] == ' ' ? 1 : 0);
        }
        const std::string difference = apart();
        std::string whole = line;
        whole.append(quiet && difference.empty() ? "" : ":").append(row).append(difference);
        text.append(folded(whole)).append("\n");
    }
    if (!transcript.ends_with("\n")) text.pop_back();
    return text;
}

} // namespace marlune::test
