// The frame around the panel: title, menus, status line, pointer, boxes, dialogs and the event loop.
//
// desktop/ implements it in Qt; the command line tool prints messages to stderr; tests script the answers.
// User-interface thread only.
#pragma once

#include <string>

#include "boundary/form.h"
#include "boundary/menus.h"

namespace marlune {

enum class Pointer { normal, hourglass };
enum class BoxIcon { critical, exclamation, information };
enum class BoxButtons { ok, okCancel, yesNoCancel };
enum class BoxAnswer { ok = 1, cancel = 2, yes = 6, no = 7 };

// What dlgCommonDialog asks: filter is "Text (*.ext)|*.ext".
struct FileDialog {
    bool save = false;
    std::string title;
    std::string fileName;
    std::string filter;
    std::string defaultExtension; // without the dot; appended to a name without one when saving
};

// The file dialog of the main window: what the last command has left in it stands for the next one.
extern FileDialog dlgCommonDialog;

class AppShell {
  public:
    virtual ~AppShell() = default;
    virtual void showTitle(const std::string& title) = 0;
    virtual void showModified(bool modified) = 0; // the mark of unsaved changes in the title
    virtual void showPointer(Pointer pointer) = 0;
    virtual void showStatus(const std::string& text) = 0; // MarluneStatus, until the next one
    // Of what has happened: shown for some seconds, then the lasting text is back. What comes while another
    // one stands is read behind it.
    virtual void showPassing(const std::string& text) = 0;
    virtual void showStatusBar(bool visible) = 0;
    virtual void showMenu(Menu menu, const MenuState& state) = 0;
    virtual void showPanel(bool visible) = 0;
    virtual void beep() = 0;
    // A project was opened or saved under that name: the first of the recent files from now on. Not there:
    // off the list. A shell may keep none.
    virtual void noteRecentFile(const std::string& /*fileName*/, bool /*there*/) {}

    virtual BoxAnswer messageBox(const std::string& text, BoxIcon icon, BoxButtons buttons) = 0;
    // The chosen name; empty when the dialog was left without one.
    virtual std::string fileDialog(const FileDialog& dialog) = 0;
    virtual void runModal(Form& form) = 0; // returns when the form is no longer visible
    // Returns at once and follows the form until it is no longer visible; nothing else takes input meanwhile.
    virtual void showModeless(Form& form) = 0;
    virtual void formChanged(Form& form) = 0; // contents were changed from outside its own handlers

    virtual void letEventsRun() = 0; // handles what is pending, waits for nothing
    virtual void letPaintRun() = 0;  // only painting and timers: nothing reaches data that is not whole
    virtual void waitForEvents(int ms) = 0; // sleeps in the event loop until something came, at most ms
    virtual void closeWindow() = 0;         // as the window's close box: may be refused by the user
    virtual void openHelp() = 0;
    virtual void showAbout() = 0;
};

// The shell in use. With none set a silent one stands in, which answers every box with its refusing button.
AppShell& shell();
void setAppShell(AppShell* shell);

} // namespace marlune
