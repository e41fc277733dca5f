// The frame window: menu bar from the menu table, the panel, the status line. User-interface thread only.
#pragma once

#include <QMainWindow>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <array>
#include <functional>

#include "boundary/menus.h"

class QAction;
class QLabel;

namespace marlune {

class PanelWidget;
class SoundMeter;
struct SoundSource;

class MainWindow final : public QMainWindow {
    Q_OBJECT

  public:
    static constexpr std::array<int, 8> kZooms{50, 75, 100, 125, 150, 200, 250, 300}; // per cent

    MainWindow();

    [[nodiscard]] PanelWidget& panel() { return *panel_; }
    [[nodiscard]] QAction* action(Menu menu) const { return actions_[static_cast<std::size_t>(menu)]; }
    void showMenu(Menu menu, const MenuState& state);
    void showStatus(const QString& text);
    void showPassing(const QString& text);     // for some seconds, in front of the lasting text
    void showSound(const SoundSource& source); // a meter in the status bar
    void showCentred();                        // on the screen
    void setZoom(int percent);
    void stepZoom(int direction); // to the next of kZooms

    // Asked for each wish to close: the window stays open in any case; whoever answers ends the program.
    std::function<void()> onCloseWish;
    std::function<void()> onMapWish;          // the Song Map, likewise
    std::function<void()> onSheetWish;        // the Pattern Sheet, shown or put away
    std::function<QStringList()> recentFiles; // whole paths, the latest first

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void buildMenus();
    void addZoomMenu(QMenu* menu);
    void addWindows(QMenu* menu);
    void addRecent(QMenu* menu);

    PanelWidget* panel_;
    QWidget* stage_;
    QLabel* status_;
    QString lasting_; // what the status line shows when nothing has just happened
    QTimer passing_;
    SoundMeter* meter_ = nullptr;
    std::array<QAction*, kMenus> actions_{};
};

} // namespace marlune
