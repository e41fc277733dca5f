// Names of MIDI ports as people know them, the same whichever system shows the port and however often it was
// plugged. Pure.
#pragma once

#include <string>
#include <string_view>

namespace marlune {

// "USB Keys:USB Keys MIDI 1 20:0" (ALSA), "a2j:USB Keys [20] (playback): USB Keys MIDI 1" and
// "Midi-Bridge:USB Keys:(playback_0) USB Keys MIDI 1" all become "USB Keys MIDI 1": numbers that change from
// plug to plug, directions and the bridge's own name go; a client's name that the port's name repeats goes
// too. Control characters become blanks; at most kMaxPortName bytes. Never empty.
std::string normalPortName(std::string_view raw);

// The same for a JACK port; "system:midi_playback_1" tells nothing, so the device's name is taken from its
// alias
// ("alsa_pcm:USB-Keys/midi_playback_1") where it has one ("" where not).
std::string jackPortName(std::string_view raw, std::string_view alias);

// Whether JACK only hands this port through from ALSA.
bool isBridgedPort(std::string_view raw);

// Whether the port is one of this program's, or a bridge's picture of one.
bool isOwnPort(std::string_view raw);

// Equal for two names that differ only in case, blanks and punctuation, as bridges change these.
std::string portNameKey(std::string_view name);

inline constexpr std::size_t kMaxPortName = 120;

} // namespace marlune
