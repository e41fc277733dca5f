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

} // namespace marlune
