#include "windows/tile.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <functional>

namespace marlune {

namespace {

constexpr int kLargest = 600; // pixels of the window; what is larger is painted, not kept

int device(double v, double scale) {
    return static_cast<int>(std::lround(v * scale));
}

int marginOf(const Tile& tile, double scale) {
    return static_cast<int>(std::ceil(tile.margin * scale));
}

void paintTile(QPainter& painter, const Tile& tile, const QRect& area, double scale) {
    const int margin = marginOf(tile, scale);
    painter.save();
    painter.translate(area.x() + margin, area.y() + margin);
    painter.scale(scale, scale);
    tile.art(Ink(painter, scale), tile.look,
             QRectF(0, 0, (area.width() - 2 * margin) / scale, (area.height() - 2 * margin) / scale));
    painter.restore();
}

// The first tile from which on something shows in the area: the topmost that hides all beneath it there.
std::size_t lowestSeen(const Scene& scene, const std::vector<QRect>& places, const QRect& area,
                       double scale) {
    for (std::size_t i = scene.size(); i-- > 1;) {
        if (scene[i].solid < 0) continue;
        const int inset = static_cast<int>(std::ceil((scene[i].margin + scene[i].solid) * scale)) + 1;
        if (places[i].adjusted(inset, inset, -inset, -inset).contains(area)) return i;
    }
    return 0;
}

} // namespace

QRect deviceArea(const Tile& tile, double scale) {
    const int margin = marginOf(tile, scale);
    const int left = device(tile.box.x, scale);
    const int top = device(tile.box.y, scale);
    return {left - margin, top - margin, device(tile.box.right(), scale) - left + 2 * margin,
            device(tile.box.bottom(), scale) - top + 2 * margin};
}

std::vector<QRect> deviceAreas(const Scene& scene, double scale) {
    std::vector<QRect> areas;
    areas.reserve(scene.size());
    for (const Tile& tile : scene) areas.push_back(deviceArea(tile, scale));
    return areas;
}

QRegion sceneDifference(const Scene& before, const Scene& now, double scale, const QRect& whole) {
    if (before.size() != now.size()) return whole;
    QRegion region;
    for (std::size_t i = 0; i < now.size(); ++i) {
        if (before[i] == now[i]) continue;
        region += deviceArea(now[i], scale);
        if (before[i].box != now[i].box || before[i].margin != now[i].margin)
            region += deviceArea(before[i], scale);
    }
    return region;
}

void TileCache::setScale(double scale) {
    if (scale == scale_) return;
    scale_ = scale;
    pixmaps_.clear();
}

void TileCache::paint(QPainter& painter, const Scene& scene, const std::vector<QRect>& places,
                      const QRect& area) {
    painter.save();
    painter.setClipRect(area);
    for (std::size_t i = lowestSeen(scene, places, area, scale_); i < scene.size(); ++i) {
        const QRect& at = places[i];
        if (!at.intersects(area)) continue;
        const Tile& tile = scene[i];
        if (tile.box.width > kLargest)
            paintTile(painter, tile, at, scale_);
        else
            painter.drawPixmap(at.topLeft(), picture(tile, at));
    }
    painter.restore();
}

QPixmap TileCache::picture(const Tile& tile, const QRect& area) {
    const Key key{tile.art, tile.look, area.width(), area.height()};
    if (const QPixmap* known = pixmaps_.object(key)) return *known;
    QPixmap pixmap(area.size());
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paintTile(painter, tile, QRect(QPoint(0, 0), area.size()), scale_);
    painter.end();
    // The cache may drop a picture that is larger than itself; the copy stays good.
    pixmaps_.insert(key, new QPixmap(pixmap), qsizetype{4} * area.width() * area.height());
    return pixmap;
}

std::size_t qHash(const TileCache::Key& key, std::size_t seed) {
    std::size_t hash = std::hash<std::string>()(key.look.text) ^ seed;
    for (const std::size_t part : {reinterpret_cast<std::size_t>(key.art), std::size_t{key.look.marks},
                                   static_cast<std::size_t>(key.look.number),
                                   static_cast<std::size_t>(key.look.second), std::size_t{key.look.module},
                                   static_cast<std::size_t>(key.width), static_cast<std::size_t>(key.height)})
        hash = hash * 31 + part;
    return hash;
}

void paintScene(QPainter& painter, const Scene& scene, double scale) {
    for (const Tile& tile : scene) paintTile(painter, tile, deviceArea(tile, scale), scale);
}

Box loupeOf(const Box& place, const Box& window) {
    constexpr double kAway = 22; // from the place: a finger is wide
    Box loupe{place.middleX() - place.width, place.y - kAway - 2 * place.height, 2 * place.width,
              2 * place.height};
    if (loupe.y < 4) loupe.y = place.bottom() + kAway;
    loupe.x = std::clamp(loupe.x, 4.0, std::max(4.0, window.width - loupe.width - 4));
    return loupe;
}

void paintLoupe(QPainter& painter, const Scene& scene, const Box& place, const Box& window, double scale) {
    constexpr double kRadius = 6;
    const Box at = loupeOf(place, window);
    painter.save();
    const QRectF frame(at.x * scale, at.y * scale, at.width * scale, at.height * scale);
    QPainterPath shape;
    shape.addRoundedRect(frame, kRadius * scale, kRadius * scale);
    painter.setClipPath(shape);
    painter.translate(
        QPointF(frame.left() - place.x * 2 * scale, frame.top() - place.y * 2 * scale).toPoint());
    for (const Tile& tile : scene) {
        const QRect area = deviceArea(tile, 2 * scale);
        const QRectF seen(place.x * 2 * scale, place.y * 2 * scale, frame.width(), frame.height());
        if (seen.intersects(area)) paintTile(painter, tile, area, 2 * scale);
    }
    painter.restore();
    painter.save();
    painter.scale(scale, scale);
    const Ink ink(painter, scale);
    ink.frame(QRectF(at.x - 1, at.y - 1, at.width + 2, at.height + 2), kRadius + 1, palette::kText,
              ink.snap(2));
    painter.restore();
}

void paintFocus(QPainter& painter, const Box& box, double scale) {
    painter.save();
    painter.scale(scale, scale);
    const Ink ink(painter, scale);
    const QRectF around(box.x - 4, box.y - 4, box.width + 8, box.height + 8);
    ink.frame(ink.snapped(around), 6, palette::kText, ink.snap(2));
    painter.restore();
}

} // namespace marlune
