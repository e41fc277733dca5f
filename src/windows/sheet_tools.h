// What the parts of the Pattern Sheet's scene are built with.
#pragma once

#include <string>
#include <utility>

#include "windows/arts.h"
#include "windows/scene_parts.h"
#include "windows/sheet_scene.h"

namespace marlune {

inline constexpr int kHaloMargin = 8;
inline constexpr int kCapMargin = 3;
inline constexpr int kPlateEdge = 12; // of its round corners
inline constexpr int kStripColours = 3;

class SheetTools {
  public:
    SheetTools(Scene& scene, const SheetState& state, const SheetShow& show)
        : scene_(scene), state_(state), show_(show) {}

  protected:
    void put(TileArt art, const Box& box, int margin, TileLook look) {
        scene_.push_back({art, box, margin, std::move(look)});
    }
    void putMoving(TileArt art, const Box& box, int margin, TileLook look) {
        put(art, box, margin, std::move(look));
        scene_.back().moves = true;
    }
    [[nodiscard]] Box boxOf(SheetPart part, int module = 0, int column = 0, int row = 0) const {
        return sheetBox(show_.form, part, module, column, row);
    }
    // The look of a place with the marks of the pointer.
    [[nodiscard]] TileLook lookAt(SheetPart part, int module = 0, int column = 0, int row = 0) const {
        const SheetSpot spot{part, module, column, row};
        TileLook look;
        look.module = static_cast<std::uint8_t>(module);
        look.set(kTileHover, show_.hover == spot);
        look.set(kTileDown, show_.held == spot);
        return look;
    }
    [[nodiscard]] bool edited(int module) const { return state_.edited == module; }
    static TileLook plain(int module, std::string text = {}) {
        TileLook look;
        look.module = static_cast<std::uint8_t>(module);
        look.text = std::move(text);
        return look;
    }
    void digits(const Box& box, int module, std::string text, int places, int pitch,
                std::uint32_t marks = 0) {
        TileLook look = plain(module, std::move(text));
        look.number = static_cast<std::int16_t>(places);
        look.second = static_cast<std::int16_t>(pitch);
        look.marks |= marks;
        addDigits(scene_, box, look);
    }
    void captionAt(double x, double baseline, const char* text) {
        put(artCaption, {x, baseline - 11, 60, 11}, 2, plain(kStripColours, text));
    }

    Scene& scene_;
    const SheetState& state_;
    const SheetShow& show_;
};

// One module: header, time axis, roll or pads, patterns. sheet_module_scene.cpp
void addSheetModule(Scene& scene, const SheetState& state, const SheetShow& show, int module);

} // namespace marlune
