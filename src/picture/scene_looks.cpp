// What each piece looks like in a given state: one routine for each kind.

#include <algorithm>
#include <array>

#include "picture/scene.h"

namespace marlune {

namespace {

struct ShownPiece {
    const Piece& piece;
    const PanelState& state;
    const PointerState& touch;
};

void mark(Look& look, Mark which, bool on) {
    if (on) look.marks = static_cast<std::uint16_t>(look.marks | which);
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

// The pill has no area of its own: it lies within the header that is clicked.
bool touches(const PlacedControl* placed, const Piece& piece) {
    const Control area = piece.art == Art::pill ? Control::ediSel : piece.control;
    return placed != nullptr && placed->control == area && placed->index == piece.index;
}

void touched(Look& look, const ShownPiece& s) {
    mark(look, kAsleep, sleeps(s.piece, s.state));
    if (look.is(kAsleep)) return;
    mark(look, kHover, touches(s.touch.hover, s.piece));
    mark(look, kDown, touches(s.touch.pressed, s.piece));
}

// Which of the shown states the ground of a tile depends on: a plate under edit glows 6 pixels beyond it.
void ground(Look& look, const ShownPiece& s) {
    const PanelRect& tile = s.piece.rect;
    const auto near = [&tile](const PanelRect& r) {
        return tile.x < r.x + r.width + 6 && r.x - 6 < tile.x + tile.width && tile.y < r.y + r.height + 6 &&
               r.y - 6 < tile.y + tile.height;
    };
    unsigned marks = 0;
    for (int module = 0; module < 3; ++module)
        if (s.state.underEdit(module) && near(kRegions.modules[module]))
            marks |= unsigned{kGroundEdit} << module;
    look.marks = static_cast<std::uint16_t>(marks);
    mark(look, kSong, s.state.songMode() && near(kRegions.songBox));
    mark(look, kArmed, s.state.armed() && near(kRegions.songBox));
    look.variant = static_cast<std::uint8_t>(s.piece.part);
}

void channel(Look& look, const ShownPiece& s) {
    mark(look, kLit, s.state.frame(Control::sel109, s.piece.part) == 1);
}

bool cued(const PanelState& state, int module) {
    return state.frame(Control::DigitPatt, 2 * module) != state.frame(Control::DigitPatt, 2 * module + 1);
}

void arrow(Look& look, const ShownPiece& s) {
    mark(look, kCued, cued(s.state, s.piece.module));
}

// Sleeping caps give no light, but for the pads.
void halo(Look& look, const ShownPiece& s) {
    const bool asleep = sleeps(s.piece, s.state);
    const bool lit = isLit(s.piece, s.state) && (!asleep || s.piece.control == Control::step109LED);
    mark(look, kLit, lit);
    mark(look, kAsleep, lit && asleep);
    mark(look, kArmed, s.piece.control == Control::RecButton);
    look.variant = static_cast<std::uint8_t>(s.piece.part);
}

void rail(Look& look, const ShownPiece& s) {
    mark(look, kEdit, s.state.frame(Control::LEDBar, s.piece.module) >= 16);
    touched(look, s);
}

void bracket(Look& look, const ShownPiece& s) {
    const int lastStep = s.state.loopLength(s.piece.module) - 1;
    const PanelRect& last = placedControl(kStepAreas[s.piece.module], lastStep)->rect;
    look.frame = static_cast<std::int16_t>(last.x + last.width - s.piece.rect.x);
    mark(look, kEdit, s.state.underEdit(s.piece.module));
}

void lamp(Look& look, const ShownPiece& s) {
    const int frame = s.state.frame(Control::LEDBar, s.piece.module);
    mark(look, kEdit, frame >= 16);
    mark(look, kLit, frame % 16 == s.piece.part);
}

// The key of a keyboard under the pointer, counted from 1; 0 for none.
int touchedKey(const PlacedControl* placed, int module) {
    return placed != nullptr && placed->control == kKeyAreas[module] ? placed->index + 1 : 0;
}

void keys(Look& look, const ShownPiece& s) {
    look.frame = static_cast<std::int16_t>(s.state.frame(Control::keys, s.piece.index));
    mark(look, kAsleep, sleeps(s.piece, s.state));
    if (look.is(kAsleep)) return;
    const int held = touchedKey(s.touch.pressed, s.piece.module);
    look.variant = static_cast<std::uint8_t>(held != 0 ? held : touchedKey(s.touch.hover, s.piece.module));
    mark(look, kDown, held != 0);
}

void cap(Look& look, const ShownPiece& s) {
    look.variant = static_cast<std::uint8_t>(s.piece.part);
    mark(look, kLit, isLit(s.piece, s.state));
    touched(look, s);
}

void stepCap(Look& look, const ShownPiece& s) {
    cap(look, s);
    mark(look, kBeyond, s.piece.part >= s.state.loopLength(s.piece.module));
    look.frame = static_cast<std::int16_t>(s.piece.art == Art::pad
                                               ? s.state.ghost[s.piece.part]
                                               : markFrame(s.state.marks[s.piece.module][s.piece.part]));
}

void bankCap(Look& look, const ShownPiece& s) {
    cap(look, s);
    mark(look, kCued, s.state.bank(2 * s.piece.module + 1) == s.piece.part && !look.is(kLit));
}

void sprite(Look& look, const ShownPiece& s) {
    cap(look, s);
    look.frame = static_cast<std::int16_t>(s.state.frame(s.piece.control, s.piece.index));
}

void knob(Look& look, const ShownPiece& s) {
    look.frame = static_cast<std::int16_t>(s.state.frame(s.piece.control, s.piece.index));
    look.variant = static_cast<std::uint8_t>(placedControl(s.piece.control, s.piece.index)->detail);
    mark(look, kArmed, s.state.armed() && s.piece.control == Control::knobSprite);
    touched(look, s);
}

void patternField(Look& look, const ShownPiece& s) {
    const int frame = s.state.frame(Control::DigitPatt, s.piece.index);
    look.text = {static_cast<char>('A' + frame / 8), static_cast<char>('1' + frame % 8)};
    look.variant = static_cast<std::uint8_t>(s.piece.index % 2); // 1: the cued one
    mark(look, kCued, look.variant == 1 && cued(s.state, s.piece.module));
    touched(look, s);
}

void field(Look& look, const ShownPiece& s) {
    look.text = s.state.text(s.piece.control, s.piece.index);
    look.variant = static_cast<std::uint8_t>(placedControl(s.piece.control, s.piece.index)->places);
    touched(look, s);
}

void barField(Look& look, const ShownPiece& s) {
    look.text = s.state.text(Control::timeDisplay) + "\n" + s.state.text(Control::microDisplay);
    touched(look, s);
}

void tempoField(Look& look, const ShownPiece& s) {
    look.text = s.state.text(Control::tempoBPM) + '\n' + s.state.text(Control::clockBadge) + '\n' +
                s.state.text(Control::swing);
    mark(look, kLit, s.state.isEnabled(Control::clockBadge));
    mark(look, kHover, s.touch.hover != nullptr && s.touch.hover->control == Control::tapTempo);
    mark(look, kDown, s.touch.pressed != nullptr && s.touch.pressed->control == Control::tapTempo);
    const auto drags = [](const PlacedControl* placed) {
        return placed != nullptr && placed->control == Control::swing;
    };
    mark(look, kArmed, drags(s.touch.hover) || drags(s.touch.pressed));
}

// A lamp on a cap: what the cap shows is its ground.
void onCap(Look& look, const ShownPiece& s) {
    look.frame = static_cast<std::int16_t>(s.state.frame(s.piece.control, s.piece.index));
    mark(look, kLit, s.state.frame(Control::accent, s.piece.index) == 1);
    mark(look, kAsleep, s.state.songMode());
}

// In the order of Art.
constexpr std::array<void (*)(Look&, const ShownPiece&), 26> kLookMakers{
    ground,   channel, arrow,  halo,    rail,   bracket,      lamp,   keys,  stepCap,
    bankCap,  cap,     cap,    stepCap, knob,   patternField, field,  field, tempoField,
    barField, cap,     sprite, cap,     sprite, onCap,        sprite, field,
};
static_assert(kLookMakers.size() == static_cast<std::size_t>(Art::title) + 1);

} // namespace

int markFrame(const StepMark& mark) {
    if (mark.note < 0) return 0;
    return mark.note + 1 + (mark.sounds ? kMarkSounds : 0) + (mark.up ? kMarkUp : 0) +
           (mark.down ? kMarkDown : 0) + (mark.accent ? kMarkAccent : 0);
}

int PanelState::loopLength(int module) const {
    int length = 0;
    for (const char c : text(Control::LoopPt, module))
        if (c >= '0' && c <= '9') length = std::min(length * 10 + (c - '0'), 99);
    return length >= 1 && length <= 16 ? length : 16;
}

Look lookOf(const Piece& piece, const PanelState& state, const PointerState& touch) {
    Look look;
    look.art = piece.art;
    look.module = static_cast<std::uint8_t>(piece.module);
    look.width = static_cast<std::int16_t>(piece.rect.width);
    look.height = static_cast<std::int16_t>(piece.rect.height);
    kLookMakers[static_cast<std::size_t>(piece.art)](look, {piece, state, touch});
    return look;
}

} // namespace marlune
