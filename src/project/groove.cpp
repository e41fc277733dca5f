#include "project/groove.h"

#include <algorithm>

namespace marlune {

namespace {

constexpr std::array<int, 4> kMark{'G', 'r', 'v', '1'};

bool isMarked(const Groove& groove) {
    return std::equal(kMark.begin(), kMark.end(), groove.mark.begin(),
                      [](int mark, const Le8& byte) { return int{byte} == mark; });
}

Groove& marked(ProjectRecord& record) {
    Groove& groove = record.groove;
    if (isMarked(groove)) return groove;
    for (std::size_t i = 0; i < kMark.size(); ++i) groove.mark[i] = kMark[i];
    groove.swing = 0;
    groove.slides = 0;
    return groove;
}

} // namespace

int swingOf(const ProjectRecord& record) {
    return isMarked(record.groove) ? std::min(kStraight + record.groove.swing, kMostSwing) : kStraight;
}

void setSwing(ProjectRecord& record, int percent) {
    marked(record).swing = std::clamp(percent, kStraight, kMostSwing) - kStraight;
}

bool playsSlides(const ProjectRecord& record) {
    return isMarked(record.groove) && record.groove.slides != 0;
}

void playSlides(ProjectRecord& record) {
    marked(record).slides = 1;
}

void clearGroove(ProjectRecord& record) {
    if (playsSlides(record)) {
        for (BassModule& bass : record.bass)
            for (auto& bank : bass.patterns)
                for (BassPattern& pattern : bank)
                    for (BassStep& step : pattern.steps) step.slide = false;
    }
    if (isMarked(record.groove)) record.groove = {};
}

} // namespace marlune
