// The windows beside the panel within the shell: opened by keys, kept up to date without being told.
#include <QApplication>
#include <QEventLoop>
#include <QMenu>
#include <QTimer>

#include "desktop/main_window.h"
#include "desktop/map_window.h"
#include "desktop/panel_widget.h"
#include "desktop/qt_shell.h"
#include "sheet_fixture.h"

namespace marlune {
namespace {

struct ShellWindows : ProgramTest {
    ShellWindows() {
        shell.setWindowFile(QString::fromStdString(folder.file("windows.cfg")));
        shell.window().show();
        shell.window().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&shell.window()));
    }
    QtShell shell;
};

TEST_F(ShellWindows, F3ShowsTheSheetAndPutsItAway) {
    QTest::keyClick(&shell.panel(), Qt::Key_F3);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&shell.sheet()));
    QTest::keyClick(&shell.sheet(), Qt::Key_Z, Qt::ControlModifier); // the menus' keys work here, too
    shell.sheet().setForm(SheetForm::compact);
    QTest::keyClick(&shell.sheet(), Qt::Key_F3);
    EXPECT_FALSE(shell.sheet().isVisible());
    EXPECT_TRUE(QTest::qWaitForWindowActive(&shell.window()));
    EXPECT_EQ(shell.panel().focusControl(), nullptr); // no control is chosen by that
    QtShell next;
    next.setWindowFile(QString::fromStdString(folder.file("windows.cfg")));
    next.openRemembered();
    EXPECT_EQ(next.sheet().form(), SheetForm::compact);
    EXPECT_FALSE(next.sheet().isVisible()); // it was put away
}

TEST_F(ShellWindows, F4ShowsTheMapWhoseKeysAreItsOwn) {
    Check1_Click();
    QTest::keyClick(&shell.panel(), Qt::Key_F4);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&shell.map()));
    fillBars(0, {1, 2}, {3, 1});
    shell.settle();
    QTest::keyClick(&shell.map(), Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(&shell.map(), Qt::Key_C, Qt::ControlModifier); // no dialog asks for the number of bars
    EXPECT_TRUE(laneClipboard->latest);
    EXPECT_EQ(laneClipboard->lanes[0]->bars.size(), 4U);
    QTest::keyClick(&shell.map(), Qt::Key_F4);
    EXPECT_FALSE(shell.map().isVisible());
}

TEST_F(ShellWindows, RecentFilesAreKeptAndOpenedUnlessTheyAreGone) {
    setAppShell(&shell);
    const auto menuOf = [](QtShell& of) {
        QMenu* menu = nullptr;
        for (QMenu* each : of.window().findChildren<QMenu*>())
            if (each->title() == "Open &Recent") menu = each;
        emit menu->aboutToShow();
        return menu;
    };
    const auto listed = [&](QtShell& of) {
        std::string names;
        for (const QAction* action : menuOf(of)->actions())
            names += action->text().left(9).toStdString() + " ";
        return names;
    };
    EXPECT_EQ(listed(shell), "None yet ");
    for (const int i : {0, 1, 2, 3, 4, 5, 6, 7, 8, 2}) {
        project.tempo = 100 + i;
        const std::string name = folder.file("&" + std::to_string(i) + ".mlp");
        nameProject(name);
        menuClicked(Menu::mnuFileSavePatt);
    }
    EXPECT_EQ(listed(shell),
              "&1  &&2.m &2  &&8.m &3  &&7.m &4  &&6.m &5  &&5.m &6  &&4.m &7  &&3.m &8  &&1.m ");
    menuOf(shell)->actions().at(2)->trigger();
    EXPECT_EQ(project.tempo, 107);
    QtShell next;
    next.setWindowFile(QString::fromStdString(folder.file("windows.cfg")));
    EXPECT_EQ(listed(next), listed(shell));
    std::filesystem::remove(folder.file("&8.mlp"));
    QTimer::singleShot(20, [] { QApplication::activeModalWidget()->close(); });
    menuOf(shell)->actions().at(2)->trigger();
    EXPECT_EQ(project.tempo, 107);
    EXPECT_EQ(listed(shell), "&1  &&7.m &2  &&2.m &3  &&6.m &4  &&5.m &5  &&4.m &6  &&3.m &7  &&1.m ");
    setAppShell(&program.shell);
}

TEST_F(ShellWindows, WhateverChangesIsShownWhenTheProgramComesToRest) {
    shell.toggleSheet();
    shell.settle();
    mnuToolsRNotes_Click(); // knows of no window
    currentBass(0).steps[3].up = true;
    project.knobValue[4] = 99;
    QEventLoop rest;
    QTimer::singleShot(1, &rest, &QEventLoop::quit);
    rest.exec();
    EXPECT_EQ(shell.sheet().state(), readSheet());
    EXPECT_TRUE(shell.panel().state().marks[0][3].up);
    EXPECT_EQ(shell.panel().state().values[4], 99);
}

} // namespace
} // namespace marlune
