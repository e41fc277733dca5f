// The frame of the program without a window: messages go to stderr, every question gets its refusing answer,
// unless a verb has given its answers beforehand.
#pragma once

#include "boundary/app_shell.h"

namespace marlune {

class ConsoleShell final : public AppShell {
  public:
    void showTitle(const std::string& /*title*/) override {}
    void showPointer(Pointer /*pointer*/) override {}
    void showStatus(const std::string& text) override { status_ = text; }
    void showModified(bool /*modified*/) override {}
    void showPassing(const std::string& text) override { status_ = text; }
    void showStatusBar(bool /*visible*/) override {}
    void showMenu(Menu /*menu*/, const MenuState& /*state*/) override {}
    void showPanel(bool /*visible*/) override {}
    void beep() override {}
    BoxAnswer messageBox(const std::string& text, BoxIcon icon, BoxButtons buttons) override;
    std::string fileDialog(const FileDialog& /*dialog*/) override { return answer; }
    void runModal(Form& form) override { form.hide(); }
    void showModeless(Form& /*form*/) override {}
    void formChanged(Form& /*form*/) override {}
    void letEventsRun() override {}
    void letPaintRun() override {}
    void waitForEvents(int ms) override;
    void closeWindow() override {}
    void openHelp() override {}
    void showAbout() override {}

    [[nodiscard]] const std::string& status() const { return status_; }

    std::string answer;        // what file dialogs return
    bool mayOverwrite = false; // an OK or Cancel question is silently answered with OK

  private:
    std::string status_;
};

} // namespace marlune
