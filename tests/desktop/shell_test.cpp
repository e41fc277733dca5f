#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QAction>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <utility>

#include "desktop/desktop_support.h"
#include "desktop/fd_pump.h"
#include "desktop/main_window.h"
#include "desktop/panel_widget.h"
#include "desktop/qt_shell.h"
#include "desktop/sound_meter.h"

namespace marlune {
namespace {

class ShellTest : public testing::Test {
  protected:
    ShellTest() {
        resetMenus();
        shell = std::make_unique<QtShell>();
        setAppShell(shell.get());
        shell->mayClose = [this] {
            log += "may? ";
            return allow;
        };
        shell->closing = [this] { log += "closing "; };
        shell->window().show();
        takeEvents();
    }
    ~ShellTest() override { setAppShell(nullptr); }

    std::unique_ptr<QtShell> shell;
    std::string log;
    bool allow = true;
};

TEST_F(ShellTest, EveryMenuEntryStandsInOrderShowsItsStateAndIsReported) {
    std::string expected;
    for (const MenuRow& row : menuRows()) {
        if (row.kind != MenuKind::entry) continue;
        QAction* action = shell->window().action(row.id);
        ASSERT_NE(action, nullptr) << row.name;
        EXPECT_EQ(action->text().toStdString(), menuState(row.id).caption);
        EXPECT_EQ(action->shortcut(), QKeySequence(row.shortcut)) << row.name;
        setMenuEnabled(row.id, true);
        action->trigger();
        EXPECT_EQ(action->autoRepeat(), std::string(row.name).ends_with("do")) << row.name; // Undo, Redo
        expected.append(expected.empty() ? "" : " ").append(row.name);
    }
    EXPECT_EQ(takeEvents(), expected);
    setMenuCaption(Menu::mnuEditCut, "Copy Pattern");
    setMenuEnabled(Menu::mnuEditCut, false);
    setMenuVisible(Menu::mnuEditCut, false);
    const QAction* cut = shell->window().action(Menu::mnuEditCut);
    EXPECT_EQ(cut->text(), "Copy Pattern");
    EXPECT_FALSE(cut->isEnabled() || cut->isVisible());
    QStringList keys;
    for (const QAction* action : shell->window().findChildren<QAction*>())
        for (const QKeySequence& key : action->shortcuts()) keys << key.toString();
    EXPECT_EQ(keys.removeDuplicates(), 0) << keys.join(' ').toStdString();
}

TEST_F(ShellTest, TheWindowTakesTheSizeOfTheZoomedPanel) {
    shell->window().setZoom(100);
    for (const int expected : {125, 150, 200, 250, 300, 300}) {
        shell->window().stepZoom(1);
        QTest::qWait(1);
        EXPECT_EQ(shell->window().panel().zoom(), expected);
        EXPECT_EQ(shell->window().width(), kPanelWidth * expected / 100);
    }
    shell->window().setZoom(50);
    shell->window().stepZoom(-1);
    EXPECT_EQ(shell->window().panel().zoom(), 50);
}

TEST_F(ShellTest, TheMeterFollowsTheSoundAndTheLampHoldsTwoSeconds) {
    float peak = 0;
    bool muted = true;
    SoundMeter meter(SoundSource{.peak = [&] { return std::exchange(peak, 0.0F); },
                                 .mute = [&](bool on) { muted = on; },
                                 .sounding = [] { return true; }});
    EXPECT_FALSE(muted);
    peak = 0.5F;
    meter.look(40);
    EXPECT_NEAR(meter.level(), -6, 0.1);
    EXPECT_FALSE(meter.overloaded());
    peak = 1.01F;
    meter.look(40);
    for (int ms = 0; ms < 1960; ms += 40) meter.look(40);
    EXPECT_TRUE(meter.overloaded());
    meter.look(40);
    EXPECT_FALSE(meter.overloaded());
    EXPECT_EQ(meter.level(), SoundMeter::kSilence);
    const QImage dark = meter.grab().toImage();
    peak = 2;
    meter.look(40);
    EXPECT_NE(meter.grab().toImage(), dark);
    meter.muteButton()->click();
    EXPECT_TRUE(muted);
    EXPECT_EQ(meter.muteButton()->text(), "Muted");
}

TEST_F(ShellTest, ALongStatusTextDoesNotWidenTheWindow) {
    const int width = shell->window().width();
    shell->showStatus(std::string(400, 'w'));
    takeEvents();
    EXPECT_EQ(shell->window().width(), width);
}

TEST_F(ShellTest, ClosingAsksFirstAndWaitsForARoutineThatLetsEventsRun) {
    allow = false;
    shell->window().close();
    EXPECT_EQ(log, "may? ");
    EXPECT_TRUE(shell->window().isVisible());
    allow = true;
    log.clear();
    QTimer::singleShot(0, [&] { shell->window().close(); });
    shell->waitForEvents(50);
    shell->waitForEvents(5);
    EXPECT_EQ(log, "");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shell->window().isVisible(); }));
    EXPECT_EQ(log, "may? closing ");
    shell->waitForEvents(1000); // returns at once after the end
    QTimer::singleShot(0, [] { QCoreApplication::quit(); });
    QApplication::exec(); // takes the end back for the tests that follow
}

TEST_F(ShellTest, AWaitEndsWithTheFirstEvent) {
    QElapsedTimer clock;
    clock.start();
    bool came = false;
    QTimer::singleShot(5, [&] { came = true; });
    for (int i = 0; i < 50 && !came; ++i) shell->waitForEvents(2000);
    EXPECT_TRUE(came);
    EXPECT_LT(clock.elapsed(), 1500);
}

TEST_F(ShellTest, AMessageBoxReturnsTheButton) {
    const auto answer = [&](QMessageBox::StandardButton button, BoxButtons buttons) {
        QTimer::singleShot(10, [button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            EXPECT_EQ(box->text(), "Save?\n");
            box->button(button)->click();
        });
        return shell->messageBox("Save?\n", BoxIcon::exclamation, buttons);
    };
    EXPECT_EQ(answer(QMessageBox::Yes, BoxButtons::yesNoCancel), BoxAnswer::yes);
    EXPECT_EQ(answer(QMessageBox::No, BoxButtons::yesNoCancel), BoxAnswer::no);
    EXPECT_EQ(answer(QMessageBox::Cancel, BoxButtons::okCancel), BoxAnswer::cancel);
    EXPECT_EQ(answer(QMessageBox::Ok, BoxButtons::ok), BoxAnswer::ok);
}

TEST_F(ShellTest, AFileDialogProposesTheToldNameWhereTheLastFileWas) {
    const QTemporaryDir folder;
    shell->setWindowFile(folder.filePath("windows.cfg"));
    const auto ask = [&](bool save, const char* told, const QString& typed) {
        QTimer::singleShot(0, [&, typed] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            auto* edit = dialog->findChild<QLineEdit*>();
            log = edit->text().toStdString() + " in " + dialog->directory().dirName().toStdString();
            if (!typed.isEmpty()) edit->setText(typed);
            QMetaObject::invokeMethod(dialog, "accept");
            if (dialog->isVisible()) dialog->reject(); // that was no answer
        });
        return shell->fileDialog({save, "", told, "Marlune (*.mlp)|*.mlp", "mlp"});
    };
    const std::string place = QFileInfo(folder.path()).fileName().toStdString();
    EXPECT_EQ(ask(true, "untitled", folder.filePath("one")), folder.filePath("one.mlp").toStdString());
    EXPECT_EQ(log.substr(0, 12), "untitled.mlp");
    ASSERT_TRUE(QFile(folder.filePath("one.mlp")).open(QIODevice::WriteOnly));
    EXPECT_EQ(ask(false, "one", ""), "");
    EXPECT_EQ(log, " in " + place);
    const QString told = folder.filePath("one");
    EXPECT_EQ(ask(false, told.toStdString().c_str(), ""), folder.filePath("one.mlp").toStdString());
    EXPECT_EQ(log, "one.mlp in " + place);
}

TEST_F(ShellTest, NothingButPaintingGetsThroughWhereDataIsNotWhole) {
    const int fd = eventfd(1, EFD_NONBLOCK);
    int calls = 0;
    const FdPump pump(fd, [&] { ++calls; });
    for (int i = 0; i < 3; ++i) shell->letPaintRun();
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return calls == 1; }));
    close(fd);
}

TEST(DesktopPieces, FiltersAndDescriptors) {
    EXPECT_EQ(nativeFilter("Marlune Files (*.mlp)|*.mlp"), "Marlune Files (*.mlp *.MLP)");
    EXPECT_EQ(nativeFilter("Songs|*.rbs|All files (*.*)|*.*"), "Songs (*.rbs *.RBS);;All files (*.*)");
    const int fd = eventfd(0, EFD_NONBLOCK);
    int calls = 0;
    const FdPump pump(fd, [&] { ++calls; });
    for (int round = 1; round <= 2; ++round) {
        const std::uint64_t one = 1;
        ASSERT_EQ(write(fd, &one, sizeof one), 8);
        QTest::qWait(20);
        EXPECT_EQ(calls, round);
    }
    close(fd);
}

} // namespace
} // namespace marlune
