#include "support/corpus.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using Configuration = ProgramTest;

TEST_F(Configuration, ComesBackFromDiskAndReachesTheComponentInOrder) {
    setConfigFolder(folder.path);
    config.moduleVelocity[1] = 77;
    config.syncOffset = -3;
    config.statusBarVisible = false;
    knobLabel[4] = "One, \"two\"";
    saveGlobalConfig();
    EXPECT_EQ(readBytes(folder.file("marlune.cfg")).size(), 518U);
    config.moduleVelocity[1] = 1;
    knobLabel[4] = knobLabel[5] = "";
    program.calls();
    loadGlobalConfig();
    EXPECT_EQ(config.moduleVelocity[1], 77);
    EXPECT_EQ(knobLabel[4], "One, \"two\"");
    EXPECT_EQ(knobLabel[5], "Accent");
    EXPECT_FALSE(program.shell.statusBar);
    EXPECT_FALSE(menuState(Menu::mnuStatusBarEnable).checked);
    mnuStatusBarEnable_Click();
    EXPECT_TRUE(program.shell.statusBar && config.statusBarVisible);
    const std::string calls = program.calls();
    EXPECT_TRUE(calls.starts_with(
        "Set103Vel32(0,100) Set103Vel32(1,77) Set103NoteOffset32(0,36) Set103NoteOffset32(1,36) "
        "Set103Chan32(0,0) "
        "Set103Chan32(1,1) Set109Chan32(2,9) DefineController32(0,12) DefineController32(1,13) "));
    EXPECT_TRUE(calls.ends_with("DefineController32(19,-1) SetSyncOffset32(-3)"));
}

TEST_F(Configuration, MissingShortAndEmptyFilesKeepWhatIsThere) {
    setConfigFolder(folder.path);
    config.moduleVelocity[0] = 55;
    const auto load = [&] {
        program.calls();
        loadGlobalConfig();
        return program.calls();
    };
    EXPECT_EQ(load(), ""); // no file: nothing is pushed
    EXPECT_TRUE(program.shell.statusBar);
    const std::string labels = "\"Bite\"\r\nplain\r\n\"cut";
    writeBytes(folder.file("labels.cfg"), {labels.begin(), labels.end()});
    writeBytes(folder.file("marlune.cfg"), std::vector<std::uint8_t>(517, 1));
    EXPECT_EQ(load(), "");
    EXPECT_EQ(knobLabel[0], "Cutoff");
    writeBytes(folder.file("marlune.cfg"), {});
    EXPECT_NE(load(), ""); // an empty one counts as the present values
    EXPECT_EQ(config.moduleVelocity[0], 55);
    EXPECT_EQ(knobLabel[0] + knobLabel[1] + knobLabel[2] + knobLabel[3], "BiteplaincutDecay");
    std::filesystem::remove(folder.file("labels.cfg"));
    saveGlobalConfig();
    EXPECT_TRUE(std::filesystem::exists(folder.file("labels.cfg")));
    setConfigFolder("/proc/nowhere");
    saveGlobalConfig();
    EXPECT_EQ(load(), "");
    EXPECT_TRUE(program.shell.boxes.empty());
}

// Random ones, and what the fuzzer found on its way into every corner of the settings and of the MIDI input.
TEST(AnySettings, AreCarriedAndHarmNothing) {
    std::mt19937 random(3);
    for (int round = 0; round < 8; ++round) {
        std::vector<std::uint8_t> wild(2000);
        for (auto& byte : wild) byte = static_cast<std::uint8_t>(round == 0 ? 0xFF : random());
        test::look(wild);
    }
    test::expectHarmless("settings");
}

} // namespace
} // namespace marlune
