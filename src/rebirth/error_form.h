// Tells that a ReBirth file was refused. User-interface thread.
#pragma once

#include "boundary/form.h"

namespace marlune {

struct Error final : Form {
    Error();
    Label Label2;
    Button Command1;

    void describe(FormBuilder& builder) override;
    void Command1_Click() { unload(); } // OK
};
extern Error errorForm;

void showCorruptRebirthFile(); // returns when it was read

} // namespace marlune
