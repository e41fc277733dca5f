#include "project/pattern_push.h"

#include "boundary/engine_component.h"
#include "project/groove.h"
#include "project/project_record.h"

namespace marlune {

namespace {

void pushSlides(int module, int bank, int pattern, bool onlySet) {
    const BassPattern& source = project.bass[module].patterns[bank][pattern];
    for (int step = 0; step < kSteps; ++step) {
        const Flag16 slide = source.steps[step].slide;
        if (slide || !onlySet) Set103Slide32(module, bank, pattern, step, slide.number());
    }
}

void pushBass(int module, int bank, int pattern) {
    const BassPattern& source = project.bass[module].patterns[bank][pattern];
    for (int step = 0; step < kSteps; ++step) {
        const BassStep& s = source.steps[step];
        Set103Note32(module, bank, pattern, step, s.note);
        Set103NoteOn32(module, bank, pattern, step, s.noteOn.number());
        Set103Up32(module, bank, pattern, step, s.up.number());
        Set103Down32(module, bank, pattern, step, s.down.number());
        Set103Accent32(module, bank, pattern, step, s.accent.number());
    }
    Set103Loop32(module, bank, pattern, source.loopEnd);
    Set103Patch32(module, bank, pattern, source.patch);
    if (playsSlides(project)) pushSlides(module, bank, pattern, false);
}

void pushDrum(int bank, int pattern) {
    const DrumPattern& source = project.drum.patterns[bank][pattern];
    for (int step = 0; step < kSteps; ++step) {
        for (int row = 0; row < kDrumRows; ++row) {
            Set109bOn32(bank, pattern, step, row, source.drumOn[step][row] != 0 ? 1 : 0);
        }
    }
    for (int row = 0; row < kDrumRows; ++row) Set109DrumNote32(bank, pattern, row, source.drumNote[row]);
    Set109Loop32(bank, pattern, source.loopEnd);
}

} // namespace

void pushPatternToEngine(int module, int bank, int pattern) {
    if (module == kDrumModule) {
        pushDrum(bank, pattern);
    } else {
        pushBass(module, bank, pattern);
    }
}

void pushAllSlides() {
    for (int m = 0; m < kBassModules; ++m)
        for (int i = 0; i < kBanks * kPatterns; ++i) pushSlides(m, i / kPatterns, i % kPatterns, true);
}

void pushAllPatterns(int first, int second, int third) {
    for (int bank = 0; bank < kBanks; ++bank) {
        for (int pattern = 0; pattern < kPatterns; ++pattern) {
            for (const int module : {first, second, third}) pushPatternToEngine(module, bank, pattern);
        }
    }
}

} // namespace marlune
