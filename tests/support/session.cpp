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
#include "panel/editing.h"
#include "panel/refresh.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "song/mode_switch.h"

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

std::string digit(int bank, int patt) {
    return std::string(1, static_cast<char>('A' + bank)) + std::to_string(patt + 1);
}

// The steps, "C!*3" for three alike; loop point and patch where they aren't those of a fresh pattern.
std::string textOf(const BassPattern& pattern) {
    constexpr const char* kNames[] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B", "C'"};
    std::string text, last;
    int alike = 0;
    for (int i = 0; i <= kSteps; ++i) {
        const BassStep s = i < kSteps ? pattern.steps[i] : BassStep{};
        const std::string step = std::string(kNames[s.note]) + (s.up ? "^" : "") + (s.down ? "_" : "") +
                                 (s.accent ? "!" : "") + (s.noteOn ? "" : "-");
        if (i == kSteps || (i > 0 && step != last)) {
            text += last + (alike > 1 ? "*" + std::to_string(alike) : "") + " ";
            alike = 0;
        }
        last = step;
        ++alike;
    }
    if (pattern.loopEnd != kSteps - 1) text += "loop " + std::to_string(pattern.loopEnd + 1) + " ";
    if (pattern.patch >= 0) text += "patch " + std::to_string(pattern.patch) + " ";
    text.pop_back();
    return text;
}

// The hits of each row as steps from 1.
std::string textOf(const DrumPattern& pattern) {
    std::string text = "drums";
    for (int row = 0; row < kDrumRows; ++row) {
        std::string hits;
        for (int s = 0; s < kSteps; ++s)
            if (pattern.drumOn[s][row] != 0) hits += "." + std::to_string(s + 1);
        if (!hits.empty()) text += " " + std::to_string(row) + hits;
    }
    for (int d = 0; d < kDrums; ++d)
        if (pattern.drumNote[d] != drumNoteDefaultOf(d))
            text += " note" + std::to_string(d) + " " + std::to_string(pattern.drumNote[d]);
    return text + (pattern.loopEnd != kSteps - 1 ? " loop " + std::to_string(pattern.loopEnd + 1) : "");
}

// "name(3" and what stands behind the first number, as pieces of an entry; no number: nothing to count.
struct Counted {
    std::string name, rest;
    int number = -1;
    explicit Counted(const std::string& entry) {
        const std::size_t open = entry.find('(');
        if (open == std::string::npos || open + 1 >= entry.size() || std::isdigit(entry[open + 1]) == 0)
            return;
        std::size_t digits = 0;
        number = std::stoi(entry.substr(open + 1), &digits);
        name = entry.substr(0, open + 1);
        rest = entry.substr(open + 1 + digits);
    }
};

// What often comes together, as one entry: the selection of a module, "edit(0>1: 0 16)" with the frames of
// the two step strips at rest; the three step strips, "steps(17 1 1)"; the release of all drums, "drums
// off(153)".
std::vector<std::string> gathered(const std::vector<std::string>& entries) {
    std::vector<std::string> all;
    const auto number = [&entries](std::size_t at, const char* format) {
        int value = -1;
        if (at < entries.size()) std::sscanf(entries[at].c_str(), format, &value);
        return value;
    };
    const auto strip = [&entries](std::size_t at) {
        std::pair<int, int> value{-1, -1};
        if (at < entries.size())
            std::sscanf(entries[at].c_str(), "LEDBar(%d)=%d", &value.first, &value.second);
        return value;
    };
    for (std::size_t i = 0; i < entries.size();) {
        const int from = number(i, "SelEditPicture(%d)=1"), to = number(i + 1, "SelEditPicture(%d)=0");
        int drums = 0, status = -1;
        while (drums < kDrums && i + drums < entries.size()) {
            int note = -1, velocity = -1;
            std::sscanf(entries[i + drums].c_str(), "SendShortMessage32(%d,%d,%d)", &status, &note,
                        &velocity);
            if (note != drumNoteDefaultOf(drums) || velocity != 0) break;
            ++drums;
        }
        if (drums == kDrums) {
            all.push_back("drums off(" + std::to_string(status) + ")");
            i += kDrums;
        } else if (entries[i].ends_with(")=1") && from >= 0 && to >= 0 && entries[i + 1].ends_with(")=0")) {
            const bool strips =
                strip(i + 2).first == std::min(from, to) && strip(i + 3).first == std::max(from, to);
            all.push_back("edit(" + std::to_string(from) + ">" + std::to_string(to) +
                          (strips ? ": " + std::to_string(strip(i + 2).second) + " " +
                                        std::to_string(strip(i + 3).second)
                                  : "") +
                          ")");
            i += strips ? 4 : 2;
        } else if (strip(i).first == 0 && strip(i + 1).first == 1 && strip(i + 2).first == 2) {
            std::string steps = "steps(";
            for (std::size_t m = 0; m < kModules; ++m)
                steps += (m > 0 ? " " : "") + std::to_string(strip(i + m).second);
            all.push_back(steps + ")");
            i += kModules;
        } else {
            all.push_back(entries[i++]);
        }
    }
    return all;
}

// Three and more that differ by a number counting up are one, "SetController32(0..11,0)"; of calls in a row
// with one name only the first has it.
std::string listed(const std::vector<std::string>& whole) {
    const std::vector<std::string> entries = gathered(whole);
    std::string text, lastName;
    for (std::size_t i = 0; i < entries.size();) {
        const Counted first(entries[i]);
        std::size_t end = i + 1;
        for (; first.number >= 0 && end < entries.size(); ++end) {
            const Counted next(entries[end]);
            if (next.name != first.name || next.rest != first.rest) break;
            if (next.number != first.number + static_cast<int>(end - i)) break;
        }
        const bool run = end - i >= 3;
        const bool named =
            first.number < 0 || first.name != lastName; // a name is told once in a row of calls
        if (!named && first.rest.starts_with(",") && !run) {
            text += " " + entries[i].substr(first.name.size() - 1);
            ++i;
            continue;
        }
        lastName = first.name;
        text += " " + (run ? first.name + std::to_string(first.number) + ".." +
                                 std::to_string(Counted(entries[end - 1]).number) + first.rest
                           : entries[i]);
        i = run ? end : i + 1;
    }
    return text;
}

// Neighbours with the same text are one: "first..last text".
class Alike {
  public:
    void add(const std::string& name, const std::string& text) {
        if (text.empty() || text != text_) close();
        if (text.empty()) return;
        if (first_.empty()) first_ = name;
        last_ = name;
        text_ = text;
    }
    std::string all() {
        close();
        return all_;
    }

  private:
    void close() {
        if (!first_.empty()) all_ += " " + first_ + (last_ != first_ ? ".." + last_ : "") + text_;
        first_.clear();
        text_.clear();
    }
    std::string first_, last_, text_, all_;
};

template <typename Module>
std::string patternsChanged(const Module& was, const Module& is, int module) {
    Alike patterns;
    for (int p = 0; p < kBanks * kPatterns; ++p) {
        const auto& pattern = is.patterns[p / kPatterns][p % kPatterns];
        const bool same =
            std::memcmp(&pattern, &was.patterns[p / kPatterns][p % kPatterns], sizeof pattern) == 0;
        patterns.add(std::string(kModuleNames[module]) + " " + digit(p / kPatterns, p % kPatterns),
                     same ? "" : " {" + textOf(pattern) + "}");
    }
    return patterns.all();
}

// Stretches of a track that have another value, by their places: " 3..5=B2".
template <typename Track, typename Text>
std::string trackChanged(const Track& was, const Track& is, Text text, std::size_t first = 1) {
    std::string all;
    const auto same = [](const auto& a, const auto& b) { return std::memcmp(&a, &b, sizeof a) == 0; };
    for (std::size_t i = 0; i < is.size(); ++i) {
        if (same(was[i], is[i])) continue;
        std::size_t end = i + 1;
        while (end < is.size() && !same(was[end], is[end]) && same(is[end], is[i])) ++end;
        const std::string last = end > i + 1 ? ".." + std::to_string(end - 1 + first) : "";
        all += " " + std::to_string(i + first) + last + "=" + text(is[i]);
        i = end - 1;
    }
    return all;
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

std::string folded(const std::string& line) {
    constexpr std::size_t kWidth = 112;
    std::string text, row;
    std::istringstream words(line);
    for (std::string word; words >> word;) {
        if (row.size() + word.size() > kWidth) {
            text += row + "\n";
            row = "   ";
        }
        row += (row.empty() ? "" : " ") + word;
    }
    return text + row;
}

} // namespace

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
        const bool letter = std::isalpha(word[0]) != 0;
        const auto number = static_cast<std::size_t>(std::stoi(word.substr(letter ? 1 : 0)));
        const std::string value = word.substr(std::min(word.find('=') + 1, word.size()));
        if (!letter) controls.boxes.at(number)->text = word.find('=') == std::string::npos ? "" : value;
        if (word[0] == 'l') controls.lists.at(number)->selected = std::stoi(value);
        if (word[0] == 'f' && controls.focuses.at(number)) controls.focuses.at(number)();
        if (word[0] == 'b') controls.presses.at(number)();
        if (word[0] == 'k') form.Form_KeyDown(static_cast<int>(number));
        if (word[0] != 'c') continue;
        controls.checks.at(number)->checked = !controls.checks.at(number)->checked;
        if (controls.clicks.at(number)) controls.clicks.at(number)();
    }
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
        line.erase(std::min(line.find(':'), line.size()));
        if (line.empty()) {
            text += "\n";
            continue;
        }
        const bool quiet = line.starts_with("- ");
        if (marksAnew) forgetUnsavedChanges();
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
        text += folded(line + (quiet && difference.empty() ? "" : ":") + row + difference) + "\n";
    }
    if (!transcript.ends_with("\n")) text.pop_back();
    return text;
}

} // namespace marlune::test
