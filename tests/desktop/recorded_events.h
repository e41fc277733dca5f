// Stands in for the handlers of the panel: keeps what the desktop reports as text, in order.
#pragma once

#include <string>
#include <vector>

namespace marlune {

std::vector<std::string>& reportedEvents();
std::string takeEvents(); // all of them joined by blanks; empties the list

} // namespace marlune
