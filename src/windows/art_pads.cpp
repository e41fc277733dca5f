// The drum grid: names, pads, the frame of the drum under edit.

#include "picture/arts.h"
#include "project/project_record.h"
#include "windows/arts.h"
#include "windows/marks.h"

namespace marlune {

namespace {

constexpr double kRadius = 3.5;

void litPad(const Ink& ink, const TileLook& look, const QRectF& box) {
    const palette::ModuleColours& colours = palette::kModules[look.module];
    const bool accent = look.second == kAccentRow;
    if (look.is(kTileAsleep)) {
        ink.box(box, kRadius, accent ? palette::kAsleepUp[look.module] : colours.lightAsleep);
        if (look.is(kTilePlaying)) ink.box(box, kRadius, withAlpha(palette::kPadRim, 0.6));
        return;
    }
    if (look.is(kTilePlaying)) ink.halo(box, kRadius, colours.light, 1, 0.45);
    ink.box(box.translated(0, ink.hair()), kRadius, palette::kPadLip);
    const QRectF top = box.adjusted(0, 0, 0, -0.5);
    ink.box(top, kRadius,
            look.is(kTilePlaying) ? palette::kPadRim
            : accent              ? palette::kOctaveUp[2]
                                  : colours.light);
    const QRectF inner = top.adjusted(0.5, 0.5, -0.5, -0.5);
    if (!accent) {
        QRadialGradient core(0.5, 0.5, 0.5);
        core.setCoordinateMode(QGradient::ObjectBoundingMode);
        core.setColorAt(0, QColor::fromRgba(white(0.56)));
        core.setColorAt(0.7, QColor::fromRgba(white(0.1)));
        core.setColorAt(1, QColor::fromRgba(white(0)));
        ink.painter().setBrush(core);
        ink.painter().drawRoundedRect(inner, 3, 3);
    }
    ink.frame(top, kRadius, withAlpha(palette::kPadRim, 0.55));
}

void darkPad(const Ink& ink, const TileLook& look, const QRectF& area) {
    const palette::ModuleColours& colours = palette::kModules[look.module];
    const QRectF box = area.adjusted(0, 0, 0, -1);
    const bool even = look.number / 4 % 2 == 0;
    ink.cap(box, kRadius,
            look.is(kTileAsleep) ? palette::kCapSleeping[2]
            : even               ? colours.cap
                                 : colours.capBetween,
            look.is(kTileDown));
}

} // namespace

void artDrumRow(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    const QRgb light = palette::kModules[look.module].light;
    ink.box(box, 5, withAlpha(light, 0.13));
    ink.frame(box, 5, withAlpha(light, 0.6));
}

void artDrumName(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool selected = look.is(kTileSelected);
    Type type{12, selected ? 600 : 500, -0.1};
    const QString name = QString::fromStdString(look.text);
    if (const double width = Ink::textWidth(name, type); width > box.width() - 1)
        type.size = std::max(9.0, 12 * (box.width() - 1) / width);
    const QRgb colour = selected || look.is(kTileHover) ? palette::kText : palette::kCaption;
    ink.text({3, box.height() / 2 + 4.2}, name, type, colour);
}

void artPad(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    const bool lit = look.is(kTileLit);
    if (lit)
        litPad(ink, look, box);
    else
        darkPad(ink, look, box);
    if (look.second == kAccentRow) {
        const QRgb colour = lit ? palette::kInk : withAlpha(rgb(0xCFC6BC), look.is(kTileAsleep) ? 0.3 : 0.5);
        accentSign(ink, {box.center().x(), box.center().y() - (lit ? 0 : 0.5)}, lit ? 1 : 0.8, colour);
    }
    if (look.is(kTileBeyond)) ink.box(box, kRadius, withAlpha(palette::kPastLoop, 0.58));
    if (look.is(kTileHover) || look.is(kTileDown))
        ink.box(box.adjusted(0, 0, 0, -1), kRadius, white(lit ? 0.2 : 0.1));
}

} // namespace marlune
