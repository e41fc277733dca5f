#include "import/midi_song.h"

#include <algorithm>
#include <string_view>

#include "boundary/midi_bytes.h"

namespace marlune {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr int kMeta = 0xFF, kExclusive = 0xF0, kExclusiveRest = 0xF7;
constexpr int kTrackName = 3, kEndOfTrack = 0x2F, kTempo = 0x51, kMeter = 0x58;
constexpr double kMicrosecondsPerSecond = 1e6;
constexpr double kStepsPerQuarter = 4;
constexpr std::uint32_t kLastTick = 0xFFFFFFFF;

// Reads on from a place; what goes beyond the end makes it fail, for good.
class Reader {
  public:
    explicit Reader(Bytes bytes) : rest_(bytes) {}
    [[nodiscard]] bool failed() const { return failed_; }
    [[nodiscard]] bool atEnd() const { return rest_.empty(); }
    [[nodiscard]] std::size_t left() const { return rest_.size(); }
    [[nodiscard]] int peek() const { return rest_.empty() ? 0 : rest_[0]; }
    Bytes take(std::size_t count) {
        if (count > rest_.size()) {
            failed_ = true;
            rest_ = {};
            return {};
        }
        const Bytes taken = rest_.first(count);
        rest_ = rest_.subspan(count);
        return taken;
    }
    std::uint32_t number(std::size_t size) {
        std::uint32_t value = 0;
        for (const std::uint8_t byte : take(size)) value = value << 8 | byte;
        return value;
    }
    std::uint32_t variableLength() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const std::uint32_t byte = number(1);
            value = value << 7 | (byte & 0x7FU);
            if (byte < 0x80) return value;
        }
        failed_ = true;
        return 0;
    }
    int dataByte() {
        const auto byte = static_cast<int>(number(1));
        failed_ = failed_ || byte > kTopValue;
        return byte & kTopValue;
    }

  private:
    Bytes rest_;
    bool failed_ = false;
};

struct Chunk {
    std::string_view type;
    Bytes data;
};

Chunk nextChunk(Reader& file) {
    const Bytes type = file.take(4);
    Chunk chunk{{reinterpret_cast<const char*>(type.data()), type.size()}, {}};
    chunk.data = file.take(file.number(4));
    return chunk;
}

// Of tempo and meter the first counts, wherever the tracks tell them.
struct FirstTold {
    std::uint32_t tempoTick = kLastTick, meterTick = kLastTick;
    bool tempo = false;
};

class TrackReader {
  public:
    TrackReader(Bytes bytes, MidiSong& song, FirstTold& first) : in_(bytes), song_(song), first_(first) {}
    bool read() {
        while (!in_.atEnd() && !ended_ && !in_.failed()) event();
        if (!in_.failed()) song_.tracks.push_back(std::move(track_));
        return !in_.failed();
    }

  private:
    void event() {
        const std::uint32_t delta = in_.variableLength();
        now_ += std::min(delta, kLastTick - now_);
        int status = in_.peek();
        if (status >= 0x80) in_.take(1);
        if (status == kMeta || status == kExclusive || status == kExclusiveRest) {
            running_ = 0;
            const int type = status == kMeta ? in_.dataByte() : -1;
            meta(type, in_.take(in_.variableLength()));
            return;
        }
        if (status < 0x80) status = running_;
        if (status < kNoteOff || status >= kSystem) { // no status, or one that a file can't have
            in_.take(in_.left() + 1);
            return;
        }
        running_ = status;
        const int data1 = in_.dataByte();
        const int data2 = midiMessageLength(status) > 2 ? in_.dataByte() : 0;
        track_.events.push_back({now_, static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                                 static_cast<std::uint8_t>(data2)});
    }
    void meta(int type, Bytes data) {
        if (type == kEndOfTrack) ended_ = true;
        if (type == kTrackName && track_.name.empty()) track_.name.assign(data.begin(), data.end());
        if (type == kMeter && data.size() >= 2 && data[1] < 8 && now_ < first_.meterTick) {
            first_.meterTick = now_;
            song_.meter = {data[0], 1 << data[1]};
        }
        if (type != kTempo || data.size() != 3) return;
        const int tempo = data[0] << 16 | data[1] << 8 | data[2];
        if (tempo == 0) return;
        song_.tempoChanges += first_.tempo ? 1 : 0;
        if (now_ < first_.tempoTick) {
            first_.tempoTick = now_;
            song_.tempoMicroseconds = tempo;
        }
        first_.tempo = true;
    }

    Reader in_;
    MidiSong& song_;
    FirstTold& first_;
    MidiFileTrack track_;
    std::uint32_t now_ = 0;
    int running_ = 0;
    bool ended_ = false;
};

// division: ticks of a quarter note; or frames a second, negative, above ticks of a frame.
double stepsPerTick(int division, int tempoMicroseconds) {
    if (division < 0x8000) return division == 0 ? 0 : kStepsPerQuarter / division;
    const int frames = 0x100 - (division >> 8);
    const double rate = frames == 29 ? 30000.0 / 1001 : frames;
    const double ticksPerQuarter = rate * (division & 0xFF) * tempoMicroseconds / kMicrosecondsPerSecond;
    return ticksPerQuarter > 0 ? kStepsPerQuarter / ticksPerQuarter : 0;
}

} // namespace

std::optional<MidiSong> readMidiSong(Bytes bytes) {
    Reader file(bytes);
    const Chunk head = nextChunk(file);
    Reader fields(head.data);
    MidiSong song;
    song.format = static_cast<int>(fields.number(2));
    const std::uint32_t tracks = fields.number(2);
    const auto division = static_cast<int>(fields.number(2));
    if (head.type != "MThd" || fields.failed() || song.format > 1 || tracks == 0) return std::nullopt;
    if (song.format == 0 && tracks != 1) return std::nullopt;
    FirstTold first;
    while (song.tracks.size() < tracks) {
        const Chunk chunk = nextChunk(file);
        if (file.failed()) return std::nullopt;
        if (chunk.type == "MTrk" && !TrackReader(chunk.data, song, first).read()) return std::nullopt;
    }
    song.stepsPerTick = stepsPerTick(division, song.tempoMicroseconds);
    if (song.stepsPerTick <= 0) return std::nullopt;
    return song;
}

} // namespace marlune
