// Where the configuration files live.
#pragma once

#include <string>

namespace marlune {

// The folder of the running program, without a "/" at the end.
std::string programFolder();

// The folder for marlune.cfg and labels.cfg: the program's own where that can be written to, unless the
// program is installed for all users (below /usr, /opt or /bin); else $XDG_CONFIG_HOME/marlune200q or
// ~/.config/marlune200q, which is made where it is missing. Without a "/" at the end.
std::string configFolder(const std::string& program = programFolder());

// The folder of what is kept from run to run for the user alone: $XDG_STATE_HOME/marlune200q, or
// ~/.local/state/marlune200q. It need not exist yet.
std::string stateFolder();

} // namespace marlune
