// Swing, slides and mutes as a musician meets them.
#include "project/groove.h"
#include "files/export_driver.h"
#include "panel/mutes.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using Groove_ = ProgramTest;

TEST_F(Groove_, IsEditedShownTakenBackAndKept) {
    test::setBassSteps(0, "C D");
    test::Session session(program);
    session.verbs["alt"] = [](int drum, int shift, int ctrl) {
        const PointerEvent press{.fine = shift != 0, .alt = true, .ctrl = ctrl != 0};
        drum < 0 ? panelPointer(Control::ediSel, ~drum, press) : panelPointer(Control::sel109, drum, press);
        panelPointer(Control::sel109, 0, {.action = PointerAction::release});
    };
    session.verbs["slide"] = [](int module, int, int) {
        panelPointer(Control::accent, module, {.fine = true});
        panelPointer(Control::accent, module, {.action = PointerAction::release});
    };
    expectSession(session);
}

std::vector<std::uint8_t> grooveBytes(const std::vector<std::uint8_t>& file) {
    return {file.begin() + 17430, file.begin() + 17436};
}

TEST_F(Groove_, IsOfFilesThatCarryTheMarkAndOfNoOthers) {
    const std::string name = folder.file("a.mlp");
    const std::vector<std::uint8_t> foreign{25, 1, 'G', 'r', 'v', 25};
    project.groove = {};
    std::memcpy(&project.groove, foreign.data(), foreign.size());
    currentBass(0).steps[0].slide = true;
    ASSERT_TRUE(saveProjectFile(name));
    ASSERT_TRUE(loadProjectFile(name));
    EXPECT_EQ(grooveBytes(projectFileBytes()), foreign);
    EXPECT_EQ(swingOf(project), 50);
    EXPECT_EQ(shownText(Control::swing, 0), "50%");
    EXPECT_EQ(program.calls().find("Slide"), std::string::npos);

    Check1_Click(); // lasts from song mode
    panelWheel(Control::swing, 0, 17);
    Check1_Click();
    ASSERT_TRUE(saveProjectFile(name));
    EXPECT_EQ(grooveBytes(readBytes(name)), (std::vector<std::uint8_t>{'G', 'r', 'v', '1', 17, 0}));
    program.shell.answers = {BoxAnswer::no};
    mnuFileNew_Click();
    EXPECT_EQ(swingOf(project), 50);
    program.calls();
    ASSERT_TRUE(loadProjectFile(name));
    EXPECT_EQ(shownText(Control::swing, 0), "67%");
    EXPECT_NE(program.calls().find("SetSwing32(17)"), std::string::npos);
    std::vector<std::uint8_t> wild = readBytes(name);
    wild[17434] = 200;
    writeBytes(name, wild);
    ASSERT_TRUE(loadProjectFile(name));
    EXPECT_EQ(swingOf(project), 75);
}

// The notes of a track of an exported file as "time:status note velocity", times in its ticks.
TEST_F(Groove_, IsInExportsAndWhatIsMutedIsAskedFor) {
    test::setBassSteps(0, "C D E");
    currentBass(0).loopEnd = 2;
    project.tempo = 120;
    const auto sizeOfExport = [&](const char* file) {
        program.shell.fileNames = {folder.file(file)};
        songPosition.write().moduleStep = {}; // an export leaves them where it ends
        EXPECT_TRUE(ExportToMID("", 0, 16));
        return readBytes(folder.file(file));
    };
    const auto straight = sizeOfExport("straight.mid");
    panelWheel(Control::swing, 0, 10);
    const auto swung = sizeOfExport("swung.mid");
    EXPECT_NE(straight, swung);
    toggleModule(0, Silencing::solo, false);
    program.shell.answers = {BoxAnswer::ok};
    const auto solo = sizeOfExport("solo.mid");
    EXPECT_LT(solo.size(), swung.size());
    program.shell.answers = {BoxAnswer::cancel};
    EXPECT_EQ(sizeOfExport("all.mid"), swung);
    EXPECT_EQ(program.shell.boxes.size(), 2U);
    EXPECT_TRUE(currentBass(1).steps[0].noteOn); // the record is as it was
}

} // namespace
} // namespace marlune
