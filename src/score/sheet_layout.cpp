#include "score/sheet_layout.h"

#include <algorithm>
#include <array>

#include "project/project_record.h"

namespace marlune {

namespace {

constexpr double kPlates[] = {10, 380, 750}; // left edges in the wide form
constexpr double kGripReach = 4.5;           // the grip stands this far left of the end of its cap
constexpr Box kSizes[] = {{0, 0, 1120, 520}, {0, 0, 760, 420}};

struct Entry {
    Grid grid;
    bool perModule = false;
};

const Entry& entryOf(SheetForm form, SheetPart part) {
    static const auto kIndex = [] {
        std::array<std::array<Entry, kSheetParts>, 2> index;
        for (auto& row : index)
            for (Entry& entry : row) entry.grid.columns = 0;
        for (const SheetForm f : {SheetForm::wide, SheetForm::compact})
            for (const Placed<SheetPart>& placed : sheetTable(f))
                index[static_cast<std::size_t>(f)][static_cast<std::size_t>(placed.part)] = {
                    placed.grid, placed.perModule};
        return index;
    }();
    return kIndex[static_cast<std::size_t>(form)][static_cast<std::size_t>(part)];
}

// From the topmost to the lowest.
constexpr SheetPart kFrame[] = {SheetPart::modeSwitch, SheetPart::startStop,   SheetPart::undo,
                                SheetPart::redo,       SheetPart::zoomOut,     SheetPart::zoomLabel,
                                SheetPart::zoomIn,     SheetPart::zoom,        SheetPart::compactToggle,
                                SheetPart::moduleTab,  SheetPart::otherModule, SheetPart::strip,
                                SheetPart::statusBar};
constexpr SheetPart kModuleParts[] = {
    SheetPart::loopGrip, SheetPart::editPill, SheetPart::loop,     SheetPart::stepCap,    SheetPart::slot,
    SheetPart::key,      SheetPart::roll,     SheetPart::octaveUp, SheetPart::octaveDown, SheetPart::accent,
    SheetPart::pad,      SheetPart::drumName, SheetPart::plate};

bool belongs(SheetPart part, int module) {
    switch (part) {
        case SheetPart::key:
        case SheetPart::roll:
        case SheetPart::octaveUp:
        case SheetPart::octaveDown:
        case SheetPart::accent: return module != kDrumModule;
        case SheetPart::pad:
        case SheetPart::drumName: return module == kDrumModule;
        default: return true;
    }
}

bool findCell(const Grid& grid, double x, double y, SheetSpot& spot) {
    for (int row = 0; row < grid.rows; ++row) {
        for (int column = 0; column < grid.columns; ++column) {
            if (!grid.hitAt(column, row).contains(x, y)) continue;
            spot.column = column;
            spot.row = row;
            return true;
        }
    }
    return false;
}

bool findIn(const SheetView& view, SheetPart part, int module, double x, double y, SheetSpot& spot) {
    Grid grid = sheetGrid(view.form, part, module);
    if (grid.columns == 0 || !belongs(part, module)) return false;
    if (part == SheetPart::loopGrip) grid.cell.x = loopGripBox(view.form, module, view.lengths[module]).x;
    if (!findCell(grid, x, y, spot)) return false;
    spot.part = part;
    spot.module = module;
    return true;
}

} // namespace

Box sheetSize(SheetForm form) {
    return kSizes[static_cast<std::size_t>(form)];
}

Grid sheetGrid(SheetForm form, SheetPart part, int module) {
    const Entry& entry = entryOf(form, part);
    Grid grid = entry.grid;
    if (entry.perModule) grid.cell.x += kPlates[module];
    return grid;
}

Box sheetBox(SheetForm form, SheetPart part, int module, int column, int row) {
    return sheetGrid(form, part, module).at(column, row);
}

Box loopGripBox(SheetForm form, int module, int length) {
    Box grip = sheetBox(form, SheetPart::loopGrip, module);
    grip.x = sheetBox(form, SheetPart::stepCap, module, length - 1).right() - kGripReach;
    return grip;
}

SheetSpot sheetSpotAt(const SheetView& view, double x, double y) {
    SheetSpot spot;
    for (const SheetPart part : kFrame)
        if (findIn(view, part, 0, x, y, spot)) return spot;
    for (int module = 0; module < kModules; ++module) {
        if (view.form == SheetForm::compact && module != view.edited) continue;
        for (const SheetPart part : kModuleParts)
            if (findIn(view, part, module, x, y, spot)) return spot;
    }
    return {};
}

SheetSpot nearestCell(const SheetView& view, SheetPart part, int module, double x, double y) {
    const Grid grid = sheetGrid(view.form, part, module);
    SheetSpot spot{part, module, 0, 0};
    for (int column = 1; column < grid.columns; ++column)
        if (x >= (grid.at(column - 1, 0).right() + grid.at(column, 0).x) / 2) spot.column = column;
    for (int row = 1; row < grid.rows; ++row)
        if (y >= (grid.at(0, row - 1).bottom() + grid.at(0, row).y) / 2) spot.row = row;
    return spot;
}

int otherModule(int edited, int place) {
    return place < edited ? place : place + 1;
}

} // namespace marlune
