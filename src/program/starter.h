// What a newcomer meets: the first start without any configuration, the demo song, the project to begin with.
// User-interface thread.
#pragma once

#include <string>

namespace marlune {

// The folder of the examples, "" for none. It holds harbour_nights.mlp and starter/ with marlune.cfg,
// labels.cfg and new.mlp.
void setExamplesFolder(const std::string& folder);

// Whether there is something to help a first start with.
bool canHelpFirstStart();

// What the warning about missing devices says beyond itself at the first start.
extern const char* const kFirstStartNext;

// Takes the starter configuration: the built-in devices. They are not opened yet.
void takeStarterConfig();

// Asks whether to open the demo song, and does it; it counts as untitled.
void offerDemo();

// A new project with its knobs where they are heard. The usual question about unsaved work comes before.
void mnuFileNewStarter_Click();

} // namespace marlune
