// Shows the record on the panel. Every routine that changes data calls these right after.
//
// User-interface thread. None of them touches the playback component but refreshKnob and refreshAll, through
// midiKnobUpdate.
#pragma once

#include <string>

namespace marlune {

// Everything that follows from the data: patterns, digits, lamps with the highlight, bar and tick display,
// knobs.
void refreshAll();
void refresh103Patt(int module);      // the current pattern and its step under edit; module 0 or 1
void refresh109Patt(int drum);        // sel109(drum) lit, lamps of the row under edit, notes, loop point
void refreshPattern(int module);      // either of the two, by module
void sel109Drum(int drum);            // takes drum as the row under edit and shows it
void refreshCurrBankPatt(int module); // the current digit and the pattern behind it
void refreshNextBankPatt(int module); // the cued digit
void setNextBankPatt(int module, int bank, int pattern); // the cued digit, shown without being stored
void refreshLoop(int module);                            // LoopPt from loopEnd of the current pattern
std::string patchText(int patch);
void refreshPatch(int module);    // PatchID from patch of the current pattern; -1 is "NONE"
void refreshStepLamp(int module); // LEDBar at moduleStep, highlighted for the module under edit

// Whether the song plays, and a bar of it has sounded since the position was last placed.
bool songSounds();

// The bar that timeDisplay tells, 0..999: the one that sounds, at rest the one under the song position.
int shownBar();

// timeDisplay, and microDisplay: "[ 5/16]" at rest inside a bar or after a move by ticks, else empty.
void refreshSongTime();

// Makes a module the one under edit and moves the highlight; while the transport runs the lamps follow with
// the next tick.
void setEditSel(int module);

// Sprites that tell the mode, at rest: frame 0 in pattern mode, 1 in song mode; the three transport sprites
// light up beyond that while active.
int songFrame();         // 0 or 1
void refreshTransport(); // startStopButton, playSongButton, RecButton, stopButton
void refreshPlaySong();
void refreshRec();

// Locks or frees the knobs that song mode takes from the hand: 0..18. Knob 19 stays free.
void enableSongKnobs(bool enabled);

// First look of a freshly built panel.
void loadKnobs();

} // namespace marlune
