#include "support/session_text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <sstream>
#include <utility>

#include "project/global_config.h"

namespace marlune::test {

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

namespace {

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

} // namespace

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

} // namespace marlune::test
