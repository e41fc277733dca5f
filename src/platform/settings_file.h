// settings.cfg: what may be set by hand beside the configuration, a line "key = value" each. Never written
// here.
#pragma once

#include <string>

namespace marlune {

// The value of a key, without blanks around it; `otherwise` where the file or the line isn't there. The first
// line with the key counts; a line that begins with # is a remark.
std::string settingOf(const std::string& folder, const std::string& key, const std::string& otherwise);

// "room = off": the built-in instruments without their reverb.
bool roomWanted(const std::string& folder);

} // namespace marlune
