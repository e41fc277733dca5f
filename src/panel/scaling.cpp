#include "panel/scaling.h"

#include <cstdint>

#include "util/text_number.h"

namespace marlune {

namespace {

constexpr double kStandardTwips = 15;

int rounded16(double value) {
    return static_cast<std::int16_t>(roundHalfEven(value));
}

} // namespace

int marluneScaling::resizeX(double value) const {
    return rounded16(scaleX * value);
}

int marluneScaling::resizeY(double value) const {
    return rounded16(scaleY * value);
}

Placement marluneScaling::resizeControl(const Placement& at) const {
    return {resizeX(at.left), resizeY(at.top), resizeX(at.width), resizeY(at.height)};
}

Placement marluneScaling::moveControl(const Placement& at) const {
    return {resizeX(at.left), resizeY(at.top), at.width, at.height};
}

Placement marluneScaling::centerControl(const Placement& at) const {
    const int halfWidth = at.width / 2;
    const int halfHeight = at.height / 2;
    return {resizeX(at.left + halfWidth) - halfWidth, resizeY(at.top + halfHeight) - halfHeight, at.width,
            at.height};
}

marluneScaling scalingFor(double twipsPerPixelX, double twipsPerPixelY) {
    marluneScaling scaling;
    scaling.scaleX = static_cast<double>(roundHalfEven(twipsPerPixelX)) / kStandardTwips;
    scaling.scaleY = static_cast<double>(roundHalfEven(twipsPerPixelY)) / kStandardTwips;
    return scaling;
}

} // namespace marlune
