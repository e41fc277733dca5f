// Texts that tests expect, kept in the sessions.txt beside them: "== Suite.Test ==" begins the text of a
// test.
#pragma once

#include <string>
#include <vector>

namespace marlune::test {

// The lines of that section without blank ones at its end; throws where there is none.
std::string keptText(const std::string& file, const std::string& section);

// Empty where the text found is the one kept, else what is to be told: the section as found. Where the
// environment names a folder in MARLUNE_FOUND, the text is written there too, into a file of the section's
// name, from where tools/take_texts puts it into the tree.
std::string apartFromKept(const std::string& file, const std::string& section, std::string found);

// The names of the sections that are whole sessions of a freshly started program: not "Suite.Test", but plain
// words.
std::vector<std::string> keptSessions(const std::string& file);

} // namespace marlune::test
