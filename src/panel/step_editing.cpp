#include "panel/step_editing.h"

#include <algorithm>

#include "boundary/engine_component.h"
#include "panel/editing.h"
#include "panel/key_slider.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "panel/silent_accents.h"
#include "project/run_state.h"
#include "util/text_number.h"

namespace marlune {

namespace {

constexpr int kNoKeyFrame = 13;
constexpr int kPatchDragTwips = 1800;

// The step under edit, and where it stands in the component.
struct EditedStep {
    BassStep& step;
    int bank, pattern, index;
};

EditedStep editedStep(int module) {
    BassModule& bass = project.bass[module];
    return {currentBass(module).steps[bass.selStep], bass.currBank, bass.currPatt, bass.selStep};
}

// One octave flag of a step together with its entry point and its control; the other one mirrors it.
struct Octave {
    Flag16 BassStep::*flag;
    Entry entry;
    Control control;
};
constexpr Octave kUp{&BassStep::up, Entry::Set103Up32, Control::up};
constexpr Octave kDown{&BassStep::down, Entry::Set103Down32, Control::down};

void octaveClick(int module, const Octave& pressed, const Octave& other) {
    markProject();
    const EditedStep at = editedStep(module);
    const auto send = [&](const Octave& octave, bool on) {
        at.step.*octave.flag = on;
        callEngine(octave.entry, {module, at.bank, at.pattern, at.index, on ? -1 : 0});
    };
    if (at.step.*pressed.flag) {
        send(pressed, false);
    } else {
        send(pressed, true);
        if (at.step.*other.flag) {
            // The -1 goes out first and is taken back, whichever way the pair of flags ends up.
            send(pressed, false);
            send(other, false);
            showFrame(other.control, module, 0);
        }
    }
    showFrame(pressed.control, module, at.step.*pressed.flag ? 1 : 0);
}

void storePatch(int module, int bank, int pattern, int patch) {
    project.bass[module].patterns[bank][pattern].patch = patch;
    markProject();
    Set103Patch32(module, bank, pattern, patch);
    refreshPatch(module);
}

} // namespace

void step103Click(int module, int step) {
    project.bass[module].selStep = step;
    refresh103Patt(module);
}

void set103Note(int module, int key) {
    markProject();
    const auto [step, bank, pattern, index] = editedStep(module);
    const bool sounds = step.note != key || !step.noteOn;
    if (step.note != key) {
        step.note = key;
        Set103Note32(module, bank, pattern, index, key);
    }
    step.noteOn = sounds;
    Set103NoteOn32(module, bank, pattern, index, sounds ? -1 : 0);
    showFrame(Control::keys, module, sounds ? key : kNoKeyFrame);
}

void accentClick(int module) {
    const auto [step, bank, pattern, index] = editedStep(module);
    step.accent = !step.accent;
    Set103Accent32(module, bank, pattern, index, step.accent.number());
    showFrame(Control::accent, module, step.accent ? 1 : 0);
    if (step.accent) tellSilentAccents();
    markProject();
}

void upClick(int module) {
    octaveClick(module, kUp, kDown);
}

void downClick(int module) {
    octaveClick(module, kDown, kUp);
}

void step109click(int step) {
    DrumModule& drum = project.drum;
    Le8& cell = currentDrum().drumOn[step][drum.selDrum];
    const bool hit = cell != kDrumHit; // any other value counts as no hit here
    cell = hit ? kDrumHit : 0;
    Set109bOn32(drum.currBank, drum.currPatt, step, drum.selDrum, hit ? 1 : 0);
    showLamp(step, hit);
    if (hit && drum.selDrum == kAccentRow) tellSilentAccents();
    markProject();
}

void PatchID_MouseDown(int module, double y) {
    const BassModule& bass = project.bass[module];
    numberDrag() = {bass.currBank, bass.currPatt, currentBass(module).patch, y, false};
    panelSlider().initKey(roundHalfEven(y), kPatchDragTwips, kNoPatch, kTopValue, numberDrag().value);
}

void PatchID_MouseMove(int module, double y) {
    numberDrag().value = panelSlider().moveKey(roundHalfEven(y));
    showText(Control::PatchID, module, patchText(numberDrag().value));
}

void PatchID_MouseUp(int module) {
    storePatch(module, numberDrag().bank, numberDrag().pattern, numberDrag().value);
}

void setPatch(int module, int patch) {
    const BassModule& bass = project.bass[module];
    storePatch(module, bass.currBank, bass.currPatt, std::clamp(patch, kNoPatch, kTopValue));
}

} // namespace marlune
