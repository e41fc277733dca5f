// What a window shows: the tiles at rest, kept as one picture, and upon it those that move.
//
// A tick copies a column of the picture and draws the playhead anew; what lies beneath isn't put together
// again. Places and areas are device pixels from the scene's own origin. User-interface thread only.
#pragma once

#include <QPixmap>
#include <QRegion>
#include <QSize>
#include <vector>

#include "windows/tile.h"

namespace marlune {

class SceneCanvas {
  public:
    // Takes what is to be shown, and tells where that differs from what was shown.
    QRegion show(Scene now);
    // Draws all that touches the area on a painter in device pixels, clipped to it.
    void paint(QPainter& painter, const QRect& area);
    // The scene's size on the device; another size or scale: nothing of the picture is good any more.
    void setSize(QSize size, double scale);
    [[nodiscard]] double scale() const { return tiles_.scale(); }
    [[nodiscard]] Scene scene() const; // as shown, back to front
    [[nodiscard]] qsizetype bytes() const;

  private:
    struct Layer {
        Scene scene;
        std::vector<QRect> places;
        QRegion show(Scene now, double scale);
    };
    void renew(const QRegion& due);

    TileCache tiles_;
    Layer rest_, moving_;
    QSize size_;
    QPixmap picture_; // of the layer at rest
    QRegion stale_;   // where the picture is out of date
};

} // namespace marlune
