#include "panel/knobs.h"

#include <algorithm>

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

bool knobIsFree() {
    return !songPosition->songMode || recordingState->recordOn;
}

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

void turnKnob(int knob, int value) {
    const int old = project.knobValue[knob];
    project.knobValue[knob] = std::clamp(value, 0, kTopValue);
    if (project.knobValue[knob] == old) return;
    refreshKnob(knob);
    if (recordingState->recordOn) recordKnobValue(knob, project.knobValue[knob]);
}

} // namespace

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

void refreshTempo() {
    project.tempo = std::clamp<int>(project.tempo, kMinTempo, kMaxTempo);
    markProject();
    showFrame(Control::knobTempo, 0, tempoFrame(project.tempo));
    showNumber(Control::tempoBPM, 0, project.tempo);
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

void stepKnob(int knob, int steps) {
    setEditSel(moduleOfKnob(knob));
    if (knobIsFree()) turnKnob(knob, project.knobValue[knob] + steps);
}

void stepTempo(int steps) {
    project.tempo = std::clamp(project.tempo + steps, kMinTempo, kMaxTempo);
    refreshTempo();
}

} // namespace marlune
