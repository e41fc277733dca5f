// The five buttons that move the song position, with auto-repeat while held. They act in song mode only.
//
// User-interface thread. The repeat loops sleep in the event loop, which brings the release that ends them.
#pragma once

namespace marlune {

// Each of a pair of buttons by what it moves.
enum class Winding { next, previous, stepForward, stepBack };

void navigation_Click(Winding button);
void navigation_DblClick(Winding button);
void navigation_MouseDown(Winding button);
// clickFollows: the toolkit sends a click right behind this release, which is not another press.
void navigation_MouseUp(Winding button, bool clickFollows = true);

void nextButton_Hit(); // windRate + 1 bars, whatever the mode
void prevButton_Hit();
void nextButton_Release(); // of the key: sprite to rest
void prevButton_Release();

// Play goes on from where it was wound to, at the tempo of the song; nothing while the timer runs or the
// transport stands.
void resumeAfterWinding();

void ResetButton_Hit(); // stop and rewind, in either mode
void ResetButton_MouseDown();
void ResetButton_MouseUp();

// A button that is still held moves no further: its winding is over.
void endWinding();

void resetNavigation();

} // namespace marlune
