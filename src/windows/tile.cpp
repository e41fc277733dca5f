#include "windows/tile.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <functional>
#include <unordered_map>

namespace marlune {

namespace {

// Pixels of the window; what is larger is painted, not kept. Rows may be long where they are low.
constexpr double kWidest = 600;
constexpr double kLargestRow = 100'000;
constexpr std::size_t kManyChanges = 256; // more than these are one change, of all between them
constexpr double kWaste = 1.2;            // pixels repainted without need, for fewer pieces

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

std::size_t hashOf(const Tile& tile) {
    const TileCache::Key key{tile.art, tile.look, static_cast<int>(tile.box.x * 8),
                             static_cast<int>(tile.box.y * 8)};
    return qHash(key, static_cast<std::size_t>(static_cast<int>(tile.box.width * 8)));
}

QRect solidPart(const Tile& tile, const QRect& place, double scale) {
    const int inset = static_cast<int>(std::ceil((tile.margin + tile.solid) * scale));
    return place.adjusted(inset, inset, -inset, -inset);
}

// The first tile from which on something shows in the area: the topmost that hides all beneath it there.
std::size_t lowestSeen(const Scene& scene, const std::vector<QRect>& places, const QRect& area,
                       double scale) {
    for (std::size_t i = scene.size(); i-- > 1;) {
        if (scene[i].solid < 0) continue;
        if (solidPart(scene[i], places[i], scale).contains(area)) return i;
    }
    return 0;
}

// What later tiles hide: of tiles one beside the other that stand behind all wide ones.
struct Cover {
    std::size_t first = 0; // the wide tiles before this one lie beneath
    QRegion hidden;
};

Cover coverOf(const Scene& scene, const std::vector<QRect>& places, const QRect& area, double scale) {
    Cover cover;
    if (area.width() < kWidest * scale) return cover; // isn't worth it
    QRect row;
    for (std::size_t i = 0; i < scene.size(); ++i) {
        if (scene[i].solid < 0 || scene[i].box.width > kWidest) continue;
        if (cover.first == 0) cover.first = i;
        const QRect part = solidPart(scene[i], places[i], scale);
        const bool goesOn = part.top() == row.top() && part.height() == row.height() &&
                            part.left() <= row.right() + 1 && part.left() >= row.left();
        if (!goesOn) {
            cover.hidden += row;
            row = part;
        }
        row |= part;
    }
    cover.hidden += row;
    return cover;
}

double pixelsOf(const QRect& r) {
    return 1.0 * r.width() * r.height();
}

// Few rectangles that cover all changes: every piece to be painted costs a walk through the scene.
std::vector<QRect> gathered(const std::vector<QRect>& changes) {
    std::vector<QRect> pieces;
    QRect all;
    double sum = 0;
    for (const QRect& change : changes) {
        all |= change;
        sum += pixelsOf(change);
    }
    if (sum * 2 > pixelsOf(all)) return {all};
    for (QRect piece : changes) {
        for (std::size_t i = 0; i < pieces.size();) {
            const QRect both = pieces[i] | piece;
            if (pixelsOf(both) > kWaste * (pixelsOf(pieces[i]) + pixelsOf(piece))) {
                ++i;
                continue;
            }
            piece = both; // which may reach others now
            pieces[i] = pieces.back();
            pieces.pop_back();
            i = 0;
        }
        pieces.push_back(piece);
    }
    return pieces;
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

QRegion sceneDifference(const Scene& before, const Scene& now, double scale) {
    std::vector<QRect> changes;
    const auto add = [&](const Tile& tile) { changes.push_back(deviceArea(tile, scale)); };
    if (before.size() == now.size()) {
        for (std::size_t i = 0; i < now.size(); ++i) {
            if (before[i] == now[i]) continue;
            add(now[i]);
            if (before[i].box != now[i].box || before[i].margin != now[i].margin) add(before[i]);
        }
    } else {
        // Tiles came and went; what is there before and after stands in the same order.
        std::unordered_multimap<std::size_t, const Tile*> left;
        for (const Tile& tile : before) left.emplace(hashOf(tile), &tile);
        for (const Tile& tile : now) {
            const auto [first, last] = left.equal_range(hashOf(tile));
            const auto same = std::find_if(first, last, [&](const auto& at) { return *at.second == tile; });
            if (same != last)
                left.erase(same);
            else
                add(tile);
        }
        for (const auto& [hash, tile] : left) add(*tile);
    }
    QRegion region;
    if (changes.size() > kManyChanges) {
        QRect all;
        for (const QRect& change : changes) all |= change;
        return all;
    }
    for (const QRect& piece : gathered(changes)) region += piece;
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
    const std::size_t lowest = lowestSeen(scene, places, area, scale_);
    const Cover cover = coverOf(scene, places, area, scale_);
    for (std::size_t i = lowest; i < scene.size(); ++i) {
        const QRect& at = places[i];
        if (at.isEmpty() || !at.intersects(area)) continue; // narrower than half a pixel
        const Tile& tile = scene[i];
        const bool beneath = i < cover.first && tile.box.width > kWidest;
        if (beneath) {
            const QRegion seen = QRegion(at & area) - cover.hidden;
            if (seen.isEmpty()) continue;
            painter.setClipRegion(seen);
        }
        if (tile.box.width > kWidest && tile.box.width * tile.box.height > kLargestRow)
            paintTile(painter, tile, at, scale_);
        else
            painter.drawPixmap(at.topLeft(), picture(tile, at));
        if (beneath) painter.setClipRect(area);
    }
    painter.restore();
}

QPixmap TileCache::picture(const Tile& tile, const QRect& area) {
    const Key key{tile.art, tile.look, area.width(), area.height()};
    if (const QPixmap* known = pixmaps_.object(key)) return *known;
    QPixmap pixmap(area.size());
    pixmap.fill(tile.solid == 0 && tile.margin == 0 ? Qt::black : Qt::transparent); // opaque ones are copied
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
    for (const bool moving : {false, true})
        for (const Tile& tile : scene)
            if (tile.moves == moving) paintTile(painter, tile, deviceArea(tile, scale), scale);
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
