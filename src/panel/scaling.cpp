#include "panel/scaling.h"

#include <cstdint>

#include "util/text_number.h"

namespace marlune {

namespace {

constexpr int kDesignTwips = 15;

PanelForm* panelForm = nullptr;

int rounded16(double value) {
    return static_cast<std::int16_t>(roundHalfEven(value));
}

void resizeForm(const marluneScaling& scaling) {
    Placement at = panelForm->form();
    at.width = scaling.resizeX(at.width);
    at.height = scaling.resizeY(at.height);
    panelForm->placeForm(at);
}

Placement adjusted(const marluneScaling& scaling, Control control, int index) {
    const Placement at = panelForm->control(control, index);
    switch (control) {
        case Control::SelEditPicture: return scaling.moveControl(at);
        case Control::PatchID:
        case Control::Offset109:
        case Control::LoopPt:
        case Control::tempoBPM:
        case Control::timeDisplay:
        case Control::UserTitle: return scaling.centerControl(at);
        case Control::microDisplay: {
            const Placement bar = panelForm->control(Control::timeDisplay, 0); // comes before it, is adjusted
            return {bar.left, bar.top + bar.height, at.width, at.height};
        }
        default: return scaling.resizeControl(at); // areas and lamps; sprites go with their containers
    }
}

} // namespace

int marluneScaling::resizeX(double value) const {
    return rounded16(scaleX * value);
}

int marluneScaling::resizeY(double value) const {
    return rounded16(scaleY * value);
}

Placement marluneScaling::resizeControl(const Placement& at) const {
    return {resizeX(at.left), resizeY(at.top), resizeX(at.width), resizeY(at.height)};
}

Placement marluneScaling::moveControl(const Placement& at) const {
    return {resizeX(at.left), resizeY(at.top), at.width, at.height};
}

Placement marluneScaling::centerControl(const Placement& at) const {
    const int halfWidth = at.width / 2;
    const int halfHeight = at.height / 2;
    return {resizeX(at.left + halfWidth) - halfWidth, resizeY(at.top + halfHeight) - halfHeight, at.width,
            at.height};
}

void setPanelForm(PanelForm* form) {
    panelForm = form;
}

void GraphicModeAdjust() {
    if (panelForm == nullptr) return;
    const TwipsPerPixel twips = panelForm->twipsPerPixel();
    marluneScaling scaling;
    scaling.scaleX = static_cast<double>(roundHalfEven(twips.across)) / kDesignTwips;
    scaling.scaleY = static_cast<double>(roundHalfEven(twips.down)) / kDesignTwips;
    resizeForm(scaling);
    for (int c = 0; c < kControls; ++c) {
        const auto control = static_cast<Control>(c);
        for (int index = 0; index < controlInfo(control).count; ++index)
            panelForm->placeControl(control, index, adjusted(scaling, control, index));
    }
}

Placement panelPosition(int mainWidth, int mainHeight, const Placement& panel, TwipsPerPixel twips) {
    const int across = static_cast<int>(roundHalfEven(twips.across));
    const int down = static_cast<int>(roundHalfEven(twips.down));
    const int spare = mainHeight / 2 - panel.height / 2 * down / kDesignTwips;
    return {mainWidth / 2 - panel.width / 2 * across / kDesignTwips, spare / 3 - 3 * (down / kDesignTwips),
            panel.width, panel.height};
}

} // namespace marlune
