// What a step sounds like: the rules that live playing and the file export share.
//
// Pure functions; any thread.
#pragma once

#include "project/project_record.h"

namespace marlune {

// MIDI note of a step, 0..127: note + base note, an octave up or down by the step's flags. A note above 12,
// as only a file can bring, counts as 12.
int pitchOfStep(const BassStep& step, int baseNote);

// Velocity of a sounding bass step: the module's, or the value of its accent knob on an accented step.
int bassVelocity(const BassStep& step, int moduleVelocity, int accentKnob);

// Whether a drum sounds at a step. Any cell but 0 is a hit. drum: 0..6.
bool isDrumHit(const DrumPattern& pattern, int step, int drum);

// Velocity of a hit: the drum's level knob, or the accent knob where the step's accent row is set.
int drumVelocity(const DrumPattern& pattern, int step, int levelKnob, int accentKnob);

// The step after this one in a pattern whose last step is loopEnd.
struct StepAdvance {
    int step;
    bool wrapped;
};
StepAdvance nextStep(int step, int loopEnd);

} // namespace marlune
