// The musical state of a project, laid out as the project file stores it.
//
// Numbers used everywhere: module 0 = 103A, 1 = 103B, 2 = 109; bank 0..3; pattern 0..7; step 0..15;
// drum row 0..7 (7 accents the step); knob 0..19 (0..5 of 103A, 6..11 of 103B, 12..19 of 109).
// User-interface thread only.
#pragma once

#include <array>
#include <cstddef>
#include <type_traits>

#include "boundary/limits.h"
#include "util/le_int.h"

namespace marlune {

struct BassStep {
    Le16 note;     // semitone above the module's base note, 0..12
    Flag16 noteOn; // false: a rest, which keeps its note
    Flag16 up;     // octave up
    Flag16 down;   // octave down
    Flag16 slide;  // stored and copied with the step; played where the project's groove says so
    Flag16 accent;
};

struct BassPattern {
    std::array<BassStep, kSteps> steps;
    Le16 loopEnd; // last step played, 0..15
    Le16 patch;   // MIDI program selected when the pattern starts, 0..127; -1 for no change
};

struct BassModule {
    std::array<std::array<BassPattern, kPatterns>, kBanks> patterns; // [bank][pattern]
    Le8 baseNote;                                                    // stored default; live: moduleBaseNote
    Le8 baseVelocity;                                                // stored default; live: moduleVelocity
    Le8 storedChannel;                                               // channel of program changes, 0..15
    std::array<Le8, 2> reservedChannel;
    Le8 lastNote; // MIDI note last sent
    Le8 currBank, currPatt;
    Le8 nextBank, nextPatt; // cued
    Le8 selStep;            // step under edit, 0..15
    std::array<Le8, 3> reservedStep;
    Le16 lastPatch; // program last sent, -1 when none since the transport started
};

struct DrumPattern {
    std::array<std::array<Le8, kDrumRows>, kSteps> drumOn; // [step][row]: 255 a hit, 0 none
    std::array<Le16, kDrumRows> drumNote;                  // MIDI note per row; row 7 has no meaning
    Le16 loopEnd;
    Le16 drumSpare; // copied with the pattern
};

struct DrumModule {
    std::array<std::array<DrumPattern, kPatterns>, kBanks> patterns; // [bank][pattern]
    Le8 storedChannel;
    std::array<Le8, 2> reservedChannel;
    std::array<Le8, kDrumRows> lastDrumNote; // MIDI note last sent per drum
    std::array<Le8, 2> reservedNote;
    Le8 currBank, currPatt;
    Le8 nextBank, nextPatt;
    Le8 reservedSelect;
    Le8 selDrum; // row under edit, 0..7
};

// What a received MIDI note selects; -1 leaves a module alone.
struct NoteMapEntry {
    std::array<Le16, kModules> mapBank;
    std::array<Le16, kModules> mapPatt;
    Flag16 mapUsed;
};

// See project/groove.h.
struct Groove {
    std::array<Le8, 4> mark; // without it nobody knows what the rest is
    Le8 swing;               // percent beyond 50, 0..25
    Le8 slides;              // 1: steps with the slide flag slide
};

struct ProjectRecord {
    Le32 fileTag; // 91 in every project made here; nothing reads it back
    std::array<Le8, 4> fileId;
    std::array<Le8, 37> reservedHead;
    std::array<BassModule, kBassModules> bass;
    DrumModule drum;
    std::array<Le16, kKnobs> knobValue; // 0..127
    std::array<Le8, 8> reservedKnobs;
    Le16 dragStartPos;   // scratch of a knob drag, twips
    Le16 dragStartValue; // scratch of a knob drag
    Flag16 tempoChanged; // the next tick re-times the component
    Groove groove;
    Le16 tempo; // beats per minute, 40..240
    std::array<NoteMapEntry, 128> noteMap;
    Flag16 learnMode; // the memorizer's dialog listens
};

static_assert(std::is_trivially_copyable_v<ProjectRecord> && std::is_standard_layout_v<ProjectRecord>);
static_assert(sizeof(BassStep) == 12 && sizeof(BassPattern) == 196 && sizeof(BassModule) == 6288);
static_assert(sizeof(DrumPattern) == 148 && sizeof(DrumModule) == 4755 && sizeof(NoteMapEntry) == 14);
static_assert(sizeof(Groove) == 6 && offsetof(ProjectRecord, groove) == 17430);
static_assert(sizeof(ProjectRecord) == 19232 && alignof(ProjectRecord) == 1);
static_assert(offsetof(BassPattern, loopEnd) == 192 && offsetof(BassPattern, patch) == 194);
static_assert(offsetof(BassModule, baseNote) == 6272 && offsetof(BassModule, storedChannel) == 6274);
static_assert(offsetof(BassModule, lastNote) == 6277 && offsetof(BassModule, currBank) == 6278);
static_assert(offsetof(BassModule, selStep) == 6282 && offsetof(BassModule, lastPatch) == 6286);
static_assert(offsetof(DrumPattern, drumNote) == 128 && offsetof(DrumPattern, loopEnd) == 144);
static_assert(offsetof(DrumModule, storedChannel) == 4736 && offsetof(DrumModule, lastDrumNote) == 4739);
static_assert(offsetof(DrumModule, currBank) == 4749 && offsetof(DrumModule, selDrum) == 4754);
static_assert(offsetof(ProjectRecord, bass) == 45 && offsetof(ProjectRecord, drum) == 12621);
static_assert(offsetof(ProjectRecord, knobValue) == 17376 && offsetof(ProjectRecord, dragStartPos) == 17424);
static_assert(offsetof(ProjectRecord, tempoChanged) == 17428 && offsetof(ProjectRecord, tempo) == 17436);
static_assert(offsetof(ProjectRecord, noteMap) == 17438 && offsetof(ProjectRecord, learnMode) == 19230);

extern ProjectRecord project; // the live record

// The project as it stood when song mode began; saved instead of the live one while song mode is on.
extern ProjectRecord patternImage;

// The four selection fields that every module has, whatever its kind.
struct Selection {
    Le8 &currBank, &currPatt, &nextBank, &nextPatt;
};
Selection selectionOf(ProjectRecord& record, int module);
void cueCurrent(ProjectRecord& record); // no module has anything else in view than what it plays

// The pattern that a module plays now. module of currentBass: 0 or 1.
BassPattern& currentBass(int module);
DrumPattern& currentDrum();

// loopEnd of the pattern that a module plays now, 0..15.
int currentLoopEnd(int module);

// Which module a knob belongs to, 0..2.
constexpr int moduleOfKnob(int knob) {
    return knob >= kFirstDrumKnob ? kDrumModule : knob / kBassKnobs;
}

} // namespace marlune
