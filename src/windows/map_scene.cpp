// The list of the Song Map's tiles, back to front: bed, strip, time line, dock, status bar.

#include "windows/map_scene.h"

#include "windows/map_tools.h"

namespace marlune {

namespace {

constexpr double kStatusRight = 460; // of the status bar, for what stands at its right
constexpr Box kPointerGlass{622, 14, 234, 32};
constexpr Box kViewOnly{680, 18, 119, 24};

class Frame final : public MapTools {
  public:
    using MapTools::MapTools;

    void add() {
        put(artBed, {0, 0, view_.width, view_.height}, 0, {});
        put(artStrip, boxOf(MapPart::strip), kHalo, plain(kStripColours, "Song Map"));
        TileLook mode = lookAt({MapPart::modeSwitch});
        mode.set(kTileLit, state_.songMode);
        put(artModeSwitch, boxOf(MapPart::modeSwitch), kHalo, mode);
        transport();
        pointer();
        TileLook follow = lookAt({MapPart::follow});
        follow.set(kTileLit, desk_.follow);
        put(artFollow, boxOf(MapPart::follow), kHalo, follow);
        cap(MapPart::undo, CapSign::undo);
        cap(MapPart::redo, CapSign::redo);
        TileLook size = lookAt({MapPart::size}, std::to_string(show_.zoom) + " %");
        size.number = -1;
        put(artCap, boxOf(MapPart::size), kCapRim, size);
        cap(MapPart::dockToggle, CapSign::dock);
    }
    void statusBar() {
        TileLook left = plain(kStripColours, show_.status.left);
        left.set(kTileLit, show_.status.refusal);
        left.number = lettersKept(show_.status.right);
        put(artStatus, boxOf(MapPart::statusBar), 0, left);
        Box right = boxOf(MapPart::statusBar);
        right.x = right.right() - kStatusRight;
        right.width = kStatusRight;
        putMoving(artStatusRight, right, 0, plain(kStripColours, show_.status.right));
    }

  private:
    void cap(MapPart part, CapSign sign) {
        TileLook look = lookAt({part});
        look.number = static_cast<std::int16_t>(sign);
        put(artCap, boxOf(part), kCapRim, look);
    }
    void transportCap(MapPart part, CapSign sign, bool lit = false) {
        TileLook look = lookAt({part});
        look.number = static_cast<std::int16_t>(sign);
        look.set(kTileLit, lit);
        put(artTransportCap, boxOf(part), kHalo, look);
    }
    void transport() {
        TileLook armed = plain(kStripColours);
        armed.set(kTileLit, state_.armed);
        put(artArmed, boxOf(MapPart::transport), 1, armed);
        transportCap(MapPart::reset, CapSign::toStart);
        transportCap(MapPart::previousBar, CapSign::back);
        digits(boxOf(MapPart::barDigits), kStripColours, std::to_string(state_.bar() + 1), 4, 3,
               state_.songMode ? 0U : std::uint32_t{kTileAsleep});
        transportCap(MapPart::nextBar, CapSign::forward);
        transportCap(MapPart::stop, CapSign::stop);
        transportCap(MapPart::play, CapSign::play, state_.running && state_.songMode);
        transportCap(MapPart::record, CapSign::record, state_.armed);
    }
    void pointer() {
        if (!state_.songMode) {
            TileLook view;
            view.set(kTileLit);
            put(artViewOnly, kViewOnly, 1, view);
            return;
        }
        put(artGlass, kPointerGlass, 2, plain(kStripColours));
        for (int i = 0; i < 3; ++i) {
            TileLook look = lookAt({MapPart::pointerMode, 0, i});
            look.number = static_cast<std::int16_t>(i);
            look.set(kTileLit, static_cast<int>(desk_.pointer) == i);
            put(artPointerMode, boxOf(MapPart::pointerMode, 0, i), kCapRim, look);
        }
    }
};

} // namespace

Scene mapScene(const MapState& state, const MapDesk& desk, const MapShow& show) {
    Scene scene;
    Frame frame(scene, state, desk, show);
    frame.add();
    addMapTime(scene, state, desk, show);
    if (desk.view.dock) addMapDock(scene, state, desk, show);
    frame.statusBar();
    return scene;
}

std::array<double, kKnobs> chipTexts(const std::array<std::string, kKnobs>& names) {
    std::array<double, kKnobs> widths{};
    for (int k = 0; k < kKnobs; ++k)
        widths[k] = Ink::textWidth(QString::fromStdString(names[k]), {11, 500, -0.1});
    return widths;
}

} // namespace marlune
