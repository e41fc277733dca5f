// The shell of the program in Qt: AppShell on a main window, message boxes, dialogs and the event loop.
//
// One instance, built after the QApplication and before anything is shown. User-interface thread only.
#pragma once

#include <QEventLoop>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "boundary/app_shell.h"
#include "desktop/window_memory.h"

namespace marlune {

class AboutWindow;
class FormWindow;
class HelpWindow;
class MainWindow;
class PanelWidget;
class MapWindow;
class ScoreWindow;
class SheetWindow;

class QtShell final : public QObject, public AppShell {
    Q_OBJECT

  public:
    QtShell();
    ~QtShell() override;

    [[nodiscard]] MainWindow& window() { return *window_; }
    [[nodiscard]] PanelWidget& panel();

    // What closing the window asks: false keeps it open. Then closing runs, and the program ends.
    std::function<bool()> mayClose;
    std::function<void()> closing;

    // The Pattern Sheet; built at the first wish.
    SheetWindow& sheet();
    void toggleSheet();
    MapWindow& map(); // the Song Map, likewise
    void toggleMap();
    // Shows what has changed since, in all windows beside the panel; runs whenever the program comes to rest.
    void settle();
    // Where places and sizes of windows are kept, and which of them were open.
    void setWindowFile(const QString& path);
    void openRemembered();

    void setHelpFile(const QString& path);
    void showSplash();
    void hideSplash();

    void showTitle(const std::string& title) override;
    void showPointer(Pointer pointer) override;
    void showStatus(const std::string& text) override;
    void showModified(bool modified) override;
    void showPassing(const std::string& text) override;
    void showStatusBar(bool visible) override;
    void showMenu(Menu menu, const MenuState& state) override;
    void showPanel(bool visible) override;
    void beep() override;
    void noteRecentFile(const std::string& fileName, bool there) override;
    BoxAnswer messageBox(const std::string& text, BoxIcon icon, BoxButtons buttons) override;
    std::string fileDialog(const FileDialog& dialog) override;
    void runModal(Form& form) override;
    void showModeless(Form& form) override;
    void formChanged(Form& form) override;
    void letEventsRun() override;
    void letPaintRun() override;
    void waitForEvents(int ms) override;
    void closeWindow() override;
    void openHelp() override;
    void showAbout() override; // modal

  private:
    // What a box or a dialog belongs to: the window in front, so that no window manager can hide it behind
    // one.
    [[nodiscard]] QWidget* front() const;
    void run(QEventLoop::ProcessEventsFlags events);
    void closeWish();
    void settleCloseWish(); // after a wait
    void end();
    void rememberWindows();
    void retire(FormWindow* window);

    std::unique_ptr<MainWindow> window_;
    std::unique_ptr<AboutWindow> splash_;
    std::unique_ptr<HelpWindow> help_;
    void equip(ScoreWindow& window, int key, void (QtShell::*wish)());
    void toggle(ScoreWindow& window);

    std::unique_ptr<SheetWindow> sheet_;
    std::unique_ptr<MapWindow> map_;
    WindowMemory memory_;
    std::vector<FormWindow*> forms_; // open ones, the newest last
    QString helpFile_;
    int waits_ = 0; // routines that let events run, one inside the other
    bool hourglass_ = false;
    bool closeLater_ = false;
    bool settling_ = false;
    bool ended_ = false;
};

// "Text (*.ext)|*.ext" as the toolkit writes it: "Text (*.ext *.EXT)"; further pairs are joined by ";;".
QString nativeFilter(const std::string& filter);

} // namespace marlune
