// Dialogs as plain structs: the contents of their controls and their event handlers.
//
// A form knows no toolkit. It describes its layout once to a FormBuilder; the desktop lays out widgets from
// that description, forwards the events and copies contents both ways; tests set the contents and call the
// handlers. User-interface thread only.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace marlune {

struct Label {
    std::string text;
};
struct TextBox {
    std::string text;
    bool enabled = true;
};
struct CheckBox {
    std::string caption;
    bool checked = false;
    bool enabled = true;
};
struct ComboBox {
    std::vector<std::string> items;
    int selected = -1; // -1: no selection
};
struct Button {
    std::string caption;
    bool enabled = true;
};
struct ProgressBar {
    int minimum = 0;
    int maximum = 100;
    int value = 0;
};

using FormEvent = std::function<void()>;

// Receives a form's layout, top to bottom. Items between beginRow and endRow stand side by side; frames nest
// rows. Tab order is the order of the calls. The focus selects the whole text of a text box.
class FormBuilder {
  public:
    virtual ~FormBuilder() = default;
    virtual void beginFrame(const std::string& title) = 0;
    virtual void beginFrame(const Label& title) { beginFrame(title.text); } // a title that changes
    virtual void endFrame() = 0;
    virtual void beginRow() = 0;
    virtual void endRow() = 0;
    virtual void label(const Label& label) = 0;
    // caption stands before or above the box; width in characters.
    // gotFocus: when the user goes to the box by pointer or key, not when the form opens on it.
    virtual void textBox(const std::string& caption, TextBox& box, int width, FormEvent gotFocus = {}) = 0;
    // As textBox, letting through digits only.
    virtual void digitsBox(const std::string& caption, TextBox& box, int width) = 0;
    virtual void checkBox(CheckBox& box, FormEvent click = {}) = 0;
    virtual void comboBox(const std::string& caption, ComboBox& box) = 0;
    virtual void progressBar(ProgressBar& bar) = 0;
    enum class Role { plain, accept, reject }; // accept: Enter, reject: Escape and the window's close box
    virtual void button(Button& button, Role role, FormEvent click) = 0;
};

class Form {
  public:
    Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    virtual ~Form() = default;

    std::string caption;

    virtual void describe(FormBuilder& builder) = 0;
    virtual void Form_Load() {}     // first touch after being unloaded
    virtual void Form_Activate() {} // each time the form is shown
    virtual void Form_Unload() {}
    // code: a virtual key code (27 Escape, 13 Enter, letters as capitals). True when the form took the key.
    virtual bool Form_KeyDown(int /*code*/) { return false; }
    virtual void Form_Timer() {} // about twenty times a second while the form is visible

    [[nodiscard]] bool loaded() const { return loaded_; }
    [[nodiscard]] bool visible() const { return visible_; }

    void load();
    void hide() { visible_ = false; }
    void unload();
    void showModal(); // returns when the form is hidden or unloaded
    void show();      // returns at once

  private:
    bool loaded_ = false;
    bool visible_ = false;
};

// Puts a form back to how the program starts with it: unloaded, with the contents it is built with.
template <typename AnyForm>
void renew(AnyForm& form) {
    form.unload();
    std::destroy_at(&form);
    std::construct_at(&form);
}

} // namespace marlune
