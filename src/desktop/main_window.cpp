#include "desktop/main_window.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <algorithm>

#include "commands/panel_events.h"
#include "desktop/panel_widget.h"
#include "desktop/sound_meter.h"

namespace marlune {

namespace {

constexpr int kBars = 50; // menu and status bar together

// The largest step up to the design size that the screen has room for.
int firstZoom() {
    const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
    for (const int zoom : {100, 75})
        if (free.width() * 100 >= kPanelWidth * zoom && (free.height() - kBars) * 100 >= kPanelHeight * zoom)
            return zoom;
    return 50;
}

constexpr int kPassingMs = 8000;

// What the panel stands on: as large as the panel, and more where a window manager insists on it.
class PanelHolder final : public QWidget {
  public:
    explicit PanelHolder(PanelWidget* panel) : panel_(panel) { panel->setParent(this); }

    [[nodiscard]] QSize sizeHint() const override { return panel_->size(); }

  protected:
    void resizeEvent(QResizeEvent* /*event*/) override {
        const TwipsPerPixel twips = panel_->twipsPerPixel();
        const auto across = [&](int pixels) { return static_cast<int>(pixels * twips.across); };
        const auto down = [&](int pixels) { return static_cast<int>(pixels * twips.down); };
        const Placement at = panelPosition(across(width()), down(height()),
                                           {0, 0, across(panel_->width()), down(panel_->height())}, twips);
        panel_->move(static_cast<int>(at.left / twips.across), static_cast<int>(at.top / twips.down));
    }

  private:
    PanelWidget* panel_;
};

} // namespace

MainWindow::MainWindow() : panel_(new PanelWidget), stage_(new PanelHolder(panel_)), status_(new QLabel) {
    setCentralWidget(stage_);
    menuBar()->setFixedHeight(26);
    statusBar()->setSizeGripEnabled(false);
    status_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // no text widens the window
    statusBar()->addWidget(status_, 1);
    status_->setTextFormat(Qt::PlainText); // names of devices and files come from outside
    passing_.setSingleShot(true);
    connect(&passing_, &QTimer::timeout, this, [this] { status_->setText(lasting_); });
    buildMenus();
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    setZoom(firstZoom());
    panel_->setFocus();
}

void MainWindow::buildMenus() {
    QMenu* menu = nullptr;
    for (const MenuRow& row : menuRows()) {
        if (row.kind == MenuKind::menu) menu = menuBar()->addMenu(QString::fromLatin1(row.caption));
        QAction* action = row.kind == MenuKind::menu   ? menu->menuAction()
                          : row.kind == MenuKind::line ? menu->addSeparator()
                                                       : menu->addAction(QString::fromLatin1(row.caption));
        if (row.id == Menu::separator) continue;
        actions_[static_cast<std::size_t>(row.id)] = action;
        if (row.kind == MenuKind::entry) {
            action->setShortcut(QKeySequence(QString::fromLatin1(row.shortcut)));
            // A held accelerator is one press, except to walk through the history.
            action->setAutoRepeat(row.id == Menu::mnuEditUndo || row.id == Menu::mnuEditRedo);
            connect(action, &QAction::triggered, this, [id = row.id] { menuClicked(id); });
        }
        if (row.id == Menu::mnuFileOpenPatt) addRecent(menu);
        if (row.id == Menu::mnuStatusBarEnable) {
            addZoomMenu(menu);
            addWindows(menu);
        }
        showMenu(row.id, menuState(row.id));
    }
}

// The list is made whenever it is shown. Names come from outside: none is a mnemonic or a shortcut.
void MainWindow::addRecent(QMenu* menu) {
    QMenu* recent = menu->addMenu(QStringLiteral("Open &Recent"));
    const auto fill = [this, recent] {
        recent->clear();
        const QStringList files = recentFiles ? recentFiles() : QStringList();
        for (const QString& file : files) {
            QString words = QFileInfo(file).fileName() + QStringLiteral("  -  ") + QFileInfo(file).path();
            words.replace('&', QStringLiteral("&&")).replace('\t', ' ');
            recent->addAction(QStringLiteral("&%1  ").arg(recent->actions().size() + 1) + words, this,
                              [file] { recentFileChosen(file.toStdString()); });
        }
        if (files.empty()) recent->addAction(QStringLiteral("None yet"))->setEnabled(false);
    };
    connect(recent, &QMenu::aboutToShow, this, fill);
    fill();
}

void MainWindow::addZoomMenu(QMenu* menu) {
    QMenu* zoom = menu->addMenu(QStringLiteral("Si&ze"));
    zoom->addAction(QStringLiteral("&Larger"), QKeySequence(QStringLiteral("Ctrl++")), this,
                    [this] { stepZoom(1); });
    zoom->actions().constLast()->setShortcuts(
        {QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))});
    zoom->addAction(QStringLiteral("&Smaller"), QKeySequence(QStringLiteral("Ctrl+-")), this,
                    [this] { stepZoom(-1); });
    zoom->addAction(QStringLiteral("&Normal"), QKeySequence(QStringLiteral("Ctrl+0")), this,
                    [this] { setZoom(100); });
    zoom->addSeparator();
    for (const int percent : kZooms)
        zoom->addAction(QStringLiteral("%1 %").arg(percent), this, [this, percent] { setZoom(percent); });
}

void MainWindow::addWindows(QMenu* menu) {
    menu->addSeparator();
    menu->addAction(QStringLiteral("&Pattern Sheet"), QKeySequence(Qt::Key_F3), this, [this] {
        if (onSheetWish) onSheetWish();
    });
    menu->addAction(QStringLiteral("Song &Map"), QKeySequence(Qt::Key_F4), this, [this] {
        if (onMapWish) onMapWish();
    });
}

void MainWindow::showMenu(Menu menu, const MenuState& state) {
    QAction* action = this->action(menu);
    if (action == nullptr) return;
    if (!state.caption.empty()) action->setText(QString::fromStdString(state.caption));
    action->setEnabled(state.enabled);
    action->setVisible(state.visible);
    if (state.checked || action->isCheckable()) {
        action->setCheckable(true);
        action->setChecked(state.checked);
    }
}

void MainWindow::showStatus(const QString& text) {
    lasting_ = text;
    if (!passing_.isActive()) status_->setText(text);
}

void MainWindow::showPassing(const QString& text) {
    const QString before = passing_.isActive() ? status_->text() + QStringLiteral("   ") : QString();
    status_->setText(before + text);
    passing_.start(kPassingMs);
}

void MainWindow::showSound(const SoundSource& source) {
    delete meter_;
    meter_ = new SoundMeter(source);
    statusBar()->addPermanentWidget(meter_);
}

void MainWindow::showCentred() {
    adjustSize();
    move(screen()->availableGeometry().center() - rect().center());
    show();
}

void MainWindow::setZoom(int percent) {
    panel_->setZoom(percent);
    stage_->updateGeometry();
    updateGeometry();
}

void MainWindow::stepZoom(int direction) {
    const auto at = std::lower_bound(kZooms.begin(), kZooms.end(), panel_->zoom()) - kZooms.begin();
    const auto next = std::clamp<std::ptrdiff_t>(at + direction, 0, std::ssize(kZooms) - 1);
    setZoom(kZooms[static_cast<std::size_t>(next)]);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (onCloseWish) onCloseWish();
}

} // namespace marlune
