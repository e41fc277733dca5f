// The command line, taken apart by a table of what a verb knows.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace marlune {

struct OptionRow {
    const char* name; // "--bars"
    enum class Kind { flag, text, number } kind;
    int lowest = 0, highest = 0; // of a number
};

class Arguments {
  public:
    std::vector<std::string> files; // in order

    [[nodiscard]] bool has(const std::string& option) const { return values_.contains(option); }
    [[nodiscard]] std::string text(const std::string& option) const;
    [[nodiscard]] int number(const std::string& option, int otherwise) const;

    // Takes the words behind the verb; a text with what is wrong where they don't fit: an unknown option, one
    // without its value, a number out of range, or another count of file names than fileCount.
    std::optional<std::string> parse(const std::vector<std::string>& words,
                                     const std::vector<OptionRow>& options, std::size_t fileCount);

  private:
    std::map<std::string, std::string> values_;
};

} // namespace marlune
