#include "rebirth/three03_patterns.h"

#include "boundary/midi_bytes.h"

#include <algorithm>

namespace marlune {

namespace {

// The middle unit lies 4096 data bytes behind the top unit.
struct UnitPlaces {
    int lengths, firstPattern; // data indices
};
constexpr UnitPlaces kUnits[] = {{381, 500}, {413, 4596}};
constexpr int kPatternStride = 68;
constexpr int kTopMidiNote = 127;
static_assert(rbsPlace(381) == 435 && rbsPlace(413) == 472);
static_assert(rbsPlace(500) == 571 && rbsPlace(500 + 31 * kPatternStride) == 2980);
static_assert(rbsPlace(4596) == 5252 && rbsPlace(4596 + 31 * kPatternStride) == 7661);

// The bytes of a step: 0 semitone, 1 unused, 2 flags, 3 rest.
constexpr int kSemitone = 0, kFlags = 2, kRest = 3;
constexpr int kDown = 0x08, kUp = 0x04, kAccent = 0x02;
constexpr int kRestBit = 0x01;

// A plain step sounds one octave above the unit's base note.
int octaveShift(int flags) {
    if (flags >= kDown + kUp) return 12; // together they cancel
    if (flags >= kDown) return 0;
    return flags >= kUp ? 24 : 12;
}

} // namespace

void Three03_Patterns::Three03_Get_All_Patterns(int unit, const RbsImage& image) {
    for (int p = 0; p < kRbsPatterns; ++p) {
        int offset = rbsPlace(kUnits[unit].firstPattern + kPatternStride * p);
        for (int step = 0; step < kSteps; ++step) {
            const StepGroup group = readStepGroup(image, offset);
            for (int b = 0; b < 4; ++b) stepBytes[b][step][p] = group.bytes[b];
            offset = group.next;
        }
    }
    patternLengths = readLengthTable(image, rbsPlace(kUnits[unit].lengths));
}

void Three03_Patterns::Convert_PatternToMarLune(int module, int bank, int pattern) const {
    if (module < 0 || module >= kBassModules) return;
    const int p = kPatterns * bank + pattern;
    BassPattern& target = project.bass[module].patterns[bank][pattern];
    for (int s = 0; s < kSteps; ++s) {
        const int flags = stepBytes[kFlags][s][p];
        const bool bothOctaves = (flags & (kUp + kDown)) == kUp + kDown;
        BassStep& step = target.steps[s];
        step.note = stepBytes[kSemitone][s][p];
        step.noteOn = (stepBytes[kRest][s][p] & kRestBit) == 0;
        step.up = (flags & kUp) != 0 && !bothOctaves;
        step.down = (flags & kDown) != 0 && !bothOctaves;
        step.accent = (flags & kAccent) != 0;
    }
    target.loopEnd = patternLengths[p] - 1;
}

void Three03_Patterns::Convert_Pattern() {
    const int p = patternNumber;
    for (int s = 0; s < kSteps; ++s) {
        const int note = noteOffset + stepBytes[kSemitone][s][p] + octaveShift(stepBytes[kFlags][s][p]);
        stepNotes[s] = std::min(note, kTopMidiNote);
        stepVelocities[s] = (stepBytes[kRest][s][p] & kRestBit) != 0 ? 0 : noteVelocity;
    }
    currentLength = patternLengths[p];
}

void Three03_Patterns::MIDI_Get_Step(int position, int delta) {
    constexpr int kWholeStep = 30;
    const int x = position % (2 * currentLength);
    const bool on = x % 2 == 0;
    eventStatus = (on ? kNoteOn : kNoteOff) + channel - 1;
    eventTime = on ? delta : kWholeStep;
    eventNote = stepNotes[x / 2];
    eventVelocity = stepVelocities[x / 2];
}

} // namespace marlune
