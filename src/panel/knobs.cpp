#include "panel/knobs.h"

#include <algorithm>
#include <cmath>

#include "boundary/engine_component.h"
#include "panel/editing.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/recording.h"
#include "project/song_track.h"
#include "util/text_number.h"

namespace marlune {

namespace {

constexpr double kFramesPerValue = 0.4173228346457; // 53 frames over 127 values
constexpr double kValuesPerTwip = 0.1693333333333;  // 127 values over 750 twips
constexpr int kTempoDragTwips = 750;                // span the 200 beats between the limits
constexpr int kFineness = 10;

// Whether the drag under way is a fine one: on a change the drag counts anew from where it is, so that the
// knob doesn't jump.
bool dragIsFine = false;

// The row of taps: how many, and the time from the first to the last.
struct Taps {
    CStopWatch since;
    int count = 0;
    int ms = 0;
};
Taps taps;
constexpr int kTapsForATempo = 4;
constexpr int kMostTaps = 16;
constexpr int kLongestTapMs = 60'000 / kMinTempo * 5 / 4;

// Whether a tap goes on with the row, a quarter of a beat to either side.
bool inRow(int ms) {
    return taps.count > 0 && ms <= kLongestTapMs &&
           (taps.count == 1 || std::abs(ms * (taps.count - 1) - taps.ms) * 4 <= taps.ms);
}

bool knobIsFree() {
    return !songPosition->songMode || recordingState->recordOn;
}

void turnKnob(int knob, int value) {
    const int old = project.knobValue[knob];
    project.knobValue[knob] = std::clamp(value, 0, kTopValue);
    if (project.knobValue[knob] == old) return;
    refreshKnob(knob);
    if (recordingState->recordOn) recordKnobValue(knob, project.knobValue[knob]);
}

} // namespace

void startDrag(double y, int value) {
    project.dragStartPos = roundHalfEven(y);
    project.dragStartValue = value;
    dragIsFine = false;
}

double dragDistance(double y, bool fine, int value) {
    if (fine != dragIsFine) {
        startDrag(y, value);
        dragIsFine = fine;
    }
    return (project.dragStartPos - y) / (fine ? kFineness : 1);
}

int knobFrame(int value) {
    return roundHalfEven(value * kFramesPerValue);
}

int tempoFrame(int tempo) {
    return (tempo - kMinTempo) * 53 / (kMaxTempo - kMinTempo);
}

void refreshKnob(int knob) {
    refreshKnobGfx(knob);
    midiKnobUpdate(knob);
}

void refreshKnobGfx(int knob) {
    markProject();
    showFrame(Control::knobSprite, knob, knobFrame(project.knobValue[knob]));
}

void midiKnobUpdate(int knob) {
    if (songPosition->songMode) {
        PrepareController32(knob, project.knobValue[knob]);
    } else {
        SetController32(knob, project.knobValue[knob]);
    }
}

void showTempo() {
    const double theirs = clockState->sight.tempo;
    const bool ours = clockState->settling > 0 || project.tempo != clockState->sharedTempo;
    const bool shared = clockState->chosen.kind == ClockKind::link;
    const int tempo = theirs > 0 && !(shared && ours) ? static_cast<int>(std::lround(std::min(theirs, 999.0)))
                                                      : int{project.tempo};
    showFrame(Control::knobTempo, 0, tempoFrame(std::clamp(tempo, kMinTempo, kMaxTempo)));
    showNumber(Control::tempoBPM, 0, tempo);
}

void refreshTempo() {
    project.tempo = std::clamp<int>(project.tempo, kMinTempo, kMaxTempo);
    markProject();
    showTempo();
    if (transportState->transportRunning) project.tempoChanged = true;
}

void knobSprite_MouseDown(int knob, bool leftButton, double y) {
    if (leftButton && knobIsFree()) startDrag(y, project.knobValue[knob]);
    setEditSel(moduleOfKnob(knob));
}

void knobSprite_MouseMove(int knob, bool leftButton, double y, bool fine) {
    if (!leftButton || !knobIsFree()) return;
    const double distance = dragDistance(y, fine, project.knobValue[knob]);
    turnKnob(knob, roundHalfEven(distance * kValuesPerTwip) + project.dragStartValue);
}

void knobTempo_MouseDown(bool leftButton, double y) {
    if (leftButton) startDrag(y, project.tempo);
}

void knobTempo_MouseMove(bool leftButton, double y, bool fine) {
    if (!leftButton) return;
    const int distance = roundHalfEven(dragDistance(y, fine, project.tempo) * (kMaxTempo - kMinTempo));
    project.tempo = std::clamp(project.dragStartValue + distance / kTempoDragTwips, kMinTempo, kMaxTempo);
    refreshTempo();
}

void tapTempo() {
    const int ms = taps.since.Elapsed();
    taps.since.Reset();
    if (!inRow(ms) || taps.count == kMostTaps) taps.count = taps.ms = 0;
    if (taps.count++ > 0) taps.ms += ms;
    if (taps.count < kTapsForATempo || taps.ms == 0) return;
    project.tempo = std::clamp(roundHalfEven(60'000.0 * (taps.count - 1) / taps.ms), kMinTempo, kMaxTempo);
    refreshTempo();
}

void stepKnob(int knob, int steps) {
    setEditSel(moduleOfKnob(knob));
    if (knobIsFree()) turnKnob(knob, project.knobValue[knob] + steps);
}

void stepTempo(int steps) {
    project.tempo = std::clamp(project.tempo + steps, kMinTempo, kMaxTempo);
    refreshTempo();
}

} // namespace marlune
