// The Pattern Sheet as assistive tools meet it.
#include <QAccessible>

#include "sheet_fixture.h"

namespace marlune {
namespace {

using Part = SheetPart;

struct SpokenSheet : SheetTest {
    QAccessibleInterface* root = QAccessible::queryAccessibleInterface(&window);

    [[nodiscard]] static std::string name(QAccessibleInterface* of) {
        return of->text(QAccessible::Name).toStdString();
    }
    [[nodiscard]] QAccessibleInterface* group(const std::string& wanted) const {
        for (int i = 0; i < root->childCount(); ++i)
            if (name(root->child(i)) == wanted) return root->child(i);
        return nullptr;
    }
    static void press(QAccessibleInterface* cell) {
        cell->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
};

TEST_F(SpokenSheet, EveryCellHasANameAPlaceAndAnAction) {
    int cells = 0;
    std::vector<std::string> names;
    for (int g = 0; g < root->childCount() - 1; ++g) {
        QAccessibleInterface* group = root->child(g);
        const int inside = std::max(group->childCount(), 1);
        EXPECT_EQ(group->parent(), root);
        for (int i = 0; i < inside; ++i) {
            QAccessibleInterface* cell = group->childCount() > 0 ? group->child(i) : group;
            EXPECT_FALSE(name(cell).empty());
            EXPECT_EQ(cell->role(), QAccessible::Button);
            EXPECT_TRUE(window.rect().translated(window.mapToGlobal(QPoint())).contains(cell->rect()))
                << name(cell);
            EXPECT_EQ(cell->actionInterface()->actionNames().size(), 2);
            names.push_back(name(cell));
            ++cells;
        }
    }
    // strip 7; each bassline: pill, loop, caps, keys, roll, two octave lanes, accents, slots; the drums
    // likewise
    EXPECT_EQ(cells, 7 + 2 * (2 + 16 + 13 + 3 * 16 + 16 + 32) + 2 + 16 + 8 + 128 + 32);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end()); // no two alike
}

TEST_F(SpokenSheet, TellsWhatIsThereAndDoesWhatIsAsked) {
    test::setBassSteps(0, "C  C- E^! E- A_");
    settle();
    QAccessibleInterface* roll = group("103A roll");
    ASSERT_NE(roll, nullptr);
    EXPECT_EQ(name(roll->child(0)), "103A step 1, C");
    EXPECT_EQ(name(roll->child(1)), "103A step 2, rest on C, held");
    EXPECT_EQ(name(roll->child(2)), "103A step 3, E, octave up, accent");
    EXPECT_EQ(name(roll->child(3)), "103A step 4, rest on E");
    EXPECT_EQ(name(roll->child(4)), "103A step 5, A, octave down");
    press(roll->child(0));
    EXPECT_EQ(name(roll->child(0)), "103A step 1, rest on C, held"); // by the step at the loop's end
    press(group("109 pads")->child(16 + 4));
    EXPECT_EQ(name(group("109 pads")->child(20)), "Snare step 5, hit");
    QAccessibleInterface* patterns = group("103A patterns");
    EXPECT_EQ(name(patterns->child(0)), "103A pattern A1, current, not saved");
    EXPECT_TRUE(patterns->child(0)->state().selected);
    EXPECT_EQ(name(patterns->child(4)), "103A pattern A5, fresh");
    EXPECT_EQ(name(group("109 patterns")->child(9)), "109 pattern B2, silent");
    startStopButton_Click();
    press(patterns->child(4));
    EXPECT_EQ(name(patterns->child(4)), "103A pattern A5, cued, fresh");
    for (const char* cap :
         {"Undo", "Redo", "Compact", "Zoom in", "Zoom out", "Start or stop, on", "Mode, pattern"})
        EXPECT_NE(group(cap), nullptr) << cap;
    EXPECT_FALSE(group("Undo")->state().disabled);
    EXPECT_TRUE(group("Redo")->state().disabled);
    press(group("Undo"));
    EXPECT_FALSE(group("Redo")->state().disabled);
}

TEST_F(SpokenSheet, AnnouncesTheCursorAndRefusals) {
    window.activateWindow();
    window.setFocus();
    QApplication::processEvents();
    std::string told;
    QObject::connect(&window, &ScoreWindow::spokenFocusMoved,
                     [&] { told += "at " + name(root->focusChild()) + "\n"; });
    QObject::connect(&window, &ScoreWindow::spokenFocusChanged,
                     [&] { told += "now " + name(root->focusChild()) + "\n"; });
    QObject::connect(&window, &ScoreWindow::announced,
                     [&] { told += "says " + name(root->child(root->childCount() - 1)) + "\n"; });
    window.putCursor(at(Part::roll, 0, 3, 12));
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    EXPECT_EQ(root->focusChild(), group("103A roll")->child(4));
    Check1_Click();
    settle();
    key(Qt::Key_Return);
    EXPECT_EQ(told,
              "at 103A step 4, C\n"
              "at 103A step 5, C\n"
              "now 103A step 5, rest on C, held\n"
              "says Patterns are edited in pattern mode.  Bar 1   step 1\n");
    EXPECT_TRUE(group("103A roll")->child(4)->state().disabled);
}

TEST_F(SpokenSheet, TheCompactFormTellsOneModule) {
    press(group("Compact"));
    EXPECT_NE(group("103A roll"), nullptr);
    EXPECT_EQ(group("103B roll"), nullptr);
    press(group("Modules")->child(2));
    EXPECT_EQ(group("103A roll"), nullptr);
    EXPECT_EQ(group("109 pads")->childCount(), 128);
    EXPECT_EQ(editingState->editSel, 2);
}

} // namespace
} // namespace marlune
