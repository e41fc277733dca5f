// The value of the knob under the pointer.

#include <algorithm>
#include <cmath>

#include "picture/ink.h"
#include "picture/scene.h"

namespace marlune {

namespace {

constexpr Type kName{11, 500};
constexpr Type kValue{12, 700};
constexpr int kHeight = 22;
constexpr int kPadding = 9;
constexpr int kBetween = 6;
constexpr int kAway = 3; // from the knob

bool isKnob(const PlacedControl* control) {
    return control != nullptr &&
           (control->control == Control::knobSprite || control->control == Control::knobTempo);
}

// Name and value, parted by a line end.
std::string words(const PlacedControl& knob, const PanelState& state) {
    if (knob.control == Control::knobTempo) return "Tempo\n" + state.text(Control::tempoBPM);
    return state.text(Control::UserTitle, knob.index) + "\n" + std::to_string(state.values[knob.index]);
}

QString part(const std::string& text, int which) {
    return QString::fromStdString(text).section(QChar('\n'), which, which);
}

} // namespace

Bubble bubbleOf(const PanelState& state, const PointerState& touch) {
    const PlacedControl* knob = isKnob(touch.pressed) ? touch.pressed : touch.hover;
    if (!isKnob(knob) || (touch.pressed != nullptr && touch.pressed != knob)) return {};
    Bubble bubble{words(*knob, state)};
    const double text =
        Ink::textWidth(part(bubble.text, 0), kName) + Ink::textWidth(part(bubble.text, 1), kValue);
    const int width = static_cast<int>(std::ceil(text)) + 2 * kPadding + kBetween;
    const PanelRect& at = knob->rect;
    const int left = std::clamp(at.x + (at.width - width) / 2, 2, kPanelWidth - width - 2);
    const int above = at.y - kHeight - kAway;
    bubble.rect = {left, above >= 2 ? above : at.y + at.height + kAway, width, kHeight};
    return bubble;
}

void paintBubble(QPainter& painter, const Bubble& bubble, double scale) {
    if (bubble.text.empty()) return;
    painter.save();
    painter.scale(scale, scale);
    const Ink ink(painter, scale);
    const PanelRect& r = bubble.rect;
    const QRectF box = ink.snapped(QRectF(r.x, r.y, r.width, r.height));
    ink.box(box.translated(0, 2), 7, black(0.35));
    ink.box(box, 6, rgb(0x0B0E12));
    ink.frame(box, 6, white(0.2));
    const double baseline = box.top() + 15;
    ink.text({box.left() + kPadding, baseline}, part(bubble.text, 0), kName, palette::kCaption);
    ink.text({box.right() - kPadding, baseline}, part(bubble.text, 1), kValue, palette::kMoonlight,
             Anchor::right);
    painter.restore();
}

} // namespace marlune
