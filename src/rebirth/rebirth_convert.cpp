#include "rebirth/rebirth_convert.h"

#include <algorithm>
#include <cstdint>

#include "rebirth/rb40_convert.h"

namespace marlune {

namespace {

constexpr int kFileTicksPerUnit = kFileTicksPerStep / 2;
constexpr int kLongestUnits = kLongestConversionBars * kUnitsPerBar;
class Conversion {
  public:
    Conversion(const RbsImage& image, MidiFileWriter& writer, const ConversionProgress& progress)
        : image_(image), writer_(writer), progress_(progress) {}

    bool read(const ConverterOptions& options);
    void write();

  private:
    void writeMetaTrack();
    void startTrack(const char* name);
    void stage(int base, int span);
    void show(const Song_Tracks& track);

    template <typename Play>
    void walkPatterns(Song_Tracks& track, const Play& play);
    void bassNotes(int unit, const char* name);
    void bassKnobs(Song_Tracks& track, const char* name);
    void drumNotes();
    void writePatternNotes(Three03_Patterns& unit, int halfSteps, int rest);
    int writeDrumNotes(int halfSteps, int rest);
    void catchUpDrums();

    const RbsImage& image_;
    MidiFileWriter& writer_;
    const ConversionProgress& progress_;
    RebirthUnits units_;
    int shown_ = 0, stageBase_ = 0, stageSpan_ = 0; // percent
};

bool Conversion::read(const ConverterOptions& options) {
    if (!units_.readRbsUnits(image_)) return false;
    const UnitOptions* chosen[] = {&options.top, &options.mid};
    for (int i = 0; i < 2; ++i) {
        Three03_Patterns& unit = units_.basses[i];
        unit.noteOffset = chosen[i]->baseNote;
        unit.noteVelocity = chosen[i]->velocity;
        Song_Tracks& track = units_.tracks[i];
        track.channel = unit.channel = chosen[i]->channel;
        track.cutoffController = chosen[i]->cutoff;
        track.resoController = chosen[i]->reso;
        track.envModController = chosen[i]->envMod;
        track.decayController = chosen[i]->decay;
        track.accentController = chosen[i]->accent;
    }
    units_.tracks[kDrumSongTrack].channel = units_.drums.channel = options.drumsChannel;
    return true;
}

void Conversion::write() {
    writeMetaTrack();
    constexpr const char* kNames[][2] = {{"Top 303", "Top 303 Knobs"}, {"Mid 303", "Mid 303 Knobs"}};
    for (int unit = 0; unit < 2; ++unit) {
        stage(33 * unit, 16);
        bassNotes(unit, kNames[unit][0]);
        stage(shown_, 16);
        bassKnobs(units_.tracks[unit], kNames[unit][1]);
    }
    stage(66, 34);
    drumNotes();
}

void Conversion::writeMetaTrack() {
    startTrack("Marlune Converter");
    writer_.text(kMetaCopyright, kConverterText);
    writer_.timeSignature({4, 2, 30, 8});
    writer_.tempo(microsecondsPerQuarter(image_));
}

void Conversion::startTrack(const char* name) {
    writer_.addTrack();
    writer_.text(kMetaTrackName, name);
}

void Conversion::stage(int base, int span) {
    stageBase_ = base;
    stageSpan_ = span;
}

void Conversion::show(const Song_Tracks& track) {
    const int done = track.trackLast > 0 ? std::min(track.readPos, track.trackLast) : 0;
    const int percent = stageBase_ + (track.trackLast > 0 ? stageSpan_ * done / track.trackLast : 0);
    if (percent == shown_) return;
    shown_ = percent;
    if (progress_) progress_(percent);
}

// Plays a unit's patterns stretch by stretch. play(halfSteps, rest) writes a stretch of previousPattern that
// follows so many half-steps of silence, and returns the silence that is left over for the next.
template <typename Play>
void Conversion::walkPatterns(Song_Tracks& track, const Play& play) {
    const int songUnits = std::min(kUnitsPerBar * barCountOf(image_), kLongestUnits);
    int rest = 0;
    int total = 0;
    PatternEvent::Kind kind{};
    track.SONG_Pattern_Setup();
    do {
        const PatternEvent event = track.SONG_Next_Pattern_Change();
        kind = event.kind;
        const int delta = std::min(event.delta, kLongestUnits - total);
        total += delta;
        show(track);
        // Behind a switch the flag tells what comes next, behind anything else what has been.
        const bool played = track.patternOn != (kind == PatternEvent::Kind::playback);
        rest = played ? play(delta, rest) : rest + delta;
    } while (kind != PatternEvent::Kind::end && total - 1 < songUnits);
}

void Conversion::bassNotes(int unit, const char* name) {
    startTrack(name);
    Song_Tracks& track = units_.tracks[unit];
    Three03_Patterns& patterns = units_.basses[unit];
    walkPatterns(track, [&](int halfSteps, int rest) {
        patterns.patternNumber = track.previousPattern;
        patterns.Convert_Pattern();
        writePatternNotes(patterns, halfSteps, rest);
        return 0; // the stretch's last note-off has used up its time
    });
}

void Conversion::writePatternNotes(Three03_Patterns& unit, int halfSteps, int rest) {
    int delta = kFileTicksPerUnit * rest;
    for (int i = 0; i < halfSteps; ++i) {
        unit.MIDI_Get_Step(i, delta);
        writer_.event(unit.eventTime, unit.eventStatus, unit.eventNote, unit.eventVelocity);
        delta = 0;
    }
}

// Events without a delta are left out, and with them the first of the track.
void Conversion::bassKnobs(Song_Tracks& track, const char* name) {
    startTrack(name);
    track.rewind();
    std::int64_t total = 0;
    while (track.readPos < track.trackLast) {
        track.SONG_Extract_303_One_Knob();
        if (track.eventStatus != 0 && track.eventTime != 0) {
            total += track.eventTime;
            if (total > std::int64_t{kLongestUnits} * kFileTicksPerUnit) break;
            writer_.event(track.eventTime, track.eventStatus, track.eventData1, track.eventData2);
        }
        show(track);
    }
}

void Conversion::drumNotes() {
    startTrack("808 ");
    Song_Tracks& track = units_.tracks[kDrumSongTrack];
    // Levels and switches stand as of the end of the stretch about to be written.
    walkPatterns(track, [&](int halfSteps, int rest) {
        units_.drums.patternNumber = track.previousPattern;
        catchUpDrums();
        units_.drums.Convert_Pattern();
        return writeDrumNotes(halfSteps, rest);
    });
}

void Conversion::catchUpDrums() {
    Song_Tracks& track = units_.tracks[kDrumSongTrack];
    while (track.drumReadPos < track.readPos) {
        const DrumEvent event = track.SONG_Extract_One_DRUM_Event();
        units_.drums.applyParameter(event.parameter, event.value);
    }
}

int Conversion::writeDrumNotes(int halfSteps, int rest) {
    Drum_Patterns& drums = units_.drums;
    int time = kFileTicksPerUnit * rest;
    for (int i = 0; i < halfSteps; ++i) {
        for (int voice = 0; voice < kRbsVoices; ++voice) {
            if (!drums.MIDI_808_Get_Step(i, voice)) continue;
            writer_.event(time, drums.eventStatus, drums.eventNote, drums.eventVelocity);
            time = 0;
        }
        time += kFileTicksPerUnit;
    }
    return time / kFileTicksPerUnit;
}

} // namespace

bool convertRbsImage(const RbsImage& image, const ConverterOptions& options, MidiFileWriter& writer,
                     const ConversionProgress& progress) {
    Conversion conversion(image, writer, progress);
    if (!conversion.read(options)) return false;
    conversion.write();
    return true;
}

RebirthResult convertRebirthFile(const std::string& in, const std::string& out,
                                 const ConverterOptions& options, const ConversionProgress& progress) {
    FileBytes bytes = readFileStart(in, kRb40LongestFile);
    if (!bytes.ok) return RebirthResult::unreadable;
    MemoryMidiFile file;
    if (isRb40(bytes.bytes)) {
        const auto song = readRb40(bytes.bytes);
        if (!song) return RebirthResult::corrupt;
        convertRb40(*song, options, file, progress);
    } else if (!convertRbsImage(rbsImageOf(std::move(bytes)), options, file, progress)) {
        return RebirthResult::corrupt;
    }
    return file.finish(out) ? RebirthResult::done : RebirthResult::notWritten;
}

} // namespace marlune
