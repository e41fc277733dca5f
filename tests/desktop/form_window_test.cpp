// Any form through the one binding: contents go both ways around every event.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

#include "desktop/form_window.h"
#include "desktop/main_window.h"
#include "desktop/qt_shell.h"

namespace marlune {
namespace {

struct TryForm final : Form {
    Label note{"first"};
    TextBox name{"abc"}, number{"12"};
    CheckBox loud{"Loud", false};
    ComboBox port{{"None", "One", "Two"}, 1};
    Button ok{"OK"}, cancel{"Cancel"}, add{"Add"};
    std::string log;
    bool takeEscape = false;
    int timer = 0;

    void describe(FormBuilder& b) override {
        b.label(note);
        b.beginFrame("Frame");
        b.textBox("Name", name, 12, [this] { log += "focus:" + name.text + " "; });
        b.digitsBox("Number", number, 3);
        b.comboBox("Port", port);
        b.checkBox(loud, [this] {
            log += loud.checked ? "loud " : "quiet ";
            number.enabled = !loud.checked;
        });
        b.endFrame();
        b.beginRow();
        b.button(add, FormBuilder::Role::plain, [this] {
            number.text += "0";
            note.text = name.text;
        });
        b.button(ok, FormBuilder::Role::accept, [this] {
            log += "ok:" + name.text + "/" + number.text + "/" + std::to_string(port.selected);
            unload();
        });
        b.button(cancel, FormBuilder::Role::reject, [this] {
            log += "cancel";
            unload();
        });
        b.endRow();
    }
    void Form_Timer() override { ++timer; }
    bool Form_KeyDown(int code) override {
        log += "key" + std::to_string(code) + " ";
        return code == 27 && takeEscape;
    }
};

class FormWindows : public testing::Test {
  protected:
    FormWindows() { setAppShell(&shell); }
    ~FormWindows() override { setAppShell(nullptr); }

    // Runs what the user does while the form is shown, then returns what the form has heard meanwhile.
    std::string whileModal(const std::function<void(FormWindow&)>& user) {
        QTimer::singleShot(20, &shell, [&] {
            auto* window = qobject_cast<FormWindow*>(QApplication::activeModalWidget());
            ASSERT_NE(window, nullptr);
            ASSERT_TRUE(QTest::qWaitFor([window] { return window->focusWidget() != nullptr; }));
            form.log.clear();
            user(*window);
        });
        form.showModal();
        return form.log;
    }
    QtShell shell;
    TryForm form;
};

TEST_F(FormWindows, ContentsGoIntoTheFormAndComeBackAfterEveryEvent) {
    const std::string log = whileModal([&](FormWindow& window) {
        const QList<QLineEdit*> lines = window.findChildren<QLineEdit*>();
        QTest::keyClicks(lines[1], "7x8");
        lines[0]->setText("new");
        const int ticks = form.timer; // what is half entered stays while the window follows the form
        EXPECT_TRUE(QTest::qWaitFor([&] { return form.timer > ticks + 1; }));
        window.findChild<QComboBox*>()->setCurrentIndex(2);
        window.findChildren<QPushButton*>()[0]->click();
        EXPECT_EQ(lines[1]->text(), "12780");
        EXPECT_EQ(window.findChild<QLabel*>()->text(), "new");
        window.findChild<QCheckBox*>()->click();
        EXPECT_FALSE(lines[1]->isEnabled());
        form.log.clear();
        QTest::keyClick(lines[0], Qt::Key_Return);
    });
    EXPECT_EQ(log, "key13 ok:new/12780/2");
    EXPECT_FALSE(form.loaded());
}

TEST_F(FormWindows, EscapeAndTheCloseBoxGoToTheRejectingButtonUnlessTheFormTakesTheKey) {
    for (const bool taken : {true, false}) {
        form.takeEscape = taken;
        const std::string log = whileModal([&](FormWindow& window) {
            QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
            EXPECT_EQ(form.visible(), taken);
            if (taken) window.close();
        });
        EXPECT_EQ(log, "key27 cancel");
    }
}

TEST_F(FormWindows, TheFocusSelectsAllAndAModelessFormIsFollowed) {
    form.show();
    auto* window = shell.window().findChild<FormWindow*>();
    ASSERT_NE(window, nullptr);
    auto* line = window->findChild<QLineEdit*>();
    EXPECT_EQ(form.log.find("focus"), std::string::npos); // by itself the dialog chooses nothing
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    QTest::mouseClick(line, Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([line] { return line->selectedText() == "abc"; }));
    EXPECT_NE(form.log.find("focus:abc"), std::string::npos);
    form.note.text = "second";
    shell.formChanged(form);
    EXPECT_EQ(window->findChild<QLabel*>()->text(), "second");
    EXPECT_TRUE(QTest::qWaitFor([this] { return form.timer > 0; }));
    form.hide();
    EXPECT_TRUE(QTest::qWaitFor([this] { return shell.window().findChild<FormWindow*>() == nullptr; }));
}

} // namespace
} // namespace marlune
