// The key table of the panel.
#include <algorithm>

#include "commands/panel_events.h"
#include "edit/transforms.h"
#include "edit/undo_history.h"
#include "panel/editing.h"
#include "panel/groove_edits.h"
#include "panel/knobs.h"
#include "panel/mutes.h"
#include "panel/refresh.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "setup/memorizer.h"
#include "song/mode_switch.h"
#include "song/selection.h"
#include "song/song_place.h"
#include "transport/navigation.h"
#include "transport/timer_control.h"
#include "transport/transport.h"

namespace marlune {

namespace {

constexpr int kShift = 1; // bits of the modifier mask
constexpr int kCtrl = 2;

enum Code {
    kEnterKey = 13,
    kShiftKey = 16,
    kCtrlKey = 17,
    kSpaceKey = 32,
    kPageUpKey = 33,
    kPageDownKey = 34,
    kHomeKey = 36,
    kLeftKey = 37,
    kRightKey = 39,
    kInsertKey = 45,
    kPadPlusKey = 107,
    kPadMinusKey = 109,
    kSemicolonKey = 186,
    kEqualsKey = 187,
    kCommaKey = 188,
    kMinusKey = 189,
    kPeriodKey = 190,
    kOpenBracketKey = 219,
    kCloseBracketKey = 221,
    kQuoteKey = 222,
    kF5Key = 116, // to F7: the modules
};

// Tempo by one: at a limit the display is not touched.
void nudgeTempo(int delta) {
    const int tempo = project.tempo + delta;
    project.tempo = std::clamp(tempo, kMinTempo, kMaxTempo);
    if (project.tempo == tempo) refreshTempo();
}

void jumpTempo(int delta) {
    stepTempo(delta);
}

void selectNext(int delta) {
    setEditSel((editingState->editSel + delta + kModules) % kModules);
}

void edit(void (*routine)(int, int), int argument) {
    markProject();
    routine(editingState->editSel, argument);
}

void slide(int) {
    if (editingState->editSel < kBassModules) slideClick(editingState->editSel);
}

void learn(int) {
    markProject();
    mnuToolsLearn_Click();
}

struct KeyRow {
    int code;
    bool inSongMode; // works there too
    void (*command)(int argument);
    int argument;
};

constexpr KeyRow kPlainKeys[] = {
    {kSpaceKey, true, [](int) { startStopButton_Click(); }, 0},
    {'L', true, learn, 0},
    {'M', false, [](int d) { edit(editMovePatt, d); }, +1},
    {'N', false, [](int d) { edit(editMovePatt, d); }, -1},
    {'X', true, [](int d) { edit(editLoop, d); }, +1},
    {'Z', true, [](int d) { edit(editLoop, d); }, -1},
    {kEqualsKey, true, nudgeTempo, +1},
    {kPadPlusKey, true, nudgeTempo, +1},
    {kMinusKey, true, nudgeTempo, -1},
    {kPadMinusKey, true, nudgeTempo, -1},
    {kCloseBracketKey, true, jumpTempo, +10},
    {kOpenBracketKey, true, jumpTempo, -10},
    {'V', false, slide, 0},
    {'B', true, [](int) { tapTempo(); }, 0},
    {kPeriodKey, false, [](int d) { edit(transposePatt, d); }, +1},
    {kCommaKey, false, [](int d) { edit(transposePatt, d); }, -1},
    {kLeftKey, true, selectNext, +1},
    {kRightKey, true, selectNext, -1},
    {kSemicolonKey, true,
     [](int) {
         markProject();
         mnuPatchDec_Click();
     },
     0},
    {kQuoteKey, true,
     [](int) {
         markProject();
         mnuPatchInc_Click();
     },
     0},
    {kEnterKey, true, [](int) { Check1_Click(); }, 0},
};

constexpr int kKeyKind = 10000; // a held tempo key is one gesture

int gestureOf(int code) {
    for (const KeyRow& row : kPlainKeys) {
        if (row.code == code && (row.command == nudgeTempo || row.command == jumpTempo))
            return kKeyKind + code;
    }
    return 0;
}

void plainKey(int code) {
    for (const KeyRow& row : kPlainKeys) {
        if (row.code != code) continue;
        if (row.inSongMode || !songPosition->songMode) row.command(row.argument);
        return;
    }
    const MappedKey key = mappedKey(code);
    if (key.module < 0) return;
    markProject();
    selPatt(key.module, key.pattern);
}

void shiftedKey(int code) {
    const MappedKey key = mappedKey(code);
    if (key.module < 0 || key.pattern >= kBanks) return;
    markProject();
    bankClick(key.module, key.pattern);
}

// Page Up and Page Down: a bar, or a tick with Ctrl.
void windKey(void (*hit)(), Winding step) {
    if (editingState->ctrlDown) {
        navigation_Click(step);
        return;
    }
    if (transportState->transportRunning) QuenTimer(0);
    hit();
}

void songKey(int code) {
    switch (code) {
        case kInsertKey: recButton_Click(); break;
        case kPageUpKey: windKey(nextButton_Hit, Winding::stepForward); break;
        case kPageDownKey: windKey(prevButton_Hit, Winding::stepBack); break;
        case kHomeKey: ResetButton_Hit(); break;
        default: break;
    }
}

void releaseWinding(void (*showRest)()) {
    showRest();
    if (!editingState->ctrlDown) resumeAfterWinding();
}

} // namespace

void Form_KeyDown(int code, int shift) {
    const EditBracket bracket(shift == 0 ? gestureOf(code) : 0);
    if (code >= kF5Key && code < kF5Key + kModules)
        toggleModule(code - kF5Key, (shift & kShift) != 0 ? Silencing::solo : Silencing::mute,
                     (shift & kCtrl) != 0);
    if (shift == 0) plainKey(code);
    if (shift == kShift) shiftedKey(code);
    if (code == kShiftKey) setWindRate(7);
    if (code == kCtrlKey) setCtrlDown(true);
    if (songPosition->songMode) songKey(code);
    if (shift > 0 && code == kLeftKey) selectNext(+1);
    if (shift > 0 && code == kRightKey) selectNext(-1);
}

void Form_KeyUp(int code, int /*shift*/) {
    switch (code) {
        case kShiftKey: setWindRate(0); break;
        case kCtrlKey: releaseCtrl(); break;
        case kPageUpKey: releaseWinding(nextButton_Release); break;
        case kPageDownKey: releaseWinding(prevButton_Release); break;
        case kHomeKey: ResetButton_MouseUp(); break;
        default: break;
    }
}

void panelFocusLost() {
    releaseCtrl();
    setWindRate(0);
    resumeAfterWinding(); // the release of a winding key will not come
}

} // namespace marlune
