#include "rebirth/rb40_writer.h"

#include <algorithm>
#include <random>

namespace marlune::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

void put(Bytes& out, std::initializer_list<int> bytes) {
    for (const int byte : bytes) out.push_back(static_cast<std::uint8_t>(byte));
}
void putLong(Bytes& out, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(value >> shift));
}
void append(Bytes& out, const Bytes& more) {
    out.insert(out.end(), more.begin(), more.end());
}

Bytes chunk(const std::string& type, const Bytes& data) {
    Bytes out(type.begin(), type.end());
    putLong(out, static_cast<std::uint32_t>(data.size()));
    append(out, data);
    if (data.size() % 2 != 0) out.push_back(0x55);
    return out;
}

Bytes container(const std::string& type, const std::vector<Bytes>& chunks) {
    Bytes data(type.begin(), type.end());
    for (const Bytes& one : chunks) append(data, one);
    return chunk("CAT ", data);
}

Bytes bassDevice(const Rb40Unit<Rb40BassPattern>& unit) {
    Bytes data(unit.start.begin(), unit.start.begin() + 9);
    for (const Rb40BassPattern& pattern : unit.patterns) {
        put(data, {pattern.shuffle ? 1 : 0, pattern.length});
        for (const Rb40BassStep& s : pattern.steps)
            put(data, {s.pitch, s.slide * 1 + s.accent * 2 + s.up * 4 + s.down * 8 + s.rest * 16});
    }
    return chunk("303 ", data);
}

Bytes drumDevice(const std::string& type, const Rb40Unit<Rb40DrumPattern>& unit) {
    Bytes data(unit.start.begin(), unit.start.end());
    for (const Rb40DrumPattern& pattern : unit.patterns) {
        put(data, {pattern.shuffle ? 1 : 0, pattern.length});
        for (const auto& step : pattern.cells) data.insert(data.end(), step.begin(), step.end());
    }
    if (type == "909 ") data.push_back(0x55);
    return chunk(type, data);
}

Bytes track(const Rb40Track& events) {
    Bytes data;
    putLong(data, static_cast<std::uint32_t>(events.size()));
    int now = 0;
    for (const Rb40Event& e : events) {
        const int delta = e.position - now;
        now = e.position;
        if (delta >= 1 << 14) put(data, {0x80 | delta >> 14});
        if (delta >= 1 << 7) put(data, {0x80 | (delta >> 7 & 0x7F)});
        put(data, {delta & 0x7F, e.controller, e.value});
    }
    return chunk("TRAK", data);
}

} // namespace

Rb40Song randomRb40(unsigned seed, int bars) {
    std::mt19937 random(seed);
    const auto upTo = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
    const auto value = [&] { return static_cast<std::uint8_t>(upTo(127)); };
    Rb40Song song;
    song.milliTempo = 30000U + static_cast<unsigned>(upTo(230000));
    song.loopEndBars = static_cast<unsigned>(bars);
    song.title = "Caf\xC3\xA9 / " + std::to_string(seed);
    const auto events = [&](Rb40Track& track, int settings) {
        for (int bar = 0; bar < bars; bar += 1 + upTo(3)) {
            track.push_back(
                {32 * bar + (upTo(5) == 0 ? upTo(31) : 0), 1, static_cast<std::uint8_t>(upTo(32))});
            if (upTo(3) == 0) track.push_back({32 * bar, 0, static_cast<std::uint8_t>(upTo(1))});
        }
        for (int i = 0; i < 4 * bars; ++i)
            track.push_back(
                {upTo(32 * bars - 1), static_cast<std::uint8_t>(2 + upTo(settings - 3)), value()});
        std::ranges::stable_sort(track, {}, &Rb40Event::position);
    };
    for (auto& unit : song.basses) {
        for (int i = 0; i < 9; ++i) unit.start[i] = value();
        unit.start[1] = static_cast<std::uint8_t>(upTo(31));
        for (Rb40BassPattern& pattern : unit.patterns) {
            pattern.shuffle = upTo(7) == 0;
            pattern.length = 1 + upTo(15);
            for (Rb40BassStep& s : pattern.steps)
                s = {upTo(12), upTo(1) == 0, upTo(2) == 0, upTo(3) == 0, upTo(3) == 0, upTo(3) == 0};
        }
        events(unit.track, 9);
    }
    for (int u = 0; u < 2; ++u) {
        auto& unit = song.drums[u];
        for (auto& setting : unit.start) setting = value();
        unit.start[1] = static_cast<std::uint8_t>(upTo(31));
        for (Rb40DrumPattern& pattern : unit.patterns) {
            pattern.length = upTo(2) == 0 ? 1 + upTo(15) : 16;
            for (auto& step : pattern.cells)
                for (auto& cell : step)
                    cell = static_cast<std::uint8_t>(upTo(3) != 0 ? 0 : u == 0 ? 1 : 1 + upTo(2));
        }
        events(unit.track, 30);
    }
    events(song.mixer, 20);
    song.effectEvents = 12;
    return song;
}

std::vector<std::uint8_t> rb40File(const Rb40Song& song, unsigned seed) {
    std::mt19937 random(seed);
    const auto noise = [&](std::size_t size) {
        Bytes bytes(size);
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
        return bytes;
    };
    Bytes globals;
    put(globals, {1, 0});
    putLong(globals, song.milliTempo);
    putLong(globals, 768);
    putLong(globals, song.loopEndBars * 768 - (seed % 2 == 0 ? 1 : 0)); // inside the last bar as well
    append(globals, noise(498));
    Bytes info;
    for (std::size_t i = 0; i < song.title.size(); ++i) { // back to Latin-1
        const int c = static_cast<unsigned char>(song.title[i]);
        put(info, {c < 0x80 ? c : (c & 3) << 6 | (static_cast<unsigned char>(song.title[++i]) & 0x3F)});
    }
    info.push_back(0);
    append(info, noise(712 - info.size()));
    std::vector<Bytes> devices;
    constexpr std::pair<const char*, std::size_t> kUnread[] = {
        {"MIXR", 64}, {"DELY", 8}, {"PCF ", 12}, {"DIST", 8}, {"COMP", 8}};
    for (const auto& [type, size] : kUnread) devices.push_back(chunk(type, noise(size)));
    for (const auto& unit : song.basses) devices.push_back(bassDevice(unit));
    devices.push_back(drumDevice("808 ", song.drums[0]));
    devices.push_back(drumDevice("909 ", song.drums[1]));
    std::vector<Bytes> tracks = {track(song.mixer), track(song.basses[0].track), track(song.basses[1].track),
                                 track(song.drums[0].track), track(song.drums[1].track)};
    for (int effect = 0; effect < 4; ++effect) {
        Rb40Track events;
        for (int i = 0; i < song.effectEvents / 4; ++i) events.push_back({i * 20000, 3, 4});
        tracks.push_back(track(events));
    }
    std::vector<Bytes> outer = {chunk("HEAD", noise(256)),  chunk("GLOB", globals),
                                chunk("USRI", info),        chunk("ODD ", noise(7)),
                                container("DEVL", devices), container("TRKL", tracks)};
    if (seed != 1) std::ranges::shuffle(outer, random);
    Bytes file = container("RB40", outer);
    append(file, noise(seed % 5));
    return file;
}

} // namespace marlune::test
