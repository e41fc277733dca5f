#include "score/sheet_state.h"

#include <algorithm>

#include "boundary/menus.h"
#include "panel/shown_state.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "project/song_track.h"
#include "project/step_rules.h"
#include "score/saved_patterns.h"

namespace marlune {

namespace {

constexpr int kStepsPerBeat = 4;
constexpr int kOctave = 12;
constexpr int kLeastHeights = kOctave + 1; // a thumbnail spans an octave at least

int relativePitch(const SheetStep& step) {
    return step.note + (step.up ? kOctave : 0) - (step.down ? kOctave : 0);
}

SheetStep stepOf(const BassStep& step) {
    SheetStep shown;
    shown.note = static_cast<std::int8_t>(std::clamp<int>(step.note, 0, kTopNote));
    shown.sounds = step.noteOn;
    shown.up = step.up;
    shown.down = step.down;
    shown.accent = step.accent;
    return shown;
}

int midiPitch(const SheetStep& step, int baseNote) {
    return std::clamp(relativePitch(step) + baseNote, 0, 127);
}

int lengthOf(int loopEnd) {
    return std::clamp(loopEnd, 0, kSteps - 1) + 1;
}

bool isFresh(const BassPattern& pattern) {
    return std::all_of(pattern.steps.begin(), pattern.steps.end(), [](const BassStep& s) {
        return s.noteOn && s.note == 0 && !s.up && !s.down && !s.accent;
    });
}

std::uint8_t hitsAt(const DrumPattern& pattern, int step) {
    unsigned bits = 0;
    for (int row = 0; row < kDrumRows; ++row)
        if (isDrumHit(pattern, step, row)) bits |= 1U << row;
    return static_cast<std::uint8_t>(bits);
}

void readSlots(SheetModule& shown, int module) {
    for (int bank = 0; bank < kBanks; ++bank) {
        for (int pattern = 0; pattern < kPatterns; ++pattern) {
            SheetSlot& slot = shown.thumbs[bank][pattern];
            slot = module == kDrumModule ? smallDrums(project.drum.patterns[bank][pattern])
                                         : smallBass(project.bass[module].patterns[bank][pattern]);
            slot.changed = patternChanged(module, bank, pattern);
        }
    }
}

void readBass(SheetModule& shown, int module) {
    const BassPattern& pattern = currentBass(module);
    for (int s = 0; s < kSteps; ++s) shown.steps[s] = stepOf(pattern.steps[s]);
    shown.selStep = project.bass[module].selStep;
    markHeld(shown.steps, shown.length, config.moduleBaseNote[module]);
}

void readDrums(SheetModule& shown) {
    for (int s = 0; s < kSteps; ++s) shown.hits[s] = hitsAt(currentDrum(), s);
    shown.selDrum = project.drum.selDrum;
}

void readModule(SheetModule& shown, int module) {
    const Selection at = selectionOf(project, module);
    shown.bank = at.currBank;
    shown.pattern = at.currPatt;
    const int cued =
        shownFrame(Control::DigitPatt, 2 * module + 1); // of the song, too: as the panel tells it
    shown.nextBank = cued >= 0 ? cued / kPatterns : int{at.nextBank};
    shown.nextPattern = cued >= 0 ? cued % kPatterns : int{at.nextPatt};
    shown.length = lengthOf(currentLoopEnd(module));
    shown.loopShown = std::clamp(shownNumber(Control::LoopPt, module), 1, kSteps);
    shown.step = std::clamp<int>(songPosition->moduleStep[module], 0, kSteps - 1);
    if (module == kDrumModule)
        readDrums(shown);
    else
        readBass(shown, module);
    readSlots(shown, module);
}

} // namespace

SheetState readSheet() {
    SheetState state;
    state.songMode = songPosition->songMode;
    state.running = transportState->transportRunning;
    state.armed = songPosition->songMode && recordingState->recordOn;
    state.canUndo = menuState(Menu::mnuEditUndo).enabled;
    state.canRedo = menuState(Menu::mnuEditRedo).enabled;
    state.edited = editingState->editSel;
    state.tempo = project.tempo;
    const int tick = transportState->transportRunning ? songPosition->playedTick : songPosition->songTick;
    state.bar = songPosition->songMode ? barOf(tick) : 0;
    state.songStep = songPosition->songMode ? tick % kTicksPerBar : 0;
    state.beat = transportState->transportRunning &&
                 songPosition->moduleStep[kDrumModule] % kStepsPerBeat < kStepsPerBeat / 2;
    for (int m = 0; m < kBassModules; ++m) state.baseNotes[m] = config.moduleBaseNote[m];
    for (int row = 0; row < kDrumRows; ++row)
        state.drumNames[row] = shownText(Control::UserTitle, kFirstDrumKnob + row);
    for (int m = 0; m < kModules; ++m) readModule(state.modules[m], m);
    return state;
}

PatternsInView readPatternsInView() {
    PatternsInView view;
    for (int m = 0; m < kBassModules; ++m)
        for (int s = 0; s < kSteps; ++s) view.bass[m][s] = stepOf(currentBass(m).steps[s]);
    for (int s = 0; s < kSteps; ++s) view.drums[s] = hitsAt(currentDrum(), s);
    for (int k = 0; k < kKnobs; ++k) view.knobs[k] = static_cast<short>(project.knobValue[k]);
    return view;
}

void markHeld(std::array<SheetStep, kSteps>& steps, int length, int baseNote) {
    constexpr int kSilent = -1;
    int sounding = kSilent;
    // Twice round: what the loop's end leaves sounding comes into step 1.
    for (int round = 0; round < 2; ++round) {
        for (int s = 0; s < length; ++s) {
            SheetStep& step = steps[s];
            const int pitch = midiPitch(step, baseNote);
            step.held = !step.sounds && pitch == sounding;
            if (step.sounds)
                sounding = pitch;
            else if (!step.held)
                sounding = kSilent;
        }
    }
}

SheetSlot smallBass(const BassPattern& pattern) {
    SheetSlot slot;
    if (isFresh(pattern)) {
        slot.kind = SheetSlot::Kind::fresh;
        return slot;
    }
    int low = 127;
    int high = -127;
    const int length = lengthOf(pattern.loopEnd);
    for (int s = 0; s < length; ++s) {
        if (!pattern.steps[s].noteOn) continue;
        const int pitch = relativePitch(stepOf(pattern.steps[s]));
        low = std::min(low, pitch);
        high = std::max(high, pitch);
    }
    if (low > high) return slot;
    slot.kind = SheetSlot::Kind::music;
    if (high - low + 1 < kLeastHeights) low -= (kLeastHeights - (high - low + 1)) / 2;
    slot.heights = static_cast<std::uint8_t>(std::max(high - low + 1, kLeastHeights));
    for (int s = 0; s < length; ++s)
        if (pattern.steps[s].noteOn)
            slot.dots[s] = static_cast<std::uint8_t>(relativePitch(stepOf(pattern.steps[s])) - low + 1);
    return slot;
}

SheetSlot smallDrums(const DrumPattern& pattern) {
    SheetSlot slot;
    slot.heights = kDrumRows;
    constexpr unsigned kSoundingRows = (1U << kDrums) - 1;
    for (int s = 0; s < lengthOf(pattern.loopEnd); ++s) {
        slot.dots[s] = hitsAt(pattern, s);
        if ((slot.dots[s] & kSoundingRows) != 0) slot.kind = SheetSlot::Kind::music;
    }
    return slot;
}

std::string slotName(int bank, int pattern) {
    return {static_cast<char>('A' + bank), static_cast<char>('1' + pattern)};
}

} // namespace marlune
