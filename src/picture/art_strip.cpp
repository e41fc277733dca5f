// The transport strip: mode switch, start and stop, song transport.

#include <QPainterPath>
#include <array>
#include <span>

#include "picture/arts.h"

namespace marlune {

namespace {

QPainterPath arrowHead(double x, double y, double length, double half) { // length < 0 points left
    QPainterPath path(QPointF(x, y - half));
    path.lineTo(x, y + half);
    path.lineTo(x + length, y);
    path.closeSubpath();
    return path;
}

struct Bar {
    double x, height;
    bool pale;
};

void bars(const Ink& ink, double middle, double foot, double width, double radius, std::span<const Bar> list,
          QRgb colour) {
    for (const Bar& bar : list)
        ink.box(QRectF(middle + bar.x, foot - bar.height, width, bar.height), radius,
                bar.pale ? withAlpha(colour, 0.55) : colour);
}

// Four steps, and a line of music that rises and falls.
constexpr Bar kPatternBars[] = {{-10.25, 8, false}, {-3.75, 8, true}, {2.75, 8, false}, {9.25, 8, true}};
constexpr Bar kSongBars[] = {
    {-12.75, 5, false}, {-7.35, 5, false}, {-1.95, 9, false}, {3.45, 9, false}, {8.85, 5, false}};

void switchSide(const Ink& ink, bool song, bool active, bool lit) {
    const double middle = song ? 95 : 33;
    const QRgb colour = lit ? palette::kInk : active ? palette::kText : rgb(0x9AA5B0);
    ink.textMiddle({song ? 95.2 : 32.75, 38.5}, song ? QStringLiteral("SONG") : QStringLiteral("PATTERN"),
                   {10.5, active ? 700 : 600, 0.3}, colour);
    if (song)
        bars(ink, middle, 22.5, 4, 0.8, kSongBars, colour);
    else
        bars(ink, middle - 2, 23.5, 4.5, 1, kPatternBars, colour);
}

// Symbols of the song transport, in the order of the buttons; x and y is the middle of the cap.
void transportSymbol(const Ink& ink, int button, QPointF c, QRgb colour) {
    const double x = c.x();
    const double y = c.y();
    switch (button) {
        case 0: {
            QPainterPath line(QPointF(x - 6.5, y - 7));
            line.lineTo(x - 6.5, y + 7);
            ink.stroke(line, colour, 2.6);
            ink.shape(arrowHead(x + 6.71, y, -10.6, 6.4), colour, 1.4);
            break;
        }
        case 1:
            for (const double at : {-0.53, 8.97}) ink.shape(arrowHead(x + at, y, -8.94, 5.4), colour, 1.4);
            break;
        case 2:
            for (const double at : {-8.97, 0.53}) ink.shape(arrowHead(x + at, y, 8.94, 5.4), colour, 1.4);
            break;
        case 3: ink.shape(arrowHead(x + 2.3, y, -6.3, 3.8), colour, 1.4); break;
        case 4: ink.shape(arrowHead(x - 2.3, y, 6.3, 3.8), colour, 1.4); break;
        case 5: ink.box(QRectF(x - 7, y - 7, 14, 14), 2, colour); break;
        case 6: ink.shape(arrowHead(x - 5.89, y, 13.25, 8), colour, 1.4); break;
        default: ink.disc(c, 7.6, colour); break;
    }
}

constexpr int kPlayButton = 6;
constexpr int kRecordButton = 7;

void hollowCap(const Ink& ink, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    ink.box(box, 6, white(0.04));
    ink.frame(box, 6, white(0.1));
}

} // namespace

void paintModeSwitch(const Ink& ink, const Look& look, const QRectF& box) {
    const bool song = look.frame == 1;
    ink.glass(box, 9, 0);
    const QRectF thumb(song ? 64 : 3, 3, 61, 50);
    if (song) {
        ink.halo(thumb, 7, palette::kMoonlight, 0.9);
        ink.litCap(thumb, 7, palette::kMoonlight, look.is(kDown));
    } else {
        ink.cap(thumb, 7, palette::kFaceHigh, look.is(kDown));
    }
    if (look.is(kHover)) ink.box(thumb.adjusted(0, 0, 0, -2), 7, white(kHoverLight));
    switchSide(ink, false, !song, false);
    switchSide(ink, true, song, song);
}

void paintStartStop(const Ink& ink, const Look& look, const QRectF& box) {
    const bool running = look.is(kLit);
    if (running)
        ink.litCap(box, 8, palette::kPlay, look.is(kDown));
    else
        ink.cap(box, 8, palette::kModules[look.module].cap, look.is(kDown));
    const double x = box.center().x();
    const double y = 26.5 + (look.is(kDown) ? ink.hair() : 0);
    ink.shape(arrowHead(x - 21.62, y, 14.9, 9), running ? palette::kInk : palette::kPlay, 1.4);
    QPainterPath slash(QPointF(x + 2, y + 8));
    slash.lineTo(x + 6, y - 8);
    ink.stroke(slash, running ? withAlpha(palette::kInk, 0.6) : withAlpha(0x8994A0, 0.7), 1.4);
    ink.box(QRectF(x + 13, y - 7.5, 15, 15), 2, running ? palette::kInk : palette::kText);
    if (look.is(kHover)) ink.box(box.adjusted(0, 0, 0, -2), 8, white(kHoverLight));
}

void paintTransport(const Ink& ink, const Look& look, const QRectF& box) {
    const bool lightsUp = look.variant == kPlayButton || look.variant == kRecordButton;
    QRgb colour = look.frame == 0 ? palette::kSymbolOff : palette::kText;
    if (look.frame == 0) {
        hollowCap(ink, box);
    } else if (look.frame == 1) {
        ink.cap(box, 6, palette::kModules[look.module].cap, look.is(kDown));
    } else if (lightsUp) {
        ink.litCap(box, 6, look.variant == kPlayButton ? palette::kPlay : palette::kRecord, look.is(kDown));
        colour = palette::kInk;
    } else {
        ink.cap(box, 6, palette::kFaceDown, true, false);
        colour = palette::kMoonlight;
    }
    const bool sunk = look.frame == 2 ? !lightsUp || look.is(kDown) : look.frame == 1 && look.is(kDown);
    const QPointF middle(box.center().x(), box.center().y() + (sunk ? ink.hair() : 0));
    transportSymbol(ink, look.variant, middle, colour);
    if (look.is(kHover) && look.frame > 0) ink.box(box.adjusted(0, 0, 0, -2), 6, white(kHoverLight));
}

} // namespace marlune
