// What the parts of the Song Map's scene are built with.
#pragma once

#include <string>
#include <utility>

#include "windows/arts.h"
#include "windows/map_scene.h"
#include "windows/scene_parts.h"

namespace marlune {

class MapTools {
  public:
    MapTools(Scene& scene, const MapState& state, const MapDesk& desk, const MapShow& show)
        : scene_(scene), state_(state), desk_(desk), view_(desk.view), show_(show) {}

  protected:
    static constexpr int kHalo = 8;
    static constexpr int kCapRim = 3;
    static constexpr int kPlateRim = 12; // of its round corners
    static constexpr int kStripColours = 3;

    void put(TileArt art, const Box& box, int margin, TileLook look) {
        scene_.push_back({art, box, margin, std::move(look)});
    }
    void putMoving(TileArt art, const Box& box, int margin, TileLook look) {
        put(art, box, margin, std::move(look));
        scene_.back().moves = true;
    }
    [[nodiscard]] Box boxOf(MapPart part, int module = 0, int column = 0, int row = 0) const {
        return mapBox(view_, part, module, column, row);
    }
    // The look of a place with the marks of the pointer.
    [[nodiscard]] TileLook lookAt(const MapSpot& spot, std::string text = {}) const {
        TileLook look = plain(spot.module, std::move(text));
        look.set(kTileHover, show_.hover == spot);
        look.set(kTileDown, show_.held == spot);
        look.set(kTileAsleep, !mapPlaceAwake(state_, desk_, spot));
        return look;
    }
    static TileLook plain(int module, std::string text = {}) {
        TileLook look;
        look.module = static_cast<std::uint8_t>(module);
        look.text = std::move(text);
        return look;
    }
    static TileLook numbered(int module, double number, double second = 0) {
        TileLook look = plain(module);
        look.number = static_cast<std::int16_t>(number);
        look.second = static_cast<std::int16_t>(second);
        return look;
    }
    void digits(const Box& box, int module, std::string text, int places, int pitch,
                std::uint32_t marks = 0) {
        TileLook look = numbered(module, places, pitch);
        look.text = std::move(text);
        look.marks |= marks;
        addDigits(scene_, box, look);
    }
    void captionAt(double x, double baseline, const char* text) {
        put(artCaption, {x, baseline - 11, 80, 11}, 2, plain(kStripColours, text));
    }
    void plate(const Box& box, TileArt art = artStrip, TileLook look = plain(kStripColours)) {
        put(art, box, kHalo, std::move(look));
        scene_.back().solid = kPlateRim;
    }

    Scene& scene_;
    const MapState& state_;
    const MapDesk& desk_;
    const MapView& view_;
    const MapShow& show_;
};

// Overview, ruler, lanes, knobs: map_time_scene.cpp. Palettes and selection: map_dock_scene.cpp
void addMapTime(Scene& scene, const MapState& state, const MapDesk& desk, const MapShow& show);
void addMapDock(Scene& scene, const MapState& state, const MapDesk& desk, const MapShow& show);

} // namespace marlune
