#include "score/sheet_keys.h"

#include <algorithm>

#include "project/run_state.h"
#include "score/step_edits.h"

namespace marlune {

namespace {

constexpr SheetPart kStripStops[] = {SheetPart::moduleTab, SheetPart::modeSwitch, SheetPart::startStop,
                                     SheetPart::undo,      SheetPart::redo,       SheetPart::zoomOut,
                                     SheetPart::zoomIn,    SheetPart::zoom,       SheetPart::compactToggle};
constexpr SheetPart kBassStops[] = {SheetPart::editPill,   SheetPart::loop,   SheetPart::stepCap,
                                    SheetPart::key,        SheetPart::roll,   SheetPart::octaveUp,
                                    SheetPart::octaveDown, SheetPart::accent, SheetPart::slot};
constexpr SheetPart kDrumStops[] = {SheetPart::editPill, SheetPart::loop, SheetPart::stepCap,
                                    SheetPart::drumName, SheetPart::pad,  SheetPart::slot};

bool same(const SheetSpot& a, const SheetSpot& b) {
    return a.part == b.part && a.module == b.module;
}

} // namespace

std::vector<SheetSpot> sheetGroups(const SheetView& view) {
    std::vector<SheetSpot> groups;
    const auto add = [&](SheetPart part, int module) {
        if (sheetGrid(view.form, part, module).columns > 0) groups.push_back({part, module, 0, 0});
    };
    for (const SheetPart part : kStripStops) add(part, 0);
    for (int module = 0; module < kModules; ++module) {
        if (view.form == SheetForm::compact && module != view.edited) continue;
        if (module == kDrumModule)
            for (const SheetPart part : kDrumStops) add(part, module);
        else
            for (const SheetPart part : kBassStops) add(part, module);
    }
    return groups;
}

void SheetCursor::put(const SheetSpot& spot) {
    spot_ = spot;
    if (spot.part != SheetPart::none) left_[static_cast<std::size_t>(spot.part)][spot.module] = spot;
}

void SheetCursor::nextGroup(const SheetView& view, int direction) {
    const std::vector<SheetSpot> groups = sheetGroups(view);
    const auto here =
        std::find_if(groups.begin(), groups.end(), [&](const SheetSpot& s) { return same(s, spot_); });
    const int count = static_cast<int>(groups.size());
    int place = here != groups.end() ? static_cast<int>(here - groups.begin()) : direction > 0 ? -1 : count;
    place = (place + direction + count) % count;
    const SheetSpot& group = groups[static_cast<std::size_t>(place)];
    const SheetSpot& left = left_[static_cast<std::size_t>(group.part)][group.module];
    put(same(left, group) ? left : group);
}

void SheetCursor::step(const Grid& grid, int across, int down) {
    SheetSpot to = spot_;
    to.column = std::clamp(to.column + across, 0, grid.columns - 1);
    to.row = std::clamp(to.row + down, 0, grid.rows - 1);
    put(to);
}

bool SheetCursor::key(SheetKey key, const SheetView& view, SheetHand& hand, SheetWish& wish) {
    switch (key) {
        case SheetKey::nextGroup: nextGroup(view, 1); return true;
        case SheetKey::previousGroup: nextGroup(view, -1); return true;
        case SheetKey::moveLeft:
        case SheetKey::moveRight: {
            const bool inModule = spot_.part > SheetPart::plate && spot_.part != SheetPart::none;
            hand.moveKey(inModule ? spot_.module : editingState->editSel,
                         key == SheetKey::moveRight ? 1 : -1);
            return true;
        }
        case SheetKey::escape:
            if (hand.dragging())
                hand.abandon();
            else
                dropCues();
            return true;
        default: break;
    }
    if (spot_.part == SheetPart::none) return false;
    const Grid grid = sheetGrid(view.form, spot_.part, spot_.module);
    if (spot_.part == SheetPart::loop && (key == SheetKey::up || key == SheetKey::down)) {
        hand.wheel(spot_, key == SheetKey::up ? 1 : -1, false);
        return true;
    }
    switch (key) {
        case SheetKey::left: step(grid, -1, 0); break;
        case SheetKey::right: step(grid, 1, 0); break;
        case SheetKey::up: step(grid, 0, -1); break;
        case SheetKey::down: step(grid, 0, 1); break;
        case SheetKey::firstStep: step(grid, -grid.columns, 0); break;
        case SheetKey::lastStep: step(grid, grid.columns, 0); break;
        case SheetKey::press: wish = hand.click(spot_); break;
        case SheetKey::accent: hand.accentKey(spot_); break;
        case SheetKey::octaveUp: hand.octaveKey(spot_, true); break;
        case SheetKey::octaveDown: hand.octaveKey(spot_, false); break;
        case SheetKey::noteUp: hand.noteKey(spot_, 1); break;
        case SheetKey::noteDown: hand.noteKey(spot_, -1); break;
        case SheetKey::clear: hand.deleteKey(spot_); break;
        default: return false;
    }
    return true;
}

} // namespace marlune
