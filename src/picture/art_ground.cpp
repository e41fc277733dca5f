// The bed, the plates and what is printed on them.

#include <QPainterPath>
#include <array>
#include <iterator>

#include "picture/arts.h"
#include "picture/layout.h"

namespace marlune {

namespace {

constexpr Type kCaptionType{10, 600, 0.9};

struct Printed {
    double x, y;
    const char* text;
    Anchor anchor;
};

constexpr Printed kStripCaptions[] = {{264, 30, "MODE", Anchor::middle},
                                      {398, 30, "START / STOP", Anchor::middle},
                                      {979, 30, "TEMPO", Anchor::middle}};
constexpr Printed kSongCaptions[] = {{499, 30, "RESET", Anchor::middle},
                                     {630, 30, "BAR", Anchor::middle},
                                     {767, 30, "STOP", Anchor::middle},
                                     {818, 30, "PLAY", Anchor::middle},
                                     {869, 30, "REC", Anchor::middle}};
constexpr Printed kModuleCaptions[] = {{101, 142.64, "BASSLINE", Anchor::left},
                                       {337, 142.64, "LOOP", Anchor::right},
                                       {455, 142.64, "PATCH", Anchor::right},
                                       {27, 175, "NOW", Anchor::left},
                                       {117, 175, "NEXT", Anchor::left},
                                       {656, 142.64, "BASSLINE", Anchor::left},
                                       {892, 142.64, "LOOP", Anchor::right},
                                       {1010, 142.64, "PATCH", Anchor::right},
                                       {582, 175, "NOW", Anchor::left},
                                       {672, 175, "NEXT", Anchor::left},
                                       {84, 450.64, "DRUM MACHINE", Anchor::left},
                                       {1030, 450.64, "LOOP", Anchor::right},
                                       {27, 483, "NOW", Anchor::left},
                                       {117, 483, "NEXT", Anchor::left}};

void print(const Ink& ink, const Printed& p, QRgb colour) {
    ink.text({p.x, p.y}, QString::fromLatin1(p.text), kCaptionType, colour, p.anchor);
}

QRectF boxOf(const PanelRect& r) {
    return QRectF(r.x, r.y, r.width, r.height);
}

void plate(const Ink& ink, const QRectF& area, const Fade& fade) {
    const QRectF r = ink.snapped(area);
    struct Shadow {
        double down, opacity;
    };
    for (const Shadow& s : {Shadow{1, 0.3}, Shadow{3, 0.16}, Shadow{6, 0.09}})
        ink.box(r.adjusted(-1, s.down, 1, s.down), 12, black(s.opacity));
    ink.box(r, 11, fade);
}

// Light along the edge of something awake: a sharp line and two soft ones around it.
void lightEdge(const Ink& ink, const QRectF& r, double radius, QRgb colour, double width) {
    ink.frame(r.adjusted(-3.6, -3.6, 3.6, 3.6), radius + 3, withAlpha(colour, 0.1), 4);
    ink.frame(r.adjusted(-2, -2, 2, 2), radius + 2, withAlpha(colour, 0.22), 2.8);
    ink.frame(r, radius, colour, width);
}

void headerWash(const Ink& ink, const QRectF& r, QRgb light) {
    const QRectF header(r.left(), r.top(), r.width(), 46);
    ink.painter().save();
    ink.painter().setClipRect(header, Qt::IntersectClip);
    QLinearGradient wash(header.topLeft(), header.bottomLeft());
    wash.setColorAt(0, QColor::fromRgba(withAlpha(light, 0.2)));
    wash.setColorAt(1, QColor::fromRgba(withAlpha(light, 0.03)));
    ink.painter().setBrush(wash);
    ink.painter().drawRoundedRect(r, 11, 11);
    ink.painter().restore();
}

void modulePlate(const Ink& ink, int module, bool underEdit) {
    const QRectF r = ink.snapped(boxOf(kRegions.modules[module]));
    const palette::ModuleColours& colours = palette::kModules[module];
    plate(ink, r, colours.plate);
    if (underEdit) headerWash(ink, r, colours.light);
    ink.frame(r, 11, palette::kPlateEdge);
    ink.horizontal(r.left() + 16, r.right() - 16, r.top() + 45, black(0.35));
    ink.horizontal(r.left() + 16, r.right() - 16, r.top() + 45 + ink.hair(), white(0.06));
    ink.box(QRectF(r.left(), r.top() + 13, 4, 24), 2, withAlpha(colours.light, underEdit ? 1 : 0.75));
    if (underEdit) lightEdge(ink, r.adjusted(-1, -1, 1, 1), 11.8, colours.light, 1.6);
    ink.text({r.left() + 16, r.top() + 34}, QString::fromLatin1(kModuleNames[module]), {25, 700, 0.2},
             palette::kText);
    if (module == 2) return;
    const double x = r.left() + 185;
    ink.vertical(x, r.top() + 54, r.top() + 134, black(0.35));
    ink.vertical(x + ink.hair(), r.top() + 54, r.top() + 134, white(0.06));
}

void songBox(const Ink& ink, bool song, bool armed) {
    const QRectF r = ink.snapped(boxOf(kRegions.songBox));
    ink.box(r, 9, black(0.16));
    if (!song)
        ink.frame(r, 9, white(0.07));
    else
        lightEdge(ink, r.adjusted(-0.2, -0.2, 0.2, 0.2), 9.2, armed ? palette::kRecord : palette::kMoonlight,
                  1.3);
    for (const Printed& p : kSongCaptions) {
        const bool record = song && armed && &p == std::end(kSongCaptions) - 1;
        print(ink, p, record ? palette::kRecord : song ? palette::kMoonlight : palette::kCaptionOff);
    }
}

void strip(const Ink& ink) {
    const QRectF r = ink.snapped(boxOf(kRegions.strip));
    plate(ink, r, palette::kModules[kStripModule].plate);
    ink.frame(r, 11, palette::kPlateEdge);
    const QRectF brand = boxOf(kRegions.brand);
    paintLogo(ink, {brand.left() + 21, brand.top() + 27}, 21);
    ink.text({brand.left() + 53, brand.top() + 25}, QStringLiteral("Marlune"), {21, 600, -0.2},
             palette::kText);
    ink.text({brand.left() + 54, brand.top() + 44}, QStringLiteral("200Q"), {14, 600, 1.4},
             palette::kMoonlight);
    for (const Printed& p : kStripCaptions) print(ink, p, palette::kCaption);
}

} // namespace

// A crescent over three waves, each in the light of a module.
void paintLogo(const Ink& ink, QPointF centre, double radius) {
    ink.painter().save();
    ink.painter().translate(centre);
    ink.painter().scale(radius / 21, radius / 21);
    ink.disc({0, 0}, 21, rgb(0x0A0E14));
    ink.ring({0, 0}, 20.5, palette::kRim, 1);
    QPainterPath moon;
    moon.addEllipse(QPointF(1.1, -6.3), 9.5, 9.5);
    QPainterPath shade;
    shade.addEllipse(QPointF(4.85, -8.2), 7.6, 7.6);
    ink.shape(moon - shade, palette::kMoonlight);
    struct Wave {
        double x, y, half;
        QRgb colour;
    };
    for (const Wave& w :
         {Wave{-15.5, 5, 7.75, palette::kModules[0].light}, Wave{-13.4, 9.6, 6.7, palette::kModules[1].light},
          Wave{-9.6, 14.2, 4.8, palette::kModules[2].light}}) {
        QPainterPath path(QPointF(w.x, w.y));
        path.quadTo(w.x + w.half, w.y - 3.2, w.x + 2 * w.half, w.y);
        path.quadTo(w.x + 3 * w.half, w.y + 3.2, w.x + 4 * w.half, w.y);
        ink.stroke(path, w.colour, 1.9);
    }
    ink.painter().restore();
}

void paintGround(const Ink& ink, const PanelRect& tile, std::uint16_t marks) {
    // Everything on a plate stays within its shadow and its light.
    const auto reaches = [&tile](const PanelRect& r) {
        return tile.x < r.x + r.width + 8 && r.x - 8 < tile.x + tile.width && tile.y < r.y + r.height + 8 &&
               r.y - 8 < tile.y + tile.height;
    };
    ink.box(QRectF(0, 0, kPanelWidth, kPanelHeight), 0, palette::kBed);
    if (reaches(kRegions.strip)) strip(ink);
    if (reaches(kRegions.songBox)) songBox(ink, (marks & kSong) != 0, (marks & kArmed) != 0);
    for (int module = 0; module < 3; ++module)
        if (reaches(kRegions.modules[module]))
            modulePlate(ink, module, (marks & (kGroundEdit << module)) != 0);
    for (const Printed& p : kModuleCaptions)
        if (reaches({static_cast<int>(p.x) - 50, static_cast<int>(p.y) - 10, 150, 12}))
            print(ink, p, palette::kCaption);
}

void paintChannel(const Ink& ink, const Look& look, const QRectF& box) {
    const QRgb light = palette::kModules[look.module].light;
    ink.box(box, 8, look.is(kLit) ? withAlpha(light, 0.13) : black(0.17));
    ink.frame(box, 8, look.is(kLit) ? withAlpha(light, 0.55) : white(0.04));
}

void paintArrow(const Ink& ink, const Look& look, const QRectF& box) {
    const double x = box.center().x() - 2.65;
    const double y = box.center().y();
    QPainterPath path(QPointF(x, y - 3.6));
    path.lineTo(x, y + 3.6);
    path.lineTo(x + 5.96, y);
    path.closeSubpath();
    ink.shape(path, look.is(kCued) ? palette::kMoonlight : rgb(0x7D8792), 1.4);
}

} // namespace marlune
