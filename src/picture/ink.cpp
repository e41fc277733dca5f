#include "picture/ink.h"

#include <QCache>
#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>

#include "picture/layout.h"

namespace marlune {

namespace {

constexpr double kTypeRaster = 100; // glyphs are taken at this size and scaled: even spacing at every scale
constexpr double kHalfCapital = 0.3636;

QFont fontFor(const Type& type) {
    QFont font;
    font.setFamilies({QStringLiteral("Inter"), QStringLiteral("DejaVu Sans")});
    font.setPixelSize(static_cast<int>(kTypeRaster));
    font.setWeight(static_cast<QFont::Weight>(type.weight));
    font.setHintingPreference(QFont::PreferNoHinting);
    if (type.spacing != 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, type.spacing * kTypeRaster / type.size);
    return font;
}

// Letters as they were shaped once: most words of a window come again and again.
struct Lettering {
    QPainterPath path; // at the raster size
    double advance = 0;
};

const Lettering& lettering(const QString& text, const Type& type) {
    static QCache<QString, Lettering> known(2000);
    const QString key =
        text + QChar(0) + QString::number(type.weight) + QChar(0) + QString::number(type.spacing / type.size);
    if (const Lettering* found = known.object(key)) return *found;
    auto* made = new Lettering;
    const QFont font = fontFor(type);
    made->path.addText(0, 0, font, text);
    made->advance = QFontMetricsF(font).horizontalAdvance(text);
    known.insert(key, made);
    return *made;
}

QBrush brushFor(const QRectF& r, const Fade& fade) {
    if (fade.count == 1) return QColor::fromRgba(fade.stops[0].colour);
    QLinearGradient gradient(r.topLeft(), r.bottomLeft());
    for (int i = 0; i < fade.count; ++i)
        gradient.setColorAt(fade.stops[i].at, QColor::fromRgba(fade.stops[i].colour));
    return gradient;
}

QRectF grown(const QRectF& r, double by) {
    return r.adjusted(-by, -by, by, by);
}

} // namespace

Ink::Ink(QPainter& painter, double scale)
    : painter_(painter), scale_(scale), hair_(std::max(1.0, std::floor(scale + 0.25)) / scale) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(Qt::NoPen);
}

double Ink::snap(double v) const {
    return std::round(v * scale_) / scale_;
}

QRectF Ink::snapped(const QRectF& r) const {
    return {QPointF(snap(r.left()), snap(r.top())), QPointF(snap(r.right()), snap(r.bottom()))};
}

void Ink::box(const QRectF& r, double radius, const Fade& fade) const {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(brushFor(r, fade));
    painter_.drawRoundedRect(r, radius, radius);
}

void Ink::frame(const QRectF& r, double radius, const Fade& fade, double width) const {
    const double w = width == 1 ? hair_ : width;
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(brushFor(r, fade), w));
    painter_.drawRoundedRect(grown(r, -w / 2), radius - w / 2, radius - w / 2);
    painter_.setPen(Qt::NoPen);
}

void Ink::disc(QPointF centre, double radius, const Fade& fade) const {
    painter_.setBrush(
        brushFor(QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius), fade));
    painter_.drawEllipse(centre, radius, radius);
}

void Ink::ring(QPointF centre, double radius, const Fade& fade, double width) const {
    painter_.setBrush(Qt::NoBrush);
    const QRectF r(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    painter_.setPen(QPen(brushFor(r, fade), width));
    painter_.drawEllipse(r);
    painter_.setPen(Qt::NoPen);
}

void Ink::glow(QPointF centre, double radius, QRgb colour, double strength) const {
    QRadialGradient gradient(centre, radius);
    gradient.setColorAt(0, QColor::fromRgba(withAlpha(colour, 0.85 * strength)));
    gradient.setColorAt(0.35, QColor::fromRgba(withAlpha(colour, 0.38 * strength)));
    gradient.setColorAt(1, QColor::fromRgba(withAlpha(colour, 0)));
    painter_.setBrush(gradient);
    painter_.drawEllipse(centre, radius, radius);
}

void Ink::shape(const QPainterPath& path, QRgb colour, double roundness) const {
    painter_.setBrush(QColor::fromRgba(colour));
    if (roundness > 0)
        painter_.setPen(
            QPen(QColor::fromRgba(colour), roundness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter_.drawPath(path);
    painter_.setPen(Qt::NoPen);
}

void Ink::stroke(const QPainterPath& path, QRgb colour, double width) const {
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(QColor::fromRgba(colour), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter_.drawPath(path);
    painter_.setPen(Qt::NoPen);
}

void Ink::horizontal(double x0, double x1, double y, QRgb colour) const {
    painter_.fillRect(QRectF(snap(x0), snap(y), snap(x1) - snap(x0), hair_), QColor::fromRgba(colour));
}

void Ink::vertical(double x, double y0, double y1, QRgb colour) const {
    painter_.fillRect(QRectF(snap(x), snap(y0), hair_, snap(y1) - snap(y0)), QColor::fromRgba(colour));
}

double Ink::textWidth(const QString& text, const Type& type) {
    return lettering(text, type).advance * type.size / kTypeRaster -
           type.spacing; // none after the last letter
}

void Ink::text(QPointF baseline, const QString& text, const Type& type, QRgb colour, Anchor anchor) const {
    const double width = anchor == Anchor::left ? 0 : textWidth(text, type);
    const double shift = anchor == Anchor::middle ? width / 2 : width;
    painter_.save();
    painter_.translate(baseline.x() - shift, baseline.y());
    painter_.scale(type.size / kTypeRaster, type.size / kTypeRaster);
    painter_.setBrush(QColor::fromRgba(colour));
    painter_.drawPath(lettering(text, type).path);
    painter_.restore();
}

void Ink::textMiddle(QPointF centre, const QString& text, const Type& type, QRgb colour) const {
    this->text({centre.x(), centre.y() + kHalfCapital * type.size}, text, type, colour, Anchor::middle);
}

void Ink::halo(const QRectF& r, double radius, QRgb colour, double strength, double reach) const {
    struct Layer {
        double grow, opacity;
    };
    constexpr std::array<Layer, 8> kLayers{
        {{13, 0.02}, {11, 0.024}, {9, 0.028}, {7, 0.034}, {5.5, 0.042}, {4, 0.052}, {2.8, 0.07}, {1.6, 0.1}}};
    for (const Layer& layer : kLayers)
        box(grown(r, layer.grow * reach), radius + layer.grow * reach,
            withAlpha(colour, layer.opacity * strength));
}

void Ink::glass(const QRectF& area, double radius, QRgb tint) const {
    const QRectF r = snapped(area);
    box(r.translated(0, hair_), radius, white(0.09));
    box(grown(r, hair_ / 2), radius + hair_ / 2, rgb(0x000000));
    const QRectF pane = grown(r, -hair_ / 2);
    box(pane, radius - hair_ / 2, palette::kGlass);
    if (tint != 0) box(grown(r, -hair_), radius - 1, withAlpha(tint, 0.07));
    const double inset = 1.5 * hair_;
    box(QRectF(r.left() + inset, r.top() + inset, r.width() - 2 * inset, r.height() * 0.42), radius - 1.5,
        palette::kSheen);
}

void Ink::capGround(const QRectF& r, double radius) const {
    box(QRectF(r.left() - 0.5, r.top() + 1, r.width() + 1, r.height() + 1.5), radius + 0.5, black(0.45));
    box(r, radius, palette::kCapGround);
}

void Ink::cap(const QRectF& area, double radius, const Fade& face, bool down, bool lip) const {
    const QRectF r = snapped(area);
    capGround(r, radius);
    const double half = hair_ / 2;
    const double foot = lip ? snap(1.7) : half;
    QRectF top(r.left() + half, r.top() + half, r.width() - 2 * half, r.height() - half - foot);
    if (down && lip) top.adjust(0, hair_, 0, hair_);
    box(top, radius - half, face);
    frame(grown(top, -half / 2), radius - half, palette::kEdge);
}

void Ink::litCap(const QRectF& area, double radius, QRgb colour, bool down) const {
    const QRectF r = snapped(area);
    capGround(r, radius);
    const double half = hair_ / 2;
    QRectF top(r.left() + half, r.top() + half, r.width() - 2 * half, r.height() - half - snap(1.5));
    if (down) top.adjust(0, hair_, 0, hair_);
    box(top, radius - half, colour);
    box(top, radius - half, palette::kLitSheen);
}

void Ink::dots(QPointF origin, const DotText& t) const {
    const double pitch = std::max(1.0, std::floor(t.pitch * scale_ + 0.49)) / scale_;
    const double ratio = t.pitch == 4 ? 0.85 : t.pitch == 3 ? 2.5 / 3 : 0.875;
    const double dot = pitch * scale_ < 2 ? pitch : pitch * ratio;
    const int places = std::max(t.places, static_cast<int>(t.text.size()));
    const int first = places - static_cast<int>(t.text.size());
    // The place is kept for the nominal pitch; a rounded pitch stays in the middle of it.
    const double slack = (6 * t.places - 1) * (t.pitch - pitch);
    const QPointF start(snap(origin.x() + slack / 2), snap(origin.y() + 3.5 * (t.pitch - pitch)));
    QPainterPath on;
    QPainterPath off;
    for (int place = 0; place < places; ++place) {
        const bool empty = place < first;
        if (empty && !t.emptyPlaces) continue;
        const MatrixGlyph* glyph = empty ? nullptr : matrixGlyph(t.text[place - first]);
        for (int row = 0; row < 7; ++row) {
            for (int column = 0; column < 5; ++column) {
                const bool lit = glyph != nullptr && ((glyph->rows[row] >> (4 - column)) & 1) != 0;
                const QPointF at = start + QPointF((6 * place + column) * pitch + (pitch - dot) / 2,
                                                   row * pitch + (pitch - dot) / 2);
                (lit ? on : off).addRect(QRectF(at, QSizeF(dot, dot)));
            }
        }
    }
    if (t.unlit > 0) shape(off, withAlpha(t.colour, t.unlit));
    if (t.glow) stroke(on, withAlpha(t.colour, 0.14), 0.9 * t.pitch);
    shape(on, withAlpha(t.colour, t.lit));
}

} // namespace marlune
