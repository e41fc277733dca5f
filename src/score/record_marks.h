// Which bars and ticks a recording has written: the foot lines of the map. They stay until the next arming.
//
// User-interface thread only.
#pragma once

#include <array>
#include <vector>

#include "project/project_record.h"

namespace marlune {

struct MarkedRange {
    int first, last; // both included
    friend bool operator==(const MarkedRange&, const MarkedRange&) = default;
};
using MarkedRanges = std::vector<MarkedRange>;

struct RecordMarks {
    std::array<MarkedRanges, kModules> bars;
    std::array<MarkedRanges, kKnobs> ticks;
    friend bool operator==(const RecordMarks&, const RecordMarks&) = default;
};

// To be called whenever the program comes to rest.
void noteRecordMarks();
const RecordMarks& recordMarks();

} // namespace marlune
