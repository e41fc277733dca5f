#include "rebirth/rebirth_units.h"

namespace marlune {

bool RebirthUnits::readRbsUnits(const RbsImage& image) {
    // The tracks lie behind every fixed place: a file that holds them holds all that is read.
    bool failed = microsecondsPerQuarter(image) == 0;
    for (int i = 0; i < kRbsTracks && !failed; ++i) tracks[i].SONG_Get_Data(i, image, failed);
    if (failed) return false;
    for (int unit = 0; unit < 2; ++unit) basses[unit].Three03_Get_All_Patterns(unit, image);
    drums.DRUMS_Get_All_Patterns(image);
    return true;
}

int microsecondsPerQuarter(const RbsImage& image) {
    return image[kRbsTempo] << 16 | image[kRbsTempo + 1] << 8 | image[kRbsTempo + 2];
}

int barCountOf(const RbsImage& image) {
    return 256 * image[kRbsBarCount] + image[kRbsBarCount + 1] + 128 * image[kRbsBarCount + 2];
}

} // namespace marlune
