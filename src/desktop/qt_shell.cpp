#include "desktop/qt_shell.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QMessageBox>
#include <QStatusBar>
#include <QTimer>
#include <QTreeView>
#include <algorithm>

#include "desktop/about_window.h"
#include "desktop/accessible.h"
#include "desktop/fd_pump.h"
#include "desktop/form_window.h"
#include "desktop/help_window.h"
#include "desktop/main_window.h"
#include "desktop/map_window.h"
#include "desktop/panel_derived.h"
#include "desktop/panel_widget.h"
#include "desktop/sheet_window.h"
#include "score/record_marks.h"
#include "score/saved_patterns.h"

namespace marlune {

namespace {

QString text(const std::string& s) {
    return QString::fromStdString(s);
}

constexpr int kSettleMs = 20; // from the end of a wait to a close that was wished during it
constexpr QSize kFileDialogSize{860, 520};

QMessageBox::StandardButtons buttonsOf(BoxButtons buttons) {
    switch (buttons) {
        case BoxButtons::okCancel: return QMessageBox::Ok | QMessageBox::Cancel;
        case BoxButtons::yesNoCancel: return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        default: return QMessageBox::Ok;
    }
}

QMessageBox::Icon iconOf(BoxIcon icon) {
    switch (icon) {
        case BoxIcon::critical: return QMessageBox::Critical;
        case BoxIcon::exclamation: return QMessageBox::Warning;
        default: return QMessageBox::Information;
    }
}

BoxAnswer answerOf(int pressed, BoxButtons buttons) {
    switch (pressed) {
        case QMessageBox::Ok: return BoxAnswer::ok;
        case QMessageBox::Yes: return BoxAnswer::yes;
        case QMessageBox::No: return BoxAnswer::no;
        default: return buttons == BoxButtons::ok ? BoxAnswer::ok : BoxAnswer::cancel;
    }
}

// The pointer is an arrow while a box or a dialog waits for the user, whatever it was before.
class ArrowWhile {
  public:
    explicit ArrowWhile(bool hourglass) : hourglass_(hourglass) {
        if (hourglass_) QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~ArrowWhile() {
        if (hourglass_) QApplication::restoreOverrideCursor();
    }
    ArrowWhile(const ArrowWhile&) = delete;
    ArrowWhile& operator=(const ArrowWhile&) = delete;

  private:
    bool hourglass_;
};

} // namespace

QString nativeFilter(const std::string& filter) {
    const QStringList parts = text(filter).split(QChar('|'), Qt::SkipEmptyParts);
    QStringList pairs;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString patterns = QString(parts[i + 1]).replace(QChar(';'), QChar(' '));
        const QString words = parts[i].section(QChar('('), 0, 0).trimmed();
        const QString both = patterns == patterns.toUpper() ? patterns : patterns + ' ' + patterns.toUpper();
        pairs << QStringLiteral("%1 (%2)").arg(words, both);
    }
    return pairs.join(QStringLiteral(";;"));
}

QtShell::QtShell() {
    installPanelAccessibility();
    window_ = std::make_unique<MainWindow>();
    window_->onCloseWish = [this] { closeWish(); };
    window_->onSheetWish = [this] { toggleSheet(); };
    window_->onMapWish = [this] { toggleMap(); };
    window_->recentFiles = [this] { return memory_.recentFiles(); };
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] { settle(); });
}

QtShell::~QtShell() {
    if (!ended_) rememberWindows(); // ended by a signal
    for (FormWindow* form : forms_) delete form;
}

// --- windows beside the panel

// The menus' accelerators work there as well, and the key that shows the window puts it away.
void QtShell::equip(ScoreWindow& window, int key, void (QtShell::*wish)()) {
    for (const MenuRow& row : menuRows())
        if (row.kind == MenuKind::entry) window.addAction(window_->action(row.id));
    const auto shortcut = [&](int code, void (QtShell::*act)()) {
        auto* action = new QAction(&window);
        action->setShortcut(QKeySequence(code));
        connect(action, &QAction::triggered, this, act);
        window.addAction(action);
    };
    shortcut(key, wish);
    if (key == Qt::Key_F3)
        shortcut(Qt::Key_F4, &QtShell::toggleMap);
    else
        shortcut(Qt::Key_F3, &QtShell::toggleSheet);
    memory_.recall(window);
}

SheetWindow& QtShell::sheet() {
    if (!sheet_) {
        sheet_ = std::make_unique<SheetWindow>();
        equip(*sheet_, Qt::Key_F3, &QtShell::toggleSheet);
    }
    return *sheet_;
}

MapWindow& QtShell::map() {
    if (!map_) {
        map_ = std::make_unique<MapWindow>();
        equip(*map_, Qt::Key_F4, &QtShell::toggleMap);
    }
    return *map_;
}

void QtShell::toggle(ScoreWindow& window) {
    if (window.isVisible() && window.isActiveWindow()) {
        window.hide();
        memory_.remember(window);
        window_->activateWindow();
        return;
    }
    window.show();
    window.raise();
    window.activateWindow();
}

void QtShell::toggleSheet() {
    toggle(sheet());
}

void QtShell::toggleMap() {
    toggle(map());
}

void QtShell::settle() {
    if (ended_) return;
    noteSavedPatterns();
    showDerived(panel());
    noteRecordMarks();
    if (sheet_) sheet_->refresh();
    if (map_) map_->refresh();
}

void QtShell::setWindowFile(const QString& path) {
    memory_.setFile(path);
}

void QtShell::openRemembered() {
    const bool sheetWas = memory_.wasOpen("sheet");
    const bool mapWas = memory_.wasOpen("map");
    if (sheetWas) sheet().show();
    if (mapWas) map().show();
    if (sheetWas || mapWas) window_->activateWindow();
}

void QtShell::rememberWindows() {
    if (sheet_) memory_.remember(*sheet_);
    if (map_) memory_.remember(*map_);
}

PanelWidget& QtShell::panel() {
    return window_->panel();
}

void QtShell::setHelpFile(const QString& path) {
    helpFile_ = path;
}

// --- frame

void QtShell::showTitle(const std::string& title) {
    window_->setWindowTitle(text(title) + QStringLiteral("[*]")); // the place of the mark
}

void QtShell::showPointer(Pointer pointer) {
    const bool hourglass = pointer == Pointer::hourglass;
    if (hourglass == hourglass_) return;
    hourglass_ = hourglass;
    if (hourglass)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void QtShell::showStatus(const std::string& status) {
    window_->showStatus(text(status));
}

void QtShell::showModified(bool modified) {
    window_->setWindowModified(modified);
}

void QtShell::showPassing(const std::string& passing) {
    window_->showPassing(text(passing));
}

void QtShell::showStatusBar(bool visible) {
    window_->findChild<QStatusBar*>()->setVisible(visible);
}

void QtShell::showMenu(Menu menu, const MenuState& state) {
    window_->showMenu(menu, state);
}

void QtShell::showPanel(bool visible) {
    window_->panel().setVisible(visible);
}

void QtShell::beep() {
    QApplication::beep();
}

void QtShell::noteRecentFile(const std::string& fileName, bool there) {
    memory_.noteRecentFile(QFileInfo(text(fileName)).absoluteFilePath(), there);
}

void QtShell::showSplash() {
    const FdPump::Rest rest; // whatever comes meanwhile waits for a program that is whole
    splash_ = std::make_unique<AboutWindow>(window_.get(), true);
    splash_->show(); // runs the event loop of itself
    splash_->setCursor(Qt::WaitCursor);
    letPaintRun();
}

void QtShell::hideSplash() {
    splash_.reset();
}

void QtShell::showAbout() {
    const ArrowWhile arrow(hourglass_);
    AboutWindow(window_.get(), false).exec();
}

void QtShell::openHelp() {
    if (!help_) help_ = std::make_unique<HelpWindow>(helpFile_);
    help_->show();
    help_->raise();
    help_->activateWindow();
}

// --- questions

QWidget* QtShell::front() const {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    QWidget* active = QApplication::activeWindow();
    const bool stays = active != nullptr && active != splash_.get() && active->isVisible();
    return stays ? active : window_.get();
}

BoxAnswer QtShell::messageBox(const std::string& message, BoxIcon icon, BoxButtons buttons) {
    const ArrowWhile arrow(hourglass_);
    QMessageBox box(iconOf(icon), QStringLiteral("Marlune 200Q"), {}, buttonsOf(buttons), front());
    box.setTextFormat(Qt::PlainText);
    box.setText(text(message));
    return answerOf(box.exec(), buttons);
}

std::string QtShell::fileDialog(const FileDialog& asked) {
    const ArrowWhile arrow(hourglass_);
    const QString told = text(asked.fileName);
    const QString extension = '.' + text(asked.defaultExtension);
    const bool whole = told.isEmpty() || extension.size() == 1 || told.endsWith(extension);
    const QFileInfo proposed(whole ? told : told + extension);
    const bool placed = told.contains('/'); // else it belongs where the last file was
    const QString folder = placed || memory_.lastFolder().isEmpty() ? proposed.path() : memory_.lastFolder();
    QFileDialog dialog(front(), text(asked.title), folder, nativeFilter(asked.filter));
    dialog.setAcceptMode(asked.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(asked.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite); // the command itself asks
    if (asked.save || proposed.exists()) dialog.selectFile(proposed.fileName());
    // Where the desktop has no dialog of its own, Qt's is shown with room for sizes and dates.
    dialog.resize(kFileDialogSize);
    if (auto* list = dialog.findChild<QTreeView*>())
        list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    const QString name = dialog.selectedFiles().constFirst();
    memory_.noteFolder(QFileInfo(name).absolutePath());
    const bool bare = asked.save && !asked.defaultExtension.empty() && QFileInfo(name).suffix().isEmpty();
    return (bare ? name + '.' + text(asked.defaultExtension) : name).toStdString();
}

// --- forms

void QtShell::retire(FormWindow* window) {
    std::erase(forms_, window);
    window->deleteLater(); // it may be on the way out of one of its own events
}

void QtShell::runModal(Form& form) {
    const ArrowWhile arrow(hourglass_);
    auto* window = new FormWindow(form, front());
    forms_.push_back(window);
    window->setWindowModality(Qt::ApplicationModal);
    QEventLoop loop;
    connect(window, &FormWindow::formHidden, &loop, &QEventLoop::quit);
    window->show();
    if (form.visible()) loop.exec();
    window->hide();
    retire(window);
}

void QtShell::showModeless(Form& form) {
    for (FormWindow* open : forms_) {
        if (open->form() != &form) continue;
        open->showContents();
        open->raise();
        return;
    }
    auto* window = new FormWindow(form, window_.get());
    forms_.push_back(window);
    connect(window, &FormWindow::formHidden, this, [this, window] { retire(window); });
    window->setWindowModality(Qt::ApplicationModal); // follows the form, yet takes all input
    window->show();
}

void QtShell::formChanged(Form& form) {
    const std::vector<FormWindow*> open = forms_; // showing may retire one
    for (FormWindow* window : open)
        if (window->form() == &form) window->showContents();
}

// --- events

void QtShell::run(QEventLoop::ProcessEventsFlags events) {
    if (ended_) return;
    ++waits_;
    QCoreApplication::processEvents(events);
    --waits_;
    settleCloseWish();
}

void QtShell::letEventsRun() {
    run(QEventLoop::AllEvents);
}

void QtShell::letPaintRun() {
    // Engine and MIDI input come by descriptors, pointer and keys as user input.
    const FdPump::Rest rest;
    run(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
}

void QtShell::waitForEvents(int ms) {
    if (ended_) return;
    ++waits_;
    QTimer limit;
    limit.setSingleShot(true);
    limit.setTimerType(Qt::PreciseTimer);
    limit.start(ms);
    QCoreApplication::processEvents(ms > 0 ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
    --waits_;
    settleCloseWish();
}

// A window must not go away under a routine that waits inside an event: the wish is kept until it is done.
void QtShell::closeWish() {
    if (ended_) return;
    if (waits_ > 0) {
        closeLater_ = true;
        return;
    }
    closeLater_ = false;
    if (mayClose && !mayClose()) return;
    if (closing) closing();
    end();
}

void QtShell::settleCloseWish() {
    if (!closeLater_ || waits_ > 0 || settling_) return;
    settling_ = true;
    // Not at once: a wait in short pieces would end each of them with this.
    QTimer::singleShot(kSettleMs, this, [this] {
        settling_ = false;
        closeWish();
    });
}

void QtShell::closeWindow() {
    closeWish();
}

void QtShell::end() {
    ended_ = true;
    rememberWindows();
    if (sheet_) sheet_->hide();
    if (map_) map_->hide();
    help_.reset();
    window_->hide();
    QCoreApplication::exit(0);
}

} // namespace marlune
