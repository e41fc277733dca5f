// What the front panel shows at present: frames, texts, lamps, enabled flags, and what the pointer touches.
//
// The picture of the panel is a pure function of these two structs.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include "picture/layout.h"

namespace marlune {

struct PanelState {
    PanelState() {
        for (auto& row : enabled) row.fill(true);
    }

    std::array<std::array<short, kMaxControlCount>, kControls> frames{};
    std::array<std::array<std::string, kMaxControlCount>, kControls> texts;
    std::array<std::array<bool, kMaxControlCount>, kControls> enabled{};
    std::array<bool, 16> lamps{};

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

struct Touch {
    const PlacedControl* hover = nullptr;
    const PlacedControl* pressed = nullptr;
    const PlacedControl* focus = nullptr;
};

} // namespace marlune
