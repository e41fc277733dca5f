// One window for any form: lays out its controls, forwards their events, copies contents both ways.
//
// What the user enters stands in the form at once; after each event the form's contents go into the widgets.
// The window follows the form: it closes when the form is no longer visible. User-interface thread only.
#pragma once

#include <QDialog>
#include <QHash>
#include <functional>
#include <vector>

#include "boundary/form.h"

class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace marlune {

class FormWindow final : public QDialog, private FormBuilder {
    Q_OBJECT

  public:
    FormWindow(Form& form, QWidget* parent);

    [[nodiscard]] const Form* form() const { return &form_; }
    void showContents(); // after a change from outside; closes when the form is hidden

    void reject() override { close(); } // no way out past the form

  signals:
    void formHidden();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void beginFrame(const std::string& title) override;
    void beginFrame(const Label& title) override;
    void endFrame() override;
    void beginRow() override;
    void endRow() override;
    void label(const Label& label) override;
    void textBox(const std::string& caption, TextBox& box, int width, FormEvent gotFocus) override;
    void digitsBox(const std::string& caption, TextBox& box, int width) override;
    void checkBox(CheckBox& box, FormEvent click) override;
    void comboBox(const std::string& caption, ComboBox& box) override;
    void progressBar(ProgressBar& bar) override;
    void button(Button& button, Role role, FormEvent click) override;

    QGroupBox* openFrame(const std::string& title);
    QLineEdit* addLineEdit(const std::string& caption, TextBox& box, int width);
    enum class Lines { none, rows, captions };
    QGridLayout* linesOf(Lines kind);
    void place(QWidget* widget);
    void placeWithCaption(const std::string& caption, QWidget* widget);
    void run(const FormEvent& event); // the event, then its outcome on the widgets
    bool keyDown(int code, bool repeated);

    // Frames nest: each has its own column of lines.
    struct Frame {
        QVBoxLayout* column;
        QGridLayout* grid = nullptr; // of the lines under way
        Lines kind = Lines::none;
        int line = 0;
        int cell = 0; // in a row
        bool inRow = false;
        bool captioned = false;         // a row of the grid under way has captions above its boxes
        QHBoxLayout* buttons = nullptr; // the row of buttons under way
    };

    Form& form_;
    std::vector<std::function<void()>> bindings_; // each shows one control's contents in its widget
    std::vector<Frame> frames_;                   // while the form describes itself
    QHash<QObject*, FormEvent> focusEvents_;
    QPushButton* accept_ = nullptr;
    QPushButton* reject_ = nullptr;
    bool told_ = false;
};

} // namespace marlune
