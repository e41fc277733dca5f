// The keyboard on the Pattern Sheet: groups, a cell cursor in each grid, and what keys do there.
//
// User-interface thread only.
#pragma once

#include <array>
#include <vector>

#include "project/project_record.h"
#include "score/sheet_hand.h"

namespace marlune {

enum class SheetKey {
    nextGroup,
    previousGroup,
    left,
    right,
    up,
    down,
    firstStep,
    lastStep,
    press,
    accent,
    octaveUp,
    octaveDown,
    noteUp,
    noteDown,
    moveLeft,
    moveRight,
    clear,
    escape,
};

// The stops of Tab, in order; a grid is one, with its first cell.
std::vector<SheetSpot> sheetGroups(const SheetView& view);

class SheetCursor {
  public:
    // The cell that keys act on; part none before the first Tab and after a click of the pointer.
    [[nodiscard]] const SheetSpot& spot() const { return spot_; }
    void put(const SheetSpot& spot);
    void drop() { spot_ = {}; }

    // False: the key has no meaning here and goes on to the panel. wish: what the window is to do.
    bool key(SheetKey key, const SheetView& view, SheetHand& hand, SheetWish& wish);

  private:
    void nextGroup(const SheetView& view, int direction);
    void step(const Grid& grid, int across, int down);

    SheetSpot spot_;
    // Where each grid was left. [part][module]
    std::array<std::array<SheetSpot, kModules>, kSheetParts> left_{};
};

} // namespace marlune
