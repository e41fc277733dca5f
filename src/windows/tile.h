// The pieces of a window's picture. A scene is a list of them, back to front; two scenes differ where their
// looks do, and only that is painted again.
//
// Common ground of all windows beside the panel: a window is a function that makes a scene. User-interface
// thread only.
#pragma once

#include <QCache>
#include <QPixmap>
#include <QRegion>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "picture/ink.h"
#include "score/grid.h"

namespace marlune {

// Marks of a look.
enum TileMark : std::uint32_t {
    kTileHover = 1,
    kTileDown = 2,   // held by the pointer
    kTileAsleep = 4, // can not be changed now
    kTileEdit = 8,   // in the module under edit
    kTileLit = 16,
    kTileBeyond = 32, // past the loop
    kTilePlaying = 64,
    kTileCued = 128,
    kTileAccent = 256,
    kTileUp = 512,
    kTileLow = 1024, // octave down
    kTileHeld = 2048,
    kTileRest = 4096,
    kTileChanged = 8192,
    kTileSelected = 16384,
    kTileBright = 32768, // the bright half of a breath
    kTileCompact = 65536,
};

// All that the picture of a tile depends on beside its size.
struct TileLook {
    std::uint32_t marks = 0;
    std::int16_t number = 0;
    std::int16_t second = 0;
    std::uint8_t module = 0; // 0..2; 3: the strip
    std::string text;

    [[nodiscard]] bool is(TileMark mark) const { return (marks & mark) != 0; }
    void set(TileMark mark, bool on = true) {
        if (on) marks |= mark;
    }
    bool operator==(const TileLook&) const = default;
};

// Draws a look with its box at the origin. Light may reach beyond the box, as far as the tile's margin.
using TileArt = void (*)(const Ink& ink, const TileLook& look, const QRectF& box);

struct Tile {
    TileArt art = nullptr;
    Box box;        // pixels of the window at scale 1
    int margin = 0; // light and shadow reach this far beyond the box
    TileLook look;
    int solid = -1;     // so far inside the box it hides all that lies beneath; -1: nowhere
    bool moves = false; // with the time or the pointer: upon all that rests
    bool operator==(const Tile&) const = default;
};
using Scene = std::vector<Tile>;

// What a tile covers on the device. Neighbours share edges.
QRect deviceArea(const Tile& tile, double scale);
std::vector<QRect> deviceAreas(const Scene& scene, double scale);

// Where two scenes differ, on the device.
QRegion sceneDifference(const Scene& before, const Scene& now, double scale);

// Tiles painted once for each look and size, the least used dropped first.
class TileCache {
  public:
    static constexpr qsizetype kBudget = 96 << 20; // bytes

    TileCache() : pixmaps_(kBudget) {}

    // Draws all that touches the area on a painter in device pixels, clipped to it. places: deviceAreas of
    // the scene at this scale.
    void paint(QPainter& painter, const Scene& scene, const std::vector<QRect>& places, const QRect& area);
    void setScale(double scale); // drops everything when it is another one
    [[nodiscard]] double scale() const { return scale_; }
    [[nodiscard]] qsizetype bytes() const { return pixmaps_.totalCost(); }

    struct Key {
        TileArt art;
        TileLook look;
        int width, height;
        bool operator==(const Key&) const = default;
    };

  private:
    QPixmap picture(const Tile& tile, const QRect& area);

    QCache<Key, QPixmap> pixmaps_;
    double scale_ = 1;
};

std::size_t qHash(const TileCache::Key& key, std::size_t seed = 0);

// The whole scene without a cache: for pictures and tests.
void paintScene(QPainter& painter, const Scene& scene, double scale);
// A place of the scene twice as large, for fingers that hide it: where it stands, and its picture.
Box loupeOf(const Box& place, const Box& window);
void paintLoupe(QPainter& painter, const Scene& scene, const Box& place, const Box& window, double scale);
void paintFocus(QPainter& painter, const Box& box, double scale); // the ring of the keyboard

} // namespace marlune
