#include "picture/scene.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "picture/ink.h"

namespace marlune {

namespace {

// Where a fractional place lands on the device. Neighbours share edges.
int device(double v, double scale) {
    return static_cast<int>(std::lround(v * scale));
}

} // namespace

DeviceRect deviceRect(const Piece& piece, double scale) {
    const PanelRect& r = piece.rect;
    const int margin = static_cast<int>(std::ceil(piece.margin * scale));
    const int left = device(r.x, scale);
    const int top = device(r.y, scale);
    return {left - margin, top - margin, device(r.x + r.width, scale) - left + 2 * margin,
            device(r.y + r.height, scale) - top + 2 * margin};
}

void paintPiece(QPainter& painter, const Piece& piece, const Look& look, double scale) {
    const DeviceRect area = deviceRect(piece, scale);
    painter.save();
    if (piece.art == Art::ground) {
        painter.setClipRect(QRect(area.x, area.y, area.width, area.height));
        painter.scale(scale, scale);
        paintGround(Ink(painter, scale), piece.rect, look.marks);
    } else {
        const int margin = static_cast<int>(std::ceil(piece.margin * scale));
        painter.translate(area.x + margin, area.y + margin);
        painter.scale(scale, scale);
        paintLook(Ink(painter, scale), look, (area.width - 2 * margin) / scale,
                  (area.height - 2 * margin) / scale);
    }
    painter.restore();
}

std::array<KnobLayer, 5> knobLayers(const Look& knob, const DeviceRect& area) {
    // The first and the last frame that differs from its neighbours in a quarter, from the left bottom
    // clockwise; light reaches three frames beyond the end of the arc.
    constexpr std::array<std::array<std::int16_t, 2>, 4> kFrames{{{0, 12}, {5, 30}, {23, 48}, {41, 53}}};
    const int left = area.width / 2;
    const int top = area.height / 2;
    std::array<KnobLayer, 5> layers;
    for (int quarter = 0; quarter < 4; ++quarter) {
        KnobLayer& layer = layers[quarter];
        layer.look = knob;
        layer.look.art = Art::knobRing;
        layer.look.variant = static_cast<std::uint8_t>(quarter);
        layer.look.marks = static_cast<std::uint16_t>(knob.marks & (kHover | kAsleep));
        layer.look.frame = std::clamp(knob.frame, kFrames[quarter][0], kFrames[quarter][1]);
        const bool right = quarter >= 2;
        const bool below = quarter == 0 || quarter == 3;
        layer.crop = {right ? left : 0, below ? top : 0, right ? area.width - left : left,
                      below ? area.height - top : top};
    }
    KnobLayer& cap = layers[4];
    cap.look = knob;
    cap.look.art = Art::knobCap;
    if (knob.variant != kModuleCap) cap.look.module = 0; // the other caps are alike everywhere
    const int reach = area.width / 3 + 2;
    cap.crop = {left - reach, top - reach, 2 * reach, area.height - top + reach};
    return layers;
}

void paintPanel(QPainter& painter, const PanelState& state, const PointerState& touch, double scale) {
    for (const Piece& piece : panelPieces()) paintPiece(painter, piece, lookOf(piece, state, touch), scale);
    if (touch.focus != nullptr) paintFocusRing(painter, touch.focus->rect, scale);
}

void paintFocusRing(QPainter& painter, const PanelRect& rect, double scale) {
    painter.save();
    painter.scale(scale, scale);
    const Ink ink(painter, scale);
    const QRectF around(rect.x - 4, rect.y - 4, rect.width + 8, rect.height + 8);
    ink.frame(ink.snapped(around), 9, palette::kText, ink.snap(2));
    painter.restore();
}

} // namespace marlune
