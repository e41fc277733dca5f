#include "transport/navigation.h"

#include "boundary/app_shell.h"
#include "panel/editing.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/song_track.h"
#include "song/recording_end.h"
#include "song/song_moves.h"
#include "song/song_place.h"
#include "transport/tick.h"
#include "transport/timer_control.h"
#include "transport/transport.h"
#include "transport/waits.h"

namespace marlune {

namespace {

constexpr int kFirstRepeatMs = 138;
constexpr int kRepeatMs = 69;

struct NavigationState {
    bool buttonHeld = false;
    bool clickArmed = true; // false between a release and the click that comes right after it
    CStopWatch navWatch;
    bool flashing = false; // a flash waits
    int windings = 0;      // presses whose routine has not come to its end
};
NavigationState state;

struct Row {
    Control sprite;
    bool forward;
    bool byBars;
    bool marksProject;
};
constexpr Row kRows[] = {
    {Control::nextButton, true, true, false},
    {Control::prevButton, false, true, true},
    {Control::FwdStep, true, false, false},
    {Control::RwdStep, false, false, false},
};

const Row& rowOf(Winding button) {
    return kRows[static_cast<int>(button)];
}

void showRest(Control sprite) {
    showFrame(sprite, 0, songFrame());
}
void showPressed(Control sprite) {
    showFrame(sprite, 0, songFrame() + 1);
}

void move(const Row& row) {
    const int count = row.byBars ? songPosition->windRate + 1 : 1;
    if (row.forward) {
        moveSongForward(count, row.byBars, true);
    } else {
        moveSongBack(count, row.byBars, true);
    }
}

// One move with the sprite flashing; the tick buttons stop playback for good.
void moveAndFlash(const Row& row) {
    if (row.marksProject) markProject();
    // Before anything waits: a repeat of the key that comes meanwhile moves, and leaves waiting to this one.
    const bool repeat = state.flashing;
    state.flashing = true;
    if (!row.byBars && transportState->transportRunning && !repeat) stopButton_Hit();
    move(row);
    if (repeat) return;
    showPressed(row.sprite);
    delay();
    state.flashing = false;
    showRest(row.sprite);
    if (row.sprite == Control::nextButton) refreshRec();
}

void waitRepeat(int ms) {
    runEventsUntil(state.navWatch, ms, &state.buttonHeld);
}

// Forward moves and waits, backward waits and moves: a release during its wait still moves once more.
void repeatWhileHeld(const Row& row) {
    while (state.buttonHeld && songPosition->songMode && !transportState->programClosing) {
        if (row.forward) move(row);
        state.navWatch.Reset();
        waitRepeat(kRepeatMs);
        if (!row.forward && songPosition->songMode && !transportState->programClosing) move(row);
    }
}

void hit(const Row& row) {
    move(row);
    showPressed(row.sprite);
}

// The common end of both rewinds.
void rewind() {
    if (recordingState->recordOn) endRecording();
    showPressed(Control::ResetButton);
    refreshRec();
    moveSongBack(barOf(songPosition->songTick), true, false);
    rewindSong();
}

} // namespace

void navigation_Click(Winding button) {
    if (songPosition->songMode && state.clickArmed) moveAndFlash(rowOf(button));
    state.clickArmed = true;
}

void navigation_DblClick(Winding button) {
    if (songPosition->songMode && state.clickArmed) {
        moveAndFlash(rowOf(button));
        navigation_Click(button);
    }
    state.clickArmed = true;
}

void navigation_MouseDown(Winding button) {
    if (!songPosition->songMode) return;
    const Row& row = rowOf(button);
    // While bars are wound the timer halts but the transport counts as running.
    if (row.byBars && transportState->transportRunning) QuenTimer(0);
    state.buttonHeld = true; // before events run: a quick release must find it set
    ++state.windings;
    if (row.byBars) shell().letEventsRun();
    if (!row.byBars && transportState->transportRunning) {
        stopButton_Hit();
        refreshPlaySong();
    }
    navigation_Click(button);
    showPressed(row.sprite);
    if (!row.byBars) state.navWatch.Reset();
    runEventsUntil(state.navWatch, kFirstRepeatMs);
    repeatWhileHeld(row);
    showRest(row.sprite);
    // Only now: a release during the wait of a backward button has moved once more.
    if (--state.windings == 0) resumeAfterWinding();
}

void navigation_MouseUp(Winding button, bool clickFollows) {
    if (!songPosition->songMode && !state.buttonHeld) return; // the mode may have changed since the press
    if (rowOf(button).byBars) {
        if (state.windings == 0) resumeAfterWinding();
        shell().letEventsRun();
    }
    state.buttonHeld = false;
    state.clickArmed = !clickFollows;
}

void endWinding() {
    state.buttonHeld = false;
}

void nextButton_Hit() {
    hit(rowOf(Winding::next));
}

void prevButton_Hit() {
    hit(rowOf(Winding::previous));
}

void nextButton_Release() {
    showRest(Control::nextButton);
}

void prevButton_Release() {
    showRest(Control::prevButton);
}

void resumeAfterWinding() {
    if (transportState->transportRunning && timerInterval() == 0) beginTicking(songPosition->windBaseTempo);
}

void ResetButton_Hit() {
    StopPlay();
    rewind();
}

void ResetButton_MouseDown() {
    if (!songPosition->songMode) return;
    if (transportState->transportRunning) {
        StopPlay();
        refreshTransport();
    }
    rewind();
}

void ResetButton_MouseUp() {
    showRest(Control::ResetButton);
}

void resetNavigation() {
    state = {};
}

} // namespace marlune
