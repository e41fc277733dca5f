#include "score/map_state.h"

#include <algorithm>
#include <cstring>

#include "boundary/menus.h"
#include "panel/shown_state.h"
#include "project/run_state.h"

namespace marlune {

namespace {

constexpr double kPageTurn = 7.0 / 8; // of the width

// What takes a walk through the whole song, kept until the song is another one.
struct Digest {
    std::array<std::array<SongBar, kSongBars>, kModules> bars{};
    std::array<std::array<std::uint8_t, kSongTicks>, kKnobs> knobs{};
    bool taken = false;
    std::array<std::vector<MapRun>, kModules> lanes;
    std::array<bool, kKnobs> moves{};
    std::array<int, kKnobs> knobEnds{};
};

void takeLane(Digest& digest, int m) {
    std::vector<MapRun>& runs = digest.lanes[m];
    runs.clear();
    for (int bar = 0; bar < kSongBars; ++bar) {
        if (runs.empty() || runs.back().plays != digest.bars[m][bar])
            runs.push_back({{bar, 1}, digest.bars[m][bar]});
        else
            ++runs.back().bars.count;
    }
}

void takeKnob(Digest& digest, int k) {
    const auto& track = digest.knobs[k];
    const auto last = std::find_if(track.rbegin(), track.rend(), [&](auto v) { return v != track.back(); });
    digest.moves[k] = last != track.rend();
    digest.knobEnds[k] =
        digest.moves[k] ? barOf(static_cast<int>(track.rend() - last) + kTicksPerBar - 1) : 0;
}

const Digest& songDigest() {
    static Digest digest;
    for (int m = 0; m < kModules; ++m) {
        if (digest.taken && digest.bars[m] == barTrack[m]) continue;
        digest.bars[m] = barTrack[m];
        takeLane(digest, m);
    }
    for (int k = 0; k < kKnobs; ++k) {
        if (digest.taken && std::memcmp(&digest.knobs[k], &knobTrack[k], sizeof knobTrack[k]) == 0) continue;
        digest.knobs[k] = knobTrack[k];
        takeKnob(digest, k);
    }
    digest.taken = true;
    return digest;
}

void readSlots(MapState& state) {
    for (int bank = 0; bank < kBanks; ++bank) {
        for (int pattern = 0; pattern < kPatterns; ++pattern) {
            const int slot = bank * kPatterns + pattern;
            for (int m = 0; m < kBassModules; ++m)
                state.patterns[m][slot] = smallBass(project.bass[m].patterns[bank][pattern]);
            state.patterns[kDrumModule][slot] = smallDrums(project.drum.patterns[bank][pattern]);
        }
    }
}

} // namespace

MapState readMap() {
    MapState state;
    state.songMode = songPosition->songMode;
    state.running = transportState->transportRunning;
    state.armed = state.songMode && recordingState->recordOn;
    state.canUndo = menuState(Menu::mnuEditUndo).enabled && !state.armed;
    state.canRedo = menuState(Menu::mnuEditRedo).enabled && !state.armed;
    state.canPaste = barsToPaste();
    state.edited = editingState->editSel;
    const bool sounds = state.songMode && state.running && !songPosition->holdSongTick;
    state.tick = sounds ? songPosition->playedTick : songPosition->songTick;
    const Digest& song = songDigest();
    state.lanes = song.lanes;
    state.knobMoves = song.moves;
    for (const auto& lane : song.lanes) state.end = std::max(state.end, lane.back().bars.first);
    for (const int end : song.knobEnds) state.end = std::max(state.end, end);
    readSlots(state);
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(project, m);
        state.current[m] = {static_cast<std::uint8_t>(int{at.currPatt}),
                            static_cast<std::uint8_t>(int{at.currBank})};
        state.cued[m] = {static_cast<std::uint8_t>(int{at.nextPatt}),
                         static_cast<std::uint8_t>(int{at.nextBank})};
    }
    for (int k = 0; k < kKnobs; ++k) {
        state.knobNames[k] = shownText(Control::UserTitle, k);
        state.knobValues[k] = project.knobValue[k];
    }
    state.barRecording = recordingState->barRecording;
    state.knobRecording = recordingState->knobRecording;
    state.marks = recordMarks();
    return state;
}

void followPlayhead(MapDesk& desk, const MapState& state) {
    if (!desk.follow || !state.running || !state.songMode) return;
    const double share = (1.0 * state.tick / kTicksPerBar - desk.view.first) / barsInView(desk.view);
    if (share < 0 || share >= kPageTurn) scrollTo(desk.view, state.bar());
}

} // namespace marlune
