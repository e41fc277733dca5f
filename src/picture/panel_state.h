// What the front panel shows at present: frames, texts, lamps, enabled flags, and what the pointer touches.
//
// The picture of the panel is a pure function of these two structs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "picture/layout.h"

namespace marlune {

// A small picture of a bassline's step, beside its figure.
struct StepMark {
    std::int8_t note = -1; // 0..12; -1: none is known
    bool sounds = false, up = false, down = false, accent = false;
    bool operator==(const StepMark&) const = default;
};

struct PanelState {
    PanelState() {
        for (auto& row : enabled) row.fill(true);
    }

    std::array<std::array<short, kMaxControlCount>, kControls> frames{};
    std::array<std::array<std::string, kMaxControlCount>, kControls> texts;
    std::array<std::array<bool, kMaxControlCount>, kControls> enabled{};
    std::array<bool, 16> lamps{};

    // Derived from the patterns: pictures only. What is not known is not shown.
    std::array<std::array<StepMark, 16>, 2> marks{};
    std::array<std::uint8_t, 16> ghost{}; // drums that sound at a step, bit per row
    std::array<short, 20> values{};       // of the knobs, 0..127

    void setFrame(Control control, int index, int frame) {
        frames[static_cast<std::size_t>(control)][index] = static_cast<short>(frame);
    }
    void setText(Control control, int index, std::string text) {
        texts[static_cast<std::size_t>(control)][index] = std::move(text);
    }
    void setEnabled(Control control, int index, bool on) {
        enabled[static_cast<std::size_t>(control)][index] = on;
    }

    [[nodiscard]] int frame(Control control, int index = 0) const {
        return frames[static_cast<std::size_t>(control)][index];
    }
    [[nodiscard]] const std::string& text(Control control, int index = 0) const {
        return texts[static_cast<std::size_t>(control)][index];
    }
    [[nodiscard]] bool isEnabled(Control control, int index = 0) const {
        return enabled[static_cast<std::size_t>(control)][index];
    }

    [[nodiscard]] bool songMode() const { return frame(Control::Check1) == 1; }
    [[nodiscard]] bool armed() const { return frame(Control::RecButton) == 2; }
    [[nodiscard]] bool underEdit(int module) const {
        return module < kStripModule && frame(Control::SelEditPicture, module) == 0;
    }
    [[nodiscard]] int bank(int digit) const { return frame(Control::DigitPatt, digit) / 8; }
    // Steps before the end of the loop, 1..16; an unreadable text counts as no loop.
    [[nodiscard]] int loopLength(int module) const;
};

struct PointerState {
    const PlacedControl* hover = nullptr;
    const PlacedControl* pressed = nullptr;
    const PlacedControl* focus = nullptr;
};

} // namespace marlune
