// The vertical drag behind the panel's number fields.
#pragma once

#include <cstdint>

namespace marlune {

// Turns the distance of the pointer from where it was pressed into a bounded number; up raises it. One
// instance serves all fields, since one pointer makes one drag.
class marluneKeySlider {
  public:
    // position: twips; range: twips of drag that span minimum to maximum, above 0.
    void initKey(int position, int range, int minimum, int maximum, int startValue);

    // The number for a pointer position. The minimum is added on top of the start value: at the start
    // position the result is keyStartValue + keyMin, limited to keyMin..keyMax.
    [[nodiscard]] int moveKey(int position) const;

    std::int16_t keyStartValue = 0;

  private:
    std::int16_t keyStartPos = 0;
    std::int16_t keyMin = 0;
    std::int16_t keyMax = 0;
    std::int16_t keyRange = 1;
};

// The slider that all drags on number fields share.
marluneKeySlider& panelSlider();

// The drag under way, from the press to the release: it belongs to the pattern on which it began, whatever
// plays meanwhile.
struct NumberDrag {
    int bank = 0, pattern = 0; // on which it began
    int value = 0;             // where it is
    double pressedAt = 0;      // twips
    bool moved = false;
};
NumberDrag& numberDrag();
void resetDrags(); // slider and drag as at the start of the program

} // namespace marlune
