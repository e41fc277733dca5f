#include "score/map_hand.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "edit/undo_history.h"
#include "panel/refresh.h"
#include "project/run_state.h"
#include "score/refusals.h"
#include "score/step_edits.h"
#include "song/mode_switch.h"
#include "song/song_moves.h"
#include "transport/navigation.h"
#include "transport/transport.h"

namespace marlune {

namespace {

constexpr double kEdgeReach = 6; // of the selection's ends in the ruler
constexpr double kBreakWidth = 14;

std::string barsText(int count) {
    return std::to_string(count) + (count == 1 ? " bar" : " bars");
}

} // namespace

std::string MapHand::takeRefusal() {
    return std::exchange(refusal_, {});
}

bool MapHand::mayEdit() {
    if (songPosition->songMode) return true;
    refusal_ = kSongInSongMode;
    return false;
}

bool MapHand::mayCommand() {
    if (!mayEdit()) return false;
    if (!recordingState->recordOn) return true;
    refusal_ = kStopRecordingFirst;
    return false;
}

void MapHand::beginEditing(Drag drag) {
    drag_ = drag;
    beginEdit();
    editing_ = true;
}

// --- the strip

void MapHand::pressTransport(MapPart part) {
    if (!songPosition->songMode && part != MapPart::stop && part != MapPart::reset) {
        refusal_ = kSongInSongMode;
        return;
    }
    const EditBracket bracket;
    switch (part) {
        case MapPart::reset: ResetButton_Hit(); break;
        case MapPart::previousBar:
            prevButton_Hit();
            prevButton_Release();
            break;
        case MapPart::nextBar:
            nextButton_Hit();
            nextButton_Release();
            break;
        case MapPart::stop: stopButton_Hit(); break;
        case MapPart::play: playSongButton_Click(); break;
        case MapPart::record: recButton_Click(); break;
        default: break;
    }
    showBar(desk_.view, barOf(songPosition->songTick));
}

void MapHand::choosePointer(MapPointer pointer) {
    if (mayEdit()) desk_.pointer = pointer;
}

MapWish MapHand::pressFrame(const MapSpot& spot) {
    switch (spot.part) {
        case MapPart::modeSwitch: {
            const EditBracket bracket;
            Check1_Click();
            break;
        }
        case MapPart::pointerMode: choosePointer(static_cast<MapPointer>(spot.column)); break;
        case MapPart::follow: desk_.follow = !desk_.follow; break;
        case MapPart::undo: command(MapCommand::undo); break;
        case MapPart::redo: command(MapCommand::redo); break;
        case MapPart::size: return MapWish::zoom;
        case MapPart::dockToggle: return MapWish::dock;
        case MapPart::barZoom:
            if (spot.column == 2) {
                desk_.view.folding = true;
                fitSong(desk_.view);
            } else {
                const double middle = barX(desk_.view, desk_.view.first + barsInView(desk_.view) / 2);
                zoomAbout(desk_.view, spot.column == 1 ? 1 : -1, middle);
            }
            break;
        default: pressTransport(spot.part); break;
    }
    return MapWish::nothing;
}

// --- overview and ruler

void MapHand::scrollBy(int bars) {
    scrollTo(desk_.view, desk_.view.first + bars);
    desk_.follow = false;
}

void MapHand::pressOverview(const MapSpot& spot, double x) {
    MapView& view = desk_.view;
    if (spot.part == MapPart::overviewFrame) {
        drag_ = spot.column == 1 ? Drag::gripLeft : spot.column == 2 ? Drag::gripRight : Drag::scroll;
        return;
    }
    const double fold = overviewX(view, foldBar(view));
    if (isFolded(view) && x >= fold && x < fold + kBreakWidth) {
        view.folding = false;
        return;
    }
    scrollTo(view, static_cast<int>(std::lround(overviewBarAt(view, x) - barsInView(view) / 2)));
    desk_.follow = false;
    drag_ = Drag::scroll;
}

void MapHand::select(int from, int to, int laneFrom, int laneTo) {
    desk_.selection.bars = barsBetween(from, to);
    for (int m = 0; m < kModules; ++m)
        desk_.selection.lanes.modules[m] = m >= std::min(laneFrom, laneTo) && m <= std::max(laneFrom, laneTo);
}

void MapHand::pressRuler(const MapPress& how) {
    MapSelection& selection = desk_.selection;
    const int bar = barAtX(desk_.view, how.x);
    drag_ = Drag::range;
    fromBar_ = bar;
    if (!songPosition->songMode) {
        drag_ = Drag::scroll;
        return;
    }
    if (selection.any()) {
        const bool left = std::abs(how.x - barX(desk_.view, selection.bars.first)) < kEdgeReach;
        const bool right = std::abs(how.x - barX(desk_.view, selection.bars.end())) < kEdgeReach;
        if (left || right) {
            fromBar_ = left ? selection.bars.end() - 1 : selection.bars.first;
            drag_ = Drag::edge;
            return;
        }
        if (how.shift) {
            fromBar_ = bar < selection.bars.first ? selection.bars.end() - 1 : selection.bars.first;
            selection.bars = barsBetween(fromBar_, bar);
            drag_ = Drag::edge;
        }
    }
}

// --- lanes

void MapHand::writeBars(int from, int to) {
    const BarRange bars = barsBetween(from, to);
    if (drag_ == Drag::erase)
        eraseBars(held_.module, bars);
    else
        fillBars(held_.module, bars, desk_.paint[held_.module]);
    lastBar_ = to;
}

void MapHand::pressLane(const MapSpot& spot, const MapPress& how) {
    const int bar = barAtX(desk_.view, how.x);
    const int module = spot.module;
    if (how.button == MapButton::middle) {
        desk_.paint[module] = songBarAt(module, bar * kTicksPerBar);
        return;
    }
    if (!mayEdit()) return;
    setEditSel(module);
    fromBar_ = lastBar_ = bar;
    const bool erases = how.button == MapButton::right || desk_.pointer == MapPointer::erase;
    if (erases || desk_.pointer == MapPointer::paint) {
        beginEditing(erases ? Drag::erase : Drag::bars);
        writeBars(bar, bar);
        return;
    }
    drag_ = Drag::bars;
    if (!how.second) {
        select(bar, bar, module, module);
        return;
    }
    int first = bar;
    int last = bar;
    const SongBar plays = barTrack[module][bar];
    while (first > 0 && barTrack[module][first - 1] == plays) --first;
    while (last < kSongBars - 1 && barTrack[module][last + 1] == plays) ++last;
    select(first, last, module, module);
    drag_ = Drag::plain;
}

void MapHand::writeKnob(int tick, int value) {
    if (drag_ == Drag::erase)
        eraseKnob(held_.knob, lastTick_, tick);
    else
        drawKnob(held_.knob, lastTick_, lastValue_, tick, value);
    lastTick_ = tick;
    lastValue_ = value;
}

void MapHand::pressKnobLane(const MapSpot& spot, const MapPress& how) {
    if (how.button == MapButton::middle) return;
    if (!mayEdit()) return;
    setEditSel(spot.module);
    const bool erases = how.button == MapButton::right || desk_.pointer == MapPointer::erase;
    if (!erases && desk_.pointer != MapPointer::paint) return;
    beginEditing(erases ? Drag::erase : Drag::knob);
    lastTick_ = tickAtX(desk_.view, how.x);
    lastValue_ = valueAtY(spotBox(desk_.view, spot), how.y);
    writeKnob(lastTick_, lastValue_);
}

void MapHand::pressChip(int knob, bool alone) {
    std::vector<int>& shown = desk_.view.knobs;
    const auto at = std::find(shown.begin(), shown.end(), knob);
    if (alone)
        shown = {knob};
    else if (at != shown.end())
        shown.erase(at);
    else
        shown.insert(std::upper_bound(shown.begin(), shown.end(), knob), knob);
    desk_.view.knobScroll = 0;
}

// --- the dock

void MapHand::pressSlot(const MapSpot& spot) {
    if (!mayEdit()) return;
    const int m = spot.module;
    const MapSelection& selection = desk_.selection;
    const EditBracket bracket;
    if (recordingState->recordOn) {
        if (transportState->transportRunning && barOf(songPosition->songTick) == kSongBars - 1) {
            refusal_ = kLastBar;
            return;
        }
        chooseSlot(m, spot.row, spot.column);
    }
    desk_.paint[m] = {static_cast<std::uint8_t>(spot.column), static_cast<std::uint8_t>(spot.row)};
    desk_.pointer = MapPointer::paint;
    setEditSel(m);
    if (!recordingState->recordOn && selection.any() && selection.lanes.modules[m])
        fillBars(m, selection.bars, desk_.paint[m]);
}

void MapHand::turnDigits(MapPart part, int delta) {
    if (!desk_.selection.any() || delta == 0) return;
    BarRange& bars = desk_.selection.bars;
    const int last = bars.end() - 1;
    if (part == MapPart::selectionFirst) {
        const int first = std::clamp(bars.first + delta, 0, last);
        bars = barsBetween(first, last);
    } else {
        bars.count = std::clamp(bars.count + delta, 1, kSongBars - bars.first);
    }
    showBar(desk_.view, part == MapPart::selectionFirst ? bars.first : bars.end() - 1);
}

void MapHand::pressDock(const MapSpot& spot, const MapPress& how) {
    BarLanes& lanes = desk_.selection.lanes;
    switch (spot.part) {
        case MapPart::paletteSlot: pressSlot(spot); break;
        case MapPart::palettePlate:
        case MapPart::palettePick: setEditSel(spot.module); break;
        case MapPart::selectionModule:
            if (!desk_.selection.any()) break;
            lanes.modules[spot.column] = !lanes.modules[spot.column];
            if (lanes.count() == 0) lanes.modules[spot.column] = true; // one is left at least
            break;
        case MapPart::selectionKnobs:
            if (desk_.selection.any()) lanes.knobs = !lanes.knobs;
            break;
        case MapPart::selectionFirst:
        case MapPart::selectionLast:
        case MapPart::selectionCount:
            drag_ = Drag::digits;
            fromY_ = how.y;
            break;
        case MapPart::copy: command(MapCommand::copy); break;
        case MapPart::paste: command(MapCommand::paste); break;
        case MapPart::insert: command(MapCommand::insert); break;
        case MapPart::remove: command(MapCommand::remove); break;
        case MapPart::init: command(MapCommand::init); break;
        default: break;
    }
}

// --- commands

void MapHand::command(MapCommand command) {
    const MapSelection& selection = desk_.selection;
    if (command == MapCommand::copy || command == MapCommand::fill) {
        if (!mayEdit()) return;
    } else if (command == MapCommand::undo || command == MapCommand::redo) {
        if (songPosition->songMode && !mayCommand()) return;
        command == MapCommand::undo ? mnuEditUndo_Click() : mnuEditRedo_Click();
        return;
    } else if (!mayCommand()) {
        return;
    }
    if (!selection.any() && command != MapCommand::paste) return;
    const EditBracket bracket;
    switch (command) {
        case MapCommand::copy: copyBars(selection.lanes, selection.bars); break;
        case MapCommand::paste: {
            const auto& modules = selection.lanes.modules;
            const int at = selection.any() ? selection.bars.first : barOf(songPosition->songTick);
            const int chosen =
                static_cast<int>(std::find(modules.begin(), modules.end(), true) - modules.begin());
            const int lane = selection.any() && chosen < kModules ? chosen : editingState->editSel;
            if (pasteBarsAt(at, lane) == BarPaste::otherKind) refusal_ = kDrumBarsOnly;
            break;
        }
        case MapCommand::insert:
            if (const int lost = insertBars(selection.lanes, selection.bars); lost > 0)
                refusal_ = barsText(lost) + kMovedPastEnd;
            break;
        case MapCommand::remove: deleteBars(selection.lanes, selection.bars); break;
        case MapCommand::init: initBars(selection.lanes, selection.bars); break;
        case MapCommand::fill:
            for (int m = 0; m < kModules; ++m)
                if (selection.lanes.modules[m]) fillBars(m, selection.bars, desk_.paint[m]);
            break;
        default: break;
    }
}

// --- pressing

MapWish MapHand::press(const MapSpot& spot, const MapPress& how) {
    release();
    if (spot.part == MapPart::none || how.button == MapButton::other) return MapWish::nothing;
    const bool lanes = spot.part == MapPart::lane || spot.part == MapPart::knobLane;
    if (how.button != MapButton::left && !lanes) return MapWish::nothing;
    held_ = spot;
    before_ = desk_;
    drag_ = Drag::plain;
    moved_ = false;
    fromX_ = how.x;
    fromY_ = how.y;
    if (spot.part >= MapPart::palettePlate) {
        pressDock(spot, how);
        return MapWish::nothing;
    }
    switch (spot.part) {
        case MapPart::overview:
        case MapPart::overviewFrame: pressOverview(spot, how.x); break;
        case MapPart::ruler: pressRuler(how); break;
        case MapPart::lane: pressLane(spot, how); break;
        case MapPart::knobLane: pressKnobLane(spot, how); break;
        case MapPart::laneHeader:
        case MapPart::knobHeader: setEditSel(spot.module); break;
        case MapPart::knobChips: pressChip(spot.knob, how.shift); break;
        default: return pressFrame(spot);
    }
    return MapWish::nothing;
}

MapWish MapHand::click(const MapSpot& spot, const MapPress& how) {
    const MapWish wish = press(spot, how);
    release();
    return wish;
}

} // namespace marlune
