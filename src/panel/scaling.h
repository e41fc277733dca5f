// Placement of the panel on screens of another pixel density: pictures keep their size in pixels, texts their
// centre.
//
// Lengths are twips: 15 to a pixel of the panel's design, twipsPerPixel to a pixel of the screen.
// User-interface thread only.
#pragma once

#include "boundary/panel_view.h"

namespace marlune {

struct Placement {
    int left = 0, top = 0, width = 0, height = 0;
    friend bool operator==(const Placement&, const Placement&) = default;
};

struct TwipsPerPixel {
    double across = 15, down = 15;
};

// Two factors and the ways in which controls follow them. Results are rounded to 16 bits, exact halves to the
// even neighbour.
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

// The panel as a form whose controls can be moved about.
class PanelForm {
  public:
    virtual ~PanelForm() = default;
    [[nodiscard]] virtual TwipsPerPixel twipsPerPixel() const = 0;
    [[nodiscard]] virtual Placement form() const = 0;
    virtual void placeForm(const Placement& at) = 0;
    [[nodiscard]] virtual Placement control(Control control, int index) const = 0;
    virtual void placeControl(Control control, int index, const Placement& at) = 0;
};

// The form that GraphicModeAdjust works on; null for none, as where nothing is drawn.
void setPanelForm(PanelForm* form);

// Takes form and controls from the design to the density of the screen. Once, at start-up: a second call
// would scale again. At 15 twips per pixel everything stays where it is.
void GraphicModeAdjust();

// Where a panel of the designed size stands in a main window: in the middle across, a third of the spare room
// below its top.
Placement panelPosition(int mainWidth, int mainHeight, const Placement& panel, TwipsPerPixel twips);

} // namespace marlune
