#include "song/selection.h"

#include <algorithm>
#include <optional>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "panel/editing.h"
#include "panel/key_slider.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/recording.h"
#include "project/song_track.h"
#include "song/song_place.h"
#include "util/text_number.h"

namespace marlune {

namespace {

constexpr int kDigitDragTwips = 1100;
constexpr int kLoopDragTwips = 900;

// The bar in which a choice made now takes effect: at rest the one under the position, while playing the one
// that begins next. None after the last bar of the song.
std::optional<int> barOfChoice() {
    const int tick = songPosition->songTick;
    if (!transportState->transportRunning || isBarLine(tick)) return barLine(tick);
    const int next = barLine(tick) + kTicksPerBar;
    return next < kSongTicks ? std::optional(next) : std::nullopt;
}

// Writes what the choice leaves of the bar in which it takes effect.
template <typename Change>
void recordChoice(int module, Change change) {
    const std::optional<int> tick = barOfChoice();
    if (!tick) {
        shell().showPassing("Bar 1000 is the last.");
        return;
    }
    SongBar bar = songBarAt(module, *tick);
    change(bar);
    setBar(module, *tick, bar.bank, bar.patt);
    markProject();
    recordBars(module);
    takeUpSong();
}

// What both choices do in pattern mode: cued, and at rest current at once.
void showChoice(int module) {
    refreshNextBankPatt(module);
    if (!transportState->transportRunning) refreshCurrBankPatt(module);
}

// The pattern that a drag or the wheel on the digits starts from: the cued one while playing.
int patternOnDigits(int module) {
    const Selection at = selectionOf(project, module);
    return transportState->transportRunning ? int{at.nextPatt} : int{at.currPatt};
}

void startDrag(int module, double y, int value) {
    const Selection at = selectionOf(project, module);
    numberDrag() = {at.currBank, at.currPatt, value, y, false};
}

Le16& loopEndOf(int module, int bank, int pattern) {
    return module == kDrumModule ? project.drum.patterns[bank][pattern].loopEnd
                                 : project.bass[module].patterns[bank][pattern].loopEnd;
}

void setLoopEnd(int module, int bank, int pattern, int value) {
    Le16& loopEnd = loopEndOf(module, bank, pattern);
    loopEnd = std::clamp(value, 0, kSteps - 1);
    if (module == kDrumModule) {
        Set109Loop32(bank, pattern, loopEnd);
    } else {
        Set103Loop32(module, bank, pattern, loopEnd);
    }
    refreshLoop(module);
}

} // namespace

void selPatt(int module, int pattern) {
    if (songPosition->songMode) {
        if (recordingState->recordOn) {
            recordChoice(module, [&](SongBar& bar) { bar.patt = static_cast<std::uint8_t>(pattern); });
        }
        return;
    }
    const Selection at = selectionOf(project, module);
    at.nextPatt = pattern;
    SetNextPatt32(module, pattern);
    if (!transportState->transportRunning) {
        at.currPatt = pattern;
        SetCurrPatt32(module, pattern);
    }
    showChoice(module);
}

void bankClick(int module, int bank) {
    markProject();
    if (songPosition->songMode) {
        if (recordingState->recordOn)
            recordChoice(module, [&](SongBar& bar) { bar.bank = static_cast<std::uint8_t>(bank); });
        return;
    }
    const Selection at = selectionOf(project, module);
    at.nextBank = bank;
    SetNextGroup32(module, bank);
    if (!transportState->transportRunning) {
        at.currBank = bank;
        SetCurrGroup32(module, bank);
    }
    showChoice(module);
}

void editLoop(int module, int delta) {
    const Selection at = selectionOf(project, module);
    setLoopEnd(module, at.currBank, at.currPatt, currentLoopEnd(module) + delta);
}

void DigitPatt_MouseDown(int index, double y) {
    const int module = index / 2;
    setEditSel(module);
    const int from = patternOnDigits(module);
    startDrag(module, y, from);
    panelSlider().initKey(roundHalfEven(y), kDigitDragTwips, 0, kPatterns - 1, from);
}

void DigitPatt_MouseMove(int index, double y) {
    NumberDrag& drag = numberDrag();
    drag.moved = drag.moved || y != drag.pressedAt;
    // A mere click is no choice that a recording would keep.
    if (drag.moved || !songPosition->songMode) selPatt(index / 2, panelSlider().moveKey(roundHalfEven(y)));
}

void LoopPt_MouseDown(int module, double y) {
    setEditSel(module);
    const int shown = currentLoopEnd(module) + 1;
    startDrag(module, y, shown);
    panelSlider().initKey(roundHalfEven(y), kLoopDragTwips, 1, kSteps, shown);
}

void LoopPt_MouseMove(int module, double y) {
    NumberDrag& drag = numberDrag();
    drag.value = panelSlider().moveKey(roundHalfEven(y));
    showNumber(Control::LoopPt, module, drag.value);
}

void LoopPt_MouseUp(int module) {
    const NumberDrag& drag = numberDrag();
    setLoopEnd(module, drag.bank, drag.pattern, drag.value - 1);
    markProject();
}

void stepDigit(int index, int steps) {
    const int module = index / 2;
    setEditSel(module);
    selPatt(module, std::clamp(patternOnDigits(module) + steps, 0, kPatterns - 1));
}

} // namespace marlune
