// Where everything stands on the Pattern Sheet, in its pixels at scale 1, and what lies at a point.
//
// The table is made from windows.json by tools/make_layout.py. Pure; any thread.
#pragma once

#include <span>

#include "score/grid.h"

namespace marlune {

// wide: three modules side by side. compact: the module under edit, the others as small pictures.
enum class SheetForm { wide, compact };

enum class SheetPart {
    strip,
    modeSwitch,
    startStop,
    tempo,
    bar,
    viewOnly,
    undo,
    redo,
    zoomOut,
    zoomLabel,
    zoomIn,
    zoom, // compact: one cap for all three
    compactToggle,
    statusBar,
    moduleTab,
    plate,
    moduleName,
    editPill,
    now,
    cueArrow,
    next,
    loop,
    loopBracket,
    loopGrip,
    rail,
    lamp,
    stepCap,
    slotNumber,
    bankLetter,
    slot,
    key,
    roll,
    octaveLabel,
    octaveUp,
    octaveDown,
    accentLabel,
    accent,
    drumName,
    pad,
    drumRow,
    otherModule,
    none,
};
inline constexpr int kSheetParts = static_cast<int>(SheetPart::none);

std::span<const Placed<SheetPart>> sheetTable(SheetForm form); // windows_table.cpp

Box sheetSize(SheetForm form);

// A part that the form has not has columns 0.
Grid sheetGrid(SheetForm form, SheetPart part, int module = 0);
Box sheetBox(SheetForm form, SheetPart part, int module = 0, int column = 0, int row = 0);
Box loopGripBox(SheetForm form, int module, int length); // length: steps of the loop, 1..16

// A place on the sheet: a cell of a part. Rolls count rows from the top: row r is note 12 - r.
struct SheetSpot {
    SheetPart part = SheetPart::none;
    int module = 0;
    int column = 0;
    int row = 0;
    friend bool operator==(const SheetSpot&, const SheetSpot&) = default;
};

// What lies at a point. lengths: the modules' loops, where the grips stand; edited: the module under edit,
// the only one that the compact form shows.
struct SheetView {
    SheetForm form = SheetForm::wide;
    int edited = 0;
    int lengths[3] = {16, 16, 16};
};
SheetSpot sheetSpotAt(const SheetView& view, double x, double y);

// The cell of a grid nearest to a point, for drags that leave it. part: a grid with cells.
SheetSpot nearestCell(const SheetView& view, SheetPart part, int module, double x, double y);

// The two other modules of the compact form, in order. place: 0 or 1.
int otherModule(int edited, int place);

constexpr int noteOfRow(int row) {
    return 12 - row;
}

} // namespace marlune
