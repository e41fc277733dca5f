#include "util/tempo_calc.h"

#include <cmath>

namespace marlune {

double BpmToMs(int bpm, double steps) {
    return bpm > 0 && steps > 0 ? stepMilliseconds(bpm) * steps : 0;
}

double bpmConvert(double oldBpm, double newBpm) {
    return oldBpm > 0 && newBpm > 0 ? 12 * std::log2(oldBpm / newBpm) : 0;
}

} // namespace marlune
