// The pointer's work on the Pattern Sheet: clicks and drags become the panel's edits.
//
// From the press to the release is one step of undo. What may not be done is refused with a sentence and
// changes nothing. User-interface thread only.
#pragma once

#include <string>

#include "score/sheet_layout.h"

namespace marlune {

enum class SheetButton { left, right, other };

// What only the window itself can do.
enum class SheetWish { nothing, zoomIn, zoomOut, zoomBack, compact };

struct SheetPress {
    SheetButton button = SheetButton::left;
    bool ctrl = false;
    double y = 0; // pixels of the sheet
};

class SheetHand {
  public:
    SheetHand() = default;
    ~SheetHand() { release(); }
    SheetHand(const SheetHand&) = delete;
    SheetHand& operator=(const SheetHand&) = delete;

    SheetWish press(const SheetSpot& spot, const SheetPress& how);
    void move(const SheetView& view, double x, double y);
    void release();
    void abandon(); // ends a drag and puts back what it changed
    SheetWish click(const SheetSpot& spot, const SheetPress& how = {}); // press and release in one
    void wheel(const SheetSpot& spot, int steps, bool shift);           // steps > 0: up

    // Edits of the keys on a cell, under the same guards.
    void accentKey(const SheetSpot& spot);
    void octaveKey(const SheetSpot& spot, bool up);
    void noteKey(const SheetSpot& spot, int delta);
    void moveKey(int module, int direction);
    void deleteKey(const SheetSpot& spot);

    [[nodiscard]] bool dragging() const { return drag_ != Drag::none; }
    [[nodiscard]] const SheetSpot& held() const { return held_; } // none while nothing is held
    std::string takeRefusal();                                    // empty: nothing was refused since

  private:
    enum class Drag { none, plain, notes, rests, octave, accent, pads, grip, field };

    bool mayEdit();
    SheetWish pressFrame(const SheetSpot& spot);
    void pressRoll(const SheetSpot& spot, const SheetPress& how);
    void pressCell(const SheetSpot& spot, const SheetPress& how);
    void pressSlot(const SheetSpot& spot);
    void pressStepCap(const SheetSpot& spot);
    void drawAt(const SheetSpot& spot);
    void drawTo(const SheetSpot& spot);
    void dragGrip(int column);
    void finish();

    Drag drag_ = Drag::none;
    SheetSpot held_;
    SheetSpot last_;       // the cell that the drag was in
    int wanted_ = 0;       // what the first click of a drag made: an octave, an accent, a hit
    bool erased_ = false;  // it made a rest of the lit note: a drag brings it back
    bool editing_ = false; // a step of undo is open
    std::string refusal_;
};

} // namespace marlune
