#include "score/map_keys.h"

#include <algorithm>

namespace marlune {

namespace {

constexpr int kFarBars = 8;

bool isOneRow(MapPart part) { // cells lie side by side; else below each other
    return part != MapPart::knobLane && part != MapPart::laneHeader && part != MapPart::paletteSlot;
}

bool sameGroup(const MapSpot& a, const MapSpot& b) {
    const bool many = a.part == MapPart::lane || a.part == MapPart::paletteSlot;
    return a.part == b.part && (!many || a.module == b.module);
}

int cellIndex(const MapSpot& spot) {
    switch (spot.part) {
        case MapPart::paletteSlot: return spot.row * kPatterns + spot.column;
        case MapPart::laneHeader:
        case MapPart::knobLane: return spot.row;
        case MapPart::overviewFrame: return 0;
        default: return spot.column;
    }
}

} // namespace

std::vector<MapSpot> mapGroups(const MapState& state, const MapDesk& desk) {
    using enum MapPart;
    std::vector<MapSpot> groups;
    for (const MapPart part : {modeSwitch, reset, previousBar, nextBar, stop, play, record})
        groups.push_back({part});
    if (state.songMode) groups.push_back({pointerMode});
    for (const MapPart part : {follow, undo, redo, size, dockToggle, barZoom, overviewFrame, laneHeader})
        groups.push_back({part});
    for (int m = 0; m < kModules; ++m) groups.push_back({lane, m, 0, m});
    groups.push_back({knobChips, 0, 0, 0, 0});
    if (knobRows(desk.view) > 0) groups.push_back(cellOf(desk, {knobLane}, 0));
    if (!desk.view.dock) return groups;
    for (int m = 0; m < kModules; ++m) groups.push_back({paletteSlot, m});
    for (const MapPart part : {selectionModule, selectionKnobs, selectionFirst, selectionLast, selectionCount,
                               copy, paste, insert, remove, init})
        groups.push_back({part});
    return groups;
}

int cellsOf(const MapState& state, const MapDesk& desk, const MapSpot& group) {
    switch (group.part) {
        case MapPart::lane: return static_cast<int>(state.lanes[group.module].size());
        case MapPart::knobChips: return kKnobs;
        case MapPart::overviewFrame: return 1;
        default: return columnsOf(group.part) * rowsOf(desk.view, group.part);
    }
}

MapSpot cellOf(const MapDesk& desk, const MapSpot& group, int cell) {
    MapSpot spot = group;
    switch (group.part) {
        case MapPart::paletteSlot:
            spot.column = cell % kPatterns;
            spot.row = cell / kPatterns;
            break;
        case MapPart::laneHeader: spot.row = spot.module = cell; break;
        case MapPart::knobChips:
            spot.column = spot.knob = cell;
            spot.module = moduleOfKnob(cell);
            break;
        case MapPart::knobLane:
            spot.row = cell;
            spot.knob = laneKnob(desk.view, cell);
            spot.module = moduleOfKnob(spot.knob);
            break;
        case MapPart::selectionModule: spot.column = spot.module = cell; break;
        default: spot.column = cell; break;
    }
    return spot;
}

Box cellBox(const MapState& state, const MapDesk& desk, const MapSpot& cell) {
    if (cell.part != MapPart::lane) return spotBox(desk.view, cell);
    const Box lane = mapBox(desk.view, MapPart::lane, 0, 0, cell.module);
    const auto& runs = state.lanes[cell.module];
    const BarRange bars = runs[std::min(static_cast<std::size_t>(cell.column), runs.size() - 1)].bars;
    const double from = std::clamp(barX(desk.view, bars.first), lane.x, lane.right());
    const double to = std::clamp(barX(desk.view, bars.end()), lane.x, lane.right());
    return {from, lane.y, to - from, lane.height};
}

void MapCursor::nextGroup(const MapState& state, const MapDesk& desk, int direction) {
    const std::vector<MapSpot> groups = mapGroups(state, desk);
    const auto here = std::find_if(groups.begin(), groups.end(),
                                   [&](const MapSpot& group) { return sameGroup(group, spot_); });
    const int count = static_cast<int>(groups.size());
    int at = here != groups.end() ? static_cast<int>(here - groups.begin()) : direction > 0 ? -1 : count;
    at = (at + direction + count) % count;
    spot_ = groups[static_cast<std::size_t>(at)];
}

void MapCursor::step(const MapState& state, MapDesk& desk, int by) {
    const int cell = std::clamp(cellIndex(spot_) + by, 0, std::max(0, cellsOf(state, desk, spot_) - 1));
    spot_ = cellOf(desk, spot_, cell);
    if (spot_.part != MapPart::lane) return;
    showBar(desk.view, state.lanes[spot_.module][static_cast<std::size_t>(cell)].bars.first);
}

MapWish MapCursor::press(const MapState& state, const MapDesk& desk, MapHand& hand) const {
    const Box box = cellBox(state, desk, spot_);
    MapPress how;
    how.x = box.middleX();
    how.y = box.middleY();
    if (spot_.part == MapPart::knobLane || spot_.part == MapPart::overviewFrame) return MapWish::nothing;
    if (spot_.part != MapPart::lane) return hand.click(spot_, how);
    const auto& runs = state.lanes[spot_.module];
    const BarRange bars = runs[std::min(static_cast<std::size_t>(spot_.column), runs.size() - 1)].bars;
    const MapSpot lane{MapPart::lane, spot_.module, 0, spot_.module};
    how.second = true;
    how.x = barX(desk.view, bars.first + 0.5);
    hand.press(lane, how);
    hand.move(barX(desk.view, bars.end() - 0.5), how.y);
    hand.release();
    return MapWish::nothing;
}

MapWish MapCursor::key(MapKey key, const MapState& state, MapDesk& desk, MapHand& hand) {
    const bool cursor = spot_.part != MapPart::none;
    switch (key) {
        case MapKey::left:
        case MapKey::right: {
            const int by = key == MapKey::right ? 1 : -1;
            if (!cursor)
                hand.moveBars(by);
            else if (spot_.part == MapPart::overviewFrame)
                scrollTo(desk.view, desk.view.first + by * kFarBars);
            else
                step(state, desk, by);
            break;
        }
        case MapKey::up:
        case MapKey::down: {
            const int by = key == MapKey::down ? 1 : -1;
            MapPress how;
            if (spot_.part == MapPart::knobLane)
                hand.turnKnobLane(desk.view.knobScroll + spot_.row, -by);
            else if (spot_.part == MapPart::selectionFirst || spot_.part == MapPart::selectionLast ||
                     spot_.part == MapPart::selectionCount)
                hand.wheel(spot_, -by, how);
            else if (!isOneRow(spot_.part))
                step(state, desk, spot_.part == MapPart::paletteSlot ? by * kPatterns : by);
            else
                hand.chooseModule(by);
            break;
        }
        case MapKey::farLeft: hand.moveBars(-kFarBars); break;
        case MapKey::farRight: hand.moveBars(kFarBars); break;
        case MapKey::extendLeft: hand.extendSelection(-1); break;
        case MapKey::extendRight: hand.extendSelection(1); break;
        case MapKey::extendFarLeft: hand.extendSelection(-kFarBars); break;
        case MapKey::extendFarRight: hand.extendSelection(kFarBars); break;
        case MapKey::nextGroup: nextGroup(state, desk, 1); break;
        case MapKey::previousGroup: nextGroup(state, desk, -1); break;
        case MapKey::press:
            if (cursor) return press(state, desk, hand);
            hand.command(MapCommand::fill);
            break;
        case MapKey::escape:
            if (hand.dragging())
                hand.abandon();
            else if (cursor)
                drop();
            else
                hand.dropSelection();
            break;
        case MapKey::end: hand.goToEnd(); break;
        case MapKey::selectToEnd: hand.selectToEnd(); break;
        case MapKey::selectPointer: hand.choosePointer(MapPointer::select); break;
        case MapKey::paintPointer: hand.choosePointer(MapPointer::paint); break;
        case MapKey::erasePointer: hand.choosePointer(MapPointer::erase); break;
        case MapKey::follow: desk.follow = !desk.follow; break;
        case MapKey::copy: hand.command(MapCommand::copy); break;
        case MapKey::paste: hand.command(MapCommand::paste); break;
        case MapKey::insert: hand.command(MapCommand::insert); break;
        case MapKey::remove: hand.command(MapCommand::remove); break;
        case MapKey::init: hand.command(MapCommand::init); break;
        case MapKey::undo: hand.command(MapCommand::undo); break;
        case MapKey::redo: hand.command(MapCommand::redo); break;
    }
    return MapWish::nothing;
}

} // namespace marlune
