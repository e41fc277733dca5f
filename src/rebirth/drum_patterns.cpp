#include "rebirth/drum_patterns.h"

#include "boundary/midi_bytes.h"
#include "util/text_number.h"

namespace marlune {

namespace {

constexpr int kLengths = 445, kFirstPattern = 8710, kPatternStride = 64; // data indices
static_assert(rbsPlace(kLengths) == 508 && rbsPlace(kFirstPattern) == 9954);
static_assert(rbsPlace(kFirstPattern + 31 * kPatternStride) == 12221);

// Row of the file that a drum row of the project takes.
constexpr std::array<int, kDrumRows> kImportRow = {1, 2, 3, 11, 6, 10, 9, 0};

struct Voice {
    int row, note;
    int pair = -1;     // index into voiceSwitch, -1 for a voice that always sounds
    bool when = false; // what the switch must be
};
constexpr std::array<Voice, kRbsVoices> kVoices = {{
    {0, 0},
    {1, 36},
    {2, 38},
    {3, 64, 0, true},
    {3, 36, 0, false},
    {4, 63, 1, true},
    {4, 47, 1, false},
    {5, 62, 2, true},
    {5, 50, 2, false},
    {6, 75, 3, true},
    {6, 37, 3, false},
    {7, 44, 4, true},
    {7, 75, 4, false},
    {8, 56},
    {9, 51},
    {10, 46},
    {11, 42},
}};

struct DrumParameter {
    int number;
    enum class Sets { accent, levels, pairSwitch } sets;
    int first = 0, last = 0; // voices, or the switch
};
using Sets = DrumParameter::Sets;
constexpr DrumParameter kParameters[] = {
    {16, Sets::accent},         {17, Sets::levels, 1, 1},   {20, Sets::levels, 2, 2},
    {23, Sets::levels, 3, 4},   {25, Sets::pairSwitch, 0},  {26, Sets::levels, 5, 6},
    {28, Sets::pairSwitch, 1},  {29, Sets::levels, 7, 8},   {31, Sets::pairSwitch, 2},
    {32, Sets::levels, 9, 10},  {33, Sets::pairSwitch, 3},  {34, Sets::levels, 11, 12},
    {35, Sets::pairSwitch, 4},  {36, Sets::levels, 13, 13}, {37, Sets::levels, 14, 14},
    {40, Sets::levels, 15, 15}, {42, Sets::levels, 16, 16},
};

} // namespace

void Drum_Patterns::DRUMS_Get_All_Patterns(const RbsImage& image) {
    for (int p = 0; p < kRbsPatterns; ++p) {
        int offset = rbsPlace(kFirstPattern + kPatternStride * p);
        for (int row = 0; row < kRows; ++row) {
            const StepGroup group = readStepGroup(image, offset);
            for (int b = 0; b < 4; ++b) drumBytes[b][row][p] = group.bytes[b];
            offset = group.next;
        }
    }
    patternLengths = readLengthTable(image, rbsPlace(kLengths));
}

// Four steps to a byte, on every other bit from 0x40 down.
bool Drum_Patterns::hitAt(int row, int step, int pattern) const {
    return (drumBytes[step / 4][row][pattern] >> (6 - 2 * (step % 4)) & 1) != 0;
}

void Drum_Patterns::Convert_PatternToMarLune(int bank, int pattern) const {
    const int p = kPatterns * bank + pattern;
    DrumPattern& target = project.drum.patterns[bank][pattern];
    for (int step = 0; step < kSteps; ++step) {
        for (int d = 0; d < kDrumRows; ++d)
            target.drumOn[step][d] = hitAt(kImportRow[d], step, p) ? kDrumHit : 0;
    }
    target.loopEnd = patternLengths[p] - 1;
}

void Drum_Patterns::Convert_Pattern() {
    for (int step = 0; step < kSteps; ++step) {
        for (int v = 0; v < kRbsVoices; ++v) voiceGrid[step][v] = hitAt(kVoices[v].row, step, patternNumber);
    }
    currentLength = patternLengths[patternNumber];
}

int Drum_Patterns::velocityOf(int voice, int step) const {
    if (voice == 0) return 0;
    const int base = voiceLevel[voice] * 100 / 128;
    return base + (voiceGrid[step][0] ? roundHalfEven(accentLevel * 28 / 128.0) : 0);
}

bool Drum_Patterns::MIDI_808_Get_Step(int position, int voice) {
    const int x = position % (2 * currentLength);
    const int step = x / 2;
    const Voice& row = kVoices[voice];
    if (!voiceGrid[step][voice] || (row.pair >= 0 && voiceSwitch[row.pair] != row.when)) return false;
    eventStatus = (x % 2 == 0 ? kNoteOn : kNoteOff) + channel - 1;
    eventNote = row.note;
    eventVelocity = velocityOf(voice, step);
    return true;
}

void Drum_Patterns::applyParameter(int parameter, int value) {
    for (const DrumParameter& row : kParameters) {
        if (row.number != parameter) continue;
        if (row.sets == Sets::accent) accentLevel = value;
        if (row.sets == Sets::pairSwitch) voiceSwitch[row.first] = value > 0;
        for (int v = row.first; row.sets == Sets::levels && v <= row.last; ++v) voiceLevel[v] = value;
    }
}

} // namespace marlune
