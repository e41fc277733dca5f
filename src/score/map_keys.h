// The keyboard on the Song Map: keys for position, selection and commands, and a cursor that reaches every
// place.
//
// User-interface thread only.
#pragma once

#include <vector>

#include "score/map_hand.h"

namespace marlune {

enum class MapKey {
    left, // the cursor's where there is one, else the position
    right,
    farLeft,
    farRight,
    extendLeft,
    extendRight,
    extendFarLeft,
    extendFarRight,
    up,
    down,
    nextGroup,
    previousGroup,
    press, // the cursor's cell, else fills the selection
    escape,
    end,
    selectToEnd,
    selectPointer,
    paintPointer,
    erasePointer,
    follow,
    copy,
    paste,
    insert,
    remove,
    init,
    undo,
    redo,
};

// The stops of Tab, in order, each with its first cell; and how many cells a group has.
std::vector<MapSpot> mapGroups(const MapState& state, const MapDesk& desk);
int cellsOf(const MapState& state, const MapDesk& desk, const MapSpot& group);
MapSpot cellOf(const MapDesk& desk, const MapSpot& group, int cell);
// Where a cell stands; a run as far as it is in view.
Box cellBox(const MapState& state, const MapDesk& desk, const MapSpot& cell);

class MapCursor {
  public:
    // The cell that keys act on; part none before the first Tab and after a click of the pointer.
    [[nodiscard]] const MapSpot& spot() const { return spot_; }
    void put(const MapSpot& spot) { spot_ = spot; }
    void drop() { spot_ = {}; }

    MapWish key(MapKey key, const MapState& state, MapDesk& desk, MapHand& hand);
    // A click on the cursor's cell; of a lane the whole run.
    MapWish press(const MapState& state, const MapDesk& desk, MapHand& hand) const;

  private:
    void nextGroup(const MapState& state, const MapDesk& desk, int direction);
    void step(const MapState& state, MapDesk& desk, int by);

    MapSpot spot_;
};

} // namespace marlune
