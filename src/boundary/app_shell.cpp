#include "boundary/app_shell.h"

namespace marlune {

FileDialog dlgCommonDialog;

namespace {

// Stands in where no shell is set: shows nothing, refuses every question, never waits.
class SilentShell final : public AppShell {
  public:
    void showTitle(const std::string& /*title*/) override {}
    void showPointer(Pointer /*pointer*/) override {}
    void showStatus(const std::string& /*text*/) override {}
    void showModified(bool /*modified*/) override {}
    void showPassing(const std::string& /*text*/) override {}
    void showStatusBar(bool /*visible*/) override {}
    void showMenu(Menu /*menu*/, const MenuState& /*state*/) override {}
    void showPanel(bool /*visible*/) override {}
    void beep() override {}
    BoxAnswer messageBox(const std::string& /*text*/, BoxIcon /*icon*/, BoxButtons buttons) override {
        return buttons == BoxButtons::ok ? BoxAnswer::ok : BoxAnswer::cancel;
    }
    std::string fileDialog(const FileDialog& /*dialog*/) override { return {}; }
    void runModal(Form& form) override { form.hide(); }
    void showModeless(Form& /*form*/) override {}
    void formChanged(Form& /*form*/) override {}
    void letEventsRun() override {}
    void letPaintRun() override {}
    void waitForEvents(int /*ms*/) override {}
    void closeWindow() override {}
    void openHelp() override {}
    void showAbout() override {}
};

SilentShell silent;
AppShell* current = &silent;

} // namespace

AppShell& shell() {
    return *current;
}

void setAppShell(AppShell* shell) {
    current = shell != nullptr ? shell : &silent;
}

} // namespace marlune
