#include "boundary/panel_view.h"

#include <cstddef>

namespace marlune {

namespace {

// In the order of Control.
constexpr ControlInfo kInfo[kControls] = {
    {"knobSprite", ControlKind::sprite, 20, 54},
    {"knobTempo", ControlKind::sprite, 1, 54},
    {"LEDBar", ControlKind::sprite, 3, 32},
    {"keys", ControlKind::sprite, 2, 14},
    {"step103", ControlKind::sprite, 2, 16},
    {"DigitPatt", ControlKind::sprite, 6, 32},
    {"accent", ControlKind::sprite, 2, 2},
    {"up", ControlKind::sprite, 2, 2},
    {"down", ControlKind::sprite, 2, 2},
    {"sel109", ControlKind::sprite, 8, 2},
    {"SelEditPicture", ControlKind::sprite, 3, 2},
    {"Check1", ControlKind::sprite, 1, 2},
    {"startStopButton", ControlKind::sprite, 1, 2},
    {"RecButton", ControlKind::sprite, 1, 3},
    {"playSongButton", ControlKind::sprite, 1, 3},
    {"stopButton", ControlKind::sprite, 1, 3},
    {"nextButton", ControlKind::sprite, 1, 3},
    {"prevButton", ControlKind::sprite, 1, 3},
    {"ResetButton", ControlKind::sprite, 1, 3},
    {"RwdStep", ControlKind::sprite, 1, 3},
    {"FwdStep", ControlKind::sprite, 1, 3},
    {"slideLamp", ControlKind::sprite, 2, 2},
    {"muteLamp", ControlKind::sprite, 10, 3},
    {"LoopPt", ControlKind::text, 3, 0},
    {"PatchID", ControlKind::text, 2, 0},
    {"Offset109", ControlKind::text, 7, 0},
    {"tempoBPM", ControlKind::text, 1, 0},
    {"timeDisplay", ControlKind::text, 1, 0},
    {"microDisplay", ControlKind::text, 1, 0},
    {"swing", ControlKind::text, 1, 0},
    {"clockBadge", ControlKind::text, 1, 0},
    {"UserTitle", ControlKind::text, 20, 0},
    {"step109LED", ControlKind::lamp, 16, 0},
    {"sel103AButton", ControlKind::area, 13, 0},
    {"sel103BButton", ControlKind::area, 13, 0},
    {"step103A", ControlKind::area, 16, 0},
    {"step103B", ControlKind::area, 16, 0},
    {"bank103A", ControlKind::area, 4, 0},
    {"bank103B", ControlKind::area, 4, 0},
    {"bank109", ControlKind::area, 4, 0},
    {"ediSel", ControlKind::area, 3, 0},
    {"edi109", ControlKind::area, 1, 0},
    {"PlayHit", ControlKind::area, 1, 0},
    {"tapTempo", ControlKind::area, 1, 0},
};

PanelView* view = nullptr;

} // namespace

const ControlInfo& controlInfo(Control control) {
    return kInfo[static_cast<std::size_t>(control)];
}

void setPanelView(PanelView* next) {
    view = next;
}

PanelView* panelView() {
    return view;
}

} // namespace marlune
