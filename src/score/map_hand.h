// The pointer's work on the Song Map, and what its commands do: clicks, drags and keys become edits of the
// song.
//
// From the press to the release is one step of undo. What may not be done is refused with a sentence and
// changes nothing. User-interface thread only.
#pragma once

#include <string>

#include "score/map_state.h"

namespace marlune {

enum class MapButton { left, right, middle, other };

// What only the window itself can do.
enum class MapWish { nothing, zoom, dock };

struct MapPress {
    MapButton button = MapButton::left;
    bool shift = false, ctrl = false, second = false; // second: of a double click
    double x = 0, y = 0;                              // pixels of the map
};

enum class MapCommand { copy, paste, insert, remove, init, fill, undo, redo };

class MapHand {
  public:
    explicit MapHand(MapDesk& desk) : desk_(desk) {}
    ~MapHand() { release(); }
    MapHand(const MapHand&) = delete;
    MapHand& operator=(const MapHand&) = delete;

    MapWish press(const MapSpot& spot, const MapPress& how);
    void move(double x, double y);
    void release();
    void abandon(); // ends a drag and puts back what it changed
    MapWish click(const MapSpot& spot, const MapPress& how = {});
    void wheel(const MapSpot& spot, int steps, const MapPress& how); // steps > 0: up

    void command(MapCommand command);
    void moveBars(int bars);        // the position
    void extendSelection(int bars); // of the keyboard, from the position
    void chooseModule(int direction);
    void choosePointer(MapPointer pointer);
    void goToEnd();
    void selectToEnd();
    void dropSelection() { desk_.selection = {}; }
    void turnKnobLane(int lane, int delta); // of the keyboard: at the position

    [[nodiscard]] bool dragging() const { return drag_ != Drag::none; }
    [[nodiscard]] const MapSpot& held() const { return held_; } // none while nothing is held
    std::string takeRefusal();                                  // empty: nothing was refused since

  private:
    enum class Drag { none, plain, scroll, gripLeft, gripRight, range, edge, bars, erase, knob, digits };

    bool mayEdit();
    bool mayCommand();
    void beginEditing(Drag drag);
    MapWish pressFrame(const MapSpot& spot);
    void pressTransport(MapPart part);
    void pressOverview(const MapSpot& spot, double x);
    void pressRuler(const MapPress& how);
    void pressLane(const MapSpot& spot, const MapPress& how);
    void pressKnobLane(const MapSpot& spot, const MapPress& how);
    void pressChip(int knob, bool alone);
    void pressSlot(const MapSpot& spot);
    void pressDock(const MapSpot& spot, const MapPress& how);
    void pressPointer(MapPointer pointer);
    void select(int from, int to, int laneFrom, int laneTo);
    void writeBars(int from, int to);
    void writeKnob(int tick, int value);
    void turnDigits(MapPart part, int delta);
    void scrollBy(int bars);
    void dragScroll(double x);
    void dragGrip(double bar); // of the overview
    void dragLane(double x, double y);
    void finish();

    MapDesk& desk_;
    MapDesk before_; // of the drag
    Drag drag_ = Drag::none;
    MapSpot held_;
    int fromBar_ = 0, lastBar_ = 0;
    int lastTick_ = 0, lastValue_ = 0;
    double fromX_ = 0, fromY_ = 0;
    bool moved_ = false;
    bool editing_ = false; // a step of undo is open
    std::string refusal_;
};

} // namespace marlune
