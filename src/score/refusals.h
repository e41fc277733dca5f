// Why a click changed nothing: the sentences of the status bars.
#pragma once

namespace marlune {

inline constexpr const char* kPatternsInPatternMode = "Patterns are edited in pattern mode.";
inline constexpr const char* kArmForPatterns = "Arm recording to choose patterns in song mode.";
inline constexpr const char* kSongInSongMode = "The song is edited in song mode.";
inline constexpr const char* kStopRecordingFirst = "Stop recording first.";
inline constexpr const char* kDrumBarsOnly = "Bars of 109 fit only 109.";
inline constexpr const char* kMovedPastEnd = " moved past bar 1000."; // behind "8 bars"
inline constexpr const char* kLastBar = "Bar 1000 is the last.";

} // namespace marlune
