#include "import/midi_bars.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>

#include "boundary/midi_bytes.h"
#include "project/global_config.h"
#include "util/text_number.h"

namespace marlune {

namespace {

constexpr int kOctave = 12;
constexpr int kDrumChannel = 9;
constexpr double kMicrosecondsPerMinute = 60e6;
constexpr std::uint8_t kNoValue = 255;

// The patterns of a module in the order in which they come.
template <typename Pattern>
class PatternPool {
  public:
    int beyond = 0; // bars that took another pattern than theirs, since there are no more than 32

    int numberOf(const Pattern& pattern) {
        const std::string key(reinterpret_cast<const char*>(&pattern), sizeof pattern);
        const auto known = numbers_.find(key);
        if (known != numbers_.end()) return known->second;
        if (full()) {
            ++beyond;
            return nearest(pattern);
        }
        patterns_.push_back(pattern);
        return numbers_[key] = static_cast<int>(patterns_.size()) - 1;
    }
    [[nodiscard]] bool full() const { return patterns_.size() == kModulePatterns; }
    [[nodiscard]] const std::vector<Pattern>& patterns() const { return patterns_; }

  private:
    [[nodiscard]] int nearest(const Pattern& pattern) const {
        const auto differing = [&](const Pattern& other) {
            int count = 0;
            for (std::size_t i = 0; i < sizeof pattern; ++i)
                count +=
                    reinterpret_cast<const char*>(&pattern)[i] != reinterpret_cast<const char*>(&other)[i];
            return count;
        };
        const auto best = std::ranges::min_element(patterns_, {}, differing);
        return static_cast<int>(best - patterns_.begin());
    }
    std::vector<Pattern> patterns_;
    std::map<std::string, int> numbers_;
};

struct Draft {
    const MidiSong& song;
    const MidiChoices& choices;
    MusicDraft& out;
    int steps; // of the song, whole bars

    void takeBass(int module, const MidiSource& source);
    void takeDrums(const MidiSource& source);

    std::vector<const MidiNote*> notesByStep(const MidiSource& source, const std::string& module);
    std::vector<int> programsByBar(int channel) const;
    template <typename Pattern, typename PatternAt>
    void place(int module, const std::vector<Pattern>& bars, Pattern empty, const PatternAt& at);
    std::vector<std::uint8_t>& values(int knob);
    void takeControllers(int module, int channel);
    [[nodiscard]] std::vector<std::uint8_t> toldValues(int knob) const;
    void fillKnobs(int module);

    // What each knob is set to at each step, kNoValue for nothing; empty for a knob that nothing moves.
    std::array<std::vector<std::uint8_t>, kKnobs> moves;
};

std::string nameOf(int module) {
    return kModuleNames[module];
}

std::vector<std::uint8_t>& Draft::values(int knob) {
    if (moves[knob].empty()) moves[knob].assign(steps, kNoValue);
    return moves[knob];
}

int firstKnobOf(int module) {
    return kBassKnobs * module;
}
int lastKnobOf(int module) {
    return module == kDrumModule ? kKnobs : kBassKnobs * (module + 1);
}

void Draft::takeControllers(int module, int channel) {
    for (const MidiFileTrack& track : song.tracks) {
        for (const MidiFileEvent& event : track.events) {
            if (event.status != kControlChange + channel) continue;
            const int step = nearestStep(event.tick * song.stepsPerTick);
            for (int knob = firstKnobOf(module); knob < lastKnobOf(module) && step < steps; ++knob) {
                if (event.data1 == 0 || controllerOfKnob(knob) != event.data1) continue;
                values(knob)[step] = event.data2;
                ++out.report.events;
            }
        }
    }
}

// What controllers have set a knob to by each step; kNoValue where they haven't.
std::vector<std::uint8_t> Draft::toldValues(int knob) const {
    std::vector<std::uint8_t> told(steps, kNoValue);
    std::uint8_t held = kNoValue;
    for (std::size_t s = 0; s < moves[knob].size(); ++s)
        told[s] = held = moves[knob][s] != kNoValue ? moves[knob][s] : held;
    return told;
}

// As a song a knob holds its present value up to its first movement; without one it stands where it is set
// first.
void Draft::fillKnobs(int module) {
    for (int knob = firstKnobOf(module); knob < lastKnobOf(module); ++knob) {
        const auto& moved = moves[knob];
        const auto first = std::ranges::find_if(moved, [](std::uint8_t v) { return v != kNoValue; });
        if (!choices.asSong) {
            if (first != moved.end()) out.record.knobValue[knob] = *first;
            continue;
        }
        auto held = static_cast<std::uint8_t>(int{out.record.knobValue[knob]});
        for (int tick = 0; tick < kSongTicks; ++tick) {
            const bool told = tick < static_cast<int>(moved.size()) && moved[tick] != kNoValue;
            out.knobs[knob][tick] = held = told ? moved[tick] : held;
        }
        out.record.knobValue[knob] = out.knobs[knob][0];
    }
}

template <typename Pattern, typename PatternAt>
void Draft::place(int module, const std::vector<Pattern>& bars, Pattern empty, const PatternAt& at) {
    PatternPool<Pattern> pool;
    std::vector<int> numbers;
    numbers.reserve(bars.size() + 1);
    for (const Pattern& bar : bars) numbers.push_back(pool.numberOf(bar));
    out.report.patterns[module] = static_cast<int>(pool.patterns().size());
    out.report.note(pool.beyond, "bars of " + nameOf(module) + " beyond 32 patterns");
    if (choices.asSong && static_cast<int>(numbers.size()) < kSongBars && !pool.full())
        numbers.push_back(pool.numberOf(empty));
    for (std::size_t p = 0; p < pool.patterns().size(); ++p) at(static_cast<int>(p)) = pool.patterns()[p];
    for (int bar = 0; choices.asSong && bar < kSongBars; ++bar)
        out.bars[module][bar] = songBarOf(numbers[std::min<std::size_t>(bar, numbers.size() - 1)]);
}

// The note that a bassline plays at each step, if any.
std::vector<const MidiNote*> Draft::notesByStep(const MidiSource& source, const std::string& module) {
    std::vector<const MidiNote*> taken(steps);
    int dropped = 0;
    for (const MidiNote& note : source.notes) {
        const int step = nearestStep(note.start);
        if (step >= steps) continue;
        const MidiNote*& here = taken[step];
        dropped += here != nullptr ? 1 : 0;
        if (here == nullptr || !choices.highest || note.pitch > here->pitch) here = &note;
    }
    out.report.note(dropped, "notes of chords in " + module);
    return taken;
}

// Semitones by which notes are moved so that most of them lie in the three octaves of a bassline; the least
// of equally good ones.
int bestShift(const std::vector<const MidiNote*>& notes, int baseNote) {
    int best = 0;
    int most = -1;
    for (int octaves = 0; octaves <= 10; ++octaves) {
        for (const int shift : {-octaves * kOctave, octaves * kOctave}) {
            const auto fitting = std::ranges::count_if(notes, [&](const MidiNote* note) {
                return note != nullptr && note->pitch + shift >= baseNote - kOctave &&
                       note->pitch + shift <= baseNote + 2 * kOctave;
            });
            if (fitting <= most) continue;
            most = static_cast<int>(fitting);
            best = shift;
        }
    }
    return best;
}

// Pitch above the base note as key and octave.
void setPitch(BassStep& step, int pitch) {
    step.up = pitch > kOctave;
    step.down = pitch < 0;
    step.note = pitch > kOctave ? pitch - kOctave : pitch < 0 ? pitch + kOctave : pitch;
}

// Program of the channel in each bar, kNoPatch before the first.
std::vector<int> Draft::programsByBar(int channel) const {
    std::vector<int> programs(steps / kSteps, kNoPatch);
    for (const MidiFileTrack& track : song.tracks) {
        for (const MidiFileEvent& event : track.events) {
            const int bar = nearestStep(event.tick * song.stepsPerTick) / kSteps;
            if (event.status == kProgramChange + channel && bar < static_cast<int>(programs.size()))
                programs[bar] = event.data1;
        }
    }
    for (std::size_t bar = 1; bar < programs.size(); ++bar) {
        if (programs[bar] == kNoPatch) programs[bar] = programs[bar - 1];
    }
    return programs;
}

// The rests of a stretch without a note: up to `held` they ring on, then another pitch ends the note.
void layRests(std::vector<BassPattern>& bars, int from, int to, int held, int pitch) {
    for (int s = from; s < to; ++s) {
        BassStep& step = bars[s / kSteps].steps[s % kSteps];
        if (s < held)
            setPitch(step, pitch);
        else if (s / kSteps == from / kSteps)
            step.note = pitch == 0 ? 1 : 0;
    }
}

void Draft::takeBass(int module, const MidiSource& source) {
    takeControllers(module, source.channel);
    const int accentKnob = lastKnobOf(module) - 1;
    const bool accentTold = !moves[accentKnob].empty();
    const auto announced = toldValues(accentKnob);
    const auto notes = notesByStep(source, nameOf(module));
    const int shift = bestShift(notes, baseNoteOf(module));
    BassPattern empty{};
    silence(empty);
    std::vector<BassPattern> bars(steps / kSteps, empty);
    int folded = 0;
    for (int s = 0, next = 0; s < steps; s = next) {
        for (next = s + 1; next < steps && notes[next] == nullptr;) ++next;
        if (notes[s] == nullptr) continue; // the song begins with rests
        const MidiNote& note = *notes[s];
        int pitch = note.pitch + shift - baseNoteOf(module);
        folded += pitch < -kOctave || pitch > 2 * kOctave ? 1 : 0;
        while (pitch < -kOctave) pitch += kOctave;
        while (pitch > 2 * kOctave) pitch -= kOctave;
        BassStep& step = bars[s / kSteps].steps[s % kSteps];
        setPitch(step, pitch);
        step.noteOn = true;
        const bool atKnob = note.velocity == announced[s];
        step.accent = note.velocity > choices.accentAbove || (atKnob && note.velocity != velocityOf(module));
        step.slide = next < steps && note.end > notes[next]->start;
        if (step.accent && !accentTold) values(accentKnob)[s] = static_cast<std::uint8_t>(note.velocity);
        layRests(bars, s + 1, next, nearestStep(note.end), pitch);
        ++out.report.events;
    }
    const auto programs = programsByBar(source.channel);
    for (std::size_t bar = 0; bar < bars.size(); ++bar) bars[bar].patch = programs[bar];
    place(
        module, bars, empty, [&](int p) -> auto& { return bassPatternAt(out.record, module, p); });
    if (shift != 0)
        out.report.notes.push_back(nameOf(module) + " moved by " + std::to_string(shift / kOctave) +
                                   " octaves");
    out.report.note(folded, "notes of " + nameOf(module) + " in another octave");
    fillKnobs(module);
}

void Draft::takeDrums(const MidiSource& source) {
    takeControllers(kDrumModule, source.channel);
    std::array<bool, kDrumRows> told{};
    for (int row = 0; row < kDrumRows; ++row) told[row] = !moves[kFirstDrumKnob + row].empty();
    std::vector<std::array<int, kDrums>> velocities(steps);
    int without = 0;
    for (const MidiNote& note : source.notes) {
        const int step = nearestStep(note.start);
        int row = 0;
        while (row < kDrums && drumNoteDefaultOf(row) != note.pitch) ++row;
        if (row == kDrums)
            ++without;
        else if (step < steps)
            velocities[step][row] = note.velocity;
    }
    DrumPattern empty{};
    silence(empty);
    for (int d = 0; d < kDrums; ++d) empty.drumNote[d] = drumNoteDefaultOf(d);
    std::vector<DrumPattern> bars(steps / kSteps, empty);
    for (int s = 0; s < steps; ++s) {
        auto& rows = bars[s / kSteps].drumOn[s % kSteps];
        const int loudest = std::ranges::max(velocities[s]);
        // An accent plays all hits of its step alike.
        const bool alike = std::ranges::all_of(velocities[s], [&](int v) { return v == 0 || v == loudest; });
        const bool accent = alike && loudest > choices.accentAbove;
        for (int d = 0; d < kDrums; ++d) {
            if (velocities[s][d] == 0) continue;
            rows[d] = kDrumHit;
            ++out.report.events;
            if (!accent && !told[d])
                values(kFirstDrumKnob + d)[s] = static_cast<std::uint8_t>(velocities[s][d]);
        }
        if (!accent) continue;
        rows[kAccentRow] = kDrumHit;
        if (!told[kAccentRow]) values(kAccentKnobOfDrums)[s] = static_cast<std::uint8_t>(loudest);
    }
    place(
        kDrumModule, bars, empty, [&](int p) -> auto& { return drumPatternAt(out.record, p); });
    out.report.note(without, "hits on other notes than the drums'");
    fillKnobs(kDrumModule);
}

// Bars up to the last event of the file, and to the last note's.
int barsOf(const MidiSong& song, const std::vector<MidiSource>& sources) {
    double end = 0;
    for (const MidiFileTrack& track : song.tracks) {
        if (!track.events.empty()) end = std::max(end, track.events.back().tick * song.stepsPerTick);
    }
    int bars = static_cast<int>(std::min(std::ceil(end / kSteps), 1e6));
    for (const MidiSource& source : sources)
        bars = std::max(bars, nearestStep(source.notes.back().start) / kSteps + 1);
    return std::max(bars, 1);
}

} // namespace

MidiChoices proposedChoices(const std::vector<MidiSource>& sources) {
    MidiChoices choices;
    const auto ofChannel = [&](int channel) {
        const auto found = std::ranges::find_if(sources, [&](const MidiSource& source) {
            return source.channel == channel && source.track == kEveryTrack;
        });
        return found != sources.end() ? static_cast<int>(found - sources.begin()) : kNoSource;
    };
    auto& chosen = choices.source;
    for (int m = 0; m < kModules; ++m) chosen[m] = ofChannel(channelOf(m));
    if (chosen[kDrumModule] == kNoSource) chosen[kDrumModule] = ofChannel(kDrumChannel);
    const auto meanPitch = [&](int s) {
        double sum = 0;
        for (const MidiNote& note : sources[s].notes) sum += note.pitch;
        return sum / static_cast<double>(sources[s].notes.size());
    };
    for (int m = 0; m < kBassModules; ++m) {
        if (chosen[m] != kNoSource) continue;
        int lowest = kNoSource;
        for (int s = 0; s < static_cast<int>(sources.size()); ++s) {
            if (sources[s].track != kEveryTrack || std::ranges::find(chosen, s) != chosen.end()) continue;
            if (lowest == kNoSource || meanPitch(s) < meanPitch(lowest)) lowest = s;
        }
        chosen[m] = lowest;
    }
    choices.accentAbove = std::max(velocityOf(0), velocityOf(1));
    return choices;
}

void draftMidi(const MidiSong& song, const std::vector<MidiSource>& sources, const MidiChoices& choices,
               MusicDraft& out) {
    out.report = {};
    out.withSong = choices.asSong;
    out.record.tempo =
        std::clamp(roundHalfEven(kMicrosecondsPerMinute / song.tempoMicroseconds), kMinTempo, kMaxTempo);
    const int bars = barsOf(song, sources);
    out.report.bars = std::min(bars, kSongBars);
    Draft draft{song, choices, out, kSteps * out.report.bars, {}};
    for (int m = 0; m < kModules; ++m) {
        if (choices.source[m] == kNoSource) continue;
        const MidiSource& source = sources[choices.source[m]];
        if (m == kDrumModule)
            draft.takeDrums(source);
        else
            draft.takeBass(m, source);
    }
    out.report.note(bars - kSongBars, "bars behind bar 1000");
    out.report.note(song.tempoChanges, "changes of tempo");
    if (song.meter != std::array{4, 4})
        out.report.notes.push_back("a meter of " + std::to_string(song.meter[0]) + "/" +
                                   std::to_string(song.meter[1]));
}

} // namespace marlune
