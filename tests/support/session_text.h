// The words of a session's transcript.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "boundary/limits.h"
#include "project/project_record.h"

namespace marlune::test {

std::string digit(int bank, int patt); // "B3"
std::string textOf(const BassPattern& pattern);
std::string textOf(const DrumPattern& pattern);
std::string listed(const std::vector<std::string>& entries); // one blank before each
std::string folded(const std::string& line);                 // long lines go on indented

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

} // namespace marlune::test
