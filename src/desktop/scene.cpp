#include "desktop/scene.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/ink.h"

namespace marlune {

namespace {

constexpr int kTile = 168; // ground tiles: small enough to repaint one at a time
constexpr int kTileColumns = (kPanelWidth + kTile - 1) / kTile;
constexpr int kTileRows = (kPanelHeight + kTile - 1) / kTile;

constexpr Control kStepAreas[] = {Control::step103A, Control::step103B, Control::step109LED};
constexpr Control kBankAreas[] = {Control::bank103A, Control::bank103B, Control::bank109};
constexpr Control kKeyAreas[] = {Control::sel103AButton, Control::sel103BButton};
constexpr Control kTransport[] = {Control::ResetButton,    Control::prevButton, Control::nextButton,
                                  Control::RwdStep,        Control::FwdStep,    Control::stopButton,
                                  Control::playSongButton, Control::RecButton};
constexpr int kHaloReach = 14;

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
        if (module == 2) {
            for (int row = 0; row < 8; ++row) add(Art::drumCap, Control::sel109, row, 3, row);
            return;
        }
        add(Art::keys, Control::keys, module, 10);
        add(Art::octaveCap, Control::up, module, 3, 0);
        add(Art::octaveCap, Control::down, module, 3, 1);
        add(Art::octaveCap, Control::accent, module, 3, 2);
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

// Where a fractional place lands on the device. Neighbours share edges.
int device(double v, double scale) {
    return static_cast<int>(std::lround(v * scale));
}

bool touches(const PlacedControl* placed, const Piece& piece) {
    return placed != nullptr && placed->control == piece.control && placed->index == piece.index;
}

// Which of the shown states the ground behind a tile depends on: a plate under edit glows 6 pixels beyond it.
std::uint16_t groundMarks(const PanelRect& tile, const PanelState& state) {
    const auto near = [&](const PanelRect& r) {
        return tile.x < r.x + r.width + 6 && r.x - 6 < tile.x + tile.width && tile.y < r.y + r.height + 6 &&
               r.y - 6 < tile.y + tile.height;
    };
    unsigned marks = 0;
    for (int module = 0; module < 3; ++module)
        if (state.underEdit(module) && near(kRegions.modules[module]))
            marks |= unsigned{kGroundEdit} << module;
    if (near(kRegions.songBox)) {
        if (state.songMode()) marks |= kSong;
        if (state.armed()) marks |= kArmed;
    }
    return static_cast<std::uint16_t>(marks);
}

// The control that lights a cap: its frame, lamp or a digit display.
bool isLit(const Piece& piece, const PanelState& state) {
    switch (piece.control) {
        case Control::step103A: return state.frame(Control::step103, 0) == piece.index;
        case Control::step103B: return state.frame(Control::step103, 1) == piece.index;
        case Control::step109LED: return state.lamps[piece.index];
        case Control::bank103A:
        case Control::bank103B:
        case Control::bank109: return state.bank(2 * piece.module) == piece.index;
        case Control::SelEditPicture: return state.frame(piece.control, piece.index) == 0;
        case Control::playSongButton:
        case Control::RecButton: return state.frame(piece.control) == 2;
        default: return state.frame(piece.control, piece.index) == 1;
    }
}

bool sleeps(const Piece& piece, const PanelState& state) {
    switch (piece.control) {
        case Control::bank103A:
        case Control::bank103B:
        case Control::bank109: return state.songMode() && !state.armed();
        case Control::keys:
        case Control::up:
        case Control::down:
        case Control::accent:
        case Control::PatchID:
        case Control::step109LED: return state.songMode();
        case Control::timeDisplay: return !state.songMode() || !state.isEnabled(Control::timeDisplay);
        case Control::knobSprite: return !state.isEnabled(piece.control, piece.index);
        default: return false;
    }
}

// The key of a keyboard under the pointer, counted from 1; 0 for none.
int touchedKey(const PlacedControl* placed, int module) {
    return placed != nullptr && placed->control == kKeyAreas[module] ? placed->index + 1 : 0;
}

void mark(Look& look, Mark which, bool on) {
    if (on) look.marks = static_cast<std::uint16_t>(look.marks | which);
}

void lookOfKeys(Look& look, const Piece& piece, const Touch& touch) {
    const int held = touchedKey(touch.pressed, piece.module);
    look.variant = static_cast<std::uint8_t>(held != 0 ? held : touchedKey(touch.hover, piece.module));
    mark(look, kDown, held != 0);
}

void lookOfLamp(Look& look, const Piece& piece, const PanelState& state) {
    const int frame = state.frame(Control::LEDBar, piece.module);
    mark(look, kEdit, frame >= 16);
    mark(look, kLit, frame % 16 == piece.part);
}

void lookOfBracket(Look& look, const Piece& piece, const PanelState& state) {
    const PanelRect& last = placedControl(kStepAreas[piece.module], state.loopLength(piece.module) - 1)->rect;
    look.frame = static_cast<std::int16_t>(last.x + last.width - piece.rect.x);
    mark(look, kEdit, state.underEdit(piece.module));
}

void lookOfPattern(Look& look, const Piece& piece, const PanelState& state) {
    const int frame = state.frame(Control::DigitPatt, piece.index);
    look.text = {static_cast<char>('A' + frame / 8), static_cast<char>('1' + frame % 8)};
    look.variant = static_cast<std::uint8_t>(piece.index % 2); // 1: the cued one
    mark(look, kCued, frame != state.frame(Control::DigitPatt, piece.index - piece.index % 2));
}

} // namespace

int PanelState::loopLength(int module) const {
    int length = 0;
    for (const char c : text(Control::LoopPt, module))
        if (c >= '0' && c <= '9') length = std::min(length * 10 + (c - '0'), 99);
    return length >= 1 && length <= 16 ? length : 16;
}

std::span<const Piece> panelPieces() {
    static const std::vector<Piece> kPieces = PieceList().make();
    return kPieces;
}

Look lookOf(const Piece& piece, const PanelState& state, const Touch& touch) {
    Look look;
    look.art = piece.art;
    look.module = static_cast<std::uint8_t>(piece.module);
    look.width = static_cast<std::int16_t>(piece.rect.width);
    look.height = static_cast<std::int16_t>(piece.rect.height);
    look.variant = static_cast<std::uint8_t>(piece.part);
    switch (piece.art) {
        case Art::ground: look.marks = groundMarks(piece.rect, state); return look;
        case Art::channel:
            mark(look, kLit, state.frame(Control::sel109, piece.part) == 1);
            look.variant = 0;
            return look;
        case Art::arrow:
            mark(look, kCued,
                 state.frame(Control::DigitPatt, 2 * piece.module) !=
                     state.frame(Control::DigitPatt, 2 * piece.module + 1));
            look.variant = 0;
            return look;
        case Art::lamp:
            look.variant = 0;
            lookOfLamp(look, piece, state);
            return look;
        case Art::bracket: lookOfBracket(look, piece, state); return look;
        case Art::halo:
            mark(look, kLit,
                 isLit(piece, state) && !(sleeps(piece, state) && piece.control != Control::step109LED));
            mark(look, kAsleep, look.is(kLit) && sleeps(piece, state));
            if (piece.control == Control::RecButton) mark(look, kArmed, true);
            return look;
        case Art::keys: lookOfKeys(look, piece, touch); break;
        case Art::patternField: lookOfPattern(look, piece, state); break;
        case Art::barField:
            look.text = state.text(Control::timeDisplay) + "\n" + state.text(Control::microDisplay);
            break;
        case Art::knob:
            look.variant = static_cast<std::uint8_t>(placedControl(piece.control, piece.index)->detail);
            mark(look, kArmed, state.armed() && piece.control == Control::knobSprite);
            break;
        case Art::rail: mark(look, kEdit, state.frame(Control::LEDBar, piece.module) >= 16); break;
        case Art::stepCap:
        case Art::pad: mark(look, kBeyond, piece.part >= state.loopLength(piece.module)); break;
        case Art::bankCap:
            mark(
                look, kCued,
                state.bank(2 * piece.module + 1) == piece.part && state.bank(2 * piece.module) != piece.part);
            break;
        default: break;
    }
    if (piece.art == Art::numberField || piece.art == Art::noteField || piece.art == Art::tempoField ||
        piece.art == Art::title)
        look.text = state.text(piece.control, piece.index);
    if (piece.control == Control::PatchID || piece.control == Control::LoopPt)
        look.variant = static_cast<std::uint8_t>(placedControl(piece.control, piece.index)->places);
    if (controlInfo(piece.control).kind == ControlKind::sprite && piece.art != Art::patternField &&
        piece.art != Art::rail)
        look.frame = static_cast<std::int16_t>(state.frame(piece.control, piece.index));
    mark(look, kAsleep, sleeps(piece, state));
    mark(look, kLit, isLit(piece, state) && controlInfo(piece.control).kind != ControlKind::text);
    mark(look, kHover, touches(touch.hover, piece) && !look.is(kAsleep));
    mark(look, kDown, touches(touch.pressed, piece) && !look.is(kAsleep));
    return look;
}

DeviceRect deviceRect(const Piece& piece, double scale) {
    const PanelRect& r = piece.rect;
    const int margin = static_cast<int>(std::ceil(piece.margin * scale));
    const int left = device(r.x, scale);
    const int top = device(r.y, scale);
    return {left - margin, top - margin, device(r.x + r.width, scale) - left + 2 * margin,
            device(r.y + r.height, scale) - top + 2 * margin};
}

void paintPiece(QPainter& painter, const Piece& piece, const Look& look, double scale) {
    const DeviceRect area = deviceRect(piece, scale);
    painter.save();
    if (piece.art == Art::ground) {
        painter.setClipRect(QRect(area.x, area.y, area.width, area.height));
        painter.scale(scale, scale);
        paintGround(Ink(painter, scale), piece.rect, look.marks);
    } else {
        const int margin = static_cast<int>(std::ceil(piece.margin * scale));
        painter.translate(area.x + margin, area.y + margin);
        painter.scale(scale, scale);
        paintLook(Ink(painter, scale), look, (area.width - 2 * margin) / scale,
                  (area.height - 2 * margin) / scale);
    }
    painter.restore();
}

void paintPanel(QPainter& painter, const PanelState& state, const Touch& touch, double scale) {
    for (const Piece& piece : panelPieces()) paintPiece(painter, piece, lookOf(piece, state, touch), scale);
    if (touch.focus != nullptr) paintFocusRing(painter, touch.focus->rect, scale);
}

void paintFocusRing(QPainter& painter, const PanelRect& rect, double scale) {
    painter.save();
    painter.scale(scale, scale);
    const Ink ink(painter, scale);
    const QRectF around(rect.x - 4, rect.y - 4, rect.width + 8, rect.height + 8);
    ink.frame(ink.snapped(around), 9, palette::kText, ink.snap(2));
    painter.restore();
}

} // namespace marlune
