#include "support/kept_text.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace marlune::test {

std::string keptText(const std::string& file, const std::string& section) {
    std::ifstream lines(file);
    std::string text;
    bool inside = false, any = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("== ")) {
            inside = line == "== " + section + " ==";
            any = any || inside;
        } else if (inside) {
            text += line + "\n";
        }
    }
    if (!any) throw std::runtime_error("no section \"== " + section + " ==\" in " + file);
    text.erase(text.find_last_not_of('\n') + 1);
    return text;
}

std::string apartFromKept(const std::string& file, const std::string& section, std::string found) {
    found.erase(found.find_last_not_of('\n') + 1);
    std::string kept;
    try {
        kept = keptText(file, section);
        if (kept == found) return "";
    } catch (const std::runtime_error& missing) {
        kept = missing.what();
    }
    if (const char* folder = std::getenv("MARLUNE_FOUND"))
        std::ofstream(std::string(folder) + "/" + section) << found << "\n";
    const auto apart = std::mismatch(found.begin(), found.end(), kept.begin(), kept.end()).first;
    return "from line " + std::to_string(std::count(found.begin(), apart, '\n') + 1) + " of " + section +
           " in " + file + " on; it is now\n== " + section + " ==\n" + found + "\n";
}

std::vector<std::string> keptSessions(const std::string& file) {
    std::ifstream lines(file);
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        const bool plain = line.starts_with("== ") && line.find('.') == std::string::npos;
        if (plain) names.push_back(line.substr(3, line.size() - 6));
    }
    return names;
}

} // namespace marlune::test
