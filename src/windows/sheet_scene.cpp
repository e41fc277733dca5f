// The list of the Pattern Sheet's tiles, back to front: the frame, then the modules.

#include "windows/sheet_scene.h"

#include <string>
#include <utility>

#include "windows/sheet_tools.h"

namespace marlune {

namespace {

constexpr double kStatusRight = 420; // of the status bar, for what stands at its right

class Frame final : public SheetTools {
  public:
    using SheetTools::SheetTools;

    void add() {
        put(artBed, sheetSize(show_.form), 0, {});
        if (show_.form == SheetForm::wide) {
            wideFrame();
            for (int m = 0; m < kModules; ++m) addSheetModule(scene_, state_, show_, m);
        } else {
            compactFrame();
            addSheetModule(scene_, state_, show_, state_.edited);
            others();
        }
        statusBar();
    }

  private:
    void cap(SheetPart part, CapSign sign, bool awake = true) {
        TileLook look = lookAt(part);
        look.number = static_cast<std::int16_t>(sign);
        look.set(kTileAsleep, !awake);
        put(artCap, boxOf(part), kCapMargin, look);
    }
    void startStop() {
        TileLook look = lookAt(SheetPart::startStop);
        look.set(kTileLit, state_.running);
        put(artStartStop, boxOf(SheetPart::startStop), 10, look);
    }
    void wideFrame() {
        put(artStrip, boxOf(SheetPart::strip), kHaloMargin, plain(kStripColours, "Pattern Sheet"));
        TileLook mode = lookAt(SheetPart::modeSwitch);
        mode.set(kTileLit, state_.songMode);
        put(artModeSwitch, boxOf(SheetPart::modeSwitch), kHaloMargin, mode);
        startStop();
        captionAt(442, 34, "TEMPO");
        digits(boxOf(SheetPart::tempo), kStripColours, std::to_string(state_.tempo), 3, 3);
        if (state_.songMode) {
            captionAt(582, 34, "BAR");
            digits(boxOf(SheetPart::bar), kStripColours, std::to_string(state_.bar + 1), 4, 3);
        }
        TileLook view;
        view.set(kTileLit, state_.songMode);
        put(artViewOnly, boxOf(SheetPart::viewOnly), 1, view);
        cap(SheetPart::undo, CapSign::undo, state_.canUndo);
        cap(SheetPart::redo, CapSign::redo, state_.canRedo);
        cap(SheetPart::zoomOut, CapSign::minus);
        cap(SheetPart::zoomIn, CapSign::plus);
        TileLook label = lookAt(SheetPart::zoomLabel);
        label.text = std::to_string(show_.zoom) + " %";
        put(artLabelGlass, boxOf(SheetPart::zoomLabel), 2, label);
        cap(SheetPart::compactToggle, CapSign::compact);
        for (int m = 0; m < kModules; ++m) {
            TileLook look = plain(m, kSheetModuleNames[m]);
            look.set(kTileEdit, edited(m));
            put(artPlate, boxOf(SheetPart::plate, m), 10, look);
            scene_.back().solid = kPlateEdge;
        }
    }
    void compactFrame() {
        put(artStrip, boxOf(SheetPart::strip), kHaloMargin, plain(kStripColours));
        for (int m = 0; m < kModules; ++m) {
            const SheetModule& shown = state_.modules[m];
            TileLook look = lookAt(SheetPart::moduleTab, 0, m);
            look.module = static_cast<std::uint8_t>(m);
            look.text = std::string(kSheetModuleNames[m]) + "\n" + slotName(shown.bank, shown.pattern);
            look.set(kTileLit, edited(m));
            look.set(kTileCued, shown.cued());
            put(artModuleTab, boxOf(SheetPart::moduleTab, 0, m), kHaloMargin, look);
        }
        startStop();
        digits(boxOf(SheetPart::tempo), kStripColours, std::to_string(state_.tempo), 3, 3);
        cap(SheetPart::undo, CapSign::undo, state_.canUndo);
        cap(SheetPart::redo, CapSign::redo, state_.canRedo);
        TileLook zoom = lookAt(SheetPart::zoom);
        zoom.number = -1;
        zoom.text = std::to_string(show_.zoom) + " %";
        put(artCap, boxOf(SheetPart::zoom), kCapMargin, zoom);
        cap(SheetPart::compactToggle, CapSign::wide);
        TileLook plate = plain(state_.edited);
        plate.set(kTileEdit);
        put(artPlate, boxOf(SheetPart::plate), 10, plate);
        scene_.back().solid = kPlateEdge;
    }
    void statusBar() {
        TileLook left = plain(kStripColours, show_.status.left);
        left.set(kTileLit, show_.status.refusal);
        left.number = lettersKept(show_.status.right);
        put(artStatus, boxOf(SheetPart::statusBar), 0, left);
        Box right = boxOf(SheetPart::statusBar);
        right.x = right.right() - kStatusRight;
        right.width = kStatusRight;
        putMoving(artStatusRight, right, 0, plain(kStripColours, show_.status.right));
    }

    // The compact form's other modules.
    void others() {
        for (int place = 0; place < 2; ++place) {
            const int m = otherModule(state_.edited, place);
            const SheetModule& shown = state_.modules[m];
            const SheetSlot& small = shown.thumbs[shown.bank][shown.pattern];
            const Box box = boxOf(SheetPart::otherModule, 0, 0, place);
            TileLook name = plain(m, kSheetModuleNames[m]);
            put(artDrumName, {box.x - 43, box.y, 42, box.height}, 2, name);
            TileLook look = lookAt(SheetPart::otherModule, 0, 0, place);
            look.module = static_cast<std::uint8_t>(m);
            look.text.assign(small.dots.begin(), small.dots.end());
            if (small.kind == SheetSlot::Kind::fresh) look.text.assign(kSteps, '\1');
            look.number = small.heights;
            look.second = static_cast<std::int16_t>(state_.running ? shown.step : -1);
            put(artOther, box, 2, look);
        }
    }
};

} // namespace

Scene sheetScene(const SheetState& state, const SheetShow& show) {
    Scene scene;
    Frame(scene, state, show).add();
    return scene;
}

SheetView sheetView(const SheetState& state, SheetForm form) {
    SheetView view;
    view.form = form;
    view.edited = state.edited;
    for (int m = 0; m < kModules; ++m) view.lengths[m] = state.modules[m].length;
    return view;
}

} // namespace marlune
