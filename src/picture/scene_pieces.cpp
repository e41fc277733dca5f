// The list of pieces: which there are, where they stand, in which order they lie.

#include <algorithm>
#include <utility>

#include "picture/scene.h"

namespace marlune {

namespace {

constexpr int kTile = 168; // ground tiles: small enough to repaint one at a time
constexpr int kTileColumns = (kPanelWidth + kTile - 1) / kTile;
constexpr int kTileRows = (kPanelHeight + kTile - 1) / kTile;
constexpr int kHaloReach = 14;

// In the order of the symbols that paintTransport knows.
constexpr Control kTransport[] = {Control::ResetButton,    Control::prevButton, Control::nextButton,
                                  Control::RwdStep,        Control::FwdStep,    Control::stopButton,
                                  Control::playSongButton, Control::RecButton};

class PieceList {
  public:
    std::vector<Piece> make() {
        ground();
        behindCaps();
        for (int module = 0; module < 3; ++module) lampRow(module);
        for (int module = 0; module < 3; ++module) halos(module);
        for (int module = 0; module < 3; ++module) caps(module);
        strip();
        fields();
        return std::move(list_);
    }

  private:
    void add(Art art, Control control, int index, int margin, int part = 0) {
        const PlacedControl& at = *placedControl(control, index);
        list_.push_back({art, control, index, at.rect, margin, at.module, part});
    }
    void addAt(Art art, Control control, int index, PanelRect rect, int module, int part) {
        list_.push_back({art, control, index, rect, 0, module, part});
    }

    void ground() {
        for (int tile = 0; tile < kTileColumns * kTileRows; ++tile) {
            const int x = tile % kTileColumns * kTile;
            const int y = tile / kTileColumns * kTile;
            addAt(Art::ground, Control::edi109, -1,
                  {x, y, std::min(kTile, kPanelWidth - x), std::min(kTile, kPanelHeight - y)}, 0, tile);
        }
    }
    void behindCaps() {
        for (int row = 0; row < 8; ++row)
            addAt(Art::channel, Control::edi109, -1, kRegions.drumChannels[row], 2, row);
        for (int module = 0; module < 3; ++module) {
            const PanelRect& now = placedControl(Control::DigitPatt, 2 * module)->rect;
            addAt(Art::arrow, Control::edi109, -1, {now.x + now.width, now.y, 20, now.height}, module,
                  module);
        }
    }
    void lampRow(int module) {
        const PanelRect& rail = placedControl(Control::LEDBar, module)->rect;
        add(Art::rail, Control::LEDBar, module, 2);
        const PanelRect& first = placedControl(kStepAreas[module], 0)->rect;
        const PanelRect& last = placedControl(kStepAreas[module], 15)->rect;
        addAt(Art::bracket, Control::LoopPt, module,
              {first.x - 1, rail.y - 6, last.x + last.width - first.x + 2, 5}, module, module);
        for (int step = 0; step < 16; ++step) {
            const PanelRect& cap = placedControl(kStepAreas[module], step)->rect;
            addAt(Art::lamp, Control::LEDBar, module,
                  {cap.x + cap.width / 2 - 15, rail.y + rail.height / 2 - 15, 30, 30}, module, step);
        }
    }
    void halos(int module) {
        for (int step = 0; step < 16; ++step) halo(kStepAreas[module], step, 1);
        for (int bank = 0; bank < 4; ++bank) halo(kBankAreas[module], bank, 0);
        if (module < 2)
            for (Control cap : {Control::up, Control::down, Control::accent}) halo(cap, module, 0);
        else
            for (int row = 0; row < 8; ++row) halo(Control::sel109, row, 0);
        halo(Control::SelEditPicture, module, 2);
    }
    void halo(Control control, int index, int kind) { add(Art::halo, control, index, kHaloReach, kind); }

    void caps(int module) {
        for (int step = 0; step < 16; ++step)
            add(module == 2 ? Art::pad : Art::stepCap, kStepAreas[module], step, 3, step);
        for (int bank = 0; bank < 4; ++bank) add(Art::bankCap, kBankAreas[module], bank, 3, bank);
        add(Art::pill, Control::SelEditPicture, module, 1);
        add(Art::muteLamp, Control::muteLamp, module, 1);
        if (module == 2) {
            for (int row = 0; row < 8; ++row) add(Art::drumCap, Control::sel109, row, 3, row);
            for (int drum = 0; drum < 7; ++drum) add(Art::muteLamp, Control::muteLamp, 3 + drum, 1);
            return;
        }
        add(Art::keys, Control::keys, module, 10);
        add(Art::octaveCap, Control::up, module, 3, 0);
        add(Art::octaveCap, Control::down, module, 3, 1);
        add(Art::octaveCap, Control::accent, module, 3, 2);
        add(Art::slideLamp, Control::slideLamp, module, 1);
    }
    void strip() {
        halo(Control::startStopButton, 0, 0);
        halo(Control::playSongButton, 0, 0);
        halo(Control::RecButton, 0, 0);
        add(Art::modeSwitch, Control::Check1, 0, kHaloReach);
        add(Art::startStop, Control::startStopButton, 0, 3);
        for (int button = 0; button < 8; ++button) add(Art::transport, kTransport[button], 0, 3, button);
        PanelRect bar = placedControl(Control::timeDisplay, 0)->rect;
        bar.height += placedControl(Control::microDisplay, 0)->rect.height;
        list_.push_back({Art::barField, Control::timeDisplay, 0, bar, 2, kStripModule, 0});
        add(Art::tempoField, Control::tempoBPM, 0, 2);
        add(Art::knob, Control::knobTempo, 0, 2, 20);
    }
    void fields() {
        for (int digit = 0; digit < 6; ++digit) add(Art::patternField, Control::DigitPatt, digit, 2, digit);
        for (int module = 0; module < 3; ++module) add(Art::numberField, Control::LoopPt, module, 2);
        for (int module = 0; module < 2; ++module) add(Art::numberField, Control::PatchID, module, 2);
        for (int row = 0; row < 7; ++row) add(Art::noteField, Control::Offset109, row, 2);
        for (int knob = 0; knob < 20; ++knob) add(Art::knob, Control::knobSprite, knob, 2, knob);
        for (int knob = 0; knob < 20; ++knob) add(Art::title, Control::UserTitle, knob, 1);
    }

    std::vector<Piece> list_;
};

std::vector<Piece>& pieces() {
    static std::vector<Piece> list = PieceList().make();
    return list;
}

} // namespace

std::span<const Piece> panelPieces() {
    return pieces();
}

void layOutPieces() {
    pieces() = PieceList().make();
}

} // namespace marlune
