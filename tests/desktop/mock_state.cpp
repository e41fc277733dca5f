#include "desktop/mock_state.h"

#include <string>

namespace marlune {

namespace {

class Setter {
  public:
    explicit Setter(PanelState& state) : state_(state) {}
    Setter& frame(Control c, std::initializer_list<int> frames) {
        int i = 0;
        for (const int f : frames) state_.frames[static_cast<std::size_t>(c)][i++] = static_cast<short>(f);
        return *this;
    }
    Setter& text(Control c, std::initializer_list<const char*> texts) {
        int i = 0;
        for (const char* t : texts) state_.texts[static_cast<std::size_t>(c)][i++] = std::string(t);
        return *this;
    }

  private:
    PanelState& state_;
};

constexpr std::initializer_list<const char*> kLabels = {
    "Cutoff", "Res",    "Env.Amt", "Decay", "Ctrl.1", "Accent", "Cutoff", "Res",   "Env.Amt", "Decay",
    "Ctrl.1", "Accent", "BDrum",   "Snare", "Clap",   "ClHt1",  "ClHt2",  "OpHat", "Loop",    "Accent"};

void lamps(PanelState& state, const std::string& row) {
    for (int i = 0; i < 16; ++i) state.lamps[i] = row[i] == 'x';
}

} // namespace

PanelState patternMoment() {
    PanelState state;
    Setter(state)
        .frame(Control::knobSprite,
               {35, 19, 29, 24, 8, 47, 17, 38, 13, 32, 27, 41, 47, 40, 31, 25, 34, 28, 17, 49})
        .frame(Control::knobTempo, {24})
        .frame(Control::LEDBar, {16, 0, 0})
        .frame(Control::keys, {7, 3})
        .frame(Control::step103, {6, 2})
        .frame(Control::DigitPatt, {2, 2, 17, 17, 12, 12})
        .frame(Control::accent, {1, 0})
        .frame(Control::up, {1, 0})
        .frame(Control::down, {0, 1})
        .frame(Control::sel109, {1})
        .frame(Control::SelEditPicture, {0, 1, 1})
        .text(Control::LoopPt, {"16", "12", "16"})
        .text(Control::PatchID, {"24", "NONE"})
        .text(Control::Offset109, {"36", "38", "39", "42", "44", "46", "48"})
        .text(Control::tempoBPM, {"132"})
        .text(Control::timeDisplay, {"1"})
        .text(Control::microDisplay, {"[ 5/16]"})
        .text(Control::UserTitle, kLabels);
    lamps(state, "x...x...x..xx.x.");
    state.enabled[static_cast<std::size_t>(Control::timeDisplay)][0] = false;
    state.enabled[static_cast<std::size_t>(Control::microDisplay)][0] = false;
    return state;
}

PanelState songMoment() {
    PanelState state = patternMoment();
    Setter(state)
        .frame(Control::knobSprite,
               {14, 42, 9, 38, 53, 27, 46, 9, 33, 14, 0, 49, 53, 36, 17, 44, 28, 12, 40, 41})
        .frame(Control::knobTempo, {22})
        .frame(Control::LEDBar, {9, 1, 25})
        .frame(Control::keys, {10, 13})
        .frame(Control::step103, {9, 2})
        .frame(Control::DigitPatt, {8, 9, 22, 22, 4, 29})
        .frame(Control::accent, {1, 0})
        .frame(Control::up, {0, 0})
        .frame(Control::down, {0, 0})
        .frame(Control::sel109, {0, 0, 0, 0, 1})
        .frame(Control::SelEditPicture, {1, 1, 0})
        .frame(Control::Check1, {1})
        .frame(Control::startStopButton, {1})
        .frame(Control::RecButton, {2})
        .frame(Control::playSongButton, {2})
        .text(Control::LoopPt, {"16", "8", "16"})
        .text(Control::PatchID, {"24", "107"})
        .text(Control::Offset109, {"36", "38", "39", "42", "44", "46", "60"})
        .text(Control::tempoBPM, {"126"})
        .text(Control::timeDisplay, {"47"})
        .text(Control::microDisplay, {""});
    for (const Control c : {Control::stopButton, Control::nextButton, Control::prevButton,
                            Control::ResetButton, Control::RwdStep, Control::FwdStep})
        state.frames[static_cast<std::size_t>(c)][0] = 1;
    for (const Control c : {Control::timeDisplay, Control::microDisplay})
        state.enabled[static_cast<std::size_t>(c)][0] = true;
    lamps(state, "..x...xx..x..xx.");
    return state;
}

} // namespace marlune
