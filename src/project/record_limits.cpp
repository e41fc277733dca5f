#include "project/record_limits.h"

#include <algorithm>

namespace marlune {

namespace {

template <typename Number>
void limit(Number& value, int lowest, int highest) {
    value = std::clamp<int>(value, lowest, highest);
}

void limitSelection(const Selection& at) {
    for (Le8* bank : {&at.currBank, &at.nextBank}) limit(*bank, 0, kBanks - 1);
    for (Le8* patt : {&at.currPatt, &at.nextPatt}) limit(*patt, 0, kPatterns - 1);
}

} // namespace

void limitRecord(ProjectRecord& record) {
    for (BassModule& bass : record.bass) {
        for (auto& bank : bass.patterns) {
            for (BassPattern& pattern : bank) {
                limit(pattern.loopEnd, 0, kSteps - 1);
                limit(pattern.patch, kNoPatch, 127);
            }
        }
        limit(bass.storedChannel, 0, 15);
        limit(bass.selStep, 0, kSteps - 1);
    }
    for (auto& bank : record.drum.patterns) {
        for (DrumPattern& pattern : bank) {
            limit(pattern.loopEnd, 0, kSteps - 1);
            for (Le16& note : pattern.drumNote) limit(note, 0, 127);
        }
    }
    limit(record.drum.selDrum, 0, kDrumRows - 1);
    for (int m = 0; m < kModules; ++m) limitSelection(selectionOf(record, m));
    for (Le16& value : record.knobValue) limit(value, 0, 127);
    limit(record.tempo, kMinTempo, kMaxTempo); // the groove is limited where it is read
    for (NoteMapEntry& entry : record.noteMap) {
        for (Le16& bank : entry.mapBank) limit(bank, -1, kBanks - 1);
        for (Le16& patt : entry.mapPatt) limit(patt, -1, kPatterns - 1);
    }
}

} // namespace marlune
