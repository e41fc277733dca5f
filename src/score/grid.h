// Places in a window, in its pixels at scale 1: boxes, and grids of equal cells. Pure; any thread.
#pragma once

namespace marlune {

struct Box {
    double x = 0, y = 0, width = 0, height = 0;

    [[nodiscard]] double right() const { return x + width; }
    [[nodiscard]] double bottom() const { return y + height; }
    [[nodiscard]] double middleX() const { return x + width / 2; }
    [[nodiscard]] double middleY() const { return y + height / 2; }
    [[nodiscard]] bool contains(double px, double py) const {
        return px >= x && px < right() && py >= y && py < bottom();
    }
    [[nodiscard]] Box moved(double dx, double dy) const { return {x + dx, y + dy, width, height}; }
    friend bool operator==(const Box&, const Box&) = default;
};

// One cell and its repetition; every groupEvery columns a gap more (0: none).
struct Grid {
    Box cell;
    int columns = 1, rows = 1;
    double pitchX = 0, pitchY = 0;
    int groupEvery = 0;
    double groupGap = 0;
    Box hit; // what the pointer meets, relative to the cell; width 0: the cell itself

    [[nodiscard]] Box at(int column, int row) const {
        const int gaps = groupEvery > 0 ? column / groupEvery : 0;
        return cell.moved(column * pitchX + gaps * groupGap, row * pitchY);
    }
    [[nodiscard]] Box hitAt(int column, int row) const {
        const Box box = at(column, row);
        return hit.width > 0 ? Box{box.x + hit.x, box.y + hit.y, hit.width, hit.height} : box;
    }
};

// A row of a window's layout table. perModule: x counts from the left edge of the module's plate.
template <typename Part>
struct Placed {
    Part part;
    Grid grid;
    bool perModule;
};

} // namespace marlune
