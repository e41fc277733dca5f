// The table that ties panel controls to their handlers.
#include <algorithm>
#include <array>

#include "boundary/midi_bytes.h"
#include "commands/panel_events.h"
#include "edit/undo_history.h"
#include "midi/midi_input.h"
#include "midi/remote_control.h"
#include "panel/editing.h"
#include "panel/groove_edits.h"
#include "panel/knobs.h"
#include "panel/mutes.h"
#include "panel/refresh.h"
#include "panel/step_editing.h"
#include "project/run_state.h"
#include "song/mode_switch.h"
#include "song/selection.h"
#include "transport/engine_link.h"
#include "transport/navigation.h"
#include "transport/transport.h"

namespace marlune {

namespace {

using At = const PointerEvent&;
using Handler = void (*)(int index, At at);
using Wheel = void (*)(int index, int steps);

// What a control does with the pointer. A control with press or release handlers of its own is clicked after
// the release; all others with the press.
struct Route {
    Handler press = nullptr;
    Handler move = nullptr;
    Handler release = nullptr;
    Handler click = nullptr;
    Handler doubleClick = nullptr; // the second click of a fast pair
    Wheel wheel = nullptr;
};

bool edits() {
    return !songPosition->songMode;
}

// An edit of the step under edit of a bassline; the module is selected in either mode.
template <int module>
void keyClick(int key, At) {
    if (edits()) set103Note(module, key);
    setEditSel(module);
}
template <int module>
void keyDblClick(int key, At) {
    if (edits()) set103Note(module, key);
}
template <int module>
void stepClick(int step, At) {
    step103Click(module, step);
    setEditSel(module);
}
template <int module>
void bankClicked(int bank, At) {
    bankClick(module, bank);
    setEditSel(module);
}
template <void (*toggle)(int)>
void flagClick(int module, At) {
    if (edits()) toggle(module);
    setEditSel(module);
}
template <void (*toggle)(int)>
void flagDblClick(int module, At) {
    if (edits()) toggle(module);
}

void accentOrSlide(int module, At at) {
    (at.fine ? flagClick<slideClick> : flagClick<accentClick>)(module, at);
}
void accentOrSlideAgain(int module, At at) {
    (at.fine ? flagDblClick<slideClick> : flagDblClick<accentClick>)(module, at);
}

// With Alt a press on a name plate or a drum silences it; false where it is none of these.
bool silences(Control control, int index, At at) {
    if (!at.alt || !at.leftButton || at.action != PointerAction::press) return false;
    const Silencing how = at.fine ? Silencing::solo : Silencing::mute;
    if (control == Control::ediSel || control == Control::edi109) {
        toggleModule(control == Control::edi109 ? kDrumModule : index, how, at.ctrl);
        return true;
    }
    if (control != Control::sel109 || index >= kDrums) return false;
    toggleDrum(index, how, at.ctrl);
    return true;
}

void lampClick(int step, At) {
    if (edits()) step109click(step);
    setEditSel(kDrumModule);
}
void lampDblClick(int step, At) {
    if (edits()) step109click(step);
}

void patchPress(int module, At at) {
    if (!edits()) return;
    setEditSel(module);
    PatchID_MouseDown(module, at.y);
}
void patchMove(int module, At at) {
    if (edits() && at.leftButton) PatchID_MouseMove(module, at.y);
}
void patchRelease(int module, At) {
    if (edits()) PatchID_MouseUp(module);
}
void patchWheel(int module, int steps) {
    if (!edits()) return;
    setEditSel(module);
    setPatch(module, currentBass(module).patch + steps);
}

void digitMove(int index, At at) {
    if (at.leftButton) DigitPatt_MouseMove(index, at.y);
}
void loopMove(int module, At at) {
    if (at.leftButton) LoopPt_MouseMove(module, at.y);
}
void loopWheel(int module, int steps) {
    setEditSel(module);
    editLoop(module, steps);
    markProject();
}

template <Winding button>
constexpr Route kWindingRoute = {
    .press = [](int, At) { navigation_MouseDown(button); },
    .release = [](int, At at) { navigation_MouseUp(button, at.leftButton && at.inside); },
    .click = [](int, At) { navigation_Click(button); },
    .doubleClick = [](int, At) { navigation_DblClick(button); },
};

template <void (*action)()>
void run(int, At) {
    action();
}

constexpr Route routeOf(Control control) {
    switch (control) {
        case Control::knobSprite:
            return {.press = [](int i, At at) { knobSprite_MouseDown(i, at.leftButton, at.y); },
                    .move = [](int i, At at) { knobSprite_MouseMove(i, at.leftButton, at.y, at.fine); },
                    .wheel = stepKnob};
        case Control::knobTempo:
            return {.press = [](int, At at) { knobTempo_MouseDown(at.leftButton, at.y); },
                    .move = [](int, At at) { knobTempo_MouseMove(at.leftButton, at.y, at.fine); },
                    .wheel = [](int, int steps) { stepTempo(steps); }};
        case Control::LEDBar: return {.click = [](int i, At) { setEditSel(i); }};
        case Control::DigitPatt:
            return {.press = [](int i, At at) { DigitPatt_MouseDown(i, at.y); },
                    .move = digitMove,
                    .release = [](int i, At at) { DigitPatt_MouseMove(i, at.y); },
                    .wheel = stepDigit};
        case Control::accent: return {.click = accentOrSlide, .doubleClick = accentOrSlideAgain};
        case Control::up: return {.click = flagClick<upClick>, .doubleClick = flagDblClick<upClick>};
        case Control::down: return {.click = flagClick<downClick>, .doubleClick = flagDblClick<downClick>};
        case Control::sel109:
            return {.click = [](int i, At) {
                sel109Drum(i);
                setEditSel(kDrumModule);
            }};
        case Control::Check1: return {.click = run<Check1_Click>, .doubleClick = run<Check1_DblClick>};
        case Control::startStopButton: return {.click = run<startStopButton_Click>};
        case Control::PlayHit: return {.click = run<PlayHit_Click>};
        case Control::RecButton:
            return {.click = run<recButton_Click>, .doubleClick = run<RecButton_DblClick>};
        case Control::playSongButton:
            return {.click = run<playSongButton_Click>, .doubleClick = run<playSongButton_DblClick>};
        case Control::stopButton:
            return {.press = run<stopButton_MouseDown>, .release = run<stopButton_MouseUp>};
        case Control::nextButton: return kWindingRoute<Winding::next>;
        case Control::prevButton: return kWindingRoute<Winding::previous>;
        case Control::FwdStep: return kWindingRoute<Winding::stepForward>;
        case Control::RwdStep: return kWindingRoute<Winding::stepBack>;
        case Control::ResetButton:
            return {.press = run<ResetButton_MouseDown>, .release = run<ResetButton_MouseUp>};
        case Control::LoopPt:
            return {.press = [](int i, At at) { LoopPt_MouseDown(i, at.y); },
                    .move = loopMove,
                    .release = [](int i, At) { LoopPt_MouseUp(i); },
                    .wheel = loopWheel};
        case Control::PatchID:
            return {.press = patchPress, .move = patchMove, .release = patchRelease, .wheel = patchWheel};
        case Control::Offset109: return {.press = [](int, At) { setEditSel(kDrumModule); }};
        case Control::step109LED: return {.click = lampClick, .doubleClick = lampDblClick};
        case Control::sel103AButton: return {.click = keyClick<0>, .doubleClick = keyDblClick<0>};
        case Control::sel103BButton: return {.click = keyClick<1>, .doubleClick = keyDblClick<1>};
        case Control::step103A: return {.click = stepClick<0>};
        case Control::step103B: return {.click = stepClick<1>};
        case Control::bank103A: return {.click = bankClicked<0>};
        case Control::bank103B: return {.click = bankClicked<1>};
        case Control::bank109: return {.click = bankClicked<kDrumModule>};
        case Control::ediSel: return {.click = [](int i, At) { setEditSel(i); }};
        case Control::edi109: return {.click = [](int, At) { setEditSel(kDrumModule); }};
        case Control::swing:
            return {.press = [](int, At at) { swing_MouseDown(at.leftButton, at.y); },
                    .move = [](int, At at) { swing_MouseMove(at.leftButton, at.y, at.fine); },
                    .wheel = [](int, int steps) { stepSwing(steps); }};
        case Control::tapTempo: return {.click = run<tapTempo>, .doubleClick = run<tapTempo>};
        default: return {}; // shows, and takes no pointer
    }
}

void call(Handler handler, int index, At at) {
    if (handler != nullptr) handler(index, at);
}

void click(const Route& route, int index, At at) {
    call(at.second && route.doubleClick != nullptr ? route.doubleClick : route.click, index, at);
}

constexpr int kWheelKind = 1000;     // notches on one control go on with each other
constexpr int kMidiKind = 1;         // so do controllers, which are swept several at a time
constexpr double kFarthest = 100000; // twips; what a pointer can't reach can't overflow a slider

// A note is an edit of its own.
int gestureOfMidi() {
    const bool sweep = MIDIIn1.MessageCount() > 0 && statusKind(MIDIIn1.oldest().bytes[0]) == kControlChange;
    return sweep ? kMidiKind : 0;
}

void deliver(Control control, int index, const PointerEvent& event) {
    if (silences(control, index, event)) return;
    const Route route = routeOf(control);
    PointerEvent at = event;
    at.y = std::clamp(event.y, -kFarthest, kFarthest);
    const bool clicksAtRelease = route.press != nullptr || route.release != nullptr;
    switch (at.action) {
        case PointerAction::press:
            call(route.press, index, at);
            if (!clicksAtRelease && at.leftButton) click(route, index, at);
            break;
        case PointerAction::move: call(route.move, index, at); break;
        case PointerAction::release:
            call(route.release, index, at);
            if (clicksAtRelease && at.leftButton && at.inside) click(route, index, at);
            break;
    }
}

} // namespace

void panelPointer(Control control, int index, const PointerEvent& event) {
    // From the press to the release is one edit, however many moves lie between.
    if (event.action == PointerAction::press) beginGesture();
    deliver(control, index, event);
    if (event.action == PointerAction::release) endGesture();
}

void panelWheel(Control control, int index, int steps) {
    const Route route = routeOf(control);
    const EditBracket bracket(kWheelKind + kMaxControlCount * static_cast<int>(control) + index);
    if (route.wheel != nullptr) route.wheel(index, steps);
}

void panelPress(Control control, int index) {
    const Route route = routeOf(control);
    if (route.wheel != nullptr) return; // turned, not pressed
    const EditBracket bracket;
    // A navigation button would wait for its release inside the press: from the keyboard it is clicked.
    if (route.click != nullptr) {
        route.click(index, {});
        return;
    }
    call(route.press, index, {});
    call(route.release, index, {});
}

void midiArrived() {
    if (!MIDIIn1.MessageEvents) return;
    const EditBracket bracket(gestureOfMidi());
    MIDIIn1_Message();
}

void engineSpoke() {
    // Ticks edit nothing by themselves, but they read the MIDI input.
    if (MIDIIn1.MessageCount() == 0) {
        pumpEngineMessages();
        return;
    }
    const EditBracket bracket(gestureOfMidi());
    pumpEngineMessages();
}

} // namespace marlune
