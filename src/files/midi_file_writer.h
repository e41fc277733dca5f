// Standard MIDI Files, format 1, 120 ticks to the quarter note.
//
// The file is collected in memory and goes to disk as a whole or not at all. Any thread; one writer belongs
// to one thread.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace marlune {

inline constexpr int kMidiFileDivision = 120; // file ticks per quarter note
inline constexpr int kFileTicksPerStep = 30;  // a song tick is a sixteenth

// Meta events that carry a text.
inline constexpr int kMetaCopyright = 2;
inline constexpr int kMetaTrackName = 3;

// Where events go. There is no track at first: addTrack comes before everything else, and an event without a
// track is dropped.
class MidiFileWriter {
  public:
    virtual ~MidiFileWriter() = default;

    // Appends an empty track and makes it the destination; its number, counted from 0. At most 65535 tracks.
    virtual int addTrack() = 0;
    // Makes an earlier track the destination again; a number without a track is ignored.
    virtual void chooseTrack(int track) = 0;

    // A channel message. delta: file ticks since the track's last event, limited to 0..0x0FFFFFFF, which is
    // what the format can tell. status: 0x80..0xEF, anything else is dropped. The data bytes keep their low
    // seven bits; data2 goes out only where the message has one (not for program change and pressure).
    virtual void event(int delta, int status, int data1, int data2) = 0;

    // Meta events, all at the time of the track's last event. type: 0..127.
    virtual void text(int type, std::string_view text) = 0;
    // numerator, denominator as a power of two, MIDI clocks per metronome click, 32nds per quarter note.
    virtual void timeSignature(const std::array<std::uint8_t, 4>& bytes) = 0;
    // Microseconds per quarter note, limited to 1..0xFFFFFF.
    virtual void tempo(int microseconds) = 0;
};

class MemoryMidiFile final : public MidiFileWriter {
  public:
    int addTrack() override;
    void chooseTrack(int track) override;
    void event(int delta, int status, int data1, int data2) override;
    void text(int type, std::string_view text) override;
    void timeSignature(const std::array<std::uint8_t, 4>& bytes) override;
    void tempo(int microseconds) override;

    // The whole file, each track closed by an End of Track. The tracks themselves stay open.
    [[nodiscard]] std::vector<std::uint8_t> bytes() const;

    // Writes that file. False when it failed; a file of that name then stands as it was.
    [[nodiscard]] bool finish(const std::string& path) const;

  private:
    using Bytes = std::vector<std::uint8_t>;
    void meta(int type, const std::uint8_t* data, std::size_t size);

    std::vector<Bytes> tracks_;
    std::size_t current_ = 0;
};

} // namespace marlune
