#include "edit/song_bars.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "boundary/menus.h"
#include "edit/clipboard.h"
#include "panel/editing.h"
#include "panel/shown_state.h"
#include "project/clipboard_state.h"
#include "song/song_moves.h"
#include "song/song_place.h"

namespace marlune {

namespace {

using BarLane = std::array<SongBar, kSongBars>;
using KnobLane = std::array<std::uint8_t, kSongTicks>;

void songChanged() {
    markProject();
    takeUpSong();
    refreshKnobsAtSongTick();
}

template <typename Act>
void forEachKnob(const BarLanes& lanes, int module, Act act) {
    if (!lanes.knobs) return;
    const KnobRange knobs = knobsOf(module);
    for (int k = knobs.first; k < knobs.first + knobs.count; ++k) act(k, knobTrack[k]);
}

template <typename Act>
void forEachLane(const BarLanes& lanes, Act act) {
    for (int m = 0; m < kModules; ++m)
        if (lanes.modules[m]) act(m, barTrack[m]);
}

std::uint8_t imageValue(int knob) {
    return static_cast<std::uint8_t>(std::clamp<int>(patternImage.knobValue[knob], 0, 127));
}

// How many of the last bars count for something.
int lostBars(const BarLanes& lanes, int count) {
    int lost = 0;
    forEachLane(lanes, [&](int m, const BarLane& lane) {
        const auto* first = lane.end() - count;
        const SongBar bare = patternModeBar(m);
        const auto* last = lane.end();
        while (last > first && *(last - 1) == bare) --last;
        lost = std::max(lost, static_cast<int>(last - first));
    });
    return lost;
}

LaneCopy copyOfLane(int module, BarRange bars, bool withKnobs) {
    LaneCopy copy;
    copy.bars.assign(barTrack[module].begin() + bars.first, barTrack[module].begin() + bars.end());
    if (!withKnobs) return copy;
    const KnobRange knobs = knobsOf(module);
    for (int k = 0; k < knobs.count; ++k) {
        const KnobLane& track = knobTrack[knobs.first + k];
        copy.knobs.emplace_back(track.begin() + bars.first * kTicksPerBar,
                                track.begin() + bars.end() * kTicksPerBar);
    }
    return copy;
}

void pasteLane(int module, int bar, const LaneCopy& copy) {
    const int count = std::min(static_cast<int>(copy.bars.size()), kSongBars - bar);
    std::copy_n(copy.bars.begin(), count, barTrack[module].begin() + bar);
    const KnobRange knobs = knobsOf(module);
    for (int k = 0; k < std::min(knobs.count, static_cast<int>(copy.knobs.size())); ++k)
        std::copy_n(copy.knobs[static_cast<std::size_t>(k)].begin(), count * kTicksPerBar,
                    knobTrack[knobs.first + k].begin() + bar * kTicksPerBar);
}

std::string lanesText(const BarLanes& lanes) {
    std::string text;
    for (int m = 0; m < kModules; ++m)
        if (lanes.modules[m]) text += (text.empty() ? "" : ", ") + std::string(kModuleNames[m]);
    return text;
}

// Into the song clipboard, as its dialog would.
void copyOneLane(int module, BarRange bars, bool withKnobs) {
    SongClipboard& clip = songClipboard.write();
    clip.copyModule = module;
    clip.copyBarCount = bars.count;
    std::copy_n(barTrack[module].begin() + bars.first, bars.count, clip.copyBars.begin());
    clip.copyKnobLast = withKnobs ? kTicksPerBar * bars.count - 1 : 0;
    clip.copyKnobList.assign(clip.copyKnobLast + 1, {});
    const KnobRange knobs = knobsOf(module);
    for (int i = 0; withKnobs && i <= clip.copyKnobLast; ++i)
        for (int k = 0; k < knobs.count; ++k)
            clip.copyKnobList[i][k] = knobTrack[knobs.first + k][kTicksPerBar * bars.first + i];
}

void pasteOneLane(int module, int bar) {
    const SongClipboard& clip = songClipboard.read();
    const int count = std::min(clip.copyBarCount, kSongBars - bar);
    std::copy_n(clip.copyBars.begin(), count, barTrack[module].begin() + bar);
    if (clip.copyKnobLast <= 0) return;
    const KnobRange knobs = knobsOf(module);
    for (int i = 0; i < count * kTicksPerBar; ++i)
        for (int k = 0; k < knobs.count; ++k)
            knobTrack[knobs.first + k][bar * kTicksPerBar + i] = clip.copyKnobList[i][k];
}

} // namespace

SongBar patternModeBar(int module) {
    const Selection at = selectionOf(patternImage, module);
    return {static_cast<std::uint8_t>(int{at.currPatt}), static_cast<std::uint8_t>(int{at.currBank})};
}

void fillBars(int module, BarRange bars, SongBar with) {
    for (int bar = bars.first; bar < bars.end(); ++bar)
        setBar(module, bar * kTicksPerBar, with.bank, with.patt);
    songChanged();
}

void eraseBars(int module, BarRange bars) {
    fillBars(module, bars, patternModeBar(module));
}

int insertBars(const BarLanes& lanes, BarRange bars) {
    const int lost = lostBars(lanes, bars.count);
    forEachLane(lanes, [&](int m, BarLane& lane) {
        std::move_backward(lane.begin() + bars.first, lane.end() - bars.count, lane.end());
        std::fill_n(lane.begin() + bars.first, bars.count, patternModeBar(m));
        forEachKnob(lanes, m, [&](int, KnobLane& track) {
            const int first = bars.first * kTicksPerBar;
            const int count = bars.count * kTicksPerBar;
            const std::uint8_t held = track[std::max(first - 1, 0)];
            std::move_backward(track.begin() + first, track.end() - count, track.end());
            std::fill_n(track.begin() + first, count, held);
        });
    });
    songChanged();
    return lost;
}

void deleteBars(const BarLanes& lanes, BarRange bars) {
    forEachLane(lanes, [&](int m, BarLane& lane) {
        std::fill(std::move(lane.begin() + bars.end(), lane.end(), lane.begin() + bars.first), lane.end(),
                  SongBar(lane.back()));
        forEachKnob(lanes, m, [&](int, KnobLane& track) {
            std::array<std::uint8_t, kTicksPerBar> last{};
            std::copy_n(track.end() - kTicksPerBar, kTicksPerBar, last.begin());
            auto* free = std::move(track.begin() + bars.end() * kTicksPerBar, track.end(),
                                   track.begin() + bars.first * kTicksPerBar);
            for (; free != track.end(); free += kTicksPerBar) std::copy(last.begin(), last.end(), free);
        });
    });
    songChanged();
}

void initBars(const BarLanes& lanes, BarRange bars) {
    forEachLane(lanes, [&](int m, BarLane& lane) {
        std::fill_n(lane.begin() + bars.first, bars.count, patternModeBar(m));
        forEachKnob(lanes, m, [&](int knob, KnobLane& track) {
            std::fill_n(track.begin() + bars.first * kTicksPerBar, bars.count * kTicksPerBar,
                        imageValue(knob));
        });
    });
    songChanged();
}

void copyBars(const BarLanes& lanes, BarRange bars) {
    if (lanes.count() == 0 || bars.count == 0) return;
    LaneClipboard& clip = laneClipboard.write();
    clip = {};
    patternClipboard.write().copyEmpty = false;
    songClipboard.write().songCopyReady = true;
    setMenuEnabled(Menu::mnuEditPaste, true);
    if (lanes.count() == 1) {
        const int module = static_cast<int>(std::find(lanes.modules.begin(), lanes.modules.end(), true) -
                                            lanes.modules.begin());
        copyOneLane(module, bars, lanes.knobs);
    } else {
        clip.latest = true;
        forEachLane(lanes, [&](int m, const BarLane&) { clip.lanes[m] = copyOfLane(m, bars, lanes.knobs); });
    }
    noteSongCopy("SONG COPY: ( " + lanesText(lanes) + " Patterns " + (lanes.knobs ? "and knobs " : "") +
                 ") from BAR " + std::to_string(bars.first + 1) + " thru " + std::to_string(bars.end()) +
                 " .");
}

bool barsToPaste() {
    return laneClipboard->latest || songClipboard->songCopyReady;
}

BarPaste pasteBarsAt(int bar, int lane) {
    if (!barsToPaste()) return BarPaste::nothing;
    if (laneClipboard->latest) {
        for (int m = 0; m < kModules; ++m)
            if (const auto& copy = laneClipboard->lanes[m]) pasteLane(m, bar, *copy);
    } else {
        if ((lane == kDrumModule) != (songClipboard->copyModule == kDrumModule)) return BarPaste::otherKind;
        pasteOneLane(lane, bar);
    }
    songChanged();
    return BarPaste::done;
}

void drawKnob(int knob, int fromTick, int fromValue, int toTick, int toValue) {
    const int way = std::abs(toTick - fromTick);
    for (int i = 0; i <= way; ++i) {
        const double share = way > 0 ? 1.0 * i / way : 1;
        const int tick = fromTick + (toTick > fromTick ? i : -i);
        const double value = fromValue + (toValue - fromValue) * share;
        knobTrack[knob][tick] = static_cast<std::uint8_t>(std::clamp<long>(std::lround(value), 0, 127));
    }
    markProject();
    refreshKnobsAtSongTick();
}

void eraseKnob(int knob, int fromTick, int toTick) {
    drawKnob(knob, fromTick, imageValue(knob), toTick, imageValue(knob));
}

} // namespace marlune
