// What marlune-cli can do, a routine a verb. Each returns the exit status and has told on stderr what failed.
#pragma once

#include <string>
#include <vector>

#include "rebirth/rebirth_units.h"

namespace marlune {

using Words = std::vector<std::string>; // the command line behind the verb

int playVerb(const Words& words);
int renderVerb(const Words& words);
int resaveVerb(const Words& words);
int portsVerb(const Words& words);
int exportVerb(const Words& words);
int importVerb(const Words& words);
int convertVerb(const Words& words);
int infoVerb(const Words& words);

class Arguments;

// Loads a project and goes to where --song and --bar say; false where the file is refused, which was told.
bool takeProject(const std::string& name, const Arguments& arguments);

// Tells what is wrong and returns the exit status for it.
int refuse(const std::string& text);

// The exit status of a command on a ReBirth file; files: in, out.
int tellRebirth(RebirthResult result, const Words& files);

} // namespace marlune
