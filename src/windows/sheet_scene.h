// The Pattern Sheet as tiles: a pure function of what it shows.
#pragma once

#include "score/sheet_layout.h"
#include "score/sheet_state.h"
#include "score/sheet_words.h"
#include "windows/tile.h"

namespace marlune {

// What the window itself adds to the state.
struct SheetShow {
    SheetForm form = SheetForm::wide;
    int zoom = 100;  // per cent, as the strip tells it
    SheetSpot hover; // under the pointer; none
    SheetSpot held;  // pressed
    SheetStatus status;
};

Scene sheetScene(const SheetState& state, const SheetShow& show);

SheetView sheetView(const SheetState& state, SheetForm form); // for hit testing

} // namespace marlune
