// What follows a press on the Song Map: drags and their end; the wheel and the keys.

#include <algorithm>
#include <cmath>
#include <utility>

#include "edit/undo_history.h"
#include "panel/refresh.h"
#include "project/run_state.h"
#include "score/map_hand.h"
#include "song/song_moves.h"

namespace marlune {

namespace {

constexpr double kClickReach = 3;  // a press that moves no farther is a click
constexpr double kDigitPixels = 6; // of a drag on the digits to a bar
constexpr int kWheelBars = 4;
constexpr int kWheelKind = 40000;

bool isTimeLine(MapPart part) {
    return part == MapPart::ruler || part == MapPart::lane || part == MapPart::knobLane ||
           part == MapPart::overview || part == MapPart::overviewFrame;
}

} // namespace

// --- dragging

void MapHand::dragScroll(double x) {
    MapView& view = desk_.view;
    const bool ruler = held_.part == MapPart::ruler;
    const double bars = ruler ? (fromX_ - x) / view.ppb
                              : overviewBarAt(before_.view, x) - overviewBarAt(before_.view, fromX_);
    const bool jumped = held_.part == MapPart::overview; // to the place of the press
    scrollTo(view, (jumped ? view.first : before_.view.first) + static_cast<int>(std::lround(bars)));
    if (jumped) {
        fromX_ = x;
        before_.view = view;
    }
    desk_.follow = false;
}

void MapHand::dragGrip(double bar) {
    MapView& view = desk_.view;
    const bool left = drag_ == Drag::gripLeft;
    const double right = before_.view.first + barsInView(before_.view);
    const double bars = left ? right - bar : bar - before_.view.first;
    const double wanted = timeWidth(view) / std::max(bars, 1.0);
    view.ppb = *std::min_element(kBarWidths.begin(), kBarWidths.end(), [&](double a, double b) {
        return std::abs(std::log(a / wanted)) < std::abs(std::log(b / wanted));
    });
    scrollTo(view, static_cast<int>(std::lround(left ? right - barsInView(view) : before_.view.first)));
}

void MapHand::dragLane(double x, double y) {
    const MapView& view = desk_.view;
    const int bar = barAtX(view, x);
    if (held_.part == MapPart::knobLane) {
        if (const int tick = tickAtX(view, x); tick != lastTick_) writeKnob(tick, lastValue_);
    } else if (editing_) {
        if (bar != lastBar_) writeBars(lastBar_, bar);
    } else {
        const Box lane = mapBox(view, MapPart::lane);
        const double pitch = mapBox(view, MapPart::lane, 0, 0, 1).y - lane.y;
        const int row = static_cast<int>(std::floor((y - lane.y) / pitch));
        select(fromBar_, bar, held_.module, std::clamp(row, 0, kModules - 1));
    }
}

void MapHand::move(double x, double y) {
    if (drag_ == Drag::none || drag_ == Drag::plain) return;
    if (editing_ && !songPosition->songMode) { // switched by a key meanwhile
        release();
        return;
    }
    moved_ = moved_ || std::abs(x - fromX_) > kClickReach || std::abs(y - fromY_) > kClickReach;
    MapView& view = desk_.view;
    const int bar = barAtX(view, x);
    switch (drag_) {
        case Drag::scroll:
            if (moved_) dragScroll(x);
            break;
        case Drag::gripLeft:
        case Drag::gripRight: dragGrip(overviewBarAt(before_.view, x)); break;
        case Drag::range:
            if (moved_) {
                if (!before_.selection.any()) desk_.selection.lanes.knobs = true;
                select(fromBar_, bar, 0, kModules - 1);
            }
            break;
        case Drag::edge: desk_.selection.bars = barsBetween(fromBar_, bar); break;
        case Drag::bars:
        case Drag::erase: dragLane(x, y); break;
        case Drag::knob: writeKnob(tickAtX(view, x), valueAtY(spotBox(view, held_), y)); break;
        case Drag::digits: {
            const int steps = static_cast<int>((fromY_ - y) / kDigitPixels);
            if (steps == 0) break;
            turnDigits(held_.part, steps);
            fromY_ -= steps * kDigitPixels;
            break;
        }
        default: break;
    }
}

void MapHand::finish() {
    drag_ = Drag::none;
    held_ = {};
}

void MapHand::release() {
    if (drag_ == Drag::none) return;
    const bool clicked = drag_ == Drag::range && !moved_;
    finish();
    if (clicked) moveBars(fromBar_ - barOf(songPosition->songTick));
    if (std::exchange(editing_, false)) endEdit();
}

void MapHand::abandon() {
    if (drag_ == Drag::none) return;
    desk_ = before_;
    finish();
    if (std::exchange(editing_, false)) abandonEdit();
}

// --- wheel and keys

void MapHand::wheel(const MapSpot& spot, int steps, const MapPress& how) {
    if (dragging() || steps == 0) return;
    if (spot.part == MapPart::selectionFirst || spot.part == MapPart::selectionLast ||
        spot.part == MapPart::selectionCount) {
        turnDigits(spot.part, steps);
        return;
    }
    MapView& view = desk_.view;
    if (spot.part == MapPart::knobHeader || spot.part == MapPart::knobChips) {
        MapView top = view;
        top.knobScroll = 0;
        const int hidden = static_cast<int>(view.knobs.size()) - knobRows(top);
        view.knobScroll = std::clamp(view.knobScroll - steps, 0, std::max(0, hidden));
        return;
    }
    if (!isTimeLine(spot.part)) return;
    if (how.ctrl)
        zoomAbout(view, steps, how.x);
    else
        scrollBy(how.shift ? -steps : -steps * kWheelBars);
}

void MapHand::moveBars(int bars) {
    if (!songPosition->songMode) {
        scrollBy(bars);
        return;
    }
    if (bars == 0 && isBarLine(songPosition->songTick)) return;
    if (bars >= 0)
        moveSongForward(bars, true, true);
    else
        moveSongBack(-bars, true, true);
    showBar(desk_.view, barOf(songPosition->songTick));
}

void MapHand::extendSelection(int bars) {
    if (!mayEdit()) return;
    MapSelection& selection = desk_.selection;
    if (!selection.any()) {
        const int at = barOf(songPosition->songTick);
        select(at, at, editingState->editSel, editingState->editSel);
        return;
    }
    selection.bars.count = std::clamp(selection.bars.count + bars, 1, kSongBars - selection.bars.first);
    showBar(desk_.view, selection.bars.end() - 1);
}

void MapHand::chooseModule(int direction) {
    setEditSel((editingState->editSel + direction + kModules) % kModules);
}

void MapHand::goToEnd() {
    if (mayEdit()) moveBars(desk_.view.end - barOf(songPosition->songTick));
}

void MapHand::selectToEnd() {
    if (!mayEdit()) return;
    select(0, std::min(desk_.view.end, kSongBars - 1), 0, kModules - 1);
    desk_.selection.lanes.knobs = true;
}

void MapHand::turnKnobLane(int lane, int delta) {
    if (!mayEdit() || lane < 0 || lane >= static_cast<int>(desk_.view.knobs.size())) return;
    const int knob = desk_.view.knobs[static_cast<std::size_t>(lane)];
    const int tick = songPosition->songTick;
    const EditBracket bracket(kWheelKind + knob);
    const int value = std::clamp(knobTrack[knob][tick] + delta, 0, 127);
    drawKnob(knob, tick, value, tick, value);
}

} // namespace marlune
