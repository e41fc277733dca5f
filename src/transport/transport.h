// Starts and stops playback, arms song recording, and drives the transport's sprites.
//
// User-interface thread. There are two ways to stop: playButton toggles and makes the cued patterns current;
// StopPlay halts in place and leaves the cues.
#pragma once

namespace marlune {

void playButton();
void StopPlay(); // nothing while the transport stands

void PlayHit_Click();
void startStopButton_Click();
void playSongButton_Click();
void playSongButton_DblClick();
void stopButton_Hit(); // in either mode: pressed, a moment, stop, released
void stopButton_MouseDown();
void stopButton_MouseUp();
void recButton_Click();
void RecButton_DblClick();

} // namespace marlune
