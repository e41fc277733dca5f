// Sums about tempo. Pure functions.
#pragma once

namespace marlune {

// Length in ms of `steps` sixteenths at `bpm`, a step counted in whole milliseconds as the transport counts
// it. 0 unless both are above 0.
double BpmToMs(int bpm, double steps);

// Semitones by which a loop recorded at oldBpm changes when played at newBpm: 12 x log2(old / new), so a
// higher tempo gives a negative number. 0 unless both are above 0.
double bpmConvert(double oldBpm, double newBpm);

// Length of one step (a sixteenth) in whole ms, as the transport hands it over. tempo > 0.
constexpr int stepMilliseconds(int tempo) {
    return 60000 / tempo / 4;
}

} // namespace marlune
