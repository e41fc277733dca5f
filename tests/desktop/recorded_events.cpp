#include "desktop/recorded_events.h"

#include <cmath>
#include <utility>

#include "panel/panel_events.h"

namespace marlune {

namespace {

std::string place(Control control, int index) {
    return std::string(controlInfo(control).name) + "(" + std::to_string(index) + ")";
}

} // namespace

std::vector<std::string>& reportedEvents() {
    static std::vector<std::string> events;
    return events;
}

std::string takeEvents() {
    std::string all;
    for (const std::string& event : std::exchange(reportedEvents(), {}))
        all += (all.empty() ? "" : " ") + event;
    return all;
}

void panelPointer(Control control, int index, const PointerEvent& e) {
    constexpr const char* kActions[] = {"press", "move", "release"};
    reportedEvents().push_back(std::string(kActions[static_cast<int>(e.action)]) + ":" +
                               place(control, index) + "@" + std::to_string(std::lround(e.y)) +
                               (e.leftButton ? "" : ",right") + (e.fine ? ",fine" : "") +
                               (e.second ? ",second" : "") + (e.inside ? "" : ",outside"));
}
void panelWheel(Control control, int index, int steps) {
    reportedEvents().push_back("wheel:" + place(control, index) + (steps > 0 ? "+" : "") +
                               std::to_string(steps));
}
void panelPress(Control control, int index) {
    reportedEvents().push_back("key:" + place(control, index));
}
void Form_KeyDown(int code, int shift) {
    reportedEvents().push_back("down" + std::to_string(code) + "/" + std::to_string(shift));
}
void Form_KeyUp(int code, int /*shift*/) {
    reportedEvents().push_back("up" + std::to_string(code));
}
void panelFocusLost() {
    reportedEvents().emplace_back("focusLost");
}
void menuClicked(Menu menu) {
    for (const MenuRow& row : menuRows())
        if (row.id == menu) reportedEvents().emplace_back(row.name);
}

} // namespace marlune
