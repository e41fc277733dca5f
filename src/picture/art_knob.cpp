// Knobs: groove, value arc, knurled skirt, cap and pointer.

#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "picture/arts.h"
#include "picture/layout.h"

namespace marlune {

namespace {

constexpr double kStart = -135; // degrees from straight up, clockwise
constexpr double kSweep = 270;
constexpr int kLastFrame = 53;
constexpr int kKnurls = 30;

struct CapStyle {
    Fade face;
    QRgb pointer;
};

CapStyle capOf(const Look& look) {
    switch (look.variant) {
        case kModuleCap: return {palette::kModules[look.module].knobCap, rgb(0x0C1013)};
        case 3: return {palette::kKnobPale, rgb(0x12161B)};
        default: return {palette::kKnobDark, palette::kText};
    }
}

QPointF polar(QPointF centre, double radius, double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    return centre + QPointF(radius * std::sin(angle), -radius * std::cos(angle));
}

QPainterPath arc(QPointF centre, double radius, double sweep) {
    const QRectF r(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    QPainterPath path;
    path.arcMoveTo(r, 90 - kStart);
    path.arcTo(r, 90 - kStart, -sweep);
    return path;
}

void valueArc(const Ink& ink, const Look& look, QPointF centre, double k) {
    const QPainterPath groove = arc(centre, 21.5 * k, kSweep);
    ink.stroke(groove, black(0.42), 4.6 * k);
    ink.stroke(groove, white(look.is(kHover) ? 0.09 + kHoverLight : 0.09), 2.6 * k);
    if (look.frame == 0) return;
    const QPainterPath value = arc(centre, 21.5 * k, kSweep * look.frame / kLastFrame);
    const QRgb light = palette::kModules[look.module].light;
    if (look.is(kAsleep)) {
        ink.stroke(value, withAlpha(palette::kDigitOff, 0.5), 3 * k);
        return;
    }
    ink.stroke(value, withAlpha(light, 0.15), 8 * k);
    ink.stroke(value, light, 3 * k);
}

void skirt(const Ink& ink, QPointF centre, double k, double angle) {
    ink.disc(centre + QPointF(0, 3.2 * k), 17 * k, black(0.28));
    ink.disc(centre + QPointF(0, 1.8 * k), 16.4 * k, black(0.4));
    ink.disc(centre, 16 * k, palette::kSkirt);
    QPainterPath knurl;
    for (int i = 0; i < kKnurls; ++i) {
        const double at = angle + i * 360.0 / kKnurls;
        knurl.moveTo(polar(centre, 14.2 * k, at));
        knurl.lineTo(polar(centre, 15.8 * k, at));
    }
    ink.stroke(knurl, black(0.42), k);
    ink.ring(centre, 16 * k, palette::kRim, 1);
}

} // namespace

void paintKnob(const Ink& ink, const Look& look, const QRectF& box) {
    paintKnobRing(ink, look, box);
    paintKnobCap(ink, look, box);
}

void paintKnobRing(const Ink& ink, const Look& look, const QRectF& box) {
    valueArc(ink, look, box.center(), box.width() / 50);
}

void paintKnobCap(const Ink& ink, const Look& look, const QRectF& box) {
    const double k = box.width() / 50;
    const QPointF centre = box.center();
    const double angle = kStart + kSweep * std::min<int>(look.frame, kLastFrame) / kLastFrame;
    const CapStyle style = capOf(look);
    skirt(ink, centre, k, angle);
    ink.disc(centre, 13 * k, style.face);
    ink.ring(centre, 12.6 * k, palette::kCapRim, 0.9);
    if (look.is(kHover) || look.is(kDown)) ink.disc(centre, 13 * k, white(kHoverLight));
    QPainterPath pointer(polar(centre, 4.5 * k, angle));
    pointer.lineTo(polar(centre, 11.4 * k, angle));
    ink.stroke(pointer, style.pointer, 2.6 * k);
    if (look.is(kAsleep)) ink.disc(centre, 16.6 * k, withAlpha(0x0A0D11, 0.42));
    if (look.is(kArmed) && !look.is(kAsleep)) {
        const QPointF dot = centre + QPointF(0, 21.8);
        ink.disc(dot, 3.6, black(0.35));
        ink.disc(dot, 2.7, palette::kRecord);
    }
}

} // namespace marlune
