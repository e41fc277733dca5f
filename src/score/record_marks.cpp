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
        // A choice is written into the bar that follows, and goes on into the next one at each bar line.
        const int bar = running ? barOf(sounds) + 1 : barOf(comes);
        if (writes && bar < kSongBars) mark(p.marks.bars[m], bar, p.bars[m]);
        p.bars[m] = writes;
    }
    for (int k = 0; k < kKnobs; ++k) {
        const bool writes = recordingState->knobRecording[k];
        if (writes) mark(p.marks.ticks[k], sounds, p.ticks[k]);
        if (writes) mark(p.marks.ticks[k], comes, true); // it is prepared already
        p.ticks[k] = writes;
    }
}

const RecordMarks& recordMarks() {
    return pass().marks;
}

} // namespace marlune
