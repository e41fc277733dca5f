#include "rebirth/rb40_convert.h"

#include <algorithm>
#include <cmath>

#include "boundary/midi_bytes.h"
#include "rebirth/rb40_music.h"

namespace marlune {

namespace {

constexpr int kFileTicksPerPosition = kFileTicksPerStep / 2;
constexpr int kSlideOverlap = 5; // file ticks that a sliding note sounds into the next
constexpr int kAccentVelocity = 127;
constexpr int kVolume = 7;
constexpr int kMixerLevelOfBass[2] = {0x06, 0x0c}; // controllers of the mixer track

// One track in any order, written in that of time.
class TimedTrack {
  public:
    void add(int time, int status, int data1, int data2) { events_.push_back({time, status, data1, data2}); }
    void write(MidiFileWriter& writer, const char* name) {
        writer.addTrack();
        writer.text(kMetaTrackName, name);
        std::ranges::stable_sort(events_, {}, &Event::time);
        int now = 0;
        for (const Event& e : events_) {
            writer.event(e.time - now, e.status, e.data1, e.data2);
            now = e.time;
        }
    }
    [[nodiscard]] bool empty() const { return events_.empty(); }

  private:
    struct Event {
        int time, status, data1, data2;
    };
    std::vector<Event> events_;
};

// play(time, pattern, step of the pattern, step that follows in it): every step of every bar in which the
// unit is on. A pattern that stays over several bars runs on through the bar lines.
template <typename Pattern, typename Play>
void walkSteps(const Rb40Unit<Pattern>& unit, int bars, const Play& play) {
    int before = kRb40Silent;
    int step = 0;
    int time = 0;
    for (const int number : rb40Bars(unit, bars)) {
        if (number != before) step = 0;
        before = number;
        for (int i = 0; i < kRb40Steps; ++i, time += kFileTicksPerStep) {
            if (number == kRb40Silent) continue;
            const Pattern& pattern = unit.patterns[number];
            const int next = (step + 1) % pattern.length;
            play(time, pattern, step, next);
            step = next;
        }
    }
}

int noteOf(const Rb40BassStep& step, int baseNote) {
    const int octave = step.up == step.down ? 1 : step.up ? 2 : 0; // a plain step sounds an octave above
    return std::min(baseNote + step.pitch + 12 * octave, kTopValue);
}

TimedTrack bassNotes(const Rb40Unit<Rb40BassPattern>& unit, const UnitOptions& options, int bars) {
    TimedTrack track;
    walkSteps(unit, bars, [&](int time, const Rb40BassPattern& pattern, int s, int next) {
        const Rb40BassStep& step = pattern.steps[s];
        if (step.rest) return;
        const int note = noteOf(step, options.baseNote);
        const int velocity = options.accents && step.accent ? kAccentVelocity : options.velocity;
        const Rb40BassStep& following = pattern.steps[next];
        const bool slides =
            options.slides && step.slide && !following.rest && noteOf(following, options.baseNote) != note;
        track.add(time, kNoteOn + options.channel - 1, note, velocity);
        track.add(time + kFileTicksPerStep + (slides ? kSlideOverlap : 0), kNoteOff + options.channel - 1,
                  note, velocity);
    });
    return track;
}

TimedTrack bassKnobs(const Rb40Song& song, int unit, const UnitOptions& options, int bars) {
    TimedTrack track;
    if (!options.knobs) return track;
    const int controllers[] = {options.cutoff, options.reso, options.envMod, options.decay, options.accent};
    constexpr int kFirstSetting = 3;
    const auto add = [&](int position, int controller, int value) {
        if (position < bars * kRb40PositionsPerBar)
            track.add(position * kFileTicksPerPosition, kControlChange + options.channel - 1, controller,
                      value);
    };
    const auto& bass = song.basses[unit];
    for (int i = 0; i < 5; ++i) add(0, controllers[i], bass.start[kFirstSetting + i]);
    for (const Rb40Event& e : bass.track) {
        if (e.controller >= kFirstSetting && e.controller < kFirstSetting + 5)
            add(e.position, controllers[e.controller - kFirstSetting], e.value);
    }
    for (const Rb40Event& e : song.mixer) {
        if (e.controller == kMixerLevelOfBass[unit]) add(e.position, kVolume, e.value);
    }
    return track;
}

// A hit sounds half a step, at the levels of its moment.
TimedTrack drumNotes(const Rb40Unit<Rb40DrumPattern>& drums, int unit, int channel, int bars) {
    TimedTrack track;
    auto levels = drums.start;
    std::size_t nextEvent = 0;
    walkSteps(drums, bars, [&](int time, const Rb40DrumPattern& pattern, int step, int /*next*/) {
        for (; nextEvent < drums.track.size(); ++nextEvent) {
            const Rb40Event& e = drums.track[nextEvent];
            if (e.position / 2 * kFileTicksPerStep > time) break;
            if (e.controller < kRb40Settings) levels[e.controller] = e.value;
        }
        const auto& cells = pattern.cells[step];
        for (int row = kRb40Accent + 1; row < kRb40Rows; ++row) {
            if (cells[row] == 0) continue;
            const Rb40RowUse& use = rb40RowUse(unit, row);
            const bool accented = cells[kRb40Accent] != 0 || cells[row] == kRb40AccentedHit;
            const double more = accented ? std::nearbyint(levels[2] * 28 / 128.0) : 0;
            const int velocity = levels[use.levelSetting] * 100 / 128 + static_cast<int>(more);
            if (velocity == 0) continue;
            track.add(time, kNoteOn + channel - 1, use.note, velocity);
            track.add(time + kFileTicksPerPosition, kNoteOff + channel - 1, use.note, velocity);
        }
    });
    return track;
}

} // namespace

void convertRb40(const Rb40Song& song, const ConverterOptions& options, MidiFileWriter& writer,
                 const ConversionProgress& progress) {
    const int bars = std::min(rb40SongBars(song), kLongestConversionBars);
    const auto show = [&](int percent) {
        if (progress) progress(percent);
    };
    writer.addTrack();
    writer.text(kMetaTrackName, "Marlune Converter");
    writer.text(kMetaCopyright, kConverterText);
    writer.timeSignature({4, 2, 30, 8});
    writer.tempo(static_cast<int>(std::min(60e9 / std::max(song.milliTempo, 1U), 16777215.0)));
    constexpr const char* kNames[][2] = {{"Top 303", "Top 303 Knobs"}, {"Mid 303", "Mid 303 Knobs"}};
    for (int unit = 0; unit < 2; ++unit) {
        const UnitOptions& chosen = unit == 0 ? options.top : options.mid;
        bassNotes(song.basses[unit], chosen, bars).write(writer, kNames[unit][0]);
        bassKnobs(song, unit, chosen, bars).write(writer, kNames[unit][1]);
        show(33 * (unit + 1));
    }
    for (int unit = 0; unit < kRb40DrumUnits; ++unit) {
        TimedTrack notes = drumNotes(song.drums[unit], unit, options.drumsChannel, bars);
        if (!notes.empty()) notes.write(writer, unit == kRb40Of808 ? "808 " : "909 ");
    }
    show(100);
}

} // namespace marlune
