// Everything that shows numbers and words: sunk glass with lit dots, and the printed knob labels.

#include <QFont>
#include <QFontMetricsF>
#include <QPainterPath>

#include "picture/arts.h"
#include "picture/layout.h"

namespace marlune {

namespace {

constexpr double kChevronRoom = 12; // kept free at the right of a field that can be dragged

// Two triangles that mean: drag up and down.
void chevrons(const Ink& ink, double left, double middle, QRgb colour) {
    for (const double turn : {-1.0, 1.0}) {
        QPainterPath path(QPointF(left, middle + turn * 2.2));
        path.lineTo(left + 3, middle + turn * 5.8);
        path.lineTo(left + 6, middle + turn * 2.2);
        path.closeSubpath();
        ink.shape(path, withAlpha(colour, 0.75));
    }
}

void pane(const Ink& ink, const Look& look, const QRectF& box, double radius, QRgb tint) {
    ink.glass(box, radius, tint);
    if (look.is(kHover) || look.is(kDown)) ink.box(ink.snapped(box), radius, white(kHoverLight));
}

double dotsWidth(int places, int pitch) {
    return (places * 6.0 - 1) * pitch;
}

} // namespace

void paintPatternField(const Ink& ink, const Look& look, const QRectF& box) {
    const bool cue = look.variant == 1;
    const QRgb light = palette::kModules[look.module].light;
    const QRgb colour = cue && look.is(kCued) ? palette::kMoonlight : light;
    pane(ink, look, box, 5, light);
    const bool idle = cue && !look.is(kCued);
    ink.dots({12, 8}, {look.text, 3, 2, colour, idle ? 0.72 : 1, 0.09, !idle});
    chevrons(ink, box.width() - 15, box.center().y(), colour);
}

void paintNumberField(const Ink& ink, const Look& look, const QRectF& box) {
    const bool asleep = look.is(kAsleep);
    const int places = look.variant;
    const QRgb colour = asleep ? palette::kDigitOff : palette::kModules[look.module].light;
    pane(ink, look, box, 5, asleep ? 0 : colour);
    DotText text{look.text, 2, places, colour};
    if (asleep) text.lit = 0.6, text.unlit = 0.04, text.glow = false;
    ink.dots({(box.width() - kChevronRoom - dotsWidth(places, 2)) / 2, 7}, text);
    chevrons(ink, box.width() - 13, box.center().y(), asleep ? withAlpha(colour, 0.5) : colour);
}

void paintNoteField(const Ink& ink, const Look& look, const QRectF& box) {
    const QRgb light = palette::kModules[look.module].light;
    pane(ink, look, box, 5, light);
    DotText text{look.text, 2, 3, light};
    text.emptyPlaces = false;
    ink.dots({5, 6}, text);
    if (look.text.size() > 2) return; // the third figure takes the place of the note
    QPainterPath stem(QPointF(10.7, 16));
    stem.lineTo(10.7, 7);
    ink.stroke(stem, withAlpha(light, 0.8), 1.3);
    QPainterPath head;
    head.addEllipse(QPointF(8.5, 16.3), 2.9, 2.2);
    ink.shape(head, withAlpha(light, 0.8));
}

void paintTempoField(const Ink& ink, const Look& look, const QRectF& box) {
    ink.glass(box, 6, palette::kMoonlight);
    const std::size_t split = look.text.find('\n');
    const std::size_t second = look.text.find('\n', split + 1);
    ink.dots({(box.width() - dotsWidth(3, 4)) / 2, 7},
             {look.text.substr(0, split), 4, 3, palette::kMoonlight});
    const bool touched = look.is(kHover) || look.is(kDown);
    ink.textMiddle({box.center().x(), 44}, QStringLiteral("BPM"), {10, 600, 1.2},
                   touched ? palette::kMoonlight : rgb(0xB9B3A1));
    ink.textMiddle({19, 44}, QString::fromStdString(look.text.substr(split + 1, second - split - 1)),
                   {8.5, 700, 0.6}, look.is(kLit) ? palette::kPlay : palette::kDigitOff);
    const QString swing = QString::fromStdString(look.text.substr(second + 1));
    const bool straight = swing.isEmpty() || swing == QStringLiteral("50%");
    const QRgb colour = look.is(kArmed) || !straight ? palette::kMoonlight : palette::kDigitOff;
    ink.textMiddle({79, 44}, straight ? QStringLiteral("50%") : swing, {9.5, 600}, colour);
    chevrons(ink, 91, 44, colour);
}

void paintBarField(const Ink& ink, const Look& look, const QRectF& box) {
    const std::size_t split = look.text.find('\n');
    const bool asleep = look.is(kAsleep);
    const QRgb colour = asleep ? palette::kDigitOff : palette::kMoonlight;
    DotText bar{look.text.substr(0, split), 4, 4, colour};
    DotText step{look.text.substr(split + 1), 2, 7, colour};
    if (asleep) {
        bar.lit = step.lit = 0.7;
        bar.unlit = 0.04;
        bar.glow = step.glow = false;
    }
    step.unlit = asleep ? 0.03 : 0.06;
    ink.glass(box, 6, asleep ? 0 : colour);
    ink.dots({(box.width() - dotsWidth(4, 4)) / 2, 5}, bar);
    ink.dots({(box.width() - dotsWidth(7, 2)) / 2, 37}, step);
}

// A label wider than its box shrinks to 10, then loses its end.
void paintTitle(const Ink& ink, const Look& look, const QRectF& box) {
    QString label = QString::fromStdString(look.text);
    Type type{12, 500};
    const double width = Ink::textWidth(label, type);
    if (width > box.width()) type.size = std::max(10.0, 12 * box.width() / width);
    if (Ink::textWidth(label, type) > box.width()) {
        while (label.size() > 1 && Ink::textWidth(label + QChar(0x2026), type) > box.width()) label.chop(1);
        label += QChar(0x2026);
    }
    ink.text({box.center().x(), box.center().y() + 4.37}, label, type, palette::kText, Anchor::middle);
}

} // namespace marlune
