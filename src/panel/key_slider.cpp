#include "panel/key_slider.h"

#include <algorithm>

namespace marlune {

void marluneKeySlider::initKey(int position, int range, int minimum, int maximum, int startValue) {
    keyStartPos = static_cast<std::int16_t>(position);
    keyRange = static_cast<std::int16_t>(range);
    keyMin = static_cast<std::int16_t>(minimum);
    keyMax = static_cast<std::int16_t>(maximum);
    keyStartValue = static_cast<std::int16_t>(startValue);
}

int marluneKeySlider::moveKey(int position) const {
    const int value = (keyStartPos - position) * (keyMax - keyMin) / keyRange + keyStartValue + keyMin;
    return std::max(std::min<int>(value, keyMax), int{keyMin});
}

marluneKeySlider& panelSlider() {
    static marluneKeySlider slider;
    return slider;
}

NumberDrag& numberDrag() {
    static NumberDrag drag;
    return drag;
}

void resetDrags() {
    panelSlider() = {};
    numberDrag() = {};
}

} // namespace marlune
