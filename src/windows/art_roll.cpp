// The time axis of a module and the rolls of the basslines: lamps, loop, step caps, keyboard, notes, lanes.

#include <QPainterPath>
#include <array>

#include "picture/arts.h"
#include "project/project_record.h"
#include "windows/arts.h"
#include "windows/marks.h"

namespace marlune {

namespace {

constexpr double kPadBand = 0.1; // opacity
constexpr int kRows = kTopNote + 1;
constexpr std::array<bool, kRows> kIsBlack{false, true, false, true, false, false, true,
                                           false, true, false, true, false, false};
constexpr const char* kWhiteNames[] = {"C", "", "D", "", "E", "F", "", "G", "", "A", "", "B", "C"};

const palette::ModuleColours& coloursOf(const TileLook& look) {
    return palette::kModules[look.module];
}

bool evenBeat(int step) {
    return step / 4 % 2 == 0;
}

QRectF rowBox(const QRectF& box, int note) {
    const double height = box.height() / kRows;
    return QRectF(box.left(), box.top() + (kTopNote - note) * height, box.width(), height);
}

QRgb octaveColour(const TileLook& look) {
    const bool asleep = look.is(kTileAsleep);
    if (look.is(kTileUp)) return (asleep ? palette::kAsleepUp : palette::kOctaveUp)[look.module];
    if (look.is(kTileLow)) return (asleep ? palette::kAsleepDown : palette::kOctaveDown)[look.module];
    return asleep ? coloursOf(look).lightAsleep : coloursOf(look).light;
}

void whiteKey(const Ink& ink, const QRectF& row, QRgb lit) {
    const QRectF key = row.adjusted(0, 0.3, 0, -0.3);
    if (lit == 0) {
        ink.box(key, 1.5, Fade(rgb(0xDBE0E4), rgb(0xEEF1F3)));
        return;
    }
    ink.box(key, 1.5, lit);
    ink.box(key, 1.5, Fade(white(0.25), 0.45, white(0.04), black(0.07)));
}

void keyName(const Ink& ink, const QRectF& row, int note, bool lit) {
    const bool c = note % 12 == 0;
    ink.text({row.right() - 4.5, row.center().y() + 3.5}, QString::fromLatin1(kWhiteNames[note]),
             {row.height() > 13 ? 10.5 : 9.5, c || lit ? 700 : 500}, palette::kInk, Anchor::right);
}

void blackKey(const Ink& ink, const QRectF& row, QRgb lit) {
    const double length = row.width() * 0.6;
    ink.box(row, 0, rgb(0xB9C1C8));
    thinLine(ink, {row.left() + length, row.center().y()}, {row.right(), row.center().y()}, rgb(0x06080B),
             0.8);
    const QRectF key(row.left(), row.top() + 0.2, length, row.height() - 0.4);
    if (lit == 0) {
        ink.box(key, 1.5, Fade(rgb(0x343C46), rgb(0x20262D)));
        return;
    }
    ink.box(key, 1.5, lit);
    ink.box(key, 1.5, Fade(white(0.25), 0.45, white(0.04), black(0.07)));
}

void noteArrow(const Ink& ink, const TileLook& look, const QRectF& note) {
    if (!look.is(kTileUp) && !look.is(kTileLow)) return;
    const double aside = look.is(kTileAccent) ? 2.6 : 0;
    octaveArrow(ink, {note.center().x() + aside, note.center().y()}, look.is(kTileUp), 1, palette::kInk);
}

void soundingNote(const Ink& ink, const TileLook& look, const QRectF& row) {
    const QRectF note = row.adjusted(0, 0.6, 0, -0.6);
    const bool asleep = look.is(kTileAsleep);
    const bool playing = look.is(kTilePlaying);
    if ((look.is(kTileAccent) || playing) && !asleep)
        ink.halo(row.adjusted(0, 1, 0, -1), 2.5, coloursOf(look).light, playing ? 1.3 : 1, 0.55);
    ink.box(note, 2.5, octaveColour(look));
    if (playing)
        ink.box(note, 2.5, white(0.62));
    else
        ink.box(note, 2.5, Fade(white(0.21), 0.45, white(0.03), black(0.06)));
    noteArrow(ink, look, note);
    if (!look.is(kTileAccent)) return;
    ink.box(QRectF(note.left(), note.top(), 3.6, note.height()), 1.8, palette::kInk);
    ink.box(QRectF(note.left() + 0.6, note.top() + 0.6, 2.4, note.height() - 1.2), 1.2,
            asleep ? palette::kMoonlight : rgb(0xFFFFFF));
}

} // namespace

void artRail(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    const double radius = box.height() / 2;
    ink.box(box.translated(0, ink.hair()), radius, white(0.07));
    ink.box(box, radius, palette::kRail);
    if (look.is(kTileEdit)) ink.box(box, radius, withAlpha(coloursOf(look).light, 0.17));
}

void artLamp(const Ink& ink, const TileLook& look, const QRectF& box) {
    const palette::ModuleColours& colours = coloursOf(look);
    const QPointF centre = box.center();
    if (look.is(kTileLit)) {
        ink.glow(centre, 13, colours.light, 1);
        ink.disc(centre, 4.1, colours.light);
        ink.disc(centre, 2.5, colours.lampCore);
        return;
    }
    ink.disc(centre, 3.4, black(0.6));
    ink.disc(centre, 2.7, colours.lampOff);
    ink.disc(centre, 2.7, withAlpha(colours.light, 0.18));
}

void artBracket(const Ink& ink, const TileLook& look, const QRectF& box) {
    const double half = ink.hair() / 2;
    QPainterPath path(QPointF(half, 3));
    path.lineTo(half, half);
    path.lineTo(box.width() - half, half);
    path.lineTo(box.width() - half, 3);
    ink.stroke(path, withAlpha(coloursOf(look).light, 0.75), 1.3 * ink.hair());
}

void artGrip(const Ink& ink, const TileLook& look, const QRectF& box) {
    if (look.is(kTileAsleep)) return;
    ink.box(box, 2.5, coloursOf(look).light);
    if (look.is(kTileHover) || look.is(kTileDown)) ink.box(box, 2.5, white(0.35));
    for (const double x : {2.0, 5.0}) ink.vertical(x, 2, 7, withAlpha(palette::kInk, 0.7));
}

void artStepCap(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool beat = look.number % 4 == 0;
    const double size = box.width() > 20 ? 11.5 : 10.5;
    const double spacing = look.number >= 9 ? -0.2 : 0;
    const QPointF middle(box.center().x(), box.height() / 2 - 0.9 + (look.is(kTileDown) ? ink.hair() : 0));
    const QString label = QString::number(look.number + 1);
    if (look.is(kTileLit)) {
        ink.halo(box, 4, coloursOf(look).light, 1, 0.45);
        litFace(ink, box, 4, coloursOf(look).light, look.is(kTileDown));
        ink.textMiddle(middle, label, {size, 800, spacing}, palette::kInk);
    } else {
        ink.cap(box, 4, beat ? coloursOf(look).cap : coloursOf(look).capBetween, look.is(kTileDown));
        if (look.is(kTileBeyond)) ink.box(box, 4, withAlpha(palette::kRail, 0.5));
        const QRgb colour = look.is(kTileBeyond) ? palette::kDigitOff
                            : beat               ? palette::kText
                                                 : palette::kCaption;
        ink.textMiddle(middle, label, {size, beat ? 600 : 500, spacing}, colour);
    }
    if (look.is(kTileHover)) ink.box(box.adjusted(0, 0, 0, -2), 4, white(kHoverLight));
}

void artKeys(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool asleep = look.is(kTileAsleep);
    const QRgb light = asleep ? coloursOf(look).lightAsleep : coloursOf(look).light;
    ink.box(ink.snapped(box.adjusted(-1, -1, 1, 1)), 3, rgb(0x06080B));
    for (int note = 0; note < kRows; ++note) {
        if (kIsBlack[note])
            blackKey(ink, rowBox(box, note), 0);
        else
            whiteKey(ink, rowBox(box, note), 0);
    }
    for (int note = 0; note < kRows; ++note)
        if (!kIsBlack[note]) keyName(ink, rowBox(box, note), note, false);
    if (asleep) ink.box(box, 0, withAlpha(rgb(0x1B2129), 0.42));
    if (look.number >= 0) {
        const QRectF row = rowBox(box, look.number);
        if (kIsBlack[look.number])
            blackKey(ink, row, light);
        else
            whiteKey(ink, row, light);
        if (!kIsBlack[look.number]) keyName(ink, row, look.number, true);
    }
    if (look.second >= 0 && !asleep) {
        QRectF row = rowBox(box, look.second);
        if (kIsBlack[look.second]) row.setWidth(row.width() * 0.6);
        ink.box(row, 1.5, kIsBlack[look.second] ? white(0.16) : black(0.1));
    }
}

void artRollGlass(const Ink& ink, const TileLook& /*look*/, const QRectF& area) {
    const QRectF box = ink.snapped(area.adjusted(-2, -1.5, 2, 1.5));
    ink.box(box.translated(0, ink.hair()), 3.5, white(0.08));
    ink.box(box.adjusted(-ink.hair() / 2, -ink.hair() / 2, ink.hair() / 2, ink.hair() / 2), 3.5, rgb(0));
    ink.box(box.adjusted(ink.hair() / 2, ink.hair() / 2, -ink.hair() / 2, -ink.hair() / 2), 3,
            palette::kSlotGlass);
}

void artCells(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool even = evenBeat(look.number);
    for (int note = 0; note < kRows; ++note) {
        const double opacity = kIsBlack[note] ? (even ? 0.05 : 0.04) : even ? 0.09 : 0.07;
        ink.box(rowBox(box, note).adjusted(0.5, 0.5, -0.5, -0.5), 2,
                withAlpha(palette::kCell[look.module], opacity));
    }
    if (look.is(kTileEdit)) ink.box(box, 0, withAlpha(coloursOf(look).light, palette::kColumnLight));
}

void artNote(const Ink& ink, const TileLook& look, const QRectF& box) {
    const QRectF& row = box;
    if (!look.is(kTileRest)) {
        soundingNote(ink, look, row);
        return;
    }
    const QRgb colour = look.is(kTileAsleep) ? coloursOf(look).lightAsleep : coloursOf(look).light;
    if (look.is(kTileHeld)) {
        const double back = look.second / 10.0;
        const double thick = row.height() * 0.27;
        ink.box(QRectF(row.left() - back, row.center().y() - thick / 2, row.width() + back, thick), 1.2,
                look.is(kTilePlaying) ? mixed(colour, rgb(0xFFFFFF), 0.62) : withAlpha(colour, 0.85));
        return;
    }
    ink.ring(row.center(), 2.6, withAlpha(colour, 0.5), 1.1);
}

void artHoverCell(const Ink& ink, const TileLook& look, const QRectF& area) {
    if (!look.is(kTileHover)) return;
    const QRgb light = coloursOf(look).light;
    const QRectF box = area.adjusted(0.75, 0.75, -0.75, -0.75);
    ink.box(box, 2.2, withAlpha(light, 0.22));
    ink.frame(box.adjusted(-0.65, -0.65, 0.65, 0.65), 2.8, withAlpha(light, 0.9), 1.3);
}

void artPlayingBand(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool drums = look.module == kDrumModule;
    ink.box(box, drums ? 2 : 0, white(drums ? kPadBand : palette::kColumnLight));
}

void artPastLoop(const Ink& ink, const TileLook& look, const QRectF& box) {
    if (box.width() < 2) return;
    ink.box(box, 0, withAlpha(palette::kPastLoop, 0.58));
    thinLine(ink, {0.5, 0}, {0.5, box.height()}, withAlpha(coloursOf(look).light, 0.75), 1.2);
}

void artOctaveCell(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool up = look.is(kTileUp);
    const bool asleep = look.is(kTileAsleep);
    const QPointF middle = box.center();
    if (look.is(kTileLit)) {
        ink.box(box, 2.2, octaveColour(look));
        octaveArrow(ink, middle, up, 0.95, palette::kInk);
    } else {
        ink.box(box, 2.2, withAlpha(coloursOf(look).capBetween.stops[1].colour, asleep ? 0.5 : 0.85));
        octaveArrow(ink, middle, up, 0.72, asleep ? rgb(0x667179) : rgb(0x8C969F));
    }
    if (look.is(kTileHover)) ink.box(box, 2.2, white(kHoverLight));
    if (look.is(kTileBeyond)) ink.box(box, 2.2, withAlpha(palette::kRail, 0.5));
}

void artAccentCap(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool asleep = look.is(kTileAsleep);
    const QPointF middle(box.center().x(), box.height() / 2 - 0.5 + (look.is(kTileDown) ? ink.hair() : 0));
    if (look.is(kTileLit)) {
        if (asleep) {
            ink.box(box, 3, coloursOf(look).lightAsleep);
        } else {
            ink.halo(box, 3, coloursOf(look).light, 1, 0.35);
            litFace(ink, box, 3, coloursOf(look).light, look.is(kTileDown));
        }
        accentSign(ink, middle, 1, palette::kInk);
    } else {
        ink.cap(box, 3, asleep ? palette::kCapSleeping[look.module] : coloursOf(look).capBetween,
                look.is(kTileDown));
        accentSign(ink, middle, 0.8, withAlpha(palette::kCaption, asleep ? 0.35 : 0.6));
    }
    if (look.is(kTileBeyond)) ink.box(box, 3, withAlpha(palette::kRail, 0.5));
    if (look.is(kTileHover)) ink.box(box.adjusted(0, 0, 0, -2), 3, white(kHoverLight));
}

} // namespace marlune
