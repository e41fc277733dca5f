#include "desktop/control_words.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace marlune {

namespace {

struct Words {
    Control control;
    const char* name; // %1: the module, %2: what stands for the index
    const char* tip;
};

constexpr Words kWords[] = {
    {Control::knobSprite, "%1 %2 knob", "Drag up or down; Shift for fine steps"},
    {Control::knobTempo, "Tempo knob", "Tempo: drag up or down   ( = and - by one, [ and ] by ten )"},
    {Control::LEDBar, "%1 step lamps", "Edit this module   ( Left, Right )"},
    {Control::DigitPatt, "%1 %2 pattern", "Pattern: drag up or down   ( %3 )"},
    {Control::accent, "%1 Accent", "Accent of the selected step"},
    {Control::up, "%1 Up", "Selected step one octave up"},
    {Control::down, "%1 Down", "Selected step one octave down"},
    {Control::sel109, "109 %2", "Edit the steps of this drum"},
    {Control::Check1, "Mode", "Pattern or song mode   ( Enter )"},
    {Control::startStopButton, "Start or stop", "Start or stop   ( Space )"},
    {Control::RecButton, "Record", "Record into the song   ( Insert )"},
    {Control::playSongButton, "Play", "Play the song   ( Space )"},
    {Control::stopButton, "Stop", "Stop   ( Space )"},
    {Control::nextButton, "Next bar", "Next bar   ( Page Up; with Shift eight bars )"},
    {Control::prevButton, "Previous bar", "Previous bar   ( Page Down; with Shift eight bars )"},
    {Control::ResetButton, "Back to the start", "Back to the start of the song   ( Home )"},
    {Control::RwdStep, "One step back", "One step back   ( Ctrl+Page Down )"},
    {Control::FwdStep, "One step on", "One step on   ( Ctrl+Page Up )"},
    {Control::LoopPt, "%1 loop", "Last step of the loop: drag up or down   ( Z and X )"},
    {Control::PatchID, "%1 patch", "Patch sent with the pattern: drag up or down   ( ; and ' )"},
    {Control::Offset109, "109 %2 note", "Note of this drum   ( , and . )"},
    {Control::step109LED, "109 step %2", "Set or clear this step of the selected drum"},
    {Control::sel103AButton, "103A key %2", "Note of the selected step; the lit key again makes a rest"},
    {Control::sel103BButton, "103B key %2", "Note of the selected step; the lit key again makes a rest"},
    {Control::step103A, "103A step %2", "Select this step"},
    {Control::step103B, "103B step %2", "Select this step"},
    {Control::bank103A, "103A bank %2", "Bank   ( Shift with 1 to 4 )"},
    {Control::bank103B, "103B bank %2", "Bank   ( Shift with Q to R )"},
    {Control::bank109, "109 bank %2", "Bank   ( Shift with A to F )"},
    {Control::ediSel, "Edit %1", "Edit this module   ( Left, Right )"},
    {Control::tempoBPM, "Tempo", "Beats per minute"},
    {Control::clockBadge, "Clock", "Whose clock is followed ( Options, Midi Setup )"},
    {Control::swing, "Swing", "Delay of the even sixteenths: drag up or down; 50 % is straight"},
    {Control::slideLamp, "%1 Slide", "Slide of the selected step   ( Shift+ACCENT, V )"},
    {Control::muteLamp, "%1 mute %2", "Mute   ( Alt+click; with Shift solo, with Ctrl at the bar line )"},
    {Control::tapTempo, "Tap tempo", "Tap four times or more in the beat   ( B )"},
    {Control::timeDisplay, "Bar", "Bar of the song"},
    {Control::microDisplay, "Step of the bar", "Step of the bar"},
};

constexpr std::array<const char*, 13> kNotes{"C", "C#", "D", "D#", "E", "F",     "F#",
                                             "G", "G#", "A", "A#", "B", "high C"};
constexpr std::array<const char*, 3> kPatternKeys{"1 to 8", "Q to I", "A to K"};

const Words* wordsOf(Control control) {
    const Words* row = std::find_if(std::begin(kWords), std::end(kWords),
                                    [&](const Words& w) { return w.control == control; });
    return row != std::end(kWords) ? row : nullptr;
}

QString indexWord(const PlacedControl& c, const PanelState& state) {
    switch (c.control) {
        case Control::knobSprite: return QString::fromStdString(state.text(Control::UserTitle, c.index));
        case Control::sel109:
        case Control::Offset109: return QString::fromStdString(state.text(Control::UserTitle, 12 + c.index));
        case Control::muteLamp:
            return c.index < 3 ? QString()
                               : QString::fromStdString(state.text(Control::UserTitle, 9 + c.index));
        case Control::DigitPatt: return c.index % 2 == 0 ? QStringLiteral("current") : QStringLiteral("next");
        case Control::sel103AButton:
        case Control::sel103BButton: return QString::fromLatin1(kNotes[c.index]);
        case Control::bank103A:
        case Control::bank103B:
        case Control::bank109: return {QChar('A' + c.index)};
        default: return QString::number(c.index + 1);
    }
}

QString onOff(bool on) {
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

QString selected(bool yes) {
    return yes ? QStringLiteral("selected") : QString();
}

QString frameValue(const PlacedControl& c, const PanelState& state) {
    const int frame = state.frame(c.control, c.index);
    switch (c.control) {
        case Control::knobSprite: return QStringLiteral("%1 %").arg((frame * 100 + 26) / 53);
        case Control::knobTempo:
            return QString::fromStdString(state.text(Control::tempoBPM)) + " beats per minute";
        case Control::LEDBar: return QStringLiteral("step %1").arg(frame % 16 + 1);
        case Control::DigitPatt: return QString(QChar('A' + frame / 8)) + QChar('1' + frame % 8);
        case Control::Check1: return frame == 1 ? QStringLiteral("song") : QStringLiteral("pattern");
        case Control::startStopButton:
            return frame == 1 ? QStringLiteral("running") : QStringLiteral("stopped");
        case Control::sel109: return selected(frame == 1);
        case Control::accent:
        case Control::slideLamp:
        case Control::up:
        case Control::down: return onOff(frame == 1);
        case Control::muteLamp:
            return frame == 0   ? QStringLiteral("heard")
                   : frame == 1 ? QStringLiteral("silent")
                                : QStringLiteral("solo");
        case Control::RecButton:
        case Control::playSongButton: return onOff(frame == 2);
        default: return {};
    }
}

} // namespace

QString controlName(const PlacedControl& c, const PanelState& state) {
    const Words* words = wordsOf(c.control);
    if (words == nullptr) return QString::fromLatin1(controlInfo(c.control).name);
    return QString::fromLatin1(words->name)
        .replace(QStringLiteral("%1"), QString::fromLatin1(kModuleNames[c.module]))
        .replace(QStringLiteral("%2"), indexWord(c, state));
}

QString controlValue(const PlacedControl& c, const PanelState& state) {
    switch (c.control) {
        case Control::step109LED: return onOff(state.lamps[c.index]);
        case Control::step103A:
        case Control::step103B: return selected(state.frame(Control::step103, c.module) == c.index);
        case Control::sel103AButton:
        case Control::sel103BButton: return selected(state.frame(Control::keys, c.module) == c.index);
        case Control::bank103A:
        case Control::bank103B:
        case Control::bank109: return selected(state.bank(2 * c.module) == c.index);
        case Control::ediSel: return selected(state.underEdit(c.index));
        default: break;
    }
    if (controlInfo(c.control).kind == ControlKind::text)
        return QString::fromStdString(state.text(c.control, c.index));
    return frameValue(c, state);
}

QString controlTip(const PlacedControl& c) {
    const Words* words = wordsOf(c.control);
    if (words == nullptr) return {};
    return QString::fromLatin1(words->tip)
        .replace(QStringLiteral("%3"), QString::fromLatin1(c.module < 3 ? kPatternKeys[c.module] : ""));
}

bool isTurned(Control control) {
    return control == Control::knobSprite || control == Control::knobTempo || control == Control::DigitPatt ||
           control == Control::LoopPt || control == Control::swing || control == Control::PatchID ||
           control == Control::Offset109;
}

std::optional<ControlRange> controlRange(const PlacedControl& c, const PanelState& state) {
    constexpr double kFrames = 53;
    const auto number = [&](Control control) {
        return QString::fromStdString(state.text(control, control == c.control ? c.index : 0)).toDouble();
    };
    switch (c.control) {
        case Control::knobSprite:
            return ControlRange{1.0 * state.frame(c.control, c.index), 0, kFrames, 127 / kFrames};
        case Control::knobTempo: return ControlRange{number(Control::tempoBPM), 40, 240, 1};
        case Control::swing:
            return ControlRange{QString::fromStdString(state.text(c.control)).chopped(1).toDouble(), 50, 75,
                                1};
        case Control::DigitPatt: return ControlRange{1.0 + state.frame(c.control, c.index) % 8, 1, 8, 1};
        case Control::LoopPt: return ControlRange{number(c.control), 1, 16, 1};
        case Control::PatchID: {
            const bool none = state.text(c.control, c.index) == "NONE";
            return ControlRange{none ? -1 : number(c.control), -1, 127, 1};
        }
        default: return {};
    }
}

bool isReadOnly(const PlacedControl& c) {
    return c.control == Control::tempoBPM || c.control == Control::timeDisplay ||
           c.control == Control::microDisplay || c.control == Control::clockBadge ||
           c.control == Control::slideLamp || c.control == Control::muteLamp;
}

bool isTabStop(const PlacedControl& c) {
    return c.interactive && c.control != Control::edi109 && c.control != Control::PlayHit;
}

} // namespace marlune
