#include "panel/shown_state.h"

#include <algorithm>
#include <array>

#include "util/text_number.h"

namespace marlune {

namespace {

struct Shown {
    int frame = -1; // of a sprite; 0 or 1 of a lamp
    std::string text;
    bool textKnown = false;
    bool enabled = true;
};

std::array<std::array<Shown, kMaxControlCount>, kControls> shown;

Shown& at(Control control, int index) {
    return shown[static_cast<std::size_t>(control)][std::clamp(index, 0, kMaxControlCount - 1)];
}

} // namespace

void showFrame(Control control, int index, int frame) {
    frame = std::clamp(frame, 0, controlInfo(control).frames - 1);
    Shown& state = at(control, index);
    if (state.frame == frame) return;
    state.frame = frame;
    if (panelView() != nullptr) panelView()->showFrame(control, index, frame);
}

void showText(Control control, int index, const std::string& text) {
    Shown& state = at(control, index);
    if (state.textKnown && state.text == text) return;
    state.text = text;
    state.textKnown = true;
    if (panelView() != nullptr) panelView()->showText(control, index, text);
}

void showNumber(Control control, int index, int number) {
    showText(control, index, std::to_string(number));
}

void showLamp(int step, bool lit) {
    Shown& state = at(Control::step109LED, step);
    if (state.frame == (lit ? 1 : 0)) return;
    state.frame = lit ? 1 : 0;
    if (panelView() != nullptr) panelView()->showLamp(step, lit);
}

void showEnabled(Control control, int index, bool enabled) {
    Shown& state = at(control, index);
    if (state.enabled == enabled) return;
    state.enabled = enabled;
    if (panelView() != nullptr) panelView()->showEnabled(control, index, enabled);
}

int shownFrame(Control control, int index) {
    return at(control, index).frame;
}

const std::string& shownText(Control control, int index) {
    return at(control, index).text;
}

int shownNumber(Control control, int index) {
    return leadingInteger(shownText(control, index));
}

bool shownLamp(int step) {
    return at(Control::step109LED, step).frame == 1;
}

bool shownEnabled(Control control, int index) {
    return at(control, index).enabled;
}

void resetShownState() {
    for (auto& row : shown) row.fill(Shown{});
}

} // namespace marlune
