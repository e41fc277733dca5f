#include "project/song_packing.h"

#include <algorithm>
#include <cstring>

#include "project/song_track.h"
#include "util/le_int.h"

namespace marlune {

namespace {

struct PackedSongEntry {
    Le32 value;
    Le8 data;
    Le8 dataHigh; // the low byte's other half when it was written as 16 bits; always 0
    std::array<Le8, 2> spare;
};
static_assert(sizeof(PackedSongEntry) == kPackedEntrySize);

constexpr int kNoValue = 255; // no knob holds it
constexpr int kMaxKnobValue = 127;

void append(std::vector<std::uint8_t>& out, int value, int data) {
    PackedSongEntry entry;
    entry.value = value;
    entry.data = data;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&entry);
    out.insert(out.end(), bytes, bytes + sizeof entry);
}

// The entries of a file, one after the other; false at a malformed one.
class EntryReader {
  public:
    explicit EntryReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    [[nodiscard]] bool atEnd() const { return bytes_.size() < kPackedEntrySize; }
    // The entry under the cursor.
    [[nodiscard]] PackedSongEntry peek() const {
        PackedSongEntry entry;
        std::memcpy(&entry, bytes_.data(), sizeof entry);
        return entry;
    }
    void next() { bytes_ = bytes_.subspan(kPackedEntrySize); }

  private:
    std::span<const std::uint8_t> bytes_;
};

void readBars(EntryReader& reader) {
    for (int m = 0; m < kModules; ++m) {
        for (int bar = 0; bar < kSongBars && !reader.atEnd(); ++bar) {
            const PackedSongEntry entry = reader.peek();
            reader.next();
            const int bank = std::clamp<int>(entry.value, 0, kBanks - 1);
            const int patt = std::min<int>(entry.data, kPatterns - 1);
            setBar(m, bar * kTicksPerBar, bank, patt);
        }
    }
}

void fillRun(int knob, int from, int to, int value) {
    const auto limited = static_cast<std::uint8_t>(std::min(value, kMaxKnobValue));
    std::fill(knobTrack[knob].begin() + from, knobTrack[knob].begin() + to, limited);
}

// A row is taken by runs: each entry of the knob, in order, ends the run of the value before it. An entry
// that stands for no tick to come is never reached, and neither is what follows it.
void readKnobs(EntryReader& reader) {
    for (int knob = 0; knob < kKnobs; ++knob) {
        int running = kNoValue;
        for (int tick = 0; tick < kSongTicks;) {
            if (reader.atEnd()) {
                // The last change holds to the end of its knob's row; knobs without an entry keep their
                // values.
                if (running != kNoValue) fillRun(knob, tick, kSongTicks, running);
                return;
            }
            const PackedSongEntry entry = reader.peek();
            const std::int64_t at = std::int64_t{entry.value} - knob * kSongTicks;
            const bool comes = at >= tick && at < kSongTicks;
            const int end = comes ? static_cast<int>(at) : kSongTicks;
            fillRun(knob, tick, end, running);
            tick = end;
            if (!comes) break;
            reader.next();
            running = entry.data;
            fillRun(knob, tick, tick + 1, running);
            ++tick;
        }
    }
}

} // namespace

std::vector<std::uint8_t> packSong() {
    std::vector<std::uint8_t> out;
    out.reserve(kPackedEntrySize * (kMinPackedCount + kKnobs));
    for (const auto& bars : barTrack) {
        for (const SongBar& bar : bars) append(out, bar.bank, bar.patt);
    }
    for (int knob = 0; knob < kKnobs; ++knob) {
        int before = kNoValue;
        for (int tick = 0; tick < kSongTicks; ++tick) {
            const int value = knobTrack[knob][tick];
            if (value != before) append(out, knob * kSongTicks + tick, value);
            before = value;
        }
    }
    return out;
}

bool unpackSong(std::span<const std::uint8_t> entries) {
    for (std::size_t at = offsetof(PackedSongEntry, dataHigh); at < entries.size(); at += kPackedEntrySize)
        if (entries[at] != 0) return false;
    EntryReader reader(entries);
    readBars(reader);
    readKnobs(reader);
    return true;
}

} // namespace marlune
