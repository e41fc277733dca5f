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

#include "desktop/key_codes.h"

namespace marlune {

namespace {

constexpr int kFollowMs = 100;  // how soon a form hidden by others loses its window
constexpr int kLineHeight = 26; // of what stands beside boxes
constexpr int kWholeWidth = 0;  // columns of an item that fills its line
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

} // namespace

FormWindow::FormWindow(Form& form, QWidget* parent) : QDialog(parent), form_(form) {
    setWindowTitle(text(form.caption));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(18, 16, 18, 16);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(8);
    frames_.push_back({grid});
    form_.describe(*this);
    frames_.clear();
    showContents();
    for (QWidget* child : findChildren<QWidget*>()) child->installEventFilter(this);
    installEventFilter(this);
    auto* follow = new QTimer(this);
    connect(follow, &QTimer::timeout, this, &FormWindow::showContents);
    follow->start(kFollowMs);
}

// --- layout

void FormWindow::beginFrame(const std::string& title) {
    auto* box = new QGroupBox(text(title));
    auto* grid = new QGridLayout(box);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(7);
    place(box, kWholeWidth);
    frames_.push_back({grid});
}

void FormWindow::endFrame() {
    frames_.pop_back();
}

void FormWindow::beginRow() {
    Frame& frame = frames_.back();
    frame.inRow = true;
    frame.column = 0;
    frame.buttons = nullptr;
}

void FormWindow::endRow() {
    Frame& frame = frames_.back();
    frame.inRow = false;
    frame.column = 0;
    frame.buttons = nullptr;
    ++frame.row;
}

void FormWindow::place(QWidget* widget, int columns) {
    Frame& frame = frames_.back();
    if (frame.inRow) { // side by side, feet on one line
        frame.grid->addWidget(
            widget, frame.row, frame.column++,
            qobject_cast<QGroupBox*>(widget) != nullptr ? Qt::Alignment() : Qt::AlignLeft | Qt::AlignBottom);
        return;
    }
    frame.grid->addWidget(widget, frame.row++, columns == kWholeWidth ? 0 : frame.column, 1,
                          columns == kWholeWidth ? -1 : columns);
    frame.column = 0;
}

// Before the box in a line of its own, above it among others.
void FormWindow::placeWithCaption(const std::string& caption, QWidget* widget) {
    Frame& frame = frames_.back();
    if (caption.empty()) return place(widget, 2);
    auto* words = new QLabel(text(caption));
    words->setObjectName(QStringLiteral("caption"));
    if (!frame.inRow) {
        frame.grid->addWidget(words, frame.row, frame.column++, Qt::AlignLeft | Qt::AlignVCenter);
        return place(widget, 1);
    }
    auto* both = new QWidget;
    auto* column = new QVBoxLayout(both);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3);
    column->addWidget(words);
    column->addWidget(widget);
    place(both, 1);
}

void FormWindow::label(const Label& shown) {
    auto* words = new QLabel;
    words->setTextFormat(Qt::PlainText);
    bindings_.push_back([words, &shown] { words->setText(text(shown.text)); });
    if (frames_.back().inRow) words->setMinimumHeight(kLineHeight);
    place(words, kWholeWidth);
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
    if (frames_.back().inRow) check->setMinimumHeight(kLineHeight);
    place(check, 2);
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
    place(progress, kWholeWidth);
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
    if (frame.column == 0 && frame.buttons == nullptr) { // a line of buttons stands at the right
        frame.buttons = new QHBoxLayout;
        frame.buttons->setSpacing(8);
        frame.buttons->addStretch();
        frame.grid->addLayout(frame.buttons, frame.row, 0, 1, -1);
    }
    if (frame.buttons == nullptr) return place(push, 1);
    frame.buttons->addWidget(push);
    if (!frame.inRow) endRow();
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

bool FormWindow::keyDown(int code) {
    bool taken = false;
    run([&] { taken = form_.Form_KeyDown(code); });
    if (taken || !form_.visible()) return true;
    QPushButton* pressed = code == kEnter ? accept_ : code == kEscape ? reject_ : nullptr;
    // Enter on a button that has the focus presses that one.
    if (code == kEnter)
        if (auto* focused = qobject_cast<QPushButton*>(focusWidget())) pressed = focused;
    if (pressed == nullptr) return code == kEscape;
    pressed->click();
    return true;
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
    const QObject* target = focusWidget() != nullptr ? focusWidget() : this; // told once on its way up
    if (event->type() == QEvent::KeyPress && watched == target) {
        const int code = virtualKey(*static_cast<QKeyEvent*>(event));
        if (code != 0 && keyDown(code)) return true;
    }
    if (event->type() == QEvent::FocusIn) {
        if (auto* line = qobject_cast<QLineEdit*>(watched)) {
            QTimer::singleShot(0, line, &QLineEdit::selectAll); // after the click has set the cursor
            const auto known = focusEvents_.constFind(line);
            if (known != focusEvents_.constEnd()) run(*known);
        }
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
