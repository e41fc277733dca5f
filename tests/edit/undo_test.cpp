#include "support/program_test.h"

namespace marlune {
namespace {

using Undo = ProgramTest;

TEST_F(Undo, WhatIsAbandonedOrLosesItsReleaseLeavesTheHistoryWhole) {
    clearUndoHistory();
    const auto before = captureMusic();
    program.calls();
    for (const bool song : {false, true}) {
        if (song) Check1_Click();
        clearUndoHistory();
        program.calls();
        beginEdit();
        program.drag(Control::knobSprite, 3, 1000, 700);
        editLoop(1, -4);
        EXPECT_NE(captureMusic(), before);
        abandonEdit();
        EXPECT_EQ(captureMusic(), before);
        EXPECT_EQ(undoSteps(), 0);
        EXPECT_EQ(program.copyDifference(), "");
        EXPECT_EQ(shownText(Control::LoopPt, 1), "16");
        if (song) Check1_Click();
    }
    clearUndoHistory();
    panelPointer(Control::accent, 0, {}); // its release is lost
    program.click(Control::accent, 1);
    EXPECT_EQ(undoSteps(), 2);
    endGesture(); // none is open
    program.click(Control::step109LED, 1);
    EXPECT_EQ(undoSteps(), 3);
    for (int i = 0; i < 3; ++i) menuClicked(Menu::mnuEditUndo);
    EXPECT_EQ(captureMusic(), before);
    program.click(Control::accent, 0); // a new edit: there is nothing to make again
    EXPECT_FALSE(menuState(Menu::mnuEditRedo).enabled);
    menuClicked(Menu::mnuEditRedo);
    EXPECT_EQ(undoSteps(), 1);
}

// One random edit of those that a user can make in pattern mode.
void randomEdit(TestProgram& program, std::mt19937& random) {
    const auto below = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(count));
    };
    constexpr int kKeys[] = {'M', 'N', 'X', 'Z', 186, 222, 187, 189, 219, 221, 188, 190};
    constexpr Control kFlags[] = {Control::up, Control::down, Control::accent};
    constexpr Menu kEntries[] = {Menu::mnuToolsRNotes,  Menu::mnuToolsRandRest, Menu::mnuToolsRAccents,
                                 Menu::mnuToolsROctave, Menu::mnuToolsInit,     Menu::mnuToolsClear,
                                 Menu::mnuEditCut,      Menu::mnuEditPaste,     Menu::mnuEditMoveLeft};
    switch (below(8)) {
        case 0: program.click(Control::sel103AButton, below(13)); break;
        case 1: program.click(kFlags[below(3)], below(2)); break;
        case 2: program.click(Control::step109LED, below(16)); break;
        case 3: program.drag(Control::knobSprite, below(20), 1000, 1000 + below(1500) - 750); break;
        case 4: program.drag(Control::LoopPt, below(3), 1000, 1000 + below(900) - 450); break;
        case 5: Form_KeyDown(kKeys[below(12)], 0); break;
        case 6: menuClicked(kEntries[below(9)]); break;
        default:
            program.click(Control::step103A, below(16));
            program.click(Control::sel109, below(8));
            Form_KeyDown("12345678QWERTYUIASDFGHJK"[below(24)], below(2));
    }
}

TEST_F(Undo, FiveHundredEditsGoBackAndForthByteForByte) {
    clearUndoHistory();
    std::mt19937 random(11);
    const auto first = captureMusic();
    for (int i = 0; i < 500; ++i) {
        if (i % 100 == 30) playButton();
        if (i % 100 == 80) playButton();
        randomEdit(program, random);
        TestProgram::advanceClock(1500);
        if (transportState->transportRunning) program.play(1);
        ASSERT_EQ(program.copyDifference(), "") << i;
    }
    StopPlay();
    const auto last = captureMusic();
    const int steps = undoSteps();
    EXPECT_GT(steps, 250);
    EXPECT_LT(undoBytes(), 16U << 20U);
    for (int i = 0; i < steps; ++i) {
        menuClicked(Menu::mnuEditUndo);
        ASSERT_EQ(program.copyDifference(), "") << i;
    }
    EXPECT_EQ(captureMusic(), first);
    playButton(); // redone while playing
    for (int i = 0; i < steps; ++i) {
        menuClicked(Menu::mnuEditRedo);
        program.play(1);
        ASSERT_EQ(program.copyDifference(), "") << i;
    }
    EXPECT_EQ(captureMusic(), last);
}

TEST_F(Undo, KeepsItsStepsOfWholeSongsWithinItsMemory) {
    Check1_Click();
    clearUndoHistory();
    for (int i = 0; i < 220; ++i) {
        for (auto& row : knobTrack) row[i] = 1; // so that there is something to initialize
        const EditBracket bracket;
        mnuToolsInit_Click();
        for (int t = 0; t < kSongTicks; t += 7) knobTrack[i % 20][t] = static_cast<std::uint8_t>(i % 100);
    }
    EXPECT_GE(undoSteps(), 200);
    EXPECT_LT(undoBytes(), 16U << 20U);
}

} // namespace
} // namespace marlune
