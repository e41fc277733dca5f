#include "project/project_record.h"

namespace marlune {

ProjectRecord project;
ProjectRecord patternImage;

Selection selectionOf(ProjectRecord& record, int module) {
    if (module == kDrumModule) {
        DrumModule& drum = record.drum;
        return {drum.currBank, drum.currPatt, drum.nextBank, drum.nextPatt};
    }
    BassModule& bass = record.bass[module];
    return {bass.currBank, bass.currPatt, bass.nextBank, bass.nextPatt};
}

void cueCurrent(ProjectRecord& record) {
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(record, m);
        at.nextBank = at.currBank;
        at.nextPatt = at.currPatt;
    }
}

BassPattern& currentBass(int module) {
    BassModule& bass = project.bass[module];
    return bass.patterns[bass.currBank][bass.currPatt];
}

DrumPattern& currentDrum() {
    DrumModule& drum = project.drum;
    return drum.patterns[drum.currBank][drum.currPatt];
}

int currentLoopEnd(int module) {
    return module == kDrumModule ? currentDrum().loopEnd : currentBass(module).loopEnd;
}

} // namespace marlune
