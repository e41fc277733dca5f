#include "song/song_place.h"

#include "boundary/engine_component.h"
#include "panel/refresh.h"
#include "project/song_track.h"
#include "project/step_rules.h"

namespace marlune {

namespace {

SongPosition& place() {
    return songPosition.write();
}

// What the component takes as one, and as meant for the step after the last tick message taken. One inside
// another belongs to it.
class Placing {
  public:
    Placing() {
        if (depth++ == 0) BeginPlacing32(songPosition->ticksTaken, ++place().placing);
    }
    ~Placing() {
        if (--depth == 0) EndPlacing32();
    }
    Placing(const Placing&) = delete;
    Placing& operator=(const Placing&) = delete;

  private:
    static inline int depth = 0;
};

SongBar currentOf(int module) {
    const Selection at = selectionOf(project, module);
    return {static_cast<std::uint8_t>(int{at.currPatt}), static_cast<std::uint8_t>(int{at.currBank})};
}

void setCurrent(int module, SongBar bar) {
    const Selection at = selectionOf(project, module);
    at.currBank = bar.bank;
    at.currPatt = bar.patt;
}

void showCue(int module, SongBar bar) {
    const Selection at = selectionOf(project, module);
    at.nextBank = bar.bank;
    at.nextPatt = bar.patt;
    refreshNextBankPatt(module);
}

void tellModule(int module, SongBar bar, SongBar next) {
    place().cuedBar = barOf(songPosition->songTick);
    const SongBar current = currentOf(module);
    SetCurrPatt32(module, current.patt);
    SetCurrGroup32(module, current.bank);
    SetCurrBarPatt32(module, bar.patt);
    SetCurrBarGroup32(module, bar.bank);
    SetNextBarPatt32(module, next.patt);
    SetNextBarGroup32(module, next.bank);
    SetModuleTick32(module, songPosition->dueStep[module]);
}

void takeBar(int module, SongBar bar) {
    setCurrent(module, bar);
    const int step = moduleStepAtTick(module, songPosition->songTick, currentLoopEnd(module) + 1);
    place().dueStep[module] = step;
}

void showModule(int module, SongBar cue) {
    refreshCurrBankPatt(module);
    showCue(module, cue);
}

void placeModules(int tick) {
    for (int m = 0; m < kModules; ++m) {
        const SongBar bar = songBarAt(m, tick);
        takeBar(m, bar);
        place().moduleStep[m] = static_cast<std::int16_t>(songPosition->dueStep[m]);
        refreshStepLamp(m);
        tellModule(m, bar, nextSongBarAt(m, tick));
        showModule(m, nextSongBarAt(m, tick));
    }
}

} // namespace

void placeSong(int tick) {
    place().songTick = tick;
    place().holdSongTick = true;
    const Placing asOne;
    SetSongTick32(tick);
    if (songPosition->songMode) placeModules(tick);
    refreshSongTime();
}

void takeUpSong() {
    if (!songPosition->songMode) return;
    const int tick = songPosition->songTick;
    if (songPosition->holdSongTick || !transportState->transportRunning) {
        placeSong(tick);
        return;
    }
    const bool barIsDue = isBarLine(tick);
    const Placing asOne;
    SetSongTick32(tick);
    for (int m = 0; m < kModules; ++m) {
        const SongBar bar = songBarAt(m, tick);
        if (!barIsDue && currentOf(m) != bar) takeBar(m, bar);
        tellModule(m, bar, nextSongBarAt(m, tick));
        showModule(m, barIsDue ? bar : nextSongBarAt(m, tick));
    }
    refreshSongTime();
}

void cueNextBar(int module, int tick) {
    const SongBar next = nextSongBarAt(module, tick);
    SetNextBarPatt32(module, next.patt);
    SetNextBarGroup32(module, next.bank);
    showCue(module, next);
    place().cuedBar = barOf(tick);
}

bool barsSoundAsWritten() {
    if (!songSounds()) return true;
    for (int m = 0; m < kModules; ++m) {
        if (currentOf(m) != songBarAt(m, songPosition->playedTick)) return false;
    }
    return true;
}

void placePatterns() {
    const Placing asOne;
    SetSongTick32(songPosition->songTick);
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(project, m);
        place().dueStep[m] %= currentLoopEnd(m) + 1;
        SetCurrGroup32(m, at.currBank);
        SetCurrPatt32(m, at.currPatt);
        SetNextGroup32(m, at.nextBank);
        SetNextPatt32(m, at.nextPatt);
        SetModuleTick32(m, songPosition->dueStep[m]);
    }
}

void enterSongMode(int tick) {
    const Placing asOne;
    SetSong32(-1);
    place().songMode = true;
    placeSong(tick);
}

void leaveSongMode() {
    const Placing asOne;
    SetSong32(0);
    place().songMode = false;
    place().byTicks = false;
    placePatterns();
}

void restSteps(const std::array<int, 3>& steps) {
    for (int m = 0; m < kModules; ++m) place().moduleStep[m] = static_cast<std::int16_t>(steps[m]);
    place().dueStep = steps;
}

void stepsToZero() {
    restSteps({});
}

void tickPlayed(int position, const std::array<int, 3>& steps) {
    SongPosition& at = place();
    at.playedTick = position;
    at.holdSongTick = false;
    // In pattern mode the bar stays and only the place in it runs.
    at.songTick = at.songMode ? nextSongTick(position) : barLine(position) + (position + 1) % kTicksPerBar;
    for (int m = 0; m < kModules; ++m) {
        at.moduleStep[m] = static_cast<std::int16_t>(steps[m]);
        at.dueStep[m] = nextStep(steps[m], currentLoopEnd(m)).step;
    }
}

void patternEntered(int module) {
    place().moduleStep[module] = 0;
}

void countTick() {
    ++place().ticksTaken;
}

void timerStarted() {
    place().ticksTaken = 0;
}

void markMovedByTicks(bool byTicks) {
    place().byTicks = byTicks;
}

void setWindRate(int rate) {
    place().windRate = rate;
}

void noteBaseTempo() {
    place().windBaseTempo = project.tempo;
}

} // namespace marlune
