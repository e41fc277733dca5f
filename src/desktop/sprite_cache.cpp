#include "desktop/sprite_cache.h"

#include <QPainter>

namespace marlune {

QPixmap SpriteCache::picture(const Piece& piece, const Look& look) {
    const DeviceRect area = deviceRect(piece, scale_);
    const Key key{look, area.width, area.height};
    if (const QPixmap* known = pixmaps_.object(key)) return *known;
    QPixmap pixmap(area.width, area.height);
    if (piece.art != Art::ground) pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.translate(-area.x, -area.y);
    paintPiece(painter, piece, look, scale_);
    painter.end();
    // The cache may drop a picture that is larger than itself; the copy stays good.
    pixmaps_.insert(key, new QPixmap(pixmap), static_cast<qsizetype>(area.width) * area.height * 4);
    return pixmap;
}

void SpriteCache::setScale(double scale) {
    if (scale == scale_) return;
    scale_ = scale;
    pixmaps_.clear();
}

} // namespace marlune
