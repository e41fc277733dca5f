#include "score/record_marks.h"

#include "project/run_state.h"
#include "project/song_track.h"

namespace marlune {

namespace {

struct Pass {
    RecordMarks marks;
    bool armed = false;
    std::array<bool, kModules> bars{};
    std::array<bool, kKnobs> ticks{};
};

Pass& pass() {
    static Pass instance;
    return instance;
}

// Goes on with the last range as far as `at`, or begins one there; what lies between is written as well.
void mark(MarkedRanges& ranges, int at, bool goesOn) {
    if (!ranges.empty() && at >= ranges.back().first && at <= ranges.back().last) return;
    if (goesOn && !ranges.empty() && at > ranges.back().last)
        ranges.back().last = at;
    else
        ranges.push_back({at, at});
}

} // namespace

void noteRecordMarks() {
    Pass& p = pass();
    const bool armed = songPosition->songMode && recordingState->recordOn;
    if (armed && !p.armed) p = {};
    p.armed = armed;
    if (!armed) return;
    const bool running = transportState->transportRunning;
    const int comes = songPosition->songTick;
    const int sounds = running && !songPosition->holdSongTick ? songPosition->playedTick : comes;
    for (int m = 0; m < kModules; ++m) {
        const bool writes = recordingState->barRecording[m];
        // A choice made inside a bar that plays belongs to the next one.
        const bool begins = writes && !p.bars[m];
        const int bar = begins && running && !isBarLine(comes) ? barOf(comes) + 1 : barOf(sounds);
        if (writes && bar < kSongBars &&
            (p.marks.bars[m].empty() || begins || bar >= p.marks.bars[m].back().first))
            mark(p.marks.bars[m], bar, !begins);
        p.bars[m] = writes;
    }
    for (int k = 0; k < kKnobs; ++k) {
        const bool writes = recordingState->knobRecording[k];
        if (writes) mark(p.marks.ticks[k], sounds, p.ticks[k]);
        p.ticks[k] = writes;
    }
}

const RecordMarks& recordMarks() {
    return pass().marks;
}

} // namespace marlune
