#include "project/step_rules.h"

#include <algorithm>

namespace marlune {

int pitchOfStep(const BassStep& step, int baseNote) {
    const int octave = (step.up ? 12 : 0) - (step.down ? 12 : 0);
    return std::clamp(std::clamp<int>(step.note, 0, kTopNote) + baseNote + octave, 0, 127);
}

int bassVelocity(const BassStep& step, int moduleVelocity, int accentKnob) {
    return step.accent ? accentKnob : moduleVelocity;
}

bool isDrumHit(const DrumPattern& pattern, int step, int drum) {
    return pattern.drumOn[step][drum] != 0;
}

int drumVelocity(const DrumPattern& pattern, int step, int levelKnob, int accentKnob) {
    return pattern.drumOn[step][kAccentRow] != 0 ? accentKnob : levelKnob;
}

StepAdvance nextStep(int step, int loopEnd) {
    return step >= loopEnd ? StepAdvance{0, true} : StepAdvance{step + 1, false};
}

} // namespace marlune
