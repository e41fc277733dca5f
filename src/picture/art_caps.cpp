// Raised caps: steps, banks, octave and accent, drum rows, silicone pads, the EDIT pill, and their light.

#include <QPainterPath>
#include <array>

#include "picture/arts.h"
#include "picture/layout.h"

namespace marlune {

namespace {

const palette::ModuleColours& coloursOf(const Look& look) {
    return palette::kModules[look.module];
}

// Where a label goes while the cap is held down.
double sunk(const Ink& ink, const Look& look) {
    return look.is(kDown) ? ink.hair() : 0;
}

void hoverFilm(const Ink& ink, const Look& look, const QRectF& r, double radius) {
    if (look.is(kHover)) ink.box(r, radius, white(kHoverLight));
}

QPainterPath triangle(QPointF a, QPointF b, QPointF c) {
    QPainterPath path(a);
    path.lineTo(b);
    path.lineTo(c);
    path.closeSubpath();
    return path;
}

QPainterPath chevron(QPointF tip, double width, double half) {
    QPainterPath path(QPointF(tip.x() - width, tip.y() - half));
    path.lineTo(tip);
    path.lineTo(tip.x() - width, tip.y() + half);
    return path;
}

// Up and down: a triangle and the line it points away from; accent: a chevron.
void octaveSymbol(const Ink& ink, int which, QPointF centre, QRgb colour) {
    const double x = centre.x();
    const double y = centre.y();
    if (which == 2) {
        ink.stroke(chevron({x + 7.5, y + 0.5}, 15, 6.5), colour, 2.6);
        return;
    }
    const double turn = which == 0 ? 1 : -1;
    const double base = which == 0 ? y + 1.86 : y - 0.86;
    ink.shape(triangle({x - 6, base}, {x + 6, base}, {x, base - turn * 9.38}), colour, 1.4);
    QPainterPath line(QPointF(x - 6.5, base + turn * 5.14));
    line.lineTo(x + 6.5, base + turn * 5.14);
    ink.stroke(line, colour, 2.2);
}

struct CapFace {
    Fade face;
    QRgb label;
};

CapFace stepFace(const Look& look) {
    const palette::ModuleColours& c = coloursOf(look);
    const bool beat = look.variant % 4 == 0;
    if (look.is(kBeyond)) return {c.capAsleep, palette::kBeyondText};
    return beat ? CapFace{c.cap, palette::kText} : CapFace{c.capBetween, palette::kCaption};
}

// The step's note at the right of its cap: height, hollow for a rest, a notch for the octave, a dot at the
// left for an accent.
void stepMark(const Ink& ink, const Look& look, const QRectF& box) {
    const int note = (look.frame & kMarkNote) - 1;
    if (note < 0) return;
    const bool sounds = (look.frame & kMarkSounds) != 0;
    const QRgb light = look.is(kLit) ? palette::kInk : coloursOf(look).light;
    const QRgb colour = look.is(kBeyond) && !look.is(kLit) ? withAlpha(light, 0.5) : light;
    const double x = ink.snap(box.right() - 5.5);
    const double y = ink.snap(box.bottom() - 7 - note * 1.5 + sunk(ink, look));
    const double width = ink.snap(3.5);
    const double height = ink.snap(2.5);
    if (sounds)
        ink.box(QRectF(x, y, width, height), 0.8, colour);
    else
        ink.frame(QRectF(x, y, width, height), 0.8, withAlpha(colour, look.is(kBeyond) ? 0.4 : 0.75),
                  ink.hair() * 0.8);
    if ((look.frame & kMarkUp) != 0) ink.horizontal(x, x + width, y - 2 * ink.hair(), colour);
    if ((look.frame & kMarkDown) != 0) ink.horizontal(x, x + width, y + height + ink.hair(), colour);
    if ((look.frame & kMarkAccent) != 0 && sounds)
        ink.disc({box.left() + 4.5, box.top() + 5 + sunk(ink, look)}, 1.5, colour);
}

// The whole drum pattern over all pads, faintly: this pad's step, a line for each drum that sounds.
void padGhost(const Ink& ink, const Look& look, const QRectF& top) {
    constexpr int kRows = 8;
    const QRgb colour = look.is(kLit) ? withAlpha(0x5A3A10, 0.3) : withAlpha(coloursOf(look).light, 0.2);
    const double pitch = (top.height() - 8) / kRows;
    constexpr double kFigureRoom = 12; // left free on either side of the middle
    const double width = top.width() / 2 - 6 - kFigureRoom;
    for (int row = 0; row < kRows; ++row) {
        if ((look.frame >> row & 1) == 0) continue;
        const double y = ink.snap(top.top() + 4.5 + row * pitch);
        const double height = std::max(ink.hair(), ink.snap(pitch * 0.55));
        for (const double x : {top.left() + 6, top.center().x() + kFigureRoom})
            ink.box(QRectF(x, y, width, height), 1, colour);
    }
}

} // namespace

void paintHalo(const Ink& ink, const Look& look, const QRectF& box) {
    if (!look.is(kLit)) return;
    constexpr std::array<double, 3> kStrength{0.8, 0.9, 0.55};
    QRgb colour = coloursOf(look).light;
    double strength = kStrength[look.variant];
    double radius = look.variant == 2 ? box.height() / 2 : 6;
    if (look.module == kStripModule) colour = look.is(kArmed) ? palette::kRecord : palette::kPlay;
    if (look.module == 2 && look.variant == 1) {
        strength = look.is(kAsleep) ? 0.35 : 1.1;
        radius = 7;
    }
    ink.halo(box, radius, colour, strength);
}

void paintStepCap(const Ink& ink, const Look& look, const QRectF& box) {
    const QPointF middle(box.center().x(), box.center().y() - 0.5 + sunk(ink, look));
    const QString label = QString::number(look.variant + 1);
    if (look.is(kLit)) {
        ink.litCap(box, 5, coloursOf(look).light, look.is(kDown));
        ink.textMiddle(middle, label, {11.5, 800}, palette::kInk);
    } else {
        const CapFace face = stepFace(look);
        ink.cap(box, 5, face.face, look.is(kDown));
        ink.textMiddle(middle, label, {11, look.variant % 4 == 0 ? 600 : 500}, face.label);
    }
    stepMark(ink, look, box);
    hoverFilm(ink, look, box.adjusted(0, 0, 0, -2), 5);
}

void paintBankCap(const Ink& ink, const Look& look, const QRectF& box) {
    const QPointF middle(box.center().x(), box.center().y() - 0.8 + sunk(ink, look));
    const palette::ModuleColours& colours = coloursOf(look);
    const QString label(QChar('A' + look.variant));
    if (look.is(kLit)) {
        ink.litCap(box, 5, look.is(kAsleep) ? colours.lightAsleep : colours.light, look.is(kDown));
        ink.textMiddle(middle, label, {12, 700}, palette::kInk);
    } else {
        ink.cap(box, 5, look.is(kAsleep) ? colours.capAsleep : colours.cap, look.is(kDown));
        ink.textMiddle(middle, label, {12, 600}, look.is(kAsleep) ? palette::kAsleepText : palette::kText);
    }
    if (look.is(kCued)) {
        const QRectF r = ink.snapped(box).adjusted(0, 0, 0, -ink.snap(1.5));
        ink.frame(r.adjusted(-0.5, -0.5, 0.5, 0.5), 5.5, palette::kMoonlight, 1.6);
    }
    hoverFilm(ink, look, box.adjusted(0, 0, 0, -2), 5);
}

void paintOctaveCap(const Ink& ink, const Look& look, const QRectF& box) {
    constexpr std::array<const char*, 3> kLabels{"UP", "DOWN", "ACCENT"};
    const palette::ModuleColours& colours = coloursOf(look);
    const bool asleep = look.is(kAsleep);
    QRgb ink_colour = asleep ? palette::kAsleepText : palette::kText;
    if (look.is(kLit)) {
        ink.litCap(box, 6, asleep ? colours.lightAsleep : colours.light, look.is(kDown));
        ink_colour = palette::kInk;
    } else {
        ink.cap(box, 6, asleep ? colours.capAsleep : colours.cap, look.is(kDown));
    }
    const double down = sunk(ink, look);
    octaveSymbol(ink, look.variant, {box.center().x(), 25.5 + down}, ink_colour);
    ink.textMiddle({box.center().x(), 52 + down}, QString::fromLatin1(kLabels[look.variant]),
                   {10, look.is(kLit) ? 700 : 600, 0.3}, ink_colour);
    hoverFilm(ink, look, box.adjusted(0, 0, 0, -2), 6);
}

void paintDrumCap(const Ink& ink, const Look& look, const QRectF& box) {
    const QPointF middle(box.center().x(), 17 + sunk(ink, look));
    const QRgb colour = look.is(kLit) ? palette::kInk : palette::kText;
    if (look.is(kLit))
        ink.litCap(box, 6, coloursOf(look).light, look.is(kDown));
    else
        ink.cap(box, 6, coloursOf(look).cap, look.is(kDown));
    if (look.variant == 7)
        ink.stroke(chevron({middle.x() + 6, middle.y()}, 12, 5), colour, 2.2);
    else
        ink.textMiddle(middle, QString::number(look.variant + 1), {13, look.is(kLit) ? 700 : 600}, colour);
    hoverFilm(ink, look, box.adjusted(0, 0, 0, -2), 6);
}

void paintPad(const Ink& ink, const Look& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    const bool beat = look.variant % 4 == 0;
    const bool asleep = look.is(kAsleep);
    const double down = sunk(ink, look);
    const QRectF top = box.adjusted(0, down, 0, -2 + down);
    const QPointF middle(box.center().x(), 20 + down);
    const QString label = QString::number(look.variant + 1);
    const palette::ModuleColours& colours = coloursOf(look);
    if (look.is(kLit)) {
        ink.box(box.adjusted(0, 1, 0, 1), 7, rgb(0x5A3A10));
        ink.box(top, 7, asleep ? colours.lightAsleep : colours.light);
        if (!asleep) {
            QRadialGradient core(0.5, 0.5, 0.62);
            core.setCoordinateMode(QGradient::ObjectBoundingMode);
            core.setColorAt(0, QColor::fromRgba(white(0.75)));
            core.setColorAt(0.7, QColor::fromRgba(white(0.12)));
            core.setColorAt(1, QColor::fromRgba(white(0)));
            ink.painter().setBrush(core);
            ink.painter().drawRoundedRect(top.adjusted(1, 1, -1, -1), 6, 6);
        }
        ink.frame(top, 7, withAlpha(0xFFF4DE, asleep ? 0.35 : 0.6));
        padGhost(ink, look, top);
        ink.textMiddle(middle, label, {12, 700}, palette::kInk);
    } else {
        const bool dark = asleep || look.is(kBeyond);
        ink.box(box.adjusted(-0.5, 1, 0.5, 1.5), 7.5, black(0.4));
        ink.box(box, 7, rgb(0x15110D));
        const double half = ink.hair() / 2;
        const QRectF face = top.adjusted(half, half, -half, 0);
        ink.box(face, 6.5, dark ? colours.capAsleep : beat ? palette::kPad : palette::kPadBetween);
        ink.frame(face.adjusted(half, half, -half, -half), 6, palette::kEdge);
        padGhost(ink, look, face);
        const QRgb colour = look.is(kBeyond) ? rgb(0xB4ACA3) : beat ? palette::kText : rgb(0xCFC6BC);
        ink.textMiddle(middle, label, {12, beat ? 600 : 500}, colour);
    }
    hoverFilm(ink, look, top, 7);
}

void paintPill(const Ink& ink, const Look& look, const QRectF& box) {
    const double radius = box.height() / 2;
    const double y = box.center().y();
    if (look.is(kLit)) {
        ink.box(box, radius, coloursOf(look).light);
        ink.box(box, radius, palette::kLitSheen);
        ink.disc({14, y}, 3.6, palette::kInk);
        ink.text({24, y + 4}, QStringLiteral("EDIT"), {11, 800, 0.7}, palette::kInk);
        hoverFilm(ink, look, box, radius);
        return;
    }
    ink.box(box, radius, black(0.16));
    ink.frame(box, radius, white(0.22));
    ink.ring({14, y}, 3.1, withAlpha(palette::kCaption, 0.8), 1.2);
    ink.text({24, y + 4}, QStringLiteral("EDIT"), {11, 600, 0.7}, palette::kCaption);
    hoverFilm(ink, look, box, radius);
}

} // namespace marlune
