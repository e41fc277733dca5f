#include "panel/form_parts.h"

#include <algorithm>
#include <utility>

#include "boundary/app_shell.h"
#include "panel/refresh.h"
#include "project/song_track.h"
#include "util/text_number.h"

namespace marlune {

void okCancelRow(FormBuilder& builder, Button& ok, FormEvent accept, Button& cancel, FormEvent reject) {
    builder.beginRow();
    builder.button(ok, FormBuilder::Role::accept, std::move(accept));
    builder.button(cancel, FormBuilder::Role::reject, std::move(reject));
    builder.endRow();
}

std::string startingBarText() {
    return "[ Starting at Bar:" + std::to_string(shownBar() + 1) + "  ]";
}

std::optional<int> enteredBars(const TextBox& box, const char* refusal) {
    if (!isNumeric(box.text)) {
        shell().messageBox(refusal, BoxIcon::information, BoxButtons::ok);
        return std::nullopt;
    }
    return std::clamp(leadingInteger(box.text), 1, kSongBars - shownBar());
}

} // namespace marlune
