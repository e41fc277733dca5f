#include "rebirth/error_form.h"

#include "rebirth/rebirth_units.h"

namespace marlune {

Error errorForm;

Error::Error() {
    caption = "MarLune Converter";
    Command1.caption = "OK";
}

void Error::describe(FormBuilder& builder) {
    builder.label(Label2);
    builder.button(Command1, FormBuilder::Role::accept, [this] { Command1_Click(); });
}

void showCorruptRebirthFile() {
    errorForm.Label2.text = kCorruptRebirthFile;
    errorForm.showModal();
    errorForm.unload();
}

} // namespace marlune
