// Placement of the panel on screens of another pixel density. Pure arithmetic.
#pragma once

namespace marlune {

struct Placement {
    int left = 0, top = 0, width = 0, height = 0;
};

// Two factors and the ways in which controls follow them. Results are rounded, exact halves to the even
// neighbour.
class marluneScaling {
  public:
    double scaleX = 1;
    double scaleY = 1;

    [[nodiscard]] int resizeX(double value) const;
    [[nodiscard]] int resizeY(double value) const;
    [[nodiscard]] Placement resizeControl(const Placement& at) const; // place and size
    [[nodiscard]] Placement moveControl(const Placement& at) const;   // place alone
    [[nodiscard]] Placement centerControl(const Placement& at) const; // the centre; the size stays
};

// The factors for a screen with this many twips per pixel: 1 at 15.
marluneScaling scalingFor(double twipsPerPixelX, double twipsPerPixelY);

} // namespace marlune
