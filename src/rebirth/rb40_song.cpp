#include "rebirth/rb40_song.h"

#include <algorithm>
#include <string_view>

namespace marlune {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kChunkHeader = 8;
constexpr std::size_t kTypeSize = 4;
constexpr std::string_view kContainer = "CAT ";

constexpr std::size_t kTempoPlace = 2, kLoopEndPlace = 10, kGlobalsRead = 14;
constexpr std::uint32_t kLoopUnitsPerBar = 768;
constexpr std::size_t kTitleSize = 41;

constexpr std::size_t kBassSettings = 9;
constexpr std::size_t kBassPatternSize = 2 + 2 * kRb40Steps;
constexpr std::size_t kDrumPatternSize = 2 + kRb40Rows * kRb40Steps;
constexpr int kHighestPitch = 12;
constexpr int kSlide = 0x01, kAccent = 0x02, kUp = 0x04, kDown = 0x08, kRest = 0x10;

enum Track {
    kMixerTrack,
    kBassTrack,
    kDrumTrack = kBassTrack + 2,
    kFirstEffectTrack = kDrumTrack + 2,
    kTracks = 9
};
constexpr std::size_t kShortestEvent = 3;
constexpr int kLongestDelta = 4; // bytes
constexpr int kTopData = 127;

std::uint32_t bigEndian(Bytes bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | bytes[offset + i];
    return value;
}

std::string_view typeAt(Bytes bytes, std::size_t offset) {
    return {reinterpret_cast<const char*>(bytes.data()) + offset, kTypeSize};
}

struct Chunk {
    std::string_view type; // of a container: what it contains
    Bytes data;
};

// The chunks that lie side by side in these bytes. Nothing where one reaches beyond them; what is too short
// for a chunk at the end is none.
std::optional<std::vector<Chunk>> chunksIn(Bytes bytes) {
    std::vector<Chunk> chunks;
    while (bytes.size() >= kChunkHeader) {
        Chunk chunk{typeAt(bytes, 0), {}};
        const std::size_t size = bigEndian(bytes, kTypeSize);
        if (size > bytes.size() - kChunkHeader) return std::nullopt;
        chunk.data = bytes.subspan(kChunkHeader, size);
        if (chunk.type == kContainer) {
            if (size < kTypeSize) return std::nullopt;
            chunk.type = typeAt(chunk.data, 0);
            chunk.data = chunk.data.subspan(kTypeSize);
        }
        chunks.push_back(chunk);
        bytes = bytes.subspan(std::min(kChunkHeader + size + size % 2, bytes.size()));
    }
    return chunks;
}

// The one of that type that comes `index`-th, if it is long enough.
const Chunk* find(const std::vector<Chunk>& chunks, std::string_view type, std::size_t least, int index = 0) {
    for (const Chunk& chunk : chunks) {
        if (chunk.type != type || index-- > 0) continue;
        return chunk.data.size() >= least ? &chunk : nullptr;
    }
    return nullptr;
}

// Latin-1 as UTF-8, without what can't be seen.
std::string titleOf(Bytes info) {
    std::string title;
    for (const std::uint8_t c : info.first(std::min(info.size(), kTitleSize))) {
        if (c == 0) break;
        if (c < 0x20 || (c >= 0x7F && c < 0xA0)) continue;
        if (c >= 0x80) title += static_cast<char>(0xC0 | c >> 6);
        title += static_cast<char>(c >= 0x80 ? 0x80 | (c & 0x3F) : c);
    }
    return title;
}

Rb40BassPattern bassPattern(Bytes bytes) {
    Rb40BassPattern pattern;
    for (std::size_t s = 0; s < kRb40Steps; ++s) {
        const int flags = bytes[2 + 2 * s + 1];
        pattern.steps[s] = {std::min<int>(bytes[2 + 2 * s], kHighestPitch),
                            (flags & kSlide) != 0,
                            (flags & kAccent) != 0,
                            (flags & kUp) != 0,
                            (flags & kDown) != 0,
                            (flags & kRest) != 0};
    }
    return pattern;
}

Rb40DrumPattern drumPattern(Bytes bytes) {
    Rb40DrumPattern pattern;
    for (std::size_t i = 0; i < kRb40Steps * kRb40Rows; ++i) {
        const auto cell = static_cast<std::uint8_t>(std::min<int>(bytes[2 + i], kRb40Flam));
        pattern.cells[i / kRb40Rows][i % kRb40Rows] = cell;
    }
    return pattern;
}

template <typename Pattern, typename Read>
void readUnit(Bytes bytes, std::size_t settings, std::size_t patternSize, Rb40Unit<Pattern>& unit,
              const Read& read) {
    for (std::size_t i = 0; i < settings; ++i)
        unit.start[i] = static_cast<std::uint8_t>(std::min<int>(bytes[i], kTopData));
    for (std::size_t p = 0; p < kRb40Patterns; ++p) {
        const Bytes data = bytes.subspan(settings + p * patternSize, patternSize);
        unit.patterns[p] = read(data);
        unit.patterns[p].shuffle = data[0] != 0;
        unit.patterns[p].length = std::clamp<int>(data[1], 1, kRb40Steps);
    }
}

bool readDevices(Bytes bytes, Rb40Song& song) {
    const auto chunks = chunksIn(bytes);
    if (!chunks) return false;
    for (int unit = 0; unit < 2; ++unit) {
        const Chunk* const bass =
            find(*chunks, "303 ", kBassSettings + kRb40Patterns * kBassPatternSize, unit);
        const Chunk* const drums = find(*chunks, unit == kRb40Of808 ? "808 " : "909 ",
                                        kRb40Settings + kRb40Patterns * kDrumPatternSize);
        if (bass == nullptr || drums == nullptr) return false;
        readUnit(bass->data, kBassSettings, kBassPatternSize, song.basses[unit], bassPattern);
        readUnit(drums->data, kRb40Settings, kDrumPatternSize, song.drums[unit], drumPattern);
    }
    return true;
}

std::optional<Rb40Track> readTrack(Bytes bytes) {
    if (bytes.size() < 4) return std::nullopt;
    const std::size_t count = bigEndian(bytes, 0);
    bytes = bytes.subspan(4);
    if (count > bytes.size() / kShortestEvent) return std::nullopt;
    Rb40Track track;
    track.reserve(count);
    int now = 0;
    std::size_t at = 0;
    for (std::size_t i = 0; i < count; ++i) {
        int delta = 0;
        for (int k = 0;; ++k) {
            if (k == kLongestDelta || at == bytes.size()) return std::nullopt;
            delta = delta << 7 | (bytes[at] & 0x7F);
            if (bytes[at++] < 0x80) break;
        }
        if (bytes.size() - at < 2) return std::nullopt;
        now = std::min(now, kRb40LastPosition - delta) + delta;
        track.push_back({now, bytes[at], static_cast<std::uint8_t>(std::min<int>(bytes[at + 1], kTopData))});
        at += 2;
    }
    return track;
}

bool readTracks(Bytes bytes, Rb40Song& song) {
    const auto chunks = chunksIn(bytes);
    if (!chunks) return false;
    for (int t = 0; t < kTracks; ++t) {
        const Chunk* const chunk = find(*chunks, "TRAK", 0, t);
        auto track = chunk != nullptr ? readTrack(chunk->data) : std::nullopt;
        if (!track) return false;
        if (t == kMixerTrack)
            song.mixer = std::move(*track);
        else if (t < kDrumTrack)
            song.basses[t - kBassTrack].track = std::move(*track);
        else if (t < kFirstEffectTrack)
            song.drums[t - kDrumTrack].track = std::move(*track);
        else
            song.effectEvents += static_cast<int>(track->size());
    }
    return true;
}

} // namespace

bool isRb40(Bytes file) {
    return file.size() >= kChunkHeader + kTypeSize && typeAt(file, 0) == kContainer &&
           typeAt(file, kChunkHeader) == "RB40";
}

std::optional<Rb40Song> readRb40(Bytes file) {
    if (!isRb40(file)) return std::nullopt;
    const std::size_t size = bigEndian(file, kTypeSize);
    if (size < kTypeSize || size > file.size() - kChunkHeader) return std::nullopt;
    const auto chunks = chunksIn(file.subspan(kChunkHeader + kTypeSize, size - kTypeSize));
    if (!chunks) return std::nullopt;
    const Chunk* const globals = find(*chunks, "GLOB", kGlobalsRead);
    const Chunk* const devices = find(*chunks, "DEVL", 0);
    const Chunk* const tracks = find(*chunks, "TRKL", 0);
    if (globals == nullptr || devices == nullptr || tracks == nullptr) return std::nullopt;
    Rb40Song song;
    song.milliTempo = bigEndian(globals->data, kTempoPlace);
    const std::uint32_t loopEnd = bigEndian(globals->data, kLoopEndPlace);
    song.loopEndBars = loopEnd / kLoopUnitsPerBar + (loopEnd % kLoopUnitsPerBar != 0 ? 1 : 0);
    if (const Chunk* const info = find(*chunks, "USRI", 0)) song.title = titleOf(info->data);
    if (!readDevices(devices->data, song) || !readTracks(tracks->data, song)) return std::nullopt;
    return song;
}

} // namespace marlune
