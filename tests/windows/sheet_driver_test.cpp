// The Pattern Sheet swept and driven at random: panel, sheet, record and the engine's copy agree.
#include <functional>

#include "project/pattern_push.h"
#include "sheet_fixture.h"

namespace marlune {
namespace {

using Part = SheetPart;
using SheetSweep = SheetTest;

void setAll(BassStep& step, int note, bool on) {
    step.note = note;
    step.noteOn = on;
}

TEST_F(SheetSweep, EveryCellOfEveryRollReachesItsStep) {
    for (int m = 0; m < kBassModules; ++m) {
        for (int s = 0; s < kSteps; ++s) {
            for (int row = 0; row <= kTopNote; ++row) {
                BassStep expected = currentBass(m).steps[s];
                const bool same = expected.note == noteOfRow(row);
                setAll(expected, noteOfRow(row), !same || !expected.noteOn);
                click(at(Part::roll, m, s, row));
                ASSERT_EQ(std::memcmp(&expected, &currentBass(m).steps[s], sizeof expected), 0)
                    << m << " " << s << " " << row;
                ASSERT_EQ(window.state().modules[m].steps[s].note, noteOfRow(row));
                ASSERT_EQ(project.bass[m].selStep, s);
            }
        }
    }
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(SheetSweep, EveryLaneCapKeyPadAndSlotReachesItsOwn) {
    for (int m = 0; m < kBassModules; ++m) {
        for (int s = 0; s < kSteps; ++s) {
            click(at(Part::octaveUp, m, s));
            ASSERT_EQ(step(m, s), "C^");
            click(at(Part::octaveDown, m, s));
            ASSERT_EQ(step(m, s), "C");
            click(at(Part::octaveDown, m, s));
            click(at(Part::accent, m, s));
            ASSERT_EQ(step(m, s), "C_!");
            click(at(Part::stepCap, m, s));
            const int key = s % (kTopNote + 1);
            click(at(Part::key, m, 0, kTopNote - key));
            ASSERT_EQ(currentBass(m).steps[s].note, key);
        }
    }
    for (int row = 0; row < kDrumRows; ++row) {
        for (int s = 0; s < kSteps; ++s) {
            click(at(Part::pad, kDrumModule, s, row));
            ASSERT_EQ(window.state().modules[2].hits[s], (2 << row) - 1) << s << " " << row;
        }
        click(at(Part::drumName, kDrumModule, 0, row));
        ASSERT_EQ(project.drum.selDrum, row);
        click(at(Part::stepCap, kDrumModule, row));
        ASSERT_FALSE(padHit(row, row));
        click(at(Part::stepCap, kDrumModule, row));
    }
    EXPECT_EQ(program.copyDifference(), "");
    for (int m = 0; m < kModules; ++m) {
        for (int slot = 0; slot < kBanks * kPatterns; ++slot) {
            click(at(Part::slot, m, slot % kPatterns, slot / kPatterns));
            const Selection now = selectionOf(project, m);
            ASSERT_EQ(now.currBank * kPatterns + now.currPatt, slot);
            ASSERT_EQ(window.state().modules[m].bank * kPatterns + window.state().modules[m].pattern, slot);
        }
        click(at(Part::editPill, m));
        EXPECT_EQ(editingState->editSel, m);
        for (const int length : {1, 7, 16}) {
            drag({at(Part::loopGrip, m), at(Part::stepCap, m, length - 1)});
            EXPECT_EQ(currentLoopEnd(m), length - 1);
        }
    }
}

// What panel and record tell, so that they can be compared.
std::string panelTells() {
    std::string text;
    for (int m = 0; m < kModules; ++m)
        text +=
            std::to_string(shownFrame(Control::DigitPatt, 2 * m)) + " " + shownText(Control::LoopPt, m) + " ";
    for (int m = 0; m < kBassModules; ++m)
        text += std::to_string(shownFrame(Control::step103, m)) + " " +
                std::to_string(shownFrame(Control::keys, m)) +
                std::to_string(shownFrame(Control::accent, m)) + std::to_string(shownFrame(Control::up, m)) +
                std::to_string(shownFrame(Control::down, m)) + " ";
    for (int s = 0; s < kSteps; ++s) text += shownLamp(s) ? 'x' : '.';
    return text;
}

std::string sheetTells(const SheetState& state) {
    std::string text;
    for (const SheetModule& m : state.modules)
        text += std::to_string(m.bank * kPatterns + m.pattern) + " " + std::to_string(m.length) + " ";
    for (int i = 0; i < kBassModules; ++i) {
        const SheetModule& m = state.modules[i];
        const SheetStep& s = m.steps[m.selStep];
        text += std::to_string(m.selStep) + " " + std::to_string(s.sounds ? s.note : 13) +
                std::to_string(int{s.accent}) + std::to_string(int{s.up}) + std::to_string(int{s.down}) + " ";
    }
    for (int s = 0; s < kSteps; ++s) text += state.modules[2].hit(s, state.modules[2].selDrum) ? 'x' : '.';
    return text;
}

TEST_F(SheetSweep, SheetPanelRecordAndEngineAgreeAfterRandomSessions) {
    std::mt19937 random(20);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto bassPart = [&] {
        constexpr Part kParts[] = {Part::roll, Part::octaveUp, Part::octaveDown, Part::accent, Part::stepCap};
        return kParts[below(5)];
    };
    const std::function<void()> deeds[] = {
        [&] {
            const int m = below(2);
            click(at(Part::roll, m, below(16), below(13)));
        },
        [&] {
            const int m = below(2);
            const Part part = bassPart();
            const int row = part == Part::roll ? below(13) : 0;
            drag({at(part, m, below(16), row), at(part, m, below(16), row), at(part, m, below(16), row)},
                 below(3) == 0 ? Qt::RightButton : Qt::LeftButton);
        },
        [&] {
            drag({at(Part::pad, 2, below(16), below(8)), at(Part::pad, 2, below(16), below(8))});
        },
        [&] {
            drag({at(Part::pad, 2, below(16), 3), at(Part::pad, 2, below(16), 5)}, Qt::LeftButton, false);
        },
        [&] { key(Qt::Key_Escape); },
        [&] { click(at(Part::slot, below(3), below(8), below(4))); },
        [&] {
            drag({at(Part::loopGrip, below(3)), at(Part::stepCap, below(3), below(16))});
        },
        [&] { wheel(at(Part::loop, below(3)), below(5) - 2); },
        [&] { window.putCursor(at(bassPart(), below(2), below(16))); },
        [&] {
            constexpr Qt::Key kKeys[] = {Qt::Key_Return, Qt::Key_Delete, Qt::Key_Right, Qt::Key_Up,
                                         Qt::Key_Tab};
            constexpr Qt::KeyboardModifier kWith[] = {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier};
            const int which = below(5);
            key(kKeys[which], which == 4 ? Qt::NoModifier : kWith[below(3)]);
        },
        [&] { key(static_cast<Qt::Key>(Qt::Key_1 + below(8))); },
        [&] { program.click(below(2) == 0 ? Control::step103A : Control::step103B, below(16)); },
        [&] { program.click(below(2) == 0 ? Control::sel103AButton : Control::sel103BButton, below(13)); },
        [&] { program.click(Control::step109LED, below(16)); },
        [&] { program.click(Control::sel109, below(8)); },
        [&] { menuClicked(below(3) == 0 ? Menu::mnuEditRedo : Menu::mnuEditUndo); },
        [&] { menuClicked(below(2) == 0 ? Menu::mnuEditCut : Menu::mnuEditPaste); },
        [&] { startStopButton_Click(); },
        [&] { program.play(1 + below(20)); },
        [&] { program.play(1 + below(5)); },
        [&] {
            if (below(4) == 0) Check1_Click();
        },
    };
    test::randomProject(3);
    for (int m = 0; m < kModules; ++m)
        for (int slot = 0; slot < kBanks * kPatterns; ++slot)
            pushPatternToEngine(m, slot / kPatterns, slot % kPatterns);
    for (int m = 0; m < kModules; ++m) chooseSlot(m, 0, m);
    for (int session = 0; session < 12; ++session) {
        for (int i = 0; i < 60; ++i) deeds[below(std::size(deeds))]();
        QTest::mouseRelease(&window, Qt::LeftButton, {}, QPoint(5, 5));
        program.play(2);
        settle();
        ASSERT_EQ(window.state(), readSheet()) << session;
        ASSERT_EQ(sheetTells(window.state()), panelTells()) << session;
        ASSERT_EQ(program.copyDifference(), "") << session;
    }
}

TEST_F(SheetSweep, TheKeyboardReachesEveryCell) {
    key(Qt::Key_Left); // before the first Tab the arrows are the panel's
    EXPECT_EQ(editingState->editSel, 1);
    EXPECT_EQ(window.cursor().spot().part, Part::none);
    const SheetView view = sheetView(window.state(), window.form());
    for (const SheetSpot& group : sheetGroups(view)) {
        key(Qt::Key_Tab);
        ASSERT_EQ(window.cursor().spot(), group);
        const Grid grid = sheetGrid(view.form, group.part, group.module);
        for (int row = 1; row < grid.rows && group.part != Part::loop; ++row) key(Qt::Key_Down);
        key(Qt::Key_End);
        EXPECT_EQ(window.cursor().spot().column, grid.columns - 1);
        EXPECT_EQ(window.cursor().spot().row, grid.rows - 1);
        key(Qt::Key_Home);
        EXPECT_EQ(window.cursor().spot().column, 0);
    }
    window.putCursor(at(Part::roll, 1, 4, 12));
    key(Qt::Key_Up, Qt::ControlModifier);
    key(Qt::Key_Return, Qt::ShiftModifier);
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(step(1, 4), "C#_!");
    key(Qt::Key_Right, Qt::ControlModifier); // the pattern moves on
    EXPECT_EQ(step(1, 5), "C#_!");
    key(Qt::Key_Right);
    key(Qt::Key_Delete);
    EXPECT_EQ(step(1, 5), "C#-_!");
    key(Qt::Key_Space); // every other key is the panel's
    EXPECT_TRUE(transportState->transportRunning);
    EXPECT_EQ(program.copyDifference(), "");
}

} // namespace
} // namespace marlune
