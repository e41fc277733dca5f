// marlune.cfg and labels.cfg: the configuration and the knob labels on disk. User-interface thread.
#pragma once

#include <string>

namespace marlune {

// The folder of the two files; empty for none, then nothing is read or written.
void setConfigFolder(const std::string& folder);
std::string configFolderInUse();

// Takes what the files hold over the present values and hands it to the component. A file of 1 to 517 bytes
// counts as missing; a missing one leaves every setting as it is, the status bar shown. Labels that are not
// there keep their values. False where there was no configuration to take.
bool loadGlobalConfig();

// Writes both files, each as a whole or not at all; a folder that can't be written is left alone silently.
bool saveGlobalConfig();

// The same into another folder; false where that failed.
bool saveGlobalConfigTo(const std::string& other);

void mnuStatusBarEnable_Click();

} // namespace marlune
