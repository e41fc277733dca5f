// The pieces of which the panel's picture is made, back to front.
//
// A piece is what is repainted as one: a cap, a lamp, a knob, a tile of the ground. Its look follows from the
// shown state alone, so whatever differs between two states is found by comparing looks.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "picture/look.h"
#include "picture/panel_state.h"

class QPainter;

namespace marlune {

struct Piece {
    Art art;
    Control control; // what the pointer touches here
    int index;
    PanelRect rect;
    int margin; // light and shadow reach this far beyond the box
    int module;
    int part; // which one of its kind
};

std::span<const Piece> panelPieces();
void layOutPieces(); // again, after controls were moved: ends the span that panelPieces() gave

int markFrame(const StepMark& mark); // for the look of a step cap

Look lookOf(const Piece& piece, const PanelState& state, const PointerState& touch);

// Draws one piece. scale: device pixels to a panel pixel; the painter must be without a transformation.
void paintPiece(QPainter& painter, const Piece& piece, const Look& look, double scale);

// The rectangle that a piece covers on the device, light and shadow included.
struct DeviceRect {
    int x, y, width, height;
};
DeviceRect deviceRect(const Piece& piece, double scale);

// A knob in layers: the ring by quarters, each telling only the frames that show in it, and the cap. Far
// fewer pictures than one for each frame of each knob. crop: within the rectangle of the whole.
struct KnobLayer {
    Look look;
    DeviceRect crop;
};
std::array<KnobLayer, 5> knobLayers(const Look& knob, const DeviceRect& area);

// The whole panel on a painter without a transformation.
void paintPanel(QPainter& painter, const PanelState& state, const PointerState& touch, double scale);
void paintFocusRing(QPainter& painter, const PanelRect& rect, double scale);

// The bubble that tells a knob's value, above it; below where the panel ends. Empty text: no bubble.
struct Bubble {
    std::string text;
    PanelRect rect{};
    bool operator==(const Bubble&) const = default;
};
Bubble bubbleOf(const PanelState& state, const PointerState& touch);
void paintBubble(QPainter& painter, const Bubble& bubble, double scale);

} // namespace marlune
