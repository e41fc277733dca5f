#include "edit/randomizers.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

#include "boundary/engine_component.h"
#include "panel/editing.h"
#include "panel/form_parts.h"
#include "panel/refresh.h"
#include "project/song_track.h"
#include "song/song_place.h"
#include "util/text_number.h"

namespace marlune {

namespace {

RandomSource randomSource = seededRandom(0);

int drawRounded(float range) {
    return roundHalfEven(randomSource() * range);
}
int drawBelow(int count) {
    return std::min(static_cast<int>(std::floor(randomSource() * static_cast<float>(count))), count - 1);
}
bool drawHalf() {
    return drawRounded(1) != 0;
}

// Goes through the sixteen steps of a bassline: change(step) draws, then send tells the component of it.
template <typename Change, typename Send>
void eachBassStep(int module, Change change, Send send) {
    const Selection at = selectionOf(project, module);
    for (int s = 0; s < kSteps; ++s) {
        BassStep& step = currentBass(module).steps[s];
        change(step);
        send(module, int{at.currBank}, int{at.currPatt}, s, step);
    }
    refresh103Patt(module);
}

void randomRow(int row) {
    const DrumModule& drum = project.drum;
    for (int s = 0; s < kSteps; ++s) {
        Le8& cell = currentDrum().drumOn[s][row];
        cell = drawHalf() ? kDrumHit : 0;
        Set109bOn32(drum.currBank, drum.currPatt, s, row, cell);
    }
    refresh109Patt(drum.selDrum);
}

void randomDrumNote() {
    const DrumModule& drum = project.drum;
    Le16& note = currentDrum().drumNote[drum.selDrum];
    note = std::min(drawRounded(128), kTopValue);
    Set109DrumNote32(drum.currBank, drum.currPatt, drum.selDrum, note);
    refresh109Patt(drum.selDrum);
}

void onEdited(void (*randomize)(int)) {
    markProject();
    releaseCtrl();
    randomize(editingState->editSel);
}

} // namespace

void setRandomSource(RandomSource source) {
    randomSource = source ? std::move(source) : seededRandom(0);
}

RandomSource seededRandom(unsigned seed) {
    return [generator = std::make_shared<std::mt19937>(seed)] {
        // 24 bits, all that a float holds below 1: rounding can't bring 1 itself.
        return static_cast<float>((*generator)() >> 8U) * 0x1p-24F;
    };
}

void randPitch(int module) {
    if (module == kDrumModule) {
        randomDrumNote();
        return;
    }
    eachBassStep(
        module, [](BassStep& step) { step.note = std::min(drawRounded(13), kTopNote); },
        [](int m, int bank, int patt, int s, const BassStep& step) {
            Set103Note32(m, bank, patt, s, step.note);
        });
}

void RandNote(int module) {
    if (module == kDrumModule) {
        randomRow(project.drum.selDrum);
        return;
    }
    eachBassStep(
        module, [](BassStep& step) { step.noteOn = drawHalf(); },
        [](int m, int bank, int patt, int s, const BassStep& step) {
            Set103NoteOn32(m, bank, patt, s, step.noteOn.number());
        });
}

void randAccent(int module) {
    if (module == kDrumModule) {
        randomRow(kAccentRow);
        return;
    }
    eachBassStep(
        module, [](BassStep& step) { step.accent = drawHalf(); },
        [](int m, int bank, int patt, int s, const BassStep& step) {
            Set103Accent32(m, bank, patt, s, step.accent.number());
        });
}

void randoctave(int module) {
    eachBassStep(
        module,
        [](BassStep& step) {
            const int octave = drawRounded(3);
            step.up = octave == 1;
            step.down = octave == 2;
        },
        [](int m, int bank, int patt, int s, const BassStep& step) {
            Set103Up32(m, bank, patt, s, step.up.number());
            Set103Down32(m, bank, patt, s, step.down.number());
        });
}

void mnuToolsRNotes_Click() {
    onEdited(randPitch);
}

void mnuToolsRandRest_Click() {
    onEdited(RandNote);
}

void mnuToolsROctave_Click() {
    onEdited([](int module) {
        if (module != kDrumModule) randoctave(module);
    });
}

void mnuToolsRAccents_Click() {
    onEdited(randAccent);
}

void mnuToolsSongRandom_Click() {
    songRandomizer.showModal();
}

marluneRandomPattern songRandomizer;

marluneRandomPattern::marluneRandomPattern() {
    caption = "Song Randomize";
    Label1.text = "Number of Bars :";
    Label3.text = "Module Select :";
    Command1.caption = "Randomize!";
    Command2.caption = "Cancel";
    for (int m = 0; m < kModules; ++m) Check1[m].caption = kModuleNames[m];
    Check1[0].checked = true;
}

void marluneRandomPattern::describe(FormBuilder& builder) {
    builder.beginFrame("Radomize Details");
    builder.textBox(Label1.text, Text1, 6);
    builder.label(Label2);
    builder.label(Label3);
    builder.beginRow();
    for (CheckBox& box : Check1) builder.checkBox(box);
    builder.endRow();
    builder.endFrame();
    okCancelRow(
        builder, Command1, [this] { Command1_Click(); }, Command2, [this] { Command2_Click(); });
}

void marluneRandomPattern::Form_Load() {
    Text1.text = "4";
}

void marluneRandomPattern::Form_Activate() {
    Text1.text = "4";
    Label2.text = startingBarText();
}

void marluneRandomPattern::Command1_Click() {
    const auto bars = enteredBars(Text1, "Enter the number of Bars to randomize (1 to 1000)");
    if (!bars) return;
    const int bar = shownBar();
    for (int i = 0; i < *bars; ++i) {
        for (int m = 0; m < kModules; ++m) {
            if (!Check1[m].checked) continue;
            SongBar& entry = barTrack[m][bar + i];
            entry.bank = static_cast<std::uint8_t>(drawBelow(kBanks));
            entry.patt = static_cast<std::uint8_t>(drawBelow(kPatterns));
        }
    }
    hide();
    takeUpSong();
}

void marluneRandomPattern::Command2_Click() {
    hide();
}

} // namespace marlune
