#include "score/sheet_hand.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "edit/transforms.h"
#include "edit/undo_history.h"
#include "panel/editing.h"
#include "panel/refresh.h"
#include "panel/step_editing.h"
#include "project/run_state.h"
#include "project/song_track.h"
#include "score/refusals.h"
#include "score/step_edits.h"
#include "song/mode_switch.h"
#include "song/selection.h"
#include "transport/transport.h"

namespace marlune {

namespace {

constexpr double kTwips = 15; // to a pixel: the unit of the panel's drags
constexpr int kWheelKind = 30000;

int wheelKind(const SheetSpot& spot) {
    return kWheelKind + (static_cast<int>(spot.part) * kModules + spot.module) * kSteps + spot.column;
}

bool isBassCell(const SheetSpot& spot) {
    return spot.part == SheetPart::roll || spot.part == SheetPart::octaveUp ||
           spot.part == SheetPart::octaveDown || spot.part == SheetPart::accent ||
           (spot.part == SheetPart::stepCap && spot.module != kDrumModule);
}

void moveLoop(int module, int delta) {
    setEditSel(module);
    editLoop(module, delta);
    markProject();
}

} // namespace

bool SheetHand::mayEdit() {
    if (!songPosition->songMode) return true;
    refusal_ = kPatternsInPatternMode;
    return false;
}

std::string SheetHand::takeRefusal() {
    return std::exchange(refusal_, {});
}

// --- pressing

SheetWish SheetHand::pressFrame(const SheetSpot& spot) {
    switch (spot.part) {
        case SheetPart::zoomIn: return SheetWish::zoomIn;
        case SheetPart::zoomOut: return SheetWish::zoomOut;
        case SheetPart::zoomLabel: return SheetWish::zoomBack;
        case SheetPart::zoom: return SheetWish::zoomIn;
        case SheetPart::compactToggle: return SheetWish::compact;
        case SheetPart::undo: mnuEditUndo_Click(); break;
        case SheetPart::redo: mnuEditRedo_Click(); break;
        case SheetPart::modeSwitch: {
            const EditBracket bracket;
            Check1_Click();
            break;
        }
        case SheetPart::startStop: {
            const EditBracket bracket;
            startStopButton_Click();
            break;
        }
        default: break;
    }
    return SheetWish::nothing;
}

void SheetHand::pressRoll(const SheetSpot& spot, const SheetPress& how) {
    if (how.button == SheetButton::right) {
        drag_ = Drag::rests;
        restStep(spot.module, spot.column);
        setEditSel(spot.module);
        return;
    }
    if (how.ctrl) {
        toggleStepAccent(spot.module, spot.column);
        return;
    }
    drag_ = Drag::notes;
    setStepNote(spot.module, spot.column, noteOfRow(spot.row));
    erased_ = !currentBass(spot.module).steps[spot.column].noteOn;
}

void SheetHand::pressStepCap(const SheetSpot& spot) {
    if (spot.module != kDrumModule) {
        step103Click(spot.module, spot.column);
    } else if (mayEdit()) {
        togglePad(spot.column, project.drum.selDrum);
    }
    setEditSel(spot.module);
}

void SheetHand::pressSlot(const SheetSpot& spot) {
    if (songPosition->songMode && !recordingState->recordOn)
        refusal_ = kArmForPatterns;
    else if (songPosition->songMode && transportState->transportRunning &&
             barOf(songPosition->songTick) == kSongBars - 1)
        refusal_ = kLastBar;
    else
        chooseSlot(spot.module, spot.row, spot.column);
}

// Cells of the grids; each selects its module, also where the edit itself is refused.
void SheetHand::pressCell(const SheetSpot& spot, const SheetPress& how) {
    const int module = spot.module;
    if (!mayEdit()) {
        setEditSel(module);
        return;
    }
    switch (spot.part) {
        case SheetPart::roll: pressRoll(spot, how); break;
        case SheetPart::key:
            set103Note(module, noteOfRow(spot.row));
            setEditSel(module);
            break;
        case SheetPart::octaveUp:
        case SheetPart::octaveDown:
            turnStepOctave(module, spot.column, spot.part == SheetPart::octaveUp);
            wanted_ = stepOctave(module, spot.column);
            drag_ = Drag::octave;
            break;
        case SheetPart::accent:
            toggleStepAccent(module, spot.column);
            wanted_ = currentBass(module).steps[spot.column].accent ? 1 : 0;
            drag_ = Drag::accent;
            break;
        case SheetPart::pad:
            togglePad(spot.column, spot.row);
            wanted_ = padHit(spot.column, spot.row) ? 1 : 0;
            drag_ = Drag::pads;
            break;
        case SheetPart::loopGrip:
            setEditSel(module);
            drag_ = Drag::grip;
            break;
        case SheetPart::loop:
            LoopPt_MouseDown(module, how.y * kTwips);
            drag_ = Drag::field;
            break;
        default: break;
    }
}

SheetWish SheetHand::press(const SheetSpot& spot, const SheetPress& how) {
    release();
    if (spot.part == SheetPart::none || how.button == SheetButton::other) return SheetWish::nothing;
    if (how.button == SheetButton::right && spot.part != SheetPart::roll) return SheetWish::nothing;
    held_ = spot;
    drag_ = Drag::plain;
    if (spot.part < SheetPart::moduleTab) return pressFrame(spot);
    beginEdit();
    editing_ = true;
    last_ = spot;
    erased_ = false;
    switch (spot.part) {
        case SheetPart::moduleTab: setEditSel(spot.column); break;
        case SheetPart::otherModule: setEditSel(otherModule(editingState->editSel, spot.row)); break;
        case SheetPart::plate:
        case SheetPart::editPill: setEditSel(spot.module); break;
        case SheetPart::stepCap: pressStepCap(spot); break;
        case SheetPart::drumName:
            sel109Drum(spot.row);
            setEditSel(kDrumModule);
            break;
        case SheetPart::slot: pressSlot(spot); break;
        default: pressCell(spot, how); break;
    }
    return SheetWish::nothing;
}

SheetWish SheetHand::click(const SheetSpot& spot, const SheetPress& how) {
    const SheetWish wish = press(spot, how);
    release();
    return wish;
}

// --- dragging

void SheetHand::drawAt(const SheetSpot& spot) {
    const int module = held_.module;
    switch (drag_) {
        case Drag::notes: drawStepNote(module, spot.column, noteOfRow(spot.row)); break;
        case Drag::rests: restStep(module, spot.column); break;
        case Drag::octave: drawStepOctave(module, spot.column, wanted_); break;
        case Drag::accent: drawStepAccent(module, spot.column, wanted_ != 0); break;
        case Drag::pads: drawPad(spot.column, spot.row, wanted_ != 0); break;
        default: break;
    }
}

// Every step between two places of the pointer, however quick it was.
void SheetHand::drawTo(const SheetSpot& spot) {
    const int across = spot.column - last_.column;
    const int down = spot.row - last_.row;
    const int count = std::max(std::abs(across), std::abs(down));
    for (int i = 1; i <= count; ++i) {
        SheetSpot at = spot;
        at.column = last_.column + static_cast<int>(std::lround(1.0 * across * i / count));
        at.row = last_.row + static_cast<int>(std::lround(1.0 * down * i / count));
        if (drag_ == Drag::notes && at.column != spot.column && at.column == last_.column) continue;
        drawAt(at);
    }
    last_ = spot;
}

void SheetHand::dragGrip(int column) {
    const int delta = column - currentLoopEnd(held_.module);
    if (delta != 0) moveLoop(held_.module, delta);
}

void SheetHand::move(const SheetView& view, double x, double y) {
    if (drag_ == Drag::none || drag_ == Drag::plain) return;
    if (songPosition->songMode) { // switched by a key meanwhile
        release();
        return;
    }
    if (drag_ == Drag::field) {
        LoopPt_MouseMove(held_.module, y * kTwips);
        return;
    }
    if (drag_ == Drag::grip) {
        dragGrip(nearestCell(view, SheetPart::stepCap, held_.module, x, y).column);
        return;
    }
    const SheetSpot spot = nearestCell(view, held_.part, held_.module, x, y);
    if (spot == last_) return;
    if (drag_ == Drag::notes && erased_) drawAt(last_); // drawing, after all
    erased_ = false;
    drawTo(spot);
}

void SheetHand::finish() {
    drag_ = Drag::none;
    held_ = {};
}

void SheetHand::release() {
    if (drag_ == Drag::none) return;
    if (drag_ == Drag::field) LoopPt_MouseUp(held_.module);
    finish();
    if (std::exchange(editing_, false)) endEdit();
}

void SheetHand::abandon() {
    if (drag_ == Drag::none) return;
    if (drag_ == Drag::field) refreshLoop(held_.module);
    finish();
    if (std::exchange(editing_, false)) abandonEdit();
}

// --- wheel and keys

void SheetHand::wheel(const SheetSpot& spot, int steps, bool shift) {
    if (dragging()) return;
    const bool loop = spot.part == SheetPart::loop || spot.part == SheetPart::loopGrip;
    if (!loop && !(shift && spot.part == SheetPart::roll)) return;
    if (!mayEdit()) return;
    const EditBracket bracket(wheelKind(spot));
    if (loop) {
        moveLoop(spot.module, steps);
        return;
    }
    for (int i = 0; i < std::abs(steps); ++i) turnStepOctave(spot.module, spot.column, steps > 0);
}

void SheetHand::accentKey(const SheetSpot& spot) {
    if (!isBassCell(spot) || !mayEdit()) return;
    const EditBracket bracket;
    toggleStepAccent(spot.module, spot.column);
}

void SheetHand::octaveKey(const SheetSpot& spot, bool up) {
    if (!isBassCell(spot) || !mayEdit()) return;
    const EditBracket bracket;
    turnStepOctave(spot.module, spot.column, up);
}

void SheetHand::noteKey(const SheetSpot& spot, int delta) {
    if (!isBassCell(spot) || !mayEdit()) return;
    const int note = std::clamp<int>(currentBass(spot.module).steps[spot.column].note, 0, kTopNote) + delta;
    if (note < 0 || note > kTopNote) return;
    const EditBracket bracket;
    setStepNote(spot.module, spot.column, note);
}

void SheetHand::moveKey(int module, int direction) {
    if (!mayEdit()) return;
    const EditBracket bracket;
    markProject();
    setEditSel(module);
    editMovePatt(module, direction);
}

void SheetHand::deleteKey(const SheetSpot& spot) {
    const bool pad = spot.part == SheetPart::pad;
    if ((!pad && !isBassCell(spot)) || !mayEdit()) return;
    const EditBracket bracket;
    if (pad)
        drawPad(spot.column, spot.row, false);
    else
        restStep(spot.module, spot.column);
}

} // namespace marlune
