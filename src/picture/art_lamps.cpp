// The lamp rows: rail, loop bracket, lamps.

#include <QPainterPath>

#include "picture/arts.h"
#include "picture/layout.h"

namespace marlune {

namespace {

// Gaps between the beats, in pixels from the left end of the rail.
double gap(int module, int beat) {
    return module == 2 ? 267.0 + 271.0 * beat : 130.0 + 130.0 * beat;
}

} // namespace

void paintRail(const Ink& ink, const Look& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    const QRgb light = palette::kModules[look.module].light;
    ink.box(box.translated(0, ink.hair()), 7, white(0.07));
    ink.box(box, 7, palette::kRail);
    if (look.is(kEdit)) ink.box(box, 7, withAlpha(light, 0.17));
    if (look.is(kHover)) ink.box(box, 7, white(kHoverLight));
    for (int beat = 0; beat < 3; ++beat) ink.vertical(gap(look.module, beat), 5, 11, white(0.2));
}

void paintBracket(const Ink& ink, const Look& look, const QRectF& box) {
    const QRgb light = palette::kModules[look.module].light;
    const double end = look.frame;
    const double width = 1.2 * ink.hair();
    if (look.frame < box.width() - 1) ink.horizontal(end, box.right() - 1, 2, white(0.1));
    QPainterPath path(QPointF(1, 4));
    path.lineTo(1, 1);
    path.lineTo(end, 1);
    path.lineTo(end, 4);
    ink.painter().setBrush(Qt::NoBrush);
    ink.painter().setPen(QPen(QColor::fromRgba(withAlpha(light, look.is(kEdit) ? 0.75 : 0.5)), width,
                              Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    ink.painter().drawPath(path);
}

void paintLamp(const Ink& ink, const Look& look, const QRectF& box) {
    const palette::ModuleColours& colours = palette::kModules[look.module];
    const QPointF centre = box.center();
    if (look.is(kLit)) {
        const bool edit = look.is(kEdit);
        ink.glow(centre, edit ? 15 : 11, colours.light, edit ? 1 : 0.75);
        ink.disc(centre, 5, colours.light);
        ink.disc(centre, 3.2, withAlpha(colours.lampCore, edit ? 1 : 0.55));
        return;
    }
    ink.disc(centre, 4.2, black(0.6));
    ink.disc(centre, 3.4, colours.lampOff);
    if (look.is(kEdit)) ink.disc(centre, 3.4, withAlpha(colours.light, 0.18));
}

// On the foot of the accent cap, which may be lit itself.
void paintSlideLamp(const Ink& ink, const Look& look, const QRectF& box) {
    const palette::ModuleColours& colours = palette::kModules[look.module];
    const QPointF middle(box.center().x(), box.center().y());
    if (look.frame == 1) {
        ink.box(box, box.height() / 2, look.is(kLit) ? palette::kInk : colours.light);
        ink.textMiddle(middle, QStringLiteral("SLIDE"), {8, 800, 0.5},
                       look.is(kLit) ? colours.light : palette::kInk);
        return;
    }
    ink.textMiddle(middle, QStringLiteral("SLIDE"), {8, 600, 0.5},
                   withAlpha(look.is(kLit) ? palette::kInk : palette::kText, look.is(kAsleep) ? 0.35 : 0.5));
}

// Nothing while all is heard. Over a module a word, over a drum its letter.
void paintMuteLamp(const Ink& ink, const Look& look, const QRectF& box) {
    if (look.frame == 0) return;
    const bool solo = look.frame == 2;
    const bool word = box.width() > 20;
    const QString text =
        word ? (solo ? QStringLiteral("SOLO") : QStringLiteral("MUTE")) : QString(QChar(solo ? 'S' : 'M'));
    ink.box(box, word ? box.height() / 2 : 4, solo ? palette::kPlay : palette::kRecord);
    ink.textMiddle(box.center(), text, {word ? 10.0 : 9.0, 800, word ? 0.6 : 0.0}, palette::kInk);
}

} // namespace marlune
