// The display boundary of the front panel: which controls there are, and what can be shown in them.
//
// The panel holds no musical state: everything visible is a projection of the project record and of a few
// run-time variables. desktop/ draws; tests record; the command line tool shows nothing.
// User-interface thread only.
#pragma once

#include <cstdint>
#include <string>

namespace marlune {

enum class Control : std::uint8_t {
    // sprites: a window onto a strip of frames
    knobSprite,
    knobTempo,
    LEDBar,
    keys,
    step103,
    DigitPatt,
    accent,
    up,
    down,
    sel109,
    SelEditPicture,
    Check1,
    startStopButton,
    RecButton,
    playSongButton,
    stopButton,
    nextButton,
    prevButton,
    ResetButton,
    RwdStep,
    FwdStep,
    slideLamp,
    muteLamp, // the modules, then the drums; 0 heard, 1 silent, 2 solo
    // texts
    LoopPt,
    PatchID,
    Offset109,
    tempoBPM,
    timeDisplay,
    microDisplay,
    swing,
    clockBadge, // whose clock is followed, "" for our own; enabled: locked
    UserTitle,
    // lamps
    step109LED,
    // click areas without a picture of their own
    sel103AButton,
    sel103BButton,
    step103A,
    step103B,
    bank103A,
    bank103B,
    bank109,
    ediSel,
    edi109,
    PlayHit,
    tapTempo,
};
inline constexpr int kControls = static_cast<int>(Control::tapTempo) + 1;
inline constexpr int kMaxControlCount = 20; // the largest count of a control array

enum class ControlKind : std::uint8_t { sprite, text, lamp, area };

struct ControlInfo {
    const char* name;
    ControlKind kind;
    int count;  // controls in the array; index 0..count-1
    int frames; // of a sprite; 0 otherwise
};
const ControlInfo& controlInfo(Control control);

class PanelView {
  public:
    virtual ~PanelView() = default;
    virtual void showFrame(Control control, int index, int frame) = 0; // frame: 0..frames-1
    virtual void showText(Control control, int index, const std::string& text) = 0;
    virtual void showLamp(int step, bool lit) = 0; // step109LED(step)
    virtual void showEnabled(Control control, int index, bool enabled) = 0;
};

// The view that the panel shows itself in; null for none.
void setPanelView(PanelView* view);
PanelView* panelView();

} // namespace marlune
