// One track of a ReBirth song: timed events, read in four ways, one for each consumer.
//
// An event is a delta of one or two bytes, a parameter and a value. The delta unit is half a step: 2 to a
// step, 32 to a bar. The first event is always three bytes at time 0 and counts as parameter 7. No reader
// goes beyond the track: one that is cut inside an event ends before that event. Any thread; writes nothing
// outside.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "rebirth/rbs_image.h"

namespace marlune {

inline constexpr int kUnitsPerBar = 32;

// Parameters that every track knows.
inline constexpr int kRbsPatternChange = 14; // value: pattern 0..31; above that the event counts as unknown
inline constexpr int kRbsPlayback = 15;      // value 1: the unit's patterns play; any other: they don't

struct PatternEvent {
    enum class Kind { change = 0, playback = 1, end = 2, other = 666 };
    Kind kind;
    int delta; // from the last pattern event, track units
};

struct DrumEvent {
    int parameter, value;
};

class Song_Tracks {
  public:
    int trackLast = -1; // highest index of the data; below 2 there is no event
    int channel = 1;    // 1..16
    int readPos = 0;
    int deltaCarry = 0;  // delta of skipped events, added to the next one's
    int runningTime = 0; // sum of the deltas so far, track units
    bool patternOn = false;
    int previousPattern = 0, currentPattern = 0; // 0..31
    int cutoffController = 0, resoController = 0, envModController = 0, decayController = 0,
        accentController = 0;
    int eventTime = 0;   // of the event just read; meaning by reader
    int eventStatus = 0; // 0: no MIDI form
    int eventData1 = 0, eventData2 = 0;
    int drumReadPos = 0;

    // Walks over the track chunks and copies the data of track 0..3. failed becomes true, and nothing is
    // copied, where a chunk on the way is longer than 40420 or the file ends before what is read of it.
    void SONG_Get_Data(int trackIndex, const RbsImage& image, bool& failed);

    void rewind(); // for a reader that walks the track from its start

    // The next event for the converter's knob track. eventTime is the delta from the last event that had a
    // MIDI form, 15 file ticks for each unit, at most what a MIDI file can tell.
    void SONG_Extract_303_One_Knob();

    // The next event for the import: eventTime in track units from the start, eventData1 the parameter,
    // eventData2 the value. Parameter 0, which nothing knows, where the track has ended.
    void SONG_Extract_303_One_Knob_for_MarLune();

    // Goes to the first pattern change, three bytes at a time, and takes the event behind it for the first
    // on or off. Time starts at 0 there. At the end of the track, with nothing playing, where there is none.
    void SONG_Pattern_Setup();

    // The next event that matters to the pattern walk; the deltas of those in between are in its delta. The
    // track's last event is its end, whatever it is.
    PatternEvent SONG_Next_Pattern_Change();

    // The next event of the drum parameter reader, which runs beside the pattern walk.
    DrumEvent SONG_Extract_One_DRUM_Event();

  private:
    struct Event {
        int delta, parameter, value;
        int next; // index behind it
    };
    [[nodiscard]] std::optional<Event> eventAt(int pos) const;
    [[nodiscard]] int at(int pos) const { return trackData[static_cast<std::size_t>(pos)]; }
    [[nodiscard]] PatternEvent::Kind patternEventKind() const;
    bool takeFirstEvent();
    void end() { readPos = trackLast + 1; }

    std::vector<std::uint8_t> trackData;
};

} // namespace marlune
