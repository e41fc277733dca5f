#include "rebirth/rb40_import.h"

#include <algorithm>
#include <map>
#include <set>

#include "rebirth/rb40_music.h"
#include "util/text_number.h"

namespace marlune {

namespace {

constexpr int kFirstSetting = 2; // that may move a knob
constexpr int kWaveform = 8;
constexpr std::uint8_t kNoValue = 255; // of a knob at a tick: no event stands there
constexpr int kBassKnobSetting[kBassKnobs] = {3, 4, 5, 6, kWaveform, 7}; // of each knob

using BarPatterns = std::vector<int>; // pattern of each of the song's bars, or kRb40Silent

struct Draft {
    const Rb40Song& song;
    MusicDraft& out;
    bool patternsOnly;
    int songBars; // within the song here

    void takeBass(int module);
    void takeDrums(int unit);
    void takeBothDrums(int leading);
    void mergePatterns(int leading);
    void mergeSong(int leading);

    void countLeftOut(int unit, const std::set<int>& patterns);
    template <typename Module>
    void placeBars(int module, Module& target, const BarPatterns& bars);
    template <typename KnobsOf>
    void takeKnobs(const std::array<std::uint8_t, kRb40Settings>& start, const Rb40Track& track,
                   const KnobsOf& knobsOf, bool waveform);
    void takeDrumKnobs(int unit);
    void tellRest();

    std::map<std::string, int> withoutRow; // hits, by the name of the instrument
    int flams = 0, shuffled = 0, otherMoves = 0;
};

std::set<int> playedOf(const BarPatterns& bars) {
    std::set<int> played(bars.begin(), bars.end());
    played.erase(kRb40Silent);
    return played;
}

std::set<int> allPatterns() {
    std::set<int> all;
    for (int p = 0; p < kRb40Patterns; ++p) all.insert(p);
    return all;
}

void takePattern(const Rb40BassPattern& from, BassPattern& to) {
    for (int s = 0; s < kSteps; ++s) {
        const Rb40BassStep& step = from.steps[s];
        const bool bothOctaves = step.up && step.down; // together they cancel
        to.steps[s].note = step.pitch;
        to.steps[s].noteOn = !step.rest;
        to.steps[s].up = step.up && !bothOctaves;
        to.steps[s].down = step.down && !bothOctaves;
        to.steps[s].slide = step.slide;
        to.steps[s].accent = step.accent;
    }
    to.loopEnd = from.length - 1;
}

void addStep(const std::array<std::uint8_t, kRb40Rows>& cells, int unit, std::array<Le8, kDrumRows>& to) {
    for (int row = 0; row < kRb40Rows; ++row) {
        const int target = rb40RowUse(unit, row).row;
        if (cells[row] == 0 || target == Rb40RowUse::kNoRow) continue;
        to[target] = kDrumHit;
        if (unit == kRb40Of909 && cells[row] == kRb40AccentedHit) to[kAccentRow] = kDrumHit;
    }
}

void takePattern(const Rb40DrumPattern& from, int unit, DrumPattern& to) {
    silence(to);
    for (int s = 0; s < kSteps; ++s) addStep(from.cells[s], unit, to.drumOn[s]);
    to.loopEnd = from.length - 1;
}

// Both patterns as one, the shorter repeated, where one length is a multiple of the other; else false, and
// the leading one alone.
bool mergePatternPair(const Rb40Song& song, const std::array<int, 2>& pair, int leading, DrumPattern& to) {
    silence(to);
    const auto lengthOf = [&](int unit) {
        return pair[unit] == kRb40Silent ? 1 : song.drums[unit].patterns[pair[unit]].length;
    };
    const int longer = std::max(lengthOf(0), lengthOf(1));
    const bool fits = longer % lengthOf(0) == 0 && longer % lengthOf(1) == 0;
    const int length = fits ? longer : lengthOf(leading);
    for (int unit = 0; unit < kRb40DrumUnits; ++unit) {
        if (pair[unit] == kRb40Silent || (!fits && unit != leading)) continue;
        const auto& cells = song.drums[unit].patterns[pair[unit]].cells;
        for (int s = 0; s < length; ++s) addStep(cells[s % lengthOf(unit)], unit, to.drumOn[s]);
    }
    if (length > 1 || pair[leading] != kRb40Silent || pair[1 - leading] != kRb40Silent)
        to.loopEnd = length - 1;
    return fits;
}

void Draft::countLeftOut(int unit, const std::set<int>& patterns) {
    for (const int p : patterns) {
        const Rb40DrumPattern& pattern = song.drums[unit].patterns[p];
        shuffled += pattern.shuffle ? 1 : 0;
        for (int s = 0; s < pattern.length; ++s) {
            for (int row = 0; row < kRb40Rows; ++row) {
                const Rb40RowUse& use = rb40RowUse(unit, row);
                const int cell = pattern.cells[s][row];
                if (cell != 0 && use.row == Rb40RowUse::kNoRow) ++withoutRow[use.name];
                if (cell == kRb40Flam && unit == kRb40Of909 && use.row != Rb40RowUse::kNoRow) ++flams;
            }
        }
    }
}

// A pattern for the bars in which a unit is off, -1 where none is free.
template <typename Module>
int emptyPattern(Module& target, const std::set<int>& played) {
    const auto at = [&](int p) -> auto& {
        return target.patterns[p / kPatterns][p % kPatterns];
    };
    for (int p = 0; p < kModulePatterns; ++p) {
        if (isSilent(at(p))) return p;
    }
    for (int p = kModulePatterns - 1; p >= 0; --p) {
        if (played.contains(p)) continue;
        silence(at(p));
        return p;
    }
    return -1;
}

template <typename Module>
void Draft::placeBars(int module, Module& target, const BarPatterns& bars) {
    const std::set<int> played = playedOf(bars);
    out.report.patterns[module] = static_cast<int>(played.size());
    const bool anySilent = std::ranges::find(bars, kRb40Silent) != bars.end();
    const int empty = anySilent ? emptyPattern(target, played) : -1;
    int held = bars[0] == kRb40Silent ? std::max(empty, 0) : bars[0];
    int playOn = 0;
    for (int bar = 0; bar < kSongBars; ++bar) {
        if (bars[bar] != kRb40Silent) {
            held = bars[bar];
        } else if (empty >= 0) {
            held = empty;
        } else {
            playOn += bar < songBars ? 1 : 0;
        }
        out.bars[module][bar] = songBarOf(held);
    }
    out.report.note(playOn, std::string("bars of ") + kModuleNames[module] + " without an empty pattern");
}

// knobsOf: the knobs that a setting moves, as many as two. The later of two events in a tick stands.
template <typename KnobsOf>
void Draft::takeKnobs(const std::array<std::uint8_t, kRb40Settings>& start, const Rb40Track& track,
                      const KnobsOf& knobsOf, bool waveform) {
    const auto valueOf = [&](int setting, int value) {
        return static_cast<std::uint8_t>(waveform && setting == kWaveform ? (value != 0 ? kTopValue : 0)
                                                                          : value);
    };
    std::vector<int> moved;
    for (int setting = kFirstSetting; setting < kRb40Settings; ++setting) {
        for (const int knob : knobsOf(setting)) {
            out.record.knobValue[knob] = valueOf(setting, start[setting]);
            moved.push_back(knob);
        }
    }
    if (patternsOnly) return;
    for (const int knob : moved) out.knobs[knob].fill(kNoValue);
    for (const Rb40Event& event : track) {
        const int tick = event.position / 2;
        if (event.controller < kFirstSetting || tick >= kSongTicks) continue;
        const auto knobs = knobsOf(event.controller);
        for (const int knob : knobs) out.knobs[knob][tick] = valueOf(event.controller, event.value);
        (knobs.empty() ? otherMoves : out.report.events) += 1;
    }
    for (const int knob : moved) {
        auto held = static_cast<std::uint8_t>(int{out.record.knobValue[knob]});
        for (std::uint8_t& value : out.knobs[knob]) held = value = value == kNoValue ? held : value;
    }
}

void Draft::takeBass(int module) {
    const auto& unit = song.basses[module];
    for (int p = 0; p < kRb40Patterns; ++p)
        takePattern(unit.patterns[p], bassPatternAt(out.record, module, p));
    if (!patternsOnly) placeBars(module, out.record.bass[module], rb40Bars(unit, kSongBars));
    const auto knobsOf = [&](int setting) {
        const auto* const found = std::ranges::find(kBassKnobSetting, setting);
        const auto knob = static_cast<int>(found - kBassKnobSetting);
        return knob < kBassKnobs ? std::vector{kBassKnobs * module + knob} : std::vector<int>{};
    };
    takeKnobs(unit.start, unit.track, knobsOf, true);
    for (const int p : patternsOnly ? allPatterns() : playedOf(rb40Bars(unit, songBars)))
        shuffled += unit.patterns[p].shuffle ? 1 : 0;
}

void Draft::takeDrumKnobs(int unit) {
    const auto knobsOf = [&](int setting) {
        std::vector<int> knobs;
        for (int row = 0; row < kRb40Rows; ++row) {
            const Rb40RowUse& use = rb40RowUse(unit, row);
            if (use.row != Rb40RowUse::kNoRow && use.levelSetting == setting)
                knobs.push_back(kFirstDrumKnob + use.row);
        }
        return knobs;
    };
    takeKnobs(song.drums[unit].start, song.drums[unit].track, knobsOf, false);
}

void Draft::takeDrums(int unit) {
    const auto& drums = song.drums[unit];
    for (int p = 0; p < kRb40Patterns; ++p)
        takePattern(drums.patterns[p], unit, drumPatternAt(out.record, p));
    if (!patternsOnly) placeBars(kDrumModule, out.record.drum, rb40Bars(drums, kSongBars));
    countLeftOut(unit, patternsOnly ? allPatterns() : playedOf(rb40Bars(drums, songBars)));
    takeDrumKnobs(unit);
    const int other = 1 - unit;
    out.report.note(patternsOnly ? rb40HitsInPatterns(song, other) : rb40HitsInSong(song, other),
                    other == kRb40Of808 ? "hits of the 808" : "hits of the 909");
}

void Draft::mergePatterns(int leading) {
    int alone = 0;
    for (int p = 0; p < kRb40Patterns; ++p)
        alone += mergePatternPair(song, {p, p}, leading, drumPatternAt(out.record, p)) ? 0 : 1;
    out.report.note(alone, "drum patterns of lengths that don't fit");
}

// The pairs of patterns that sound together become patterns in the order in which they come.
void Draft::mergeSong(int leading) {
    const std::array bars = {rb40Bars(song.drums[0], kSongBars), rb40Bars(song.drums[1], kSongBars)};
    std::map<std::array<int, 2>, int> numbers;
    std::vector<std::array<int, 2>> pairs;
    int alone = 0;
    int alike = 0;
    for (int bar = 0; bar < kSongBars; ++bar) {
        const std::array pair = {bars[0][bar], bars[1][bar]};
        const auto known = numbers.find(pair);
        int number = known != numbers.end() ? known->second : static_cast<int>(pairs.size());
        if (number == kModulePatterns) { // the next best: with the same leading pattern, or as the bar before
            const auto like =
                std::ranges::find_if(pairs, [&](const auto& p) { return p[leading] == pair[leading]; });
            number = like != pairs.end() ? static_cast<int>(like - pairs.begin())
                                         : out.bars[kDrumModule][bar - 1].bank * kPatterns +
                                               out.bars[kDrumModule][bar - 1].patt;
            alike += bar < songBars ? 1 : 0;
        } else if (known == numbers.end()) {
            numbers[pair] = number;
            pairs.push_back(pair);
            alone += mergePatternPair(song, pair, leading, drumPatternAt(out.record, number)) ? 0 : 1;
        }
        out.bars[kDrumModule][bar] = songBarOf(number);
    }
    for (int p = static_cast<int>(pairs.size()); p < kModulePatterns; ++p)
        silence(drumPatternAt(out.record, p));
    out.report.patterns[kDrumModule] = static_cast<int>(pairs.size());
    out.report.note(alone, "drum patterns of lengths that don't fit");
    out.report.note(alike, "drum bars beyond 32 patterns");
}

void Draft::takeBothDrums(int leading) {
    if (patternsOnly) {
        mergePatterns(leading);
    } else {
        mergeSong(leading);
    }
    for (int unit = 0; unit < kRb40DrumUnits; ++unit)
        countLeftOut(unit, patternsOnly ? allPatterns() : playedOf(rb40Bars(song.drums[unit], songBars)));
    takeDrumKnobs(leading);
    if (!patternsOnly)
        otherMoves += static_cast<int>(std::ranges::count_if(
            song.drums[1 - leading].track, [](const Rb40Event& e) { return e.controller >= kFirstSetting; }));
}

void Draft::tellRest() {
    ImportReport& report = out.report;
    for (const auto& [name, hits] : withoutRow) report.note(hits, name + (hits == 1 ? " hit" : " hits"));
    report.note(flams, "flams");
    report.note(shuffled, "shuffled patterns");
    if (patternsOnly) return;
    report.note(otherMoves, "movements of other knobs");
    report.note(static_cast<int>(song.mixer.size()) + song.effectEvents, "of mixer and effects");
    report.note(std::max(rb40SongBars(song) - kSongBars, 0), "bars behind bar 1000");
}

} // namespace

Rb40Drums rb40DefaultDrums(const Rb40Song& song, bool patternsOnly) {
    const auto hits = patternsOnly ? rb40HitsInPatterns : rb40HitsInSong;
    return hits(song, kRb40Of909) > hits(song, kRb40Of808) ? Rb40Drums::of909 : Rb40Drums::of808;
}

void draftRb40(const Rb40Song& song, Rb40Drums drums, bool patternsOnly, MusicDraft& out) {
    out.report = {};
    out.title = song.title;
    out.withSong = !patternsOnly;
    out.record.tempo = std::clamp(roundHalfEven(song.milliTempo / 1000.0), kMinTempo, kMaxTempo);
    const int songBars = patternsOnly ? 0 : std::min(rb40SongBars(song), kSongBars);
    Draft draft{song, out, patternsOnly, songBars, {}};
    out.report.bars = songBars;
    if (patternsOnly) out.report.patterns.fill(kRb40Patterns);
    for (int module = 0; module < kBassModules; ++module) draft.takeBass(module);
    if (drums == Rb40Drums::both) {
        draft.takeBothDrums(rb40DefaultDrums(song, patternsOnly) == Rb40Drums::of909 ? kRb40Of909
                                                                                     : kRb40Of808);
    } else {
        draft.takeDrums(drums == Rb40Drums::of909 ? kRb40Of909 : kRb40Of808);
    }
    draft.tellRest();
}

} // namespace marlune
