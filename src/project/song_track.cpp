#include "project/song_track.h"

namespace marlune {

std::array<std::array<SongBar, kSongBars>, kModules> barTrack;
std::array<std::array<std::uint8_t, kSongTicks>, kKnobs> knobTrack;

namespace {

SongBar songBar(int bank, int patt) {
    return {static_cast<std::uint8_t>(patt), static_cast<std::uint8_t>(bank)};
}

} // namespace

int barPatt(int module, int tick) {
    return barTrack[module][barOf(tick)].patt;
}

int barBank(int module, int tick) {
    return barTrack[module][barOf(tick)].bank;
}

int nextBarPatt(int module, int tick) {
    return nextSongBarAt(module, tick).patt;
}

int nextBarBank(int module, int tick) {
    return nextSongBarAt(module, tick).bank;
}

SongBar songBarAt(int module, int tick) {
    return barTrack[module][barOf(tick)];
}

SongBar nextSongBarAt(int module, int tick) {
    return barTrack[module][(barOf(tick) + 1) % kSongBars];
}

void setBar(int module, int tick, int bank, int patt) {
    barTrack[module][barOf(tick)] = songBar(bank, patt);
}

void setNextBar(int module, int tick, int bank, int patt) {
    if (barOf(tick) + 1 < kSongBars) barTrack[module][barOf(tick) + 1] = songBar(bank, patt);
}

int moduleStepAtTick(int module, int tick, int length) {
    const auto& bars = barTrack[module];
    int first = barOf(tick); // first bar of the run of equal bars that holds tick
    while (first > 0 && bars[first - 1] == bars[barOf(tick)]) --first;
    return (tick - kTicksPerBar * first) % length;
}

int nextSongTick(int tick) {
    return (tick + 1) % kSongTicks;
}

void initKnobTrack(const std::array<int, kKnobs>& values) {
    for (int knob = 0; knob < kKnobs; ++knob) knobTrack[knob].fill(static_cast<std::uint8_t>(values[knob]));
}

void fillBarTrack(const std::array<int, kModules>& patts, const std::array<int, kModules>& banks) {
    for (int m = 0; m < kModules; ++m) barTrack[m].fill(songBar(banks[m], patts[m]));
}

void clearSongTracks() {
    barTrack = {};
    for (auto& row : knobTrack) row.fill(0);
}

} // namespace marlune
