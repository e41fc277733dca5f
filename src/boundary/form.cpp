#include "boundary/form.h"

#include "boundary/app_shell.h"

namespace marlune {

void Form::load() {
    if (loaded_) return;
    loaded_ = true;
    Form_Load();
}

void Form::unload() {
    if (!loaded_) return;
    visible_ = false;
    Form_Unload();
    loaded_ = false;
}

void Form::showModal() {
    load();
    visible_ = true;
    Form_Activate();
    if (visible_) shell().runModal(*this);
    visible_ = false;
}

void Form::show() {
    load();
    visible_ = true;
    Form_Activate();
    shell().showModeless(*this);
}

} // namespace marlune
