// The live thumbnails of the patterns.

#include <QPainterPath>

#include "picture/arts.h"
#include "project/project_record.h"
#include "score/sheet_state.h"
#include "windows/arts.h"
#include "windows/marks.h"

namespace marlune {

namespace {

constexpr double kRadius = 4;

void emptySlot(const Ink& ink, const QRectF& box, QRgb light, bool dash) {
    const QRectF r = box.adjusted(0.5, 0.5, -0.5, -0.5);
    ink.box(r, kRadius, black(0.14));
    ink.frame(box, kRadius, white(0.07));
    if (dash)
        thinLine(ink, {box.center().x() - 4, box.center().y()}, {box.center().x() + 4, box.center().y()},
                 withAlpha(light, 0.24), 1.2);
}

QPainterPath dotsOf(const TileLook& look, const QRectF& picture, bool drums) {
    return patternDots(look.text, look.number, picture, drums);
}

} // namespace

void artSlotNumber(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool selected = look.is(kTileSelected);
    const bool letter = look.text[0] >= 'A';
    const double down = letter ? -0.2 : 2.4;
    ink.textMiddle({box.center().x(), box.center().y() + down}, QString::fromStdString(look.text),
                   {letter ? 11.0 : 10.0, selected ? 700 : 600},
                   selected ? palette::kText : palette::kQuietText);
}

void artSlotGlow(const Ink& ink, const TileLook& look, const QRectF& box) {
    if (look.is(kTileLit) && !look.is(kTileAsleep))
        ink.halo(box, kRadius, palette::kModules[look.module].light, 1, 0.5);
}

void artSlot(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    const palette::ModuleColours& colours = palette::kModules[look.module];
    const auto kind = static_cast<SheetSlot::Kind>(look.second);
    const bool lit = look.is(kTileLit);
    const bool asleep = look.is(kTileAsleep);
    if (lit) {
        ink.box(box, kRadius, asleep ? colours.lightAsleep : colours.light);
        ink.box(box, kRadius, Fade(white(0.21), 0.45, white(0.03), black(0.06)));
    } else if (kind == SheetSlot::Kind::music) {
        ink.box(box, kRadius, palette::kSlotGlass);
        ink.frame(box, kRadius, white(0.13));
    } else {
        emptySlot(ink, box, colours.light, kind == SheetSlot::Kind::fresh);
    }
    if (kind == SheetSlot::Kind::music) {
        const QRgb colour =
            lit ? palette::kInk : withAlpha(asleep ? colours.lightAsleep : colours.light, 0.78);
        ink.shape(dotsOf(look, box.adjusted(3, 3, -3, -3), look.module == kDrumModule), colour);
    } else if (lit && kind == SheetSlot::Kind::fresh) {
        thinLine(ink, {box.center().x() - 4, box.center().y()}, {box.center().x() + 4, box.center().y()},
                 palette::kInk, 1.4);
    }
    if (look.is(kTileHover)) ink.box(box, kRadius, white(kHoverLight));
    if (look.is(kTileCued)) {
        const QRgb moon = look.is(kTileBright) ? rgb(0xFFFFFF) : palette::kMoonlight;
        ink.frame(box.adjusted(-2.15, -2.15, 2.15, 2.15), 6, moon, look.is(kTileBright) ? 2.4 : 1.8);
        cueArrow(ink, {box.right() - 8, box.top() + 6.5}, 5.5, 7, moon, true);
    }
    if (look.is(kTileChanged)) {
        ink.disc({box.right() - 1, box.top() + 1}, 4.4, palette::kRail);
        ink.disc({box.right() - 1, box.top() + 1}, 3, palette::kMoonlight);
    }
}

void artOther(const Ink& ink, const TileLook& look, const QRectF& box) {
    const QRgb light = palette::kModules[look.module].light;
    ink.glass(box, 5, light);
    if (look.is(kTileHover)) ink.box(box, 5, white(kHoverLight));
    const QRectF picture = box.adjusted(7, 6, -7, -6);
    const bool drums = look.module == kDrumModule;
    ink.shape(dotsOf(look, picture, drums), withAlpha(light, 0.85));
    if (look.second < 0) return;
    const double pitch = picture.width() * 1.01 / kSteps;
    ink.box(QRectF(picture.left() + look.second * pitch - 0.5, box.top() + 1.5, pitch, box.height() - 3), 1,
            white(0.16));
}

} // namespace marlune
