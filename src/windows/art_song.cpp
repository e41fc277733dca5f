// The Song Map's time line: ruler, runs, curves of knobs, playhead, selection, overview.

#include <QImage>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <vector>

#include "picture/arts.h"
#include "project/project_record.h"
#include "windows/arts.h"
#include "windows/marks.h"

namespace marlune {

namespace {

constexpr double kPictures = 16; // pixels a bar from which on cells have pictures
constexpr QRgb kGround = rgb(0x06080B);
constexpr std::array<std::array<QRgb, 4>, 3> kBarCell{{
    {rgb(0x356F6C), rgb(0x2D5B5A), rgb(0x26494B), rgb(0x213C3F)},
    {rgb(0x5D5B8C), rgb(0x4C4B74), rgb(0x3D3E61), rgb(0x323451)},
    {rgb(0x7D5F3B), rgb(0x654E33), rgb(0x51402C), rgb(0x413427)},
}};
constexpr std::array<std::array<QRgb, 4>, 3> kOverviewBar{{
    {rgb(0x43948C), rgb(0x3B7E79), rgb(0x346C69), rgb(0x2E5D5C)},
    {rgb(0x7672B0), rgb(0x656298), rgb(0x575584), rgb(0x4C4B74)},
    {rgb(0xA97F4A), rgb(0x906D41), rgb(0x7A5E3A), rgb(0x695134)},
}};
constexpr Fade kCellSheen{white(0.07), 0.5, white(0.01), black(0.1)};

// Numbers in the text of a look.
void put16(std::string& text, double value) {
    const auto number = static_cast<unsigned>(std::lround(std::clamp(value, 0.0, 65535.0)));
    text += static_cast<char>(number >> 8U);
    text += static_cast<char>(number & 0xFFU);
}
int byteAt(const std::string& text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}
int get16(const std::string& text, std::size_t at) {
    return byteAt(text, at) << 8 | byteAt(text, at + 1);
}

QRgb lightOf(const TileLook& look) {
    return palette::kModules[look.module].light;
}
QRgb headColour(const TileLook& look) {
    if (look.is(kTileAccent)) return palette::kRecord;
    return look.is(kTilePlaying) ? rgb(0xFFFFFF) : palette::kMoonlight;
}

constexpr double kRunParts = 10; // of a pixel, in the text of a run
constexpr std::size_t kRunHead = 4;
constexpr double kRowParts = 10;
constexpr std::size_t kRowRun = 5;

void runLabel(const Ink& ink, const TileLook& look, const QRectF& box, double ppb) {
    constexpr double kLeast = 14;
    constexpr double kRoomy = 20;
    if (box.width() < kLeast - 2) return;
    const QString name =
        QStringLiteral("%1%2").arg(QChar('A' + look.number / kPatterns)).arg(look.number % kPatterns + 1);
    const double y = ppb >= kPictures ? 15.5 : 23.5;
    const bool silent = look.is(kTileRest);
    const QRgb colour = silent ? palette::kCaption : rgb(0xFFFFFF);
    const int weight = silent ? 600 : 700;
    if (box.width() >= kRoomy - 2)
        ink.text({box.left() + 5, y}, name, {11, weight}, colour);
    else
        ink.text({box.center().x(), y}, name, {10, weight}, colour, Anchor::middle);
}

void runPictures(const Ink& ink, const TileLook& look, const QRectF& box, double ppb, double left) {
    const std::string dots = look.text.substr(kRunHead);
    const bool drums = look.module == kDrumModule;
    QPainterPath path;
    const double width = (ppb - 5) / (drums ? 1.0 : 1.01);
    for (double x = left; x < box.right(); x += ppb) {
        path.addPath(patternDots(dots, look.second, QRectF(x + 2.5, 20, width, 14), drums));
        if (x > box.left() + 2) thinLine(ink, {x, 20}, {x, 35}, black(0.28), 0.8);
    }
    ink.painter().save();
    ink.painter().setClipRect(box.adjusted(0, 0, -1, 0), Qt::IntersectClip);
    ink.shape(path, white(0.88));
    ink.painter().restore();
}

} // namespace

void artDark(const Ink& ink, const TileLook& look, const QRectF& box) {
    ink.box(box, 4, withAlpha(kGround, look.number / 100.0));
}

void artLane(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    if (look.module < 3)
        ink.box(box, 4, palette::kModules[look.module].plate);
    else
        ink.box(box, 4, palette::kSlotGlass);
}

void artRuler(const Ink& ink, const TileLook& /*look*/, const QRectF& box) {
    ink.box(box, 5, withAlpha(palette::kRail, 0.75));
}

void artRulerMarks(const Ink& ink, const TileLook& look, const QRectF& box) {
    const double ppb = box.width() / std::max<int>(look.number, 1);
    ink.vertical(0, 2, 18, white(0.3));
    for (int bar = look.second; bar < look.number; bar += look.second)
        ink.vertical(bar * ppb, 14, 19, white(0.18));
    const bool bright = look.is(kTileLit);
    ink.text({4, 14}, QString::fromStdString(look.text), {11, bright ? 700 : 500},
             bright ? palette::kText : palette::kCaption);
}

std::string runText(double ppb, double offset, const std::string& dots) {
    std::string text;
    put16(text, ppb * kRunParts);
    put16(text, offset * kRunParts);
    return text + dots;
}

void artRun(const Ink& ink, const TileLook& look, const QRectF& area) {
    const double ppb = get16(look.text, 0) / kRunParts;
    const double left = get16(look.text, 2) / kRunParts;
    const double inset = std::min(0.75, ppb / 8);
    QRectF box = area.adjusted(look.is(kTileBeyond) ? -6 : inset, 0, look.is(kTileHeld) ? 6 : -inset, 0);
    ink.painter().save();
    ink.painter().setClipRect(area.adjusted(0, 0, 0, 1), Qt::IntersectClip);
    const double radius = std::min(4.0, box.width() / 2);
    if (look.is(kTileRest)) {
        ink.box(box, radius, withAlpha(kGround, 0.28));
        if (box.width() > 2) ink.frame(box, radius, withAlpha(lightOf(look), 0.22));
    } else {
        const QRgb cell = kBarCell[look.module][static_cast<std::size_t>(look.number / kPatterns)];
        ink.box(box.translated(0, 1), radius, black(0.4));
        ink.box(box, radius, cell);
        ink.box(box, radius, kCellSheen);
        ink.box(QRectF(box.left(), box.top(), box.width(), 2.4), std::min(1.2, radius),
                mixed(cell, lightOf(look), 0.74));
        if (ppb >= kPictures) runPictures(ink, look, box, ppb, left);
    }
    QRectF words = box;
    if (look.is(kTileBeyond)) words.setLeft(left);
    if (look.is(kTileHeld)) words.setRight(area.right());
    runLabel(ink, look, words, ppb);
    ink.painter().restore();
}

// Steps are right angles: every column of the device is one run of pixels, painted without smoothing.
void artCurve(const Ink& ink, const TileLook& look, const QRectF& box) {
    const QTransform& to = ink.painter().worldTransform();
    const QRect device = to.mapRect(box).toAlignedRect();
    const auto columns = static_cast<int>(look.text.size() / 2);
    if (columns == 0 || device.width() <= 0 || device.height() <= 0) return;
    const double scale = to.m11();
    const double foot = (box.height() - 4) * scale;
    const double reach = (box.height() - 8) * scale / 127;
    const int thick = std::max(1, static_cast<int>(std::lround(1.6 * scale)));
    QImage image(device.size(), QImage::Format_RGB32);
    const QRgb line = lightOf(look);
    const QRgb fill = mixed(palette::kSlotGlass, line, 0.16);
    const auto topOf = [&](int value) {
        return std::clamp(static_cast<int>(std::lround(foot - reach * value)) - thick / 2, 0,
                          image.height() - thick);
    };
    auto* pixels = reinterpret_cast<QRgb*>(image.bits());
    const qsizetype stride = image.bytesPerLine() / 4;
    // The last column's value to the next one's: an upright as wide as the line.
    const auto width = static_cast<std::size_t>(image.width());
    std::vector<int> tops(width, image.height());
    std::vector<int> ends(width, -1);
    const auto reachTo = [&](int x, int top, int end) {
        if (x < 0 || x >= image.width()) return;
        int& highest = tops[static_cast<std::size_t>(x)];
        int& lowest = ends[static_cast<std::size_t>(x)];
        highest = std::min(highest, top);
        lowest = std::max(lowest, end);
    };
    int before = byteAt(look.text, 0);
    for (int c = 0; c < columns; ++c) {
        const std::size_t at = static_cast<std::size_t>(c) * 2 + 1;
        const int low = byteAt(look.text, at);
        const int high = byteAt(look.text, at + 1);
        const int x0 = c * image.width() / columns;
        const int x1 = std::max((c + 1) * image.width() / columns, x0 + 1);
        for (int x = x0; x < x1; ++x) reachTo(x, topOf(high), topOf(low) + thick);
        const int from = std::min(topOf(high), topOf(before));
        const int upTo = std::max(topOf(low), topOf(before)) + thick;
        if (before != low)
            for (int x = x0 - thick / 2; x < x0 - thick / 2 + thick; ++x) reachTo(x, from, upTo);
        before = low;
    }
    for (int y = 0; y < image.height(); ++y) { // plain enough for the compiler to take many pixels at once
        QRgb* row = pixels + y * stride;
        for (std::size_t x = 0; x < width; ++x)
            row[x] = y < tops[x] ? palette::kSlotGlass : y < ends[x] ? line : fill;
    }
    ink.painter().save();
    ink.painter().resetTransform();
    ink.painter().drawImage(device.topLeft(), image);
    ink.painter().restore();
    ink.vertical(0, 0, box.height(), white(0.07));
}

void artKnobDot(const Ink& ink, const TileLook& look, const QRectF& box) {
    ink.disc(box.center(), 4.4, palette::kSlotGlass);
    ink.ring(box.center(), 4, lightOf(look), 1.8);
}

void artHairline(const Ink& ink, const TileLook& look, const QRectF& box) {
    ink.vertical(box.left(), box.top(), box.bottom(), white(look.number / 100.0));
}

void artFootLine(const Ink& ink, const TileLook& look, const QRectF& box) {
    ink.box(box, 1, palette::kRecord);
    constexpr double kSparse = 8; // dots stand no closer
    const double ppb = look.second / 10.0;
    if (ppb < kSparse) return;
    for (double x = look.number / 10.0; x < box.width() - 1; x += ppb)
        ink.disc({x + 1.5, box.center().y()}, 2.35, palette::kRecord);
}

void artTrail(const Ink& ink, const TileLook& look, const QRectF& box) {
    ink.box(box, 0, withAlpha(headColour(look), 0.08));
}

void artPlayhead(const Ink& ink, const TileLook& look, const QRectF& box) {
    const double x = box.center().x();
    const QRgb colour = headColour(look);
    ink.box(QRectF(ink.snap(x - 1), 4, ink.snap(2), box.height() - 4), 0, colour);
    QPainterPath head(QPointF(x - 6.5, 1));
    head.lineTo(x + 6.5, 1);
    head.lineTo(x + 6.5, 7);
    head.lineTo(x, 14);
    head.lineTo(x - 6.5, 7);
    head.closeSubpath();
    ink.stroke(head, black(0.6), 0.6);
    ink.shape(head, colour);
    if (look.is(kTileAccent)) ink.disc({x, 6}, 2, palette::kInk);
}

void artSelectionBar(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    ink.box(box, 4, palette::kMoonlight);
    ink.box(box, 4, Fade(white(0.21), 0.45, white(0.03), black(0.06)));
    const QString words = QString::fromStdString(look.text);
    constexpr Type kType{11.5, 700};
    if (Ink::textWidth(words, kType) < box.width() - 20)
        ink.text({box.center().x(), 14}, words, kType, palette::kInk, Anchor::middle);
    if (box.width() < 12) return;
    for (const double x : {5.0, 7.6, box.width() - 7, box.width() - 4.4})
        thinLine(ink, {x, 6}, {x, 14}, withAlpha(palette::kInk, 0.75), 1.1);
}

void artSelectionFrame(const Ink& ink, const TileLook& /*look*/, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    ink.box(box, 5, withAlpha(palette::kMoonlight, 0.07));
    ink.frame(box.adjusted(-1, -1, 1, 1), 6, palette::kMoonlight, 2);
}

void artHoverBar(const Ink& ink, const TileLook& /*look*/, const QRectF& box) {
    ink.frame(box, 4.75, white(0.9), 1.5);
}

std::string overviewRun(double x, double width, int bank, bool silent) {
    std::string text;
    put16(text, x * kRowParts);
    put16(text, width * kRowParts);
    text += static_cast<char>(bank | (silent ? 4 : 0));
    return text;
}

void artOverviewRow(const Ink& ink, const TileLook& look, const QRectF& box) {
    for (std::size_t at = 0; at + kRowRun <= look.text.size(); at += kRowRun) {
        const double x = get16(look.text, at) / kRowParts;
        const double width = std::max(get16(look.text, at + 2) / kRowParts, 0.6);
        const int kind = byteAt(look.text, at + 4);
        if (kind >= 4)
            ink.box(QRectF(x, 4.75, width, 1.5), 0.7, withAlpha(lightOf(look), 0.28));
        else
            ink.box(QRectF(x, 0, width, box.height()), std::min(1.6, width / 2),
                    kOverviewBar[look.module][static_cast<std::size_t>(kind)]);
    }
}

void artOverviewNumber(const Ink& ink, const TileLook& look, const QRectF& box) {
    const QRgb colour = look.is(kTileAsleep) ? palette::kQuietText : palette::kCaption;
    if (look.is(kTileSelected)) {
        ink.text({box.right() - 1, 8}, QString::fromStdString(look.text), {10, 500}, colour, Anchor::right);
        return;
    }
    ink.vertical(0, 0, 10, white(0.16));
    ink.text({3, 8}, QString::fromStdString(look.text), {10, 500}, colour);
}

void artBreak(const Ink& ink, const TileLook& look, const QRectF& box) {
    const QRgb colour = look.is(kTileHover) ? palette::kText : rgb(0x8994A0);
    for (const double x : {1.0, 6.0}) thinLine(ink, {x, box.bottom()}, {x + 3.4, 0}, colour, 1.3);
}

void artOverviewFrame(const Ink& ink, const TileLook& look, const QRectF& area) {
    const QRectF box = ink.snapped(area);
    ink.frame(box.adjusted(-1, -1, 1, 1), 6, look.is(kTileHover) ? palette::kText : palette::kMoonlight, 2);
    for (const double x : {box.left(), box.right()}) {
        ink.box(QRectF(x - 4, box.center().y() - 8, 8, 16), 3, palette::kMoonlight);
        for (const double line : {-1.2, 1.2})
            thinLine(ink, {x + line, box.center().y() - 3.5}, {x + line, box.center().y() + 3.5},
                     withAlpha(palette::kInk, 0.7), 0.9);
    }
}

void artMoonBox(const Ink& ink, const TileLook& look, const QRectF& area) {
    ink.box(ink.snapped(area), look.number, headColour(look));
}

} // namespace marlune
