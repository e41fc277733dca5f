// Painted pieces kept as pixmaps, the least used dropped first. User-interface thread only.
#pragma once

#include <QCache>
#include <QPixmap>

#include "picture/scene.h"

namespace marlune {

class SpriteCache {
  public:
    static constexpr qsizetype kBudget = 64 << 20; // bytes

    SpriteCache() : pixmaps_(kBudget) {}

    // Draws the piece at the scale in use, on a painter in device pixels; painted on first use.
    void draw(QPainter& painter, const Piece& piece, const Look& look);
    // Drops everything when the scale is another one.
    void setScale(double scale);
    [[nodiscard]] double scale() const { return scale_; }
    [[nodiscard]] qsizetype bytes() const { return pixmaps_.totalCost(); }

    struct Key {
        Look look;
        int width, height; // of the whole piece, device pixels
        bool operator==(const Key&) const = default;
    };

  private:
    // crop: within the piece's rectangle.
    QPixmap picture(const Piece& piece, const Look& look, const DeviceRect& crop);

    QCache<Key, QPixmap> pixmaps_;
    double scale_ = 1;
};

inline std::size_t qHash(const SpriteCache::Key& key, std::size_t seed = 0) {
    return hashOf(key.look) ^ (static_cast<std::size_t>(key.width) * 8191 + key.height) ^ seed;
}

} // namespace marlune
