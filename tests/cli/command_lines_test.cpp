// The command-line program as it is called: each line of the text kept is what is typed, and behind the colon
// come the exit status, what it said, and the files that it left.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>

#include "rebirth/rb40_writer.h"
#include "support/kept_text.h"
#include "support/test_program.h"

namespace marlune {
namespace {

using namespace test;

// "12345 bytes 1a2b3c4d": length and a checksum; of sound only the length, its last bits are the machine's.
std::string described(const std::string& name) {
    const std::vector<std::uint8_t> bytes = readBytes(name);
    std::uint32_t sum = 2166136261U;
    for (const std::uint8_t byte : bytes) sum = (sum ^ byte) * 16777619U;
    std::ostringstream text;
    text << bytes.size() << " bytes";
    if (!name.ends_with(".wav")) text << " " << std::hex << sum;
    return text.str();
}

std::map<std::string, std::string> filesOf(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file()) files[entry.path().filename()] = described(entry.path());
    return files;
}

TEST(CommandLines, AreAnsweredAsEver) {
    const TemporaryFolder folder, said;
    for (const char* name : {"harbour_nights", "tide_pool", "slow_lantern"})
        std::filesystem::copy(EXAMPLES "/" + std::string(name) + ".mlp", folder.path);
    std::filesystem::create_directory(folder.file("config"));
    writeBytes(folder.file("bad.mlp"), {1, 2, 3});
    Rb40Song song = randomRb40(1, 12);
    song.drums[0].patterns[3].cells[0][3] = 1;
    writeBytes(folder.file("song.rbs"), rb40File(song));
    const std::string section = "CommandLines.AreAnsweredAsEver";
    std::istringstream lines(keptText(MARLUNE_KEPT_TEXTS, section));
    std::string found;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("    ")) continue;
        line.erase(std::min(line.find(':'), line.size()));
        const auto before = filesOf(folder.path);
        const int status = std::system(("cd " + folder.path + " && " MARLUNE_CLI " " + line + " >" +
                                        said.file("out") + " 2>" + said.file("err") + " </dev/null")
                                           .c_str());
        found += line + ": " + std::to_string(WEXITSTATUS(status)) + "\n";
        for (const char* name : {"out", "err"}) {
            const std::vector<std::uint8_t> bytes = readBytes(said.file(name));
            std::istringstream text(std::string(bytes.begin(), bytes.end()));
            for (std::string each; std::getline(text, each);)
                found += "    " + std::string(name) + " " + each + "\n";
        }
        for (const auto& [name, content] : filesOf(folder.path)) {
            const auto was = before.find(name);
            if (was == before.end() || was->second != content)
                found.append("    ").append(name).append(" ").append(content).append("\n");
        }
    }
    EXPECT_EQ(described(folder.file("again.mlp")), described(folder.file("harbour_nights.mlp"))); // resaved
    const std::string apart = apartFromKept(MARLUNE_KEPT_TEXTS, section, found);
    EXPECT_TRUE(apart.empty()) << apart;
}

} // namespace
} // namespace marlune
