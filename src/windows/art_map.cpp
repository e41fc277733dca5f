// The Song Map's strip, headers, chips and dock.

#include <QPainterPath>

#include "picture/arts.h"
#include "windows/arts.h"
#include "windows/marks.h"

namespace marlune {

namespace {

constexpr QRgb kAsleepSign = rgb(0x6E7883);
constexpr QRgb kAsleepWord = rgb(0x8A949F);
constexpr QRgb kMoonLip = rgb(0x6D695D);

const palette::ModuleColours& coloursOf(const TileLook& look) {
    return palette::kModules[look.module];
}

void film(const Ink& ink, const TileLook& look, const QRectF& box, double radius) {
    if (look.is(kTileHover)) ink.box(box.adjusted(0, 0, 0, -1.5), radius, white(kHoverLight));
}

void triangle(const Ink& ink, QPointF tip, double width, double height,
              QRgb colour) { // width < 0: to the left
    QPainterPath path(tip);
    path.lineTo(tip.x() - width, tip.y() - height / 2);
    path.lineTo(tip.x() - width, tip.y() + height / 2);
    path.closeSubpath();
    ink.shape(path, colour);
}

void transportSign(const Ink& ink, CapSign sign, QPointF c, QRgb colour) {
    switch (sign) {
        case CapSign::toStart:
            ink.box(QRectF(c.x() - 6, c.y() - 6, 2, 12), 0.8, colour);
            triangle(ink, {c.x() - 3, c.y()}, -9, 12, colour);
            break;
        case CapSign::back:
            triangle(ink, {c.x() - 7, c.y()}, -7, 10, colour);
            triangle(ink, c, -7, 10, colour);
            break;
        case CapSign::forward:
            triangle(ink, c, 7, 10, colour);
            triangle(ink, {c.x() + 7, c.y()}, 7, 10, colour);
            break;
        case CapSign::stop: ink.box(QRectF(c.x() - 5.5, c.y() - 5.5, 11, 11), 1.6, colour); break;
        case CapSign::play: {
            QPainterPath path(QPointF(c.x() - 5, c.y() - 6.5));
            path.lineTo(c.x() - 5, c.y() + 6.5);
            path.lineTo(c.x() + 7, c.y());
            path.closeSubpath();
            ink.shape(path, colour, 1);
            break;
        }
        case CapSign::record: ink.disc(c, 6.2, colour); break;
        default: break;
    }
}

void pointerSign(const Ink& ink, int pointer, QRgb colour) {
    QPainterPath path;
    if (pointer == 0) { // corners of a frame
        for (const auto& [x, y, dx, dy] :
             {std::array{10.0, 7.5, 1.0, 1.0}, std::array{20.0, 7.5, -1.0, 1.0},
              std::array{20.0, 17.5, -1.0, -1.0}, std::array{10.0, 17.5, 1.0, -1.0}}) {
            path.moveTo(x + 3 * dx, y);
            path.lineTo(x, y);
            path.lineTo(x, y + 3 * dy);
        }
        ink.stroke(path, colour, 1.6);
    } else if (pointer == 1) { // a brush
        path.moveTo(10, 17.5);
        path.lineTo(11, 13.5);
        path.lineTo(17.2, 7.3);
        path.lineTo(20.2, 10.3);
        path.lineTo(14, 16.5);
        path.closeSubpath();
        ink.stroke(path, colour, 1.5);
        QPainterPath tip(QPointF(10, 17.5));
        tip.lineTo(11, 13.5);
        tip.lineTo(14, 16.5);
        tip.closeSubpath();
        ink.shape(tip, colour);
    } else { // a rubber
        path.moveTo(9.5, 13.5);
        path.lineTo(14.5, 7.5);
        path.lineTo(20.5, 12.5);
        path.lineTo(16.1, 17.7);
        path.lineTo(12.5, 17.7);
        path.closeSubpath();
        ink.stroke(path, colour, 1.5);
        thinLine(ink, {12.4, 10.1}, {18.4, 15.1}, colour, 1.3);
    }
}

} // namespace

void artArmed(const Ink& ink, const TileLook& look, const QRectF& box) {
    if (!look.is(kTileLit)) return;
    ink.box(box, 9, withAlpha(palette::kRecord, 0.05));
    ink.frame(box, 9, palette::kRecord, 1.4);
}

void artTransportCap(const Ink& ink, const TileLook& look, const QRectF& box) {
    const auto sign = static_cast<CapSign>(look.number);
    QPointF middle(box.center().x(), box.top() + 15);
    if (look.is(kTileAsleep)) {
        hollowCap(ink, box, 5);
        transportSign(ink, sign, middle, kAsleepSign);
        return;
    }
    QRgb colour = palette::kText;
    if (look.is(kTileLit)) {
        const QRgb light = sign == CapSign::record ? palette::kRecord : palette::kPlay;
        ink.halo(ink.snapped(box), 5, light, 1, 0.55);
        litFace(ink, box, 5, light, look.is(kTileDown));
        colour = palette::kInk;
    } else {
        ink.cap(box, 5, palette::kModules[3].cap, look.is(kTileDown));
    }
    film(ink, look, box, 5);
    if (look.is(kTileDown)) middle.ry() += ink.hair();
    transportSign(ink, sign, middle, colour);
}

void artGlass(const Ink& ink, const TileLook& /*look*/, const QRectF& box) {
    ink.glass(box, 8, 0);
}

void artPointerMode(const Ink& ink, const TileLook& look, const QRectF& box) {
    constexpr const char* kWords[] = {"SELECT", "PAINT", "ERASE"};
    const bool lit = look.is(kTileLit);
    if (lit) litFace(ink, box, 6, palette::kMoonlight, look.is(kTileDown));
    if (look.is(kTileHover)) ink.box(box, 6, white(kHoverLight));
    const QRgb colour = lit ? palette::kInk : palette::kCaption;
    pointerSign(ink, look.number, colour);
    ink.text({27, 16.4}, QString::fromLatin1(kWords[look.number]), {10.5, lit ? 700 : 600, 0.3}, colour);
}

void artFollow(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool lit = look.is(kTileLit);
    if (lit) {
        ink.halo(ink.snapped(box), 6, palette::kMoonlight, 1, 0.4);
        litFace(ink, box, 6, palette::kMoonlight, look.is(kTileDown));
    } else {
        ink.cap(box, 6, palette::kModules[3].cap, look.is(kTileDown));
    }
    film(ink, look, box, 6);
    const QRgb colour = lit ? palette::kInk : palette::kCaption;
    QPainterPath path(QPointF(9, 10));
    path.lineTo(9, 22);
    path.moveTo(12, 16);
    path.lineTo(18, 16);
    path.moveTo(15.4, 13.2);
    path.lineTo(18.2, 16);
    path.lineTo(15.4, 18.8);
    ink.stroke(path, colour, 1.5);
    ink.text({23, 19.4}, QStringLiteral("FOLLOW"), {10.5, lit ? 700 : 600, 0.3}, colour);
}

void artHeader(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    const palette::ModuleColours& colours = coloursOf(look);
    ink.box(box, 5, colours.plate);
    if (look.is(kTileEdit)) {
        ink.box(box, 5, Fade(withAlpha(colours.light, 0.2), withAlpha(colours.light, 0.03)));
        ink.frame(box, 5, colours.light, 1.5);
    } else {
        ink.frame(box, 5, white(look.is(kTileHover) ? 0.16 : 0.08));
    }
    const double middle = box.height() / 2;
    ink.box(QRectF(box.left(), box.top() + middle - 9, 3, 18), 1.5, colours.light);
    const std::size_t split = look.text.find('\n');
    if (split == std::string::npos) {
        ink.text({10, middle + 5}, QString::fromStdString(look.text), {14, 700, -0.2}, palette::kText);
        return;
    }
    Type type{12, 600, -0.2};
    const QString name = QString::fromStdString(look.text.substr(0, split));
    constexpr double kRoom = 43;
    if (const double width = Ink::textWidth(name, type); width > kRoom)
        type.size = std::max(9.0, type.size * kRoom / width);
    constexpr double kTwoLines = 32;
    const bool two = box.height() >= kTwoLines;
    ink.text({10, two ? middle - 2.5 : middle + 4}, name, type, palette::kText);
    if (two)
        ink.text({10, middle + 11}, QString::fromStdString(look.text.substr(split + 1)), {10, 600, 0.5},
                 palette::kCaption);
}

void artRecordDot(const Ink& ink, const TileLook& /*look*/, const QRectF& box) {
    ink.disc(box.center(), box.width() / 2 + 1.2, palette::kRail);
    ink.disc(box.center(), box.width() / 2, palette::kRecord);
}

void artChip(const Ink& ink, const TileLook& look, const QRectF& box) {
    const palette::ModuleColours& colours = coloursOf(look);
    const bool lit = look.is(kTileLit);
    if (lit) {
        ink.halo(ink.snapped(box), 5, colours.light, 1, 0.3);
        litFace(ink, box, 5, colours.light, look.is(kTileDown));
    } else {
        ink.cap(box, 5, colours.capBetween, look.is(kTileDown));
    }
    film(ink, look, box, 5);
    ink.text({box.center().x(), 14.8}, QString::fromStdString(look.text), {11, lit ? 700 : 500, -0.1},
             lit ? palette::kInk : palette::kCaption, Anchor::middle);
    if (look.is(kTileHeld) && !lit) ink.box(QRectF(box.center().x() - 6, 17.4, 12, 1.8), 0.9, colours.light);
}

void artPalette(const Ink& ink, const TileLook& look, const QRectF& box) {
    TileLook plain = look;
    plain.text.clear();
    plain.marks = 0;
    const palette::ModuleColours& colours = coloursOf(look);
    if (look.is(kTileEdit)) ink.halo(ink.snapped(box), 11, colours.light, 1, 0.55);
    artPlate(ink, plain, box);
    if (look.is(kTileEdit))
        ink.frame(ink.snapped(box).adjusted(0.1, 0.1, -0.1, -0.1), 11, colours.light, 1.8);
    if (look.text.empty()) return;
    ink.box(QRectF(0, 9, 3, 16), 1.5, colours.light);
    ink.text({14, 22}, QString::fromStdString(look.text), {15, 700, -0.2}, palette::kText);
    ink.text({222, 19.5}, QStringLiteral("PAINT"), {10, 600, 0.9}, palette::kCaption, Anchor::right);
}

void artPaintFrame(const Ink& ink, const TileLook& /*look*/, const QRectF& area) {
    ink.frame(ink.snapped(area).adjusted(-2.15, -2.15, 2.15, 2.15), 6, palette::kText, 1.8);
}

void artToggle(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool moon = look.module == 3;
    if (look.is(kTileAsleep)) {
        hollowCap(ink, box.adjusted(0, 0, 0, 1), 4);
    } else if (look.is(kTileLit)) {
        if (moon) ink.box(ink.snapped(box), 4, kMoonLip);
        litFace(ink, box, 4, coloursOf(look).light, look.is(kTileDown));
    } else {
        ink.cap(box, 4, moon ? palette::kModules[3].capBetween : coloursOf(look).capBetween,
                look.is(kTileDown));
    }
    if (!look.is(kTileAsleep)) film(ink, look, box, 4);
    const bool lit = look.is(kTileLit) && !look.is(kTileAsleep);
    const QRgb colour = look.is(kTileAsleep) ? palette::kQuietText : lit ? palette::kInk : palette::kCaption;
    ink.text({box.center().x(), 12}, QString::fromStdString(look.text), {9.5, 700, moon ? 0 : -0.1}, colour,
             Anchor::middle);
}

void artCommand(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool asleep = look.is(kTileAsleep);
    if (asleep)
        hollowCap(ink, box.adjusted(0, 0, 0, 1), 5);
    else
        ink.cap(box, 5, palette::kModules[3].cap, look.is(kTileDown));
    if (!asleep) film(ink, look, box, 5);
    const double down = look.is(kTileDown) && !asleep ? ink.hair() : 0;
    ink.text({box.center().x(), 17.6 + down}, QString::fromStdString(look.text),
             {10.5, asleep ? 600 : 700, 0.5}, asleep ? kAsleepWord : palette::kText, Anchor::middle);
}

void artDash(const Ink& ink, const TileLook& /*look*/, const QRectF& box) {
    thinLine(ink, {box.left(), box.center().y()}, {box.right(), box.center().y()}, palette::kCaption, 1.6);
}

} // namespace marlune
