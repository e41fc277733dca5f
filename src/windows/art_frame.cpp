// The frame of a window: bed, strip, plates, status bar, and the caps and displays on the strip and in the
// headers.

#include <QPainterPath>

#include "picture/arts.h"
#include "windows/arts.h"
#include "windows/marks.h"

namespace marlune {

namespace {

constexpr double kPlateRadius = 11;

const palette::ModuleColours& coloursOf(const TileLook& look) {
    return palette::kModules[look.module];
}

void hoverFilm(const Ink& ink, const TileLook& look, const QRectF& box, double radius) {
    if (look.is(kTileHover)) ink.box(box.adjusted(0, 0, 0, -1.5), radius, white(kHoverLight));
}

void plate(const Ink& ink, const QRectF& box, const Fade& fade) {
    struct Shadow {
        double down, opacity;
    };
    for (const Shadow& s : {Shadow{1, 0.3}, Shadow{3, 0.16}, Shadow{6, 0.09}})
        ink.box(box.adjusted(-1, s.down, 1, s.down), kPlateRadius + 1, black(s.opacity));
    ink.box(box, kPlateRadius, fade);
}

void wash(const Ink& ink, const QRectF& box, QRgb light) {
    constexpr double kHeight = 50;
    constexpr double kReach = 70;
    ink.painter().save();
    ink.painter().setClipRect(QRectF(box.left(), box.top(), box.width(), kHeight), Qt::IntersectClip);
    ink.box(QRectF(box.left(), box.top(), box.width(), kReach), kPlateRadius,
            Fade(withAlpha(light, 0.2), withAlpha(light, 0.03)));
    ink.painter().restore();
}

void bentArrow(const Ink& ink, QPointF c, double turn, QRgb colour) { // turn 1: undo, -1: redo
    QPainterPath path(QPointF(c.x() - turn * 4.5, c.y() - 4.5));
    path.lineTo(c.x() + turn * 1.5, c.y() - 4.5);
    path.cubicTo(c.x() + turn * 6.8, c.y() - 4.5, c.x() + turn * 6.8, c.y() + 3.5, c.x() + turn * 1.5,
                 c.y() + 3.5);
    path.lineTo(c.x() - turn * 1.5, c.y() + 3.5);
    ink.stroke(path, colour, 1.7);
    QPainterPath head(QPointF(c.x() - turn * 1.6, c.y() - 7.9));
    head.lineTo(c.x() - turn * 5, c.y() - 4.5);
    head.lineTo(c.x() - turn * 1.6, c.y() - 1.1);
    ink.stroke(head, colour, 1.7);
}

void capSign(const Ink& ink, CapSign sign, QPointF c, QRgb colour) {
    switch (sign) {
        case CapSign::undo: bentArrow(ink, c, 1, colour); break;
        case CapSign::redo: bentArrow(ink, c, -1, colour); break;
        case CapSign::plus:
            thinLine(ink, {c.x(), c.y() - 5}, {c.x(), c.y() + 3}, colour, 1.7);
            [[fallthrough]];
        case CapSign::minus:
            thinLine(ink, {c.x() - 4, c.y() - 1}, {c.x() + 4, c.y() - 1}, colour, 1.7);
            break;
        case CapSign::compact:
        case CapSign::wide: {
            const bool one = sign == CapSign::compact;
            const double half = one ? 7 : 9;
            QPainterPath path;
            path.addRect(QRectF(c.x() - half, c.y() - 5.5, 2 * half, 10));
            ink.stroke(path, colour, 1.5);
            for (const double x : one ? std::array{-1.5, -1.5} : std::array{-3.0, 3.0})
                thinLine(ink, {c.x() + x, c.y() - 5.5}, {c.x() + x, c.y() + 4.5}, colour, 1.5);
            if (one) ink.box(QRectF(c.x() - 6.3, c.y() - 4.8, 4, 8.6), 0, withAlpha(colour, 0.5));
            break;
        }
        case CapSign::fit: {
            QPainterPath path;
            for (const double side : {-1.0, 1.0}) {
                path.moveTo(c.x() + side * 7, c.y() - 5.5);
                path.lineTo(c.x() + side * 7, c.y() + 4.5);
                path.moveTo(c.x() + side * 2, c.y() - 3.1);
                path.lineTo(c.x() + side * 4.6, c.y() - 0.5);
                path.lineTo(c.x() + side * 2, c.y() + 2.1);
            }
            path.moveTo(c.x() - 4, c.y() - 0.5);
            path.lineTo(c.x() + 4, c.y() - 0.5);
            ink.stroke(path, colour, 1.5);
            break;
        }
        case CapSign::dock: {
            QPainterPath path;
            path.addRect(QRectF(c.x() - 8, c.y() - 6.5, 16, 12));
            ink.stroke(path, colour, 1.5);
            thinLine(ink, {c.x() - 8, c.y() + 1}, {c.x() + 8, c.y() + 1}, colour, 1.5);
            ink.box(QRectF(c.x() - 7.2, c.y() + 1.7, 14.4, 3.4), 0, withAlpha(colour, 0.55));
            break;
        }
        default: break;
    }
}

void chevrons(const Ink& ink, double middleX, double middleY, QRgb colour) {
    for (const double turn : {-1.0, 1.0}) {
        QPainterPath path(QPointF(middleX - 2.5, middleY + turn * 2));
        path.lineTo(middleX, middleY + turn * 5);
        path.lineTo(middleX + 2.5, middleY + turn * 2);
        path.closeSubpath();
        ink.shape(path, withAlpha(colour, 0.75));
    }
}

QRgb digitLight(const TileLook& look) {
    return look.is(kTileCued) ? palette::kMoonlight : coloursOf(look).light;
}

QPointF digitOrigin(const TileLook& look, const QRectF& box) {
    const double width = (look.number * 6.0 - 1) * look.second;
    const bool atLeft = look.is(kTileSelected) || look.is(kTileHeld);
    return {atLeft ? 12 : (box.width() - width) / 2, (box.height() - 7.0 * look.second) / 2};
}

} // namespace

void artBed(const Ink& ink, const TileLook& /*look*/, const QRectF& box) {
    ink.box(box.adjusted(0, 0, 1, 1), 0, palette::kBed);
}

void artStrip(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    plate(ink, box, palette::kModules[3].plate);
    ink.frame(box, kPlateRadius, palette::kPlateEdge);
    if (look.text.empty()) return;
    paintLogo(ink, {box.left() + 26, box.top() + 22}, 14.3);
    ink.text({box.left() + 48, box.top() + 28}, QString::fromStdString(look.text), {17, 600, -0.1},
             palette::kText);
}

void artPlate(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    const palette::ModuleColours& colours = coloursOf(look);
    const bool edit = look.is(kTileEdit);
    if (edit) ink.halo(box, kPlateRadius, colours.light, 1, 0.55);
    plate(ink, box, colours.plate);
    if (edit) wash(ink, box, colours.light);
    ink.frame(box, kPlateRadius, palette::kPlateEdge);
    if (edit) ink.frame(box.adjusted(0.1, 0.1, -0.1, -0.1), kPlateRadius, colours.light, 1.8);
    if (look.text.empty()) return;
    ink.box(QRectF(box.left(), box.top() + 20, 3, 24), 1.5, colours.light);
    ink.text({box.left() + 14, box.top() + 41}, QString::fromStdString(look.text), {25, 700, -0.4},
             palette::kText);
    ink.horizontal(box.left() + 14, box.right() - 14, box.top() + 51, black(0.35));
    ink.horizontal(box.left() + 14, box.right() - 14, box.top() + 51 + ink.hair(), white(0.05));
}

void artStatus(const Ink& ink, const TileLook& look, const QRectF& box) {
    constexpr Type kType{12, 500};
    ink.box(box.adjusted(0, 0, 1, 1), 0, palette::kBarGround);
    ink.horizontal(box.left(), box.right() + 1, box.top(), white(0.07));
    QString left = QString::fromStdString(look.text);
    double x = 14;
    if (look.is(kTileLit)) {
        ink.text({x, 16.4}, QStringLiteral("!"), {12, 800}, palette::kMoonlight);
        x += 9;
    }
    constexpr double kLetter = 6.6; // on the average
    const double room = box.width() - x - 14 - (look.number > 0 ? look.number * kLetter + 16 : 0);
    if (Ink::textWidth(left, kType) > room) {
        while (left.size() > 1 && Ink::textWidth(left + QChar(0x2026), kType) > room) left.chop(1);
        left += QChar(0x2026);
    }
    ink.text({x, 16.4}, left, kType, look.is(kTileLit) ? palette::kMoonlight : palette::kCaption);
}

void artStatusRight(const Ink& ink, const TileLook& look, const QRectF& box) {
    ink.text({box.right() - 14, 16.4}, QString::fromStdString(look.text), {12, 500}, palette::kCaption,
             Anchor::right);
}

void artModeSwitch(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool song = look.is(kTileLit);
    ink.glass(box, 8, 0);
    const QRectF thumb(song ? 66 : 3, 3, 63, 26);
    if (song) {
        ink.halo(thumb, 6, palette::kMoonlight, 1, 0.45);
        litFace(ink, thumb, 6, palette::kMoonlight, look.is(kTileDown));
    } else {
        ink.cap(thumb, 6, palette::kFaceHigh, look.is(kTileDown));
    }
    hoverFilm(ink, look, thumb, 6);
    ink.text({34.5, 19.6}, QStringLiteral("PATTERN"), {10.5, song ? 600 : 700, 0.3},
             song ? rgb(0x9AA5B0) : palette::kText, Anchor::middle);
    ink.text({97.5, 19.6}, QStringLiteral("SONG"), {10.5, song ? 700 : 600, 0.3},
             song ? palette::kInk : rgb(0x9AA5B0), Anchor::middle);
}

void artStartStop(const Ink& ink, const TileLook& look, const QRectF& box) {
    const bool running = look.is(kTileLit);
    if (running) {
        ink.halo(box, 7, palette::kPlay, 1, 0.7);
        litFace(ink, box, 7, palette::kPlay, look.is(kTileDown));
    } else {
        ink.cap(box, 7, palette::kModules[3].cap, look.is(kTileDown));
    }
    const double y = 15.5 + (look.is(kTileDown) ? ink.hair() : 0);
    QPainterPath arrow(QPointF(21, y - 6.5));
    arrow.lineTo(21, y + 6.5);
    arrow.lineTo(32, y);
    arrow.closeSubpath();
    ink.shape(arrow, running ? palette::kInk : palette::kPlay, 1.2);
    const double middle = box.center().x() - 42;
    thinLine(ink, {40.5 + middle / 2, y + 6}, {43.5 + middle / 2, y - 6},
             withAlpha(running ? palette::kInk : rgb(0x8994A0), 0.7), 1.4);
    ink.box(QRectF(51 + 2 * middle, y - 5.5, 11, 11), 1.6, running ? palette::kInk : palette::kText);
    hoverFilm(ink, look, box, 7);
}

void artViewOnly(const Ink& ink, const TileLook& look, const QRectF& box) {
    if (!look.is(kTileLit)) return;
    const QRgb colour = palette::kMoonlight;
    ink.frame(box, box.height() / 2, withAlpha(colour, 0.55));
    QPainterPath eye(QPointF(13, 12));
    eye.quadTo(20, 4, 27, 12);
    eye.quadTo(20, 20, 13, 12);
    ink.stroke(eye, colour, 1.4);
    ink.disc({20, 12}, 2.1, colour);
    ink.text({34, 15.7}, QStringLiteral("VIEW ONLY"), {10.5, 700, 0.7}, colour);
}

void artCaption(const Ink& ink, const TileLook& look, const QRectF& box) {
    if (look.is(kTileSelected)) { // beside a lane
        ink.text({box.right() - 4, box.center().y() + 3.4}, QString::fromStdString(look.text),
                 {9.5, 600, 0.3}, palette::kCaption, Anchor::right);
        return;
    }
    caption(ink, {box.left(), box.bottom()}, look.text.c_str());
}

void artCap(const Ink& ink, const TileLook& look, const QRectF& box) {
    QPointF middle = box.center();
    QRgb colour = palette::kText;
    if (look.is(kTileAsleep)) {
        hollowCap(ink, box, 5);
        colour = rgb(0x6E7883);
    } else {
        ink.cap(box, 5, palette::kModules[3].cap, look.is(kTileDown));
        hoverFilm(ink, look, box, 5);
        if (look.is(kTileDown)) middle.ry() += ink.hair();
    }
    if (look.number >= 0)
        capSign(ink, static_cast<CapSign>(look.number), middle, colour);
    else
        ink.textMiddle(middle, QString::fromStdString(look.text), {10.5, 600, -0.2}, colour);
}

void artLabelGlass(const Ink& ink, const TileLook& look, const QRectF& box) {
    ink.glass(box, 5, 0);
    if (look.is(kTileHover)) ink.box(box, 5, white(kHoverLight));
    ink.textMiddle({box.center().x(), box.center().y() - 0.2}, QString::fromStdString(look.text), {11.5, 600},
                   palette::kText);
}

void artDigits(const Ink& ink, const TileLook& look, const QRectF& box) {
    const QRgb light = digitLight(look);
    ink.glass(box, 5, light);
    if (look.is(kTileHover)) ink.box(ink.snapped(box), 5, white(kHoverLight));
    DotText text{{}, look.second, look.number, light};
    ink.dots(digitOrigin(look, box), text);
    if (look.is(kTileSelected)) chevrons(ink, box.width() - 8, box.center().y(), light);
}

void artLitPlace(const Ink& ink, const TileLook& look, const QRectF& box) {
    DotText text{look.text, look.second, look.number, digitLight(look)};
    text.unlit = 0;
    if (look.is(kTileAsleep)) text.lit = 0.72, text.glow = false;
    ink.dots(digitOrigin(look, box), text);
}

void artCueArrow(const Ink& ink, const TileLook& look, const QRectF& box) {
    cueArrow(ink, {box.left(), box.center().y()}, box.width(), box.height() - 1,
             look.is(kTileCued) ? palette::kMoonlight : rgb(0x6E7883));
}

void artPill(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    const double radius = box.height() / 2;
    if (look.is(kTileLit)) {
        ink.halo(box, radius, coloursOf(look).light, 1, 0.6);
        litFace(ink, box, radius, coloursOf(look).light, look.is(kTileDown));
        ink.disc({14, 10.5}, 3.4, palette::kInk);
        ink.text({23, 14.4}, QStringLiteral("EDIT"), {10.5, 800, 0.6}, palette::kInk);
    } else {
        ink.frame(box, radius, white(0.26));
        ink.ring({14, 11}, 3, palette::kCaption, 1.3);
        ink.text({23, 14.8}, QStringLiteral("EDIT"), {10.5, 600, 0.6}, palette::kCaption);
    }
    if (look.is(kTileHover)) ink.box(box, radius, white(kHoverLight));
}

void artModuleTab(const Ink& ink, const TileLook& look, const QRectF& box) {
    const palette::ModuleColours& colours = coloursOf(look);
    const bool lit = look.is(kTileLit);
    if (lit) {
        const QRectF r = ink.snapped(box);
        ink.halo(r, 7, colours.light, 1, 0.4);
        ink.box(r, 7, colours.cap);
        ink.frame(r, 7, colours.light, 1.6);
    } else {
        ink.cap(box, 7, colours.capBetween, look.is(kTileDown));
    }
    hoverFilm(ink, look, box, 7);
    const std::size_t split = look.text.find('\n');
    ink.text({11, 22}, QString::fromStdString(look.text.substr(0, split)), {16, 700},
             lit ? palette::kText : palette::kCaption);
    const QRectF glass(62, 5, 54, 22);
    ink.glass(glass, 4, colours.light);
    ink.dots({67, 9}, {look.text.substr(split + 1), 2, 2, colours.light});
    if (look.is(kTileCued)) {
        cueArrow(ink, {97, 16}, 7, 9, palette::kMoonlight);
    } else {
        ink.disc({103, 16}, 3.4, black(0.6));
        ink.disc({103, 16}, 2.7, colours.lampOff);
        ink.disc({103, 16}, 2.7, withAlpha(colours.light, 0.18));
    }
}

} // namespace marlune
