// The 32 patterns of one bassline unit of a ReBirth song, as bass patterns of the project and as MIDI notes.
//
// Three03_Get_All_Patterns comes first, once for each job. User-interface thread where it writes the project.
#pragma once

#include <array>
#include <cstdint>

#include "project/project_record.h"
#include "rebirth/rbs_image.h"

namespace marlune {

// MIDI of a bassline pattern: 2 half-steps to a step, 30 file ticks to a step.
class Three03_Patterns {
  public:
    int noteOffset = 0;    // note number of semitone 0
    int noteVelocity = 0;  // of every step that sounds
    int patternNumber = 0; // what Convert_Pattern works on, 0..31
    int channel = 1;       // 1..16

    int eventTime = 0; // delta of the event that MIDI_Get_Step produced, file ticks
    int eventStatus = 0;
    int eventNote = 0; // 0..127
    int eventVelocity = 0;

    // unit: 0 top, 1 middle. Pattern numbers are 8 x bank + pattern, in the file as in the project.
    void Three03_Get_All_Patterns(int unit, const RbsImage& image);

    // Writes a pattern of project.bass[module]: all but slide and patch. The note is not limited to the
    // keyboard's octave. Nothing for a module above 1.
    void Convert_PatternToMarLune(int module, int bank, int pattern) const;

    void Convert_Pattern();

    // The event at a half-step from the start of a stretch, repeating at the pattern's length: a note-on on
    // even positions with the given delta, a note-off a step later on odd ones. A rest has velocity 0. Needs
    // a preceding Convert_Pattern.
    void MIDI_Get_Step(int position, int delta);

  private:
    std::array<std::array<std::array<std::uint8_t, kRbsPatterns>, kSteps>, 4> stepBytes{};
    RbsLengths patternLengths{};
    std::array<int, kSteps> stepNotes{}, stepVelocities{};
    int currentLength = 1;
};

} // namespace marlune
