// Drawing tools of the front panel: flat fills, fades, sunk glass, raised caps, light and dot digits.
//
// Lengths are panel pixels at scale 1; edges of boxes and lines land on whole pixels of the device at every
// scale. User-interface thread only.
#pragma once

#include <QPainter>
#include <QString>
#include <string>

#include "picture/palette.h"

namespace marlune {

struct Type {
    double size;
    int weight;         // 400 regular .. 800 extra bold
    double spacing = 0; // added between letters
};

enum class Anchor { left, middle, right };

struct DotText {
    std::string text; // shown right-aligned in the places
    int pitch = 2;
    int places = 0;
    QRgb colour = 0;
    double lit = 1;      // opacity of lit dots
    double unlit = 0.07; // opacity of the others; 0 leaves them out
    bool glow = true;
    bool emptyPlaces = true; // unlit dots also where no character stands
};

class Ink {
  public:
    // scale: device pixels to a panel pixel. The painter must map panel pixels to the device by that factor,
    // with the origin on a whole device pixel.
    Ink(QPainter& painter, double scale);

    [[nodiscard]] QPainter& painter() const { return painter_; }
    [[nodiscard]] double snap(double v) const;
    [[nodiscard]] QRectF snapped(const QRectF& r) const;
    [[nodiscard]] double hair() const {
        return hair_;
    } // a line of about one panel pixel, whole on the device

    void box(const QRectF& r, double radius, const Fade& fade) const;
    // A line of the given width along the inside of the box.
    void frame(const QRectF& r, double radius, const Fade& fade, double width = 1) const;
    void disc(QPointF centre, double radius, const Fade& fade) const;
    void ring(QPointF centre, double radius, const Fade& fade, double width) const;
    void glow(QPointF centre, double radius, QRgb colour, double strength) const;
    void shape(const QPainterPath& path, QRgb colour, double roundness = 0) const;
    void stroke(const QPainterPath& path, QRgb colour, double width) const;
    void horizontal(double x0, double x1, double y, QRgb colour) const; // hairlines
    void vertical(double x, double y0, double y1, QRgb colour) const;

    void text(QPointF baseline, const QString& text, const Type& type, QRgb colour,
              Anchor anchor = Anchor::left) const;
    // Capitals and figures centred on a point.
    void textMiddle(QPointF centre, const QString& text, const Type& type, QRgb colour) const;
    static double textWidth(const QString& text, const Type& type);

    // strength 1: from 10 % beside the box to 2 % at 13 pixels times reach from it.
    void halo(const QRectF& r, double radius, QRgb colour, double strength, double reach = 1) const;
    void glass(const QRectF& r, double radius, QRgb tint) const; // tint 0: none
    // A cap with its shadow, lip and bright top edge; down sinks it by a pixel. The face is returned.
    void cap(const QRectF& r, double radius, const Fade& face, bool down, bool lip = true) const;
    void litCap(const QRectF& r, double radius, QRgb colour, bool down) const;
    // origin: the left top of the first place.
    void dots(QPointF origin, const DotText& text) const;

  private:
    void capGround(const QRectF& r, double radius) const;

    QPainter& painter_;
    double scale_;
    double hair_;
};

} // namespace marlune
