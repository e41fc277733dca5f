// The program from start to exit: the order in which its rooms come up and go down. User-interface thread.
#pragma once

#include <functional>
#include <string>

namespace marlune {

// What the machine contributes to a start; every function may be empty.
struct StartupHooks {
    std::function<bool()> anotherInstanceRuns;
    std::function<void()> showMainWindow;
    std::function<void(bool)> showSplash;
    std::function<void()> configured; // the configuration is loaded, the devices are not yet open
    std::string examplesFolder;       // see starter.h; "" gives a first start no help
    std::string recoveryFolder;       // see recovery.h; "" keeps and offers no copies
    bool openDevices = true;          // false leaves the MIDI devices alone
    int windowHandle = -1;            // descriptor that the component wakes when it has posted a message
    unsigned randomSeed = 0;          // of the random source, from the clock
};

// Brings the program up and opens the project that commandLine names as a whole, if it names a file. False
// when another instance runs, which has been told; nothing else has happened then.
bool startupMain(const std::string& commandLine, const StartupHooks& hooks);

// The window wants to close: asks about unsaved work, stops a running transport, hides the panel. False
// refuses; nothing has changed then.
bool MDIForm_QueryUnload();

// The window closes: devices, configuration, messages, forms, in this order.
void MDIForm_Unload();

void mnuFileExit_Click();

} // namespace marlune
