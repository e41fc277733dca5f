#include "desktop/sprite_cache.h"

#include <QPainter>

#include "picture/palette.h"

namespace marlune {

namespace {

// Up to this scale all frames of all knobs fit the cache as whole pictures, which are quicker to draw than
// their layers.
constexpr double kWholeKnobScale = 2;

} // namespace

void SpriteCache::draw(QPainter& painter, const Piece& piece, const Look& look) {
    const DeviceRect area = deviceRect(piece, scale_);
    if (piece.art != Art::knob || scale_ <= kWholeKnobScale) {
        painter.drawPixmap(area.x, area.y, picture(piece, look, {0, 0, area.width, area.height}));
        return;
    }
    for (const KnobLayer& layer : knobLayers(look, area))
        painter.drawPixmap(area.x + layer.crop.x, area.y + layer.crop.y,
                           picture(piece, layer.look, layer.crop));
}

QPixmap SpriteCache::picture(const Piece& piece, const Look& look, const DeviceRect& crop) {
    const DeviceRect area = deviceRect(piece, scale_);
    const Key key{look, area.width, area.height};
    if (const QPixmap* known = pixmaps_.object(key)) return *known;
    QPixmap pixmap(crop.width, crop.height);
    // A scale that cuts a pixel leaves the last row of the ground half covered: the bed lies below it.
    pixmap.fill(piece.art == Art::ground ? QColor::fromRgb(palette::kBed.stops[1].colour)
                                         : QColor(Qt::transparent));
    QPainter painter(&pixmap);
    painter.translate(-area.x - crop.x, -area.y - crop.y);
    paintPiece(painter, piece, look, scale_);
    painter.end();
    // The cache may drop a picture that is larger than itself; the copy stays good.
    pixmaps_.insert(key, new QPixmap(pixmap), static_cast<qsizetype>(crop.width) * crop.height * 4);
    return pixmap;
}

void SpriteCache::setScale(double scale) {
    if (scale == scale_) return;
    scale_ = scale;
    pixmaps_.clear();
}

} // namespace marlune
