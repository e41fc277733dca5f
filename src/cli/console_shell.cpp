#include "cli/console_shell.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace marlune {

BoxAnswer ConsoleShell::messageBox(const std::string& text, BoxIcon /*icon*/, BoxButtons buttons) {
    if (mayOverwrite && buttons == BoxButtons::okCancel) return BoxAnswer::ok;
    std::fprintf(stderr, "%s\n", text.c_str());
    return buttons == BoxButtons::ok ? BoxAnswer::ok : BoxAnswer::cancel;
}

void ConsoleShell::waitForEvents(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

} // namespace marlune
