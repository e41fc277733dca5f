// The one-octave keyboard: C to C, black keys upon white ones.

#include <QPainterPath>
#include <array>

#include "picture/arts.h"
#include "picture/layout.h"

namespace marlune {

namespace {

constexpr std::array<int, 8> kWhite{0, 2, 4, 5, 7, 9, 11, 12};
constexpr std::array<int, 5> kBlack{1, 3, 6, 8, 10};
constexpr std::array<const char*, 8> kNames{"C", "D", "E", "F", "G", "A", "B", "C"};
constexpr double kTop = 1; // keys begin below the felt

// Square above, round below.
QPainterPath keyShape(double x, double width, double height, double radius) {
    QPainterPath path(QPointF(x, kTop));
    path.lineTo(x + width, kTop);
    path.lineTo(x + width, kTop + height - radius);
    path.quadTo(x + width, kTop + height, x + width - radius, kTop + height);
    path.lineTo(x + radius, kTop + height);
    path.quadTo(x, kTop + height, x, kTop + height - radius);
    path.closeSubpath();
    return path;
}

void fill(const Ink& ink, const QPainterPath& path, const Fade& fade) {
    const QRectF r = path.boundingRect();
    QLinearGradient gradient(r.topLeft(), r.bottomLeft());
    for (int i = 0; i < fade.count; ++i)
        gradient.setColorAt(fade.stops[i].at, QColor::fromRgba(fade.stops[i].colour));
    ink.painter().setBrush(fade.count == 1 ? QBrush(QColor::fromRgba(fade.stops[0].colour))
                                           : QBrush(gradient));
    ink.painter().setPen(Qt::NoPen);
    ink.painter().drawPath(path);
}

QRgb lightOf(const Look& look) {
    const palette::ModuleColours& colours = palette::kModules[look.module];
    return look.is(kAsleep) ? colours.lightAsleep : colours.light;
}

// The pointer's mark on a key: brighter under it, darker while held.
void touchKey(const Ink& ink, const Look& look, int note, const QPainterPath& path, bool pale) {
    if (look.variant != note + 1 || look.is(kAsleep)) return;
    if (look.is(kDown))
        fill(ink, path, Fade(black(0.28), black(0.1)));
    else
        fill(ink, path, pale ? black(0.06) : white(kHoverLight));
}

void whiteKey(const Ink& ink, const Look& look, int place) {
    const int note = kWhite[place];
    const bool asleep = look.is(kAsleep);
    const double x = 1.75 + 40 * place;
    const QPainterPath whole = keyShape(x, 38.5, 74, 4);
    if (look.frame == note) {
        fill(ink, whole, lightOf(look));
        fill(ink, whole, palette::kKeyLit);
    } else {
        fill(ink, whole, asleep ? rgb(0x5B636A) : rgb(0x8E979F));
        const bool held = look.is(kDown) && look.variant == note + 1 && !asleep;
        fill(ink, keyShape(x, 38.5, held ? 72.5 : 70.5, 4), asleep ? palette::kIvoryAsleep : palette::kIvory);
    }
    touchKey(ink, look, note, whole, true);
    const bool lit = look.frame == note;
    ink.textMiddle({x + 19.25, 61.5}, QString::fromLatin1(kNames[place]), {11, lit ? 700 : 600},
                   lit      ? palette::kInk
                   : asleep ? rgb(0x14181D)
                            : rgb(0x3D4852));
}

void blackKey(const Ink& ink, const Look& look, int note) {
    const PlacedControl& area = *placedControl(Control::sel103AButton, note);
    const double x = area.rect.x - placedControl(Control::keys, 0)->rect.x;
    fill(ink, keyShape(x - 1, 26, 47, 3.5), black(0.38));
    const QPainterPath whole = keyShape(x, 24, 45, 3.5);
    if (look.frame == note) {
        if (!look.is(kAsleep)) ink.halo(QRectF(x, kTop + 4, 24, 41), 4, lightOf(look), 0.8);
        fill(ink, whole, lightOf(look));
        fill(ink, whole, palette::kKeyLit);
    } else {
        fill(ink, whole, rgb(0x0C0F13));
        const bool held = look.is(kDown) && look.variant == note + 1;
        fill(ink, keyShape(x + 2, 20, held ? 40 : 38, 3.5), palette::kEbony);
    }
    touchKey(ink, look, note, whole, false);
}

} // namespace

void paintKeys(const Ink& ink, const Look& look, const QRectF& area) {
    const QRectF bed = ink.snapped(area.adjusted(-2, -3, 2, 2));
    ink.box(bed.translated(0, ink.hair()), 7, white(0.06));
    ink.box(bed, 7, rgb(0x07090C));
    for (int place = 0; place < 8; ++place) whiteKey(ink, look, place);
    for (const int note : kBlack) blackKey(ink, look, note);
    ink.box(QRectF(area.left() - 1, area.top() - 2, area.width() + 2, 5), 0, palette::kKeyShade);
}

} // namespace marlune
