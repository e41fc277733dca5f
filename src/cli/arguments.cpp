#include "cli/arguments.h"

#include <algorithm>

#include "util/text_number.h"

namespace marlune {

std::string Arguments::text(const std::string& option) const {
    const auto found = values_.find(option);
    return found == values_.end() ? "" : found->second;
}

int Arguments::number(const std::string& option, int otherwise) const {
    return has(option) ? leadingInteger(text(option)) : otherwise;
}

std::optional<std::string> Arguments::parse(const std::vector<std::string>& words,
                                            const std::vector<OptionRow>& options, std::size_t fileCount) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (!word.starts_with("--")) {
            files.push_back(word);
            continue;
        }
        const auto row =
            std::find_if(options.begin(), options.end(), [&](const auto& o) { return word == o.name; });
        if (row == options.end()) return "unknown option " + word;
        if (row->kind == OptionRow::Kind::flag) {
            values_[word] = "";
            continue;
        }
        if (++i == words.size()) return word + " needs a value";
        values_[word] = words[i];
        if (row->kind != OptionRow::Kind::number) continue;
        const int value = leadingInteger(words[i]);
        if (!isNumeric(words[i]) || value < row->lowest || value > row->highest) {
            return word + " takes a number from " + std::to_string(row->lowest) + " to " +
                   std::to_string(row->highest);
        }
    }
    if (files.size() != fileCount)
        return std::string(files.size() < fileCount ? "too few" : "too many") + " file names";
    return std::nullopt;
}

} // namespace marlune
