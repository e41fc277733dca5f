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
    expectSession(session, R"(
wheel swing 0 8: pattern(103A A1) SetSwing32(8) | swing="58%" | undo1 changed1
drag swing 0 150: SetSwing32(9) SetSwing32(10) SetSwing32(12) SetSwing32(13) | swing="59%" swing="60%"
    swing="62%" swing="63%" | undo2 changed1
wheel swing 0 -99: SetSwing32(0) | swing="50%" | undo3 changed1
menu mnuEditUndo: SetSwing32(13) | swing="63%" | undo2 changed1
menu mnuEditUndo; menu mnuEditUndo: SetSwing32(8) SetSwing32(0) | swing="58%" swing="50%" | undo0 changed1
menu mnuEditRedo: SetSwing32(8) | swing="58%" | undo1 changed1
slide 0: Set103Slide32(0,0,0,0,-1) SetSlides32(-1) | slideLamp(0)=1 | undo2 changed1 103A A1 {C D C*14}
slide 0: Set103Slide32(0,0,0,0,0) | slideLamp(0)=0 | undo3 changed1 103A A1 {C D C*14}
click step103A 1; key V: Set103Slide32(0,0,0,1,-1) | keys(0)=2 step103(0)=1 slideLamp(0)=1 | undo4 changed1 103A
    A1 {C D C*14}
click ediSel 2; key V: edit(0>2: 0 16) | edit2
menu mnuEditUndo: pattern(103A A1) | slideLamp(0)=0 | undo3 changed1 103A A1 {C D C*14}
alt -1: SetMutes32(1,0,0) | muteLamp(0)=1 muteLamp(1..9)=0
alt -1 1: SetMutes32(6,0,0) | muteLamp(0)=2 muteLamp(1)=1 muteLamp(2)=1
alt -1; alt -1 1: SetMutes32(6,0,0) (0,0,0) | muteLamp(0..2)=0
alt 2; alt 7: SetMutes32(0,4,0) | muteLamp(5)=1 sel109(0)=0 sel109(7)=1
key 116: SetMutes32(1,4,0) | muteLamp(0)=1
key 117 1: SetMutes32(5,4,0) | muteLamp(1)=2 muteLamp(2)=1
play 3; key 117 3; key 118 2; play 14: SetMutes32(1,4,-1) (5,4,-1) | muteLamp(1)=0 muteLamp(2)=0 muteLamp(2)=1
song; slide 0: SetSong32(-1) song(0 A1>A1@0 A1>A1@0 A1>A1@0) PrepareController32(0..11,0)
    PrepareController32(12..19,100) pattern(103A A1) pattern(103B A1) pattern(109 A1) | timeDisplay enabled
    microDisplay enabled knobSprite(0..18) disabled Check1=1 ResetButton=1 prevButton=1 nextButton=1 RwdStep=1
    FwdStep=1 stopButton=1 playSongButton=1 RecButton=1 edit(2>0: 16 0) | song1 edit0 undo0 changed1
)");
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
