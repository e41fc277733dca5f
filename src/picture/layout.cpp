#include "picture/layout.h"

#include <cstddef>
#include <vector>

namespace marlune {

namespace {

using ControlIndex = std::array<std::array<PlacedControl*, kMaxControlCount>, kControls>;

std::span<PlacedControl> places() {
    static std::vector<PlacedControl> table(designedControls().begin(), designedControls().end());
    return table;
}

ControlIndex makeIndex() {
    ControlIndex index{};
    for (PlacedControl& placed : places())
        index[static_cast<std::size_t>(placed.control)][placed.index] = &placed;
    return index;
}

bool contains(const PanelRect& r, double x, double y) {
    return x >= r.x && x < r.x + r.width && y >= r.y && y < r.y + r.height;
}

PlacedControl* find(Control control, int index) {
    static const ControlIndex kIndex = makeIndex();
    if (index < 0 || index >= kMaxControlCount) return nullptr;
    return kIndex[static_cast<std::size_t>(control)][index];
}

} // namespace

std::span<const PlacedControl> placedControls() {
    return places();
}

void placeControl(Control control, int index, const PanelRect& rect) {
    if (PlacedControl* placed = find(control, index)) placed->rect = rect;
}

const PlacedControl* placedControl(Control control, int index) {
    return find(control, index);
}

const PlacedControl* controlAt(double x, double y) {
    const PlacedControl* top = nullptr;
    for (const PlacedControl& placed : placedControls()) {
        if (!placed.interactive || !contains(placed.rect, x, y)) continue;
        if (top == nullptr || placed.layer > top->layer) top = &placed;
    }
    return top;
}

const MatrixGlyph* matrixGlyph(char character) {
    for (const MatrixGlyph& glyph : matrixGlyphs())
        if (glyph.character == character) return &glyph;
    return nullptr;
}

} // namespace marlune
