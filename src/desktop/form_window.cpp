#include "desktop/form_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "boundary/app_shell.h"
#include "desktop/key_codes.h"

namespace marlune {

namespace {

constexpr int kFollowMs = 50;   // between the timer events of a form; a form hidden by others goes as soon
constexpr int kLineHeight = 26; // of what stands beside boxes
constexpr int kModule = 28;     // cells of a row are whole modules wide, the gap behind them included
constexpr int kGap = 10;
constexpr int kSlackColumn = 20; // takes what a row leaves free; buttons at a row's end stand behind it
constexpr int kEnter = 13;
constexpr int kEscape = 27;

QString text(const std::string& s) {
    return QString::fromStdString(s);
}

// Shows without telling: a change that comes from the form is no event of the user.
template <typename Widget, typename Change>
void quietly(Widget* widget, Change change) {
    const QSignalBlocker blocker(widget);
    change();
}

// The user goes to a field, also to the one that has the focus already; not the dialog by its opening.
bool choosesField(const QEvent& event) {
    if (event.type() == QEvent::MouseButtonPress) return true;
    if (event.type() != QEvent::FocusIn) return false;
    const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

} // namespace

FormWindow::FormWindow(Form& form, QWidget* parent) : QDialog(parent), form_(form) {
    setWindowTitle(text(form.caption));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(18, 16, 18, 16);
    column->setSpacing(12);
    column->setSizeConstraint(QLayout::SetFixedSize);
    frames_.push_back({column});
    form_.describe(*this);
    frames_.clear();
    showContents();
    for (QWidget* child : findChildren<QWidget*>()) child->installEventFilter(this);
    installEventFilter(this);
    auto* follow = new QTimer(this);
    connect(follow, &QTimer::timeout, this, [this] {
        if (form_.visible()) form_.Form_Timer();
        showContents();
    });
    follow->start(kFollowMs);
}

// --- layout

// Lines of a frame stand below each other. Lines of one kind in succession share a grid: rows have their
// columns in common, captions theirs.
QGridLayout* FormWindow::linesOf(Lines kind) {
    Frame& frame = frames_.back();
    if (frame.kind == kind) return frame.grid;
    frame.kind = kind;
    frame.line = 0;
    frame.grid = new QGridLayout;
    frame.grid->setHorizontalSpacing(kGap);
    frame.grid->setVerticalSpacing(7);
    frame.grid->setColumnStretch(kSlackColumn, 1);
    frame.column->addLayout(frame.grid);
    return frame.grid;
}

void FormWindow::beginFrame(const std::string& title) {
    openFrame(title);
}

void FormWindow::beginFrame(const Label& title) {
    QGroupBox* box = openFrame(title.text);
    bindings_.push_back([box, &title] { box->setTitle(text(title.text)); });
}

QGroupBox* FormWindow::openFrame(const std::string& title) {
    auto* box = new QGroupBox(text(title));
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(13, 12, 13, 13);
    column->setSpacing(9);
    place(box);
    frames_.push_back({column});
    return box;
}

void FormWindow::endFrame() {
    frames_.back().column->addStretch();
    frames_.pop_back();
}

void FormWindow::beginRow() {
    Frame& frame = frames_.back();
    frame.inRow = true;
    frame.cell = 0;
    frame.buttons = nullptr;
}

void FormWindow::endRow() {
    Frame& frame = frames_.back();
    frame.inRow = false;
    frame.buttons = nullptr;
    ++frame.line;
}

// In a row: the next cell, feet on one line. Else a line of its own.
void FormWindow::place(QWidget* widget) {
    Frame& frame = frames_.back();
    if (!frame.inRow) {
        frame.kind = Lines::none;
        frame.column->addWidget(widget);
        return;
    }
    QGridLayout* grid = linesOf(Lines::rows);
    const bool box = qobject_cast<QGroupBox*>(widget) != nullptr;
    if (box) grid->setColumnStretch(frame.cell, 1), grid->setColumnStretch(kSlackColumn, 0);
    grid->addWidget(widget, frame.line, frame.cell++,
                    box ? Qt::Alignment() : Qt::AlignLeft | Qt::AlignBottom);
}

// Before the box in a line of its own, above it in a row. Cells are whole modules wide, so that the rows of
// different frames stand in line.
void FormWindow::placeWithCaption(const std::string& caption, QWidget* widget) {
    if (caption.empty()) return place(widget);
    auto* words = new QLabel(text(caption));
    words->setObjectName(QStringLiteral("caption"));
    if (!frames_.back().inRow) {
        QGridLayout* grid = linesOf(Lines::captions);
        const int line = frames_.back().line++;
        grid->addWidget(words, line, 0, Qt::AlignLeft | Qt::AlignVCenter);
        grid->addWidget(widget, line, 1);
        return;
    }
    auto* both = new QWidget;
    auto* column = new QVBoxLayout(both);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3);
    column->addWidget(words);
    column->addWidget(widget, 0, Qt::AlignLeft);
    words->ensurePolished(); // its size of type
    const int wide =
        std::max(words->sizeHint().width(), std::min(widget->sizeHint().width(), widget->maximumWidth()));
    both->setMinimumWidth((wide + kModule - 1) / kModule * kModule - kGap);
    place(both);
    frames_.back().captioned = true;
}

void FormWindow::label(const Label& shown) {
    auto* words = new QLabel;
    words->setTextFormat(Qt::PlainText);
    bindings_.push_back([words, &shown] { words->setText(text(shown.text)); });
    if (frames_.back().inRow) words->setMinimumHeight(kLineHeight);
    place(words);
}

QLineEdit* FormWindow::addLineEdit(const std::string& caption, TextBox& box, int width) {
    auto* line = new QLineEdit;
    line->setFixedWidth(line->fontMetrics().horizontalAdvance('0') * width + 24);
    line->setAccessibleName(text(caption));
    connect(line, &QLineEdit::textChanged, this,
            [&box](const QString& now) { box.text = now.toStdString(); });
    bindings_.push_back([line, &box] {
        if (line->text() != text(box.text)) quietly(line, [&] { line->setText(text(box.text)); });
        line->setEnabled(box.enabled);
    });
    placeWithCaption(caption, line);
    return line;
}

void FormWindow::textBox(const std::string& caption, TextBox& box, int width,
                         FormEvent gotFocus) { // NOLINT(performance-unnecessary-value-param)
    QLineEdit* line = addLineEdit(caption, box, width);
    if (gotFocus) focusEvents_.insert(line, gotFocus);
}

void FormWindow::digitsBox(const std::string& caption, TextBox& box, int width) {
    QLineEdit* line = addLineEdit(caption, box, width);
    line->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d*")), line));
    connect(line, &QLineEdit::inputRejected, this, [] { shell().beep(); });
}

void FormWindow::checkBox(CheckBox& box, FormEvent click) {
    auto* check = new QCheckBox;
    connect(check, &QCheckBox::toggled, this, [&box](bool on) { box.checked = on; });
    bindings_.push_back([check, &box] {
        quietly(check, [&] { check->setChecked(box.checked); });
        check->setText(text(box.caption));
        check->setEnabled(box.enabled);
    });
    connect(check, &QCheckBox::clicked, this, [this, event = std::move(click)] { run(event); });
    Frame& frame = frames_.back();
    if (frame.inRow) check->setMinimumHeight(kLineHeight);
    // Boxes to tick would push the columns of the fields above them apart.
    if (frame.inRow && frame.cell == 0 && frame.captioned) frame.kind = Lines::none, frame.captioned = false;
    place(check);
}

void FormWindow::comboBox(const std::string& caption, ComboBox& box) {
    auto* combo = new QComboBox;
    combo->setMinimumWidth(150);
    combo->setAccessibleName(text(caption));
    const auto fill = [combo, &box] {
        QStringList items;
        for (const std::string& item : box.items) items << text(item);
        QStringList present;
        for (int i = 0; i < combo->count(); ++i) present << combo->itemText(i);
        quietly(combo, [&] {
            if (items != present) combo->clear(), combo->addItems(items);
            combo->setCurrentIndex(box.selected);
        });
    };
    connect(combo, &QComboBox::currentIndexChanged, this, [&box](int now) { box.selected = now; });
    bindings_.emplace_back(fill);
    placeWithCaption(caption, combo);
}

void FormWindow::progressBar(ProgressBar& bar) {
    auto* progress = new QProgressBar;
    progress->setMinimumWidth(280);
    bindings_.push_back([progress, &bar] {
        progress->setRange(bar.minimum, bar.maximum);
        progress->setValue(bar.value);
    });
    place(progress);
}

void FormWindow::button(Button& shown, Role role, FormEvent click) {
    auto* push = new QPushButton;
    push->setAutoDefault(false);
    push->setDefault(role == Role::accept);
    if (role == Role::accept && accept_ == nullptr) accept_ = push;
    if (role == Role::reject && reject_ == nullptr) reject_ = push;
    bindings_.push_back([push, &shown] {
        push->setText(text(shown.caption));
        push->setEnabled(shown.enabled);
    });
    connect(push, &QPushButton::clicked, this, [this, event = std::move(click)] { run(event); });
    Frame& frame = frames_.back();
    if (frame.inRow && frame.cell > 0) {
        QGridLayout* grid = linesOf(Lines::rows);
        grid->setColumnMinimumWidth(kSlackColumn, 2 * kGap);
        grid->addWidget(push, frame.line, kSlackColumn + frame.cell++, Qt::AlignRight | Qt::AlignBottom);
        return;
    }
    if (frame.buttons == nullptr) { // a line of buttons stands at the right
        frame.kind = Lines::none;
        frame.buttons = new QHBoxLayout;
        frame.buttons->setSpacing(8);
        frame.buttons->addStretch();
        frame.column->addLayout(frame.buttons);
    }
    frame.buttons->addWidget(push);
    if (!frame.inRow) frame.buttons = nullptr;
}

// --- events

void FormWindow::run(const FormEvent& event) {
    if (event) event();
    showContents();
}

void FormWindow::showContents() {
    if (!form_.visible()) {
        if (told_) return;
        told_ = true;
        hide();
        emit formHidden();
        return;
    }
    setWindowTitle(text(form_.caption));
    for (const auto& show : bindings_) show();
}

bool FormWindow::keyDown(int code, bool repeated) {
    bool taken = false;
    // A held key is one press, also one that is held since before the dialog came.
    if (!repeated) run([&] { taken = form_.Form_KeyDown(code); });
    if (taken || !form_.visible()) return true;
    QPushButton* pressed = code == kEnter ? accept_ : code == kEscape ? reject_ : nullptr;
    // Enter on a button that has the focus presses that one.
    if (code == kEnter)
        if (auto* focused = qobject_cast<QPushButton*>(focusWidget())) pressed = focused;
    if (pressed == nullptr && code != kEscape) return false;
    pressed != nullptr ? pressed->click() : reject();
    return true;
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
    const QObject* target = focusWidget() != nullptr ? focusWidget() : this; // told once on its way up
    if (event->type() == QEvent::KeyPress && watched == target) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        const int code = virtualKey(key);
        if (code != 0 && keyDown(code, key.isAutoRepeat())) return true;
    }
    if (auto* line = qobject_cast<QLineEdit*>(watched)) {
        if (event->type() == QEvent::FocusIn)
            QTimer::singleShot(0, line, &QLineEdit::selectAll); // after the click has set the cursor
        const auto known = focusEvents_.constFind(line);
        if (known != focusEvents_.constEnd() && choosesField(*event)) run(*known);
    }
    return QDialog::eventFilter(watched, event);
}

void FormWindow::closeEvent(QCloseEvent* event) {
    event->ignore(); // the form decides
    if (reject_ != nullptr && reject_->isEnabled())
        reject_->click();
    else if (reject_ == nullptr)
        run([this] { form_.unload(); });
}

void FormWindow::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    const QRect free = screen()->availableGeometry();
    move(free.center() - QPoint(width() / 2, height() / 2));
}

} // namespace marlune
