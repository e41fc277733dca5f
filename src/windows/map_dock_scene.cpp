// The Song Map's dock: three palettes and what is selected.

#include <string>

#include "windows/map_tools.h"

namespace marlune {

namespace {

constexpr int kLongCount = 100; // bars from which on the count has four places
constexpr double kLongGlass = 60;

class Dock final : public MapTools {
  public:
    using MapTools::MapTools;

    void add() {
        for (int m = 0; m < kModules; ++m) palette(m);
        selection();
    }

  private:
    void palette(int m) {
        const bool paints = state_.songMode && desk_.pointer == MapPointer::paint;
        TileLook look = plain(m, kSheetModuleNames[m]);
        look.set(kTileEdit, paints && state_.edited == m);
        put(artPalette, boxOf(MapPart::palettePlate, 0, m), 10, look);
        scene_.back().solid = kPlateRim;
        digits(boxOf(MapPart::palettePick, 0, m), m, barName(desk_.paint[m]), 2, 2,
               paints ? 0U : std::uint32_t{kTileAsleep});
        const SongBar marked = paints ? desk_.paint[m] : state_.current[m];
        for (int pattern = 0; pattern < kPatterns; ++pattern) {
            const Box slot = boxOf(MapPart::paletteSlot, m, pattern);
            TileLook number = plain(m, std::to_string(pattern + 1));
            number.set(kTileSelected, marked.patt == pattern);
            put(artSlotNumber, {slot.x, slot.y - 13, slot.width, 12}, 1, number);
        }
        for (int bank = 0; bank < kBanks; ++bank) {
            const Box slot = boxOf(MapPart::paletteSlot, m, 0, bank);
            TileLook letter = plain(m, std::string(1, static_cast<char>('A' + bank)));
            letter.set(kTileSelected, marked.bank == bank);
            put(artSlotNumber, {slot.x - 19, slot.y, 12, slot.height}, 1, letter);
        }
        TileLook glow = plain(m);
        glow.set(kTileLit, state_.songMode);
        put(artSlotGlow, boxOf(MapPart::paletteSlot, m, state_.current[m].patt, state_.current[m].bank),
            kHalo, glow);
        for (int bank = 0; bank < kBanks; ++bank)
            for (int pattern = 0; pattern < kPatterns; ++pattern)
                slot(m, {static_cast<std::uint8_t>(pattern), static_cast<std::uint8_t>(bank)}, paints);
    }
    void slot(int m, SongBar bar, bool paints) {
        const SheetSlot& small = state_.slot(m, bar);
        TileLook look = lookAt({MapPart::paletteSlot, m, bar.patt, bar.bank});
        look.text.assign(small.dots.begin(), small.dots.end());
        look.number = small.heights;
        look.second = static_cast<std::int16_t>(small.kind);
        look.set(kTileLit, state_.current[m] == bar);
        look.set(kTileCued,
                 state_.songMode && state_.running && state_.cued[m] == bar && state_.current[m] != bar);
        const Box box = boxOf(MapPart::paletteSlot, m, bar.patt, bar.bank);
        put(artSlot, box, 5, look);
        if (paints && desk_.paint[m] == bar) put(artPaintFrame, box, 4, plain(m));
    }

    void toggle(const MapSpot& spot, const std::string& text, int colours, bool lit) {
        TileLook look = lookAt(spot, text);
        look.module = static_cast<std::uint8_t>(colours);
        look.set(kTileLit, lit);
        put(artToggle, boxOf(spot.part, 0, spot.column), kCapRim, look);
    }
    void selection() {
        const MapSelection& chosen = desk_.selection;
        const bool any = chosen.any();
        const Box box = boxOf(MapPart::selectionPlate);
        plate(box, artPalette);
        captionAt(box.x + 14, box.y + 20, "SELECTION");
        for (int m = 0; m < kModules; ++m)
            toggle({MapPart::selectionModule, m, m}, kSheetModuleNames[m], m, chosen.lanes.modules[m]);
        toggle({MapPart::selectionKnobs}, "KNOBS", kStripColours, chosen.lanes.knobs);
        const auto number = [&](MapPart part, int value, int places, Box glass) {
            const std::uint32_t hover = show_.hover.part == part && any ? std::uint32_t{kTileHover} : 0U;
            digits(glass, kStripColours, any ? std::to_string(value) : std::string(), places, 2, hover);
        };
        const Box first = boxOf(MapPart::selectionFirst);
        number(MapPart::selectionFirst, chosen.bars.first + 1, 4, first);
        put(artDash, {first.right() + 3, first.y, 6, first.height}, 2, plain(kStripColours));
        number(MapPart::selectionLast, chosen.bars.end(), 4, boxOf(MapPart::selectionLast));
        Box count = boxOf(MapPart::selectionCount);
        const bool isLong = chosen.bars.count >= kLongCount;
        if (isLong) count.width = kLongGlass;
        number(MapPart::selectionCount, chosen.bars.count, isLong ? 4 : 2, count);
        if (!isLong) captionAt(count.right() + 6, count.y + 16.5, "BARS");
        constexpr std::pair<MapPart, const char*> kCommands[] = {{MapPart::copy, "COPY"},
                                                                 {MapPart::paste, "PASTE"},
                                                                 {MapPart::insert, "INSERT"},
                                                                 {MapPart::remove, "DELETE"},
                                                                 {MapPart::init, "INIT"}};
        for (const auto& [part, word] : kCommands)
            put(artCommand, boxOf(part), kCapRim, lookAt({part}, word));
    }
};

} // namespace

void addMapDock(Scene& scene, const MapState& state, const MapDesk& desk, const MapShow& show) {
    Dock(scene, state, desk, show).add();
}

} // namespace marlune
