// Where the song stands, and the one place that tells the component so.
//
// Whatever changes the position, or the bars under it, ends in placeSong or takeUpSong: both tell the
// component position, steps, this bar and the next bar of each module as one, and show all of it, whether the
// timer runs or not. The component counts on what it has played meanwhile, so that no step is lost or
// doubled.
//
// User-interface thread. tick: 0..15999. Writes SongPosition and the modules' current and cued patterns.
#pragma once

#include <array>

#include "project/song_track.h"

namespace marlune {

// Song mode: the position is tick; the modules play its bar, at the steps that belong there. In pattern mode
// only the position moves.
void placeSong(int tick);

// Song mode: the bars have changed under the position. What differs in the bar that sounds is heard from the
// next step on, everything else plays on as it was. A bar that begins with the next step comes with it.
void takeUpSong();

// Tells and shows what follows the bar of `tick`, while that bar plays.
void cueNextBar(int module, int tick);

// Whether the modules play what the bar track says of the bar that sounds. The tick asks at each bar line: a
// choice written behind the component's back, a moment too late for its bar line, is made good by takeUpSong.
bool barsSoundAsWritten();

// Pattern mode: the modules play what the record says, from the steps that are due.
void placePatterns();

// Song mode begins at tick, placed like a move, as one with the change of mode; or it ends, and the modules
// play what the record says as by placePatterns.
void enterSongMode(int tick);
void leaveSongMode();

// The modules stand at these steps, shown and due.
void restSteps(const std::array<int, 3>& steps);
void stepsToZero();

// A tick message: position and steps that have just sounded.
void tickPlayed(int position, const std::array<int, 3>& steps);
void patternEntered(int module); // reached while the component plays, in pattern mode: at its first step
void countTick();                // a tick message was taken, stale or not
void timerStarted();             // counting begins anew

void markMovedByTicks(bool byTicks);
void setWindRate(int rate); // bars a wind moves beyond the one: 0 or 7
void noteBaseTempo();       // the present tempo becomes that of winding

} // namespace marlune
