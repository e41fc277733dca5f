// The 32 patterns of the drum unit of a ReBirth song, as drum patterns of the project and as MIDI notes.
//
// DRUMS_Get_All_Patterns comes first, once for each job. User-interface thread where it writes the project.
#pragma once

#include <array>
#include <cstdint>

#include "project/project_record.h"
#include "rebirth/rbs_image.h"

namespace marlune {

inline constexpr int kRbsVoices = 17; // 0 is the accent row, which has an event but no sound

class Drum_Patterns {
  public:
    int patternNumber = 0; // what Convert_Pattern works on, 0..31
    int channel = 10;      // 1..16

    // How the voices stand; the song's events change it through applyParameter. Levels as in the
    // file, 0..127.
    std::array<bool, 5> voiceSwitch{}; // which instrument of each pair sounds
    int accentLevel = 0;
    std::array<int, kRbsVoices> voiceLevel{}; // [1..16]

    int eventStatus = 0; // of the event that MIDI_808_Get_Step produced
    int eventNote = 0;
    int eventVelocity = 0;

    void DRUMS_Get_All_Patterns(const RbsImage& image);

    // Writes drumOn and loopEnd of a pattern of project.drum.
    void Convert_PatternToMarLune(int bank, int pattern) const;

    void Convert_Pattern();

    // Whether a voice, 0..16, has an event at a half-step from the start of a stretch: the note-on on even
    // positions, the note-off on odd ones. Needs a preceding Convert_Pattern.
    bool MIDI_808_Get_Step(int position, int voice);

    // Takes over an event of the song; a parameter that concerns no voice has no effect.
    void applyParameter(int parameter, int value);

  private:
    static constexpr int kRows = 12;
    [[nodiscard]] bool hitAt(int row, int step, int pattern) const;
    [[nodiscard]] int velocityOf(int voice, int step) const;

    std::array<std::array<std::array<std::uint8_t, kRbsPatterns>, kRows>, 4> drumBytes{};
    RbsLengths patternLengths{};
    std::array<std::array<bool, kRbsVoices>, kSteps> voiceGrid{};
    int currentLength = 1;
};

} // namespace marlune
