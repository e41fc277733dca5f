#include <cmath>
#include <utility>

#include "commands/panel_events.h"
#include "desktop/desktop_support.h"

namespace marlune {

namespace {

std::string reported;

void report(const std::string& event) {
    reported += (reported.empty() ? "" : " ") + event;
}

void report(const char* kind, Control control, int index, const std::string& more = {}) {
    report(std::string(kind) + ":" + controlInfo(control).name + "(" + std::to_string(index) + ")" + more);
}

} // namespace

std::string takeEvents() {
    return std::exchange(reported, {});
}

void panelPointer(Control control, int index, const PointerEvent& e) {
    constexpr const char* kActions[] = {"press", "move", "release"};
    report(kActions[static_cast<int>(e.action)], control, index,
           "@" + std::to_string(std::lround(e.y)) + (e.leftButton ? "" : ",right") + (e.fine ? ",fine" : "") +
               (e.second ? ",second" : "") + (e.inside ? "" : ",outside"));
}
void panelWheel(Control control, int index, int steps) {
    report("wheel", control, index, (steps > 0 ? "+" : "") + std::to_string(steps));
}
void panelPress(Control control, int index) {
    report("key", control, index);
}
void Form_KeyDown(int code, int shift) {
    report("down" + std::to_string(code) + "/" + std::to_string(shift));
}
void Form_KeyUp(int code, int /*shift*/) {
    report("up" + std::to_string(code));
}
void panelFocusLost() {
    report("focusLost");
}
void recentFileChosen(const std::string& fileName) {
    report("recent:" + fileName);
}
void menuClicked(Menu menu) {
    for (const MenuRow& row : menuRows())
        if (row.id == menu) report(row.name);
}

} // namespace marlune
