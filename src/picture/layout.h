// Where every control of the front panel stands, in panel pixels at scale 1.
//
// The designed places are made from panel.json by tools/make_layout.py; the panel takes them to the screen's
// pixel density once, at start-up. User-interface thread only.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "boundary/limits.h"
#include "boundary/panel_view.h"

namespace marlune {

inline constexpr int kPanelWidth = 1120;
inline constexpr int kPanelHeight = 650;
inline constexpr int kStripModule = 3; // the transport strip counts as a fourth module

struct PanelRect {
    int x, y, width, height;
    friend bool operator==(const PanelRect&, const PanelRect&) = default;
};

struct PlacedControl {
    Control control;
    int index;
    PanelRect rect;
    int layer;        // higher layers lie on top and are hit first
    bool interactive; // false lets the pointer through
    int module;       // 0..2, kStripModule
    int detail;       // knobs: strip 1..3; dot-matrix texts: pitch of the dots in pixels
    int places;       // dot-matrix texts: characters that fit
};

// The areas of each module's steps, banks and keys.
inline constexpr Control kStepAreas[] = {Control::step103A, Control::step103B, Control::step109LED};
inline constexpr Control kBankAreas[] = {Control::bank103A, Control::bank103B, Control::bank109};
inline constexpr Control kKeyAreas[] = {Control::sel103AButton, Control::sel103BButton};

std::span<const PlacedControl> designedControls();
std::span<const PlacedControl> placedControls(); // in the order of the design, wherever they stand now

// Moves a control of the panel. Addresses of placed controls stay valid.
void placeControl(Control control, int index, const PanelRect& rect);

// Null for an index the panel does not have.
const PlacedControl* placedControl(Control control, int index);

// The topmost interactive control at a point of the panel; null for the bare plate.
const PlacedControl* controlAt(double x, double y);

struct PanelRegions {
    PanelRect strip, brand, songBox;
    std::array<PanelRect, 3> modules;
    std::array<PanelRect, 8> drumChannels;
};
extern const PanelRegions kRegions;

// The 5 x 7 dot font: seven rows, top first, the leftmost dot in bit 4.
struct MatrixGlyph {
    char character;
    std::array<std::uint8_t, 7> rows;
};
std::span<const MatrixGlyph> matrixGlyphs();
const MatrixGlyph* matrixGlyph(char character); // null for a character the font has not

} // namespace marlune
