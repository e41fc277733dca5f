#include "rebirth/rbs_generator.h"

#include <algorithm>
#include <random>

namespace marlune::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kStreamStart = 431; // a group starts here, and data byte 377
constexpr int kStreamIndex = 377;

// Collects data bytes and writes them in groups of seven, each followed by the byte of their top bits.
class Stream {
  public:
    void put(int byte) { data_.push_back(static_cast<std::uint8_t>(byte)); }
    void noise(int count) {
        for (int i = 0; i < count; ++i) put(static_cast<int>(random_()));
    }
    void goTo(int index) { noise(index - kStreamIndex - static_cast<int>(data_.size())); }
    void putNoisy(int byte, int free) { put(byte | (static_cast<int>(random_()) & free)); }
    [[nodiscard]] Bytes packed() const {
        Bytes out;
        for (std::size_t group = 0; group + 7 <= data_.size(); group += 7) {
            int flags = 0;
            for (std::size_t i = 0; i < 7; ++i) {
                out.push_back(data_[group + i] & 0x7F);
                flags = flags * 2 + (data_[group + i] >> 7);
            }
            out.push_back(static_cast<std::uint8_t>(flags));
        }
        return out;
    }

  private:
    Bytes data_;
    std::minstd_rand random_{7};
};

void putLengths(Stream& stream, int index, const std::array<int, 32>& lengths) {
    stream.goTo(index);
    for (std::size_t i = 0; i < 32; i += 2) stream.put((lengths[i] - 1) << 4 | (lengths[i + 1] - 1));
}

void putBass(Stream& stream, int index, const RbsBass& bass) {
    stream.goTo(index);
    for (const int value : bass.knobs) stream.put(value);
    stream.noise(8);
    for (const auto& pattern : bass.steps) {
        for (const RbsStep& step : pattern) {
            stream.putNoisy(step.semitone, 0x80);
            stream.noise(1);
            stream.putNoisy((step.down ? 8 : 0) + (step.up ? 4 : 0) + (step.accent ? 2 : 0), 0x81);
            stream.putNoisy(step.rest ? 1 : 0, 0xFE);
        }
        stream.noise(4);
    }
}

void putDrums(Stream& stream, int index, const RbsDrums& drums) {
    stream.goTo(index);
    for (const auto& pattern : drums.hits) {
        for (const auto& row : pattern) {
            for (std::size_t s = 0; s < 16; s += 4) {
                stream.putNoisy(row[s] * 0x40 + row[s + 1] * 0x10 + row[s + 2] * 4 + row[s + 3], 0xAA);
            }
        }
        stream.noise(16);
    }
}

void putTrack(Bytes& file, const RbsTrack& track) {
    // Three bytes at time 0 with parameter 7, whatever stands here.
    Bytes data{200, 17, static_cast<std::uint8_t>(track.first)};
    int now = 0;
    for (const RbsEvent& event : track.events) {
        const int delta = event.time - now;
        now = event.time;
        if (delta > 128) data.push_back(static_cast<std::uint8_t>(128 + delta / 128));
        data.push_back(static_cast<std::uint8_t>(delta > 128 ? delta % 128 : delta));
        data.push_back(static_cast<std::uint8_t>(event.parameter));
        data.push_back(static_cast<std::uint8_t>(event.value));
    }
    file.insert(file.end(), {'T', 'R', 'K', 'L'});
    for (int shift = 24; shift >= 0; shift -= 8) {
        file.push_back(static_cast<std::uint8_t>((data.size() + 6) >> shift));
    }
    file.push_back(77);
    file.insert(file.end(), data.begin(), data.end());
    file.insert(file.end(), 5, 78);
}

} // namespace

RbsSong::RbsSong() {
    for (RbsBass& bass : basses) bass.lengths.fill(16);
    drums.lengths.fill(16);
}

RbsSong randomSong(unsigned seed, int bars) {
    std::mt19937 random(seed);
    const auto upTo = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
    RbsSong song;
    song.microseconds = 200000 + upTo(1500000);
    for (RbsBass& bass : song.basses) {
        for (int& value : bass.knobs) value = upTo(127);
        for (int& length : bass.lengths) length = 1 + upTo(15);
        for (auto& pattern : bass.steps) {
            for (RbsStep& s : pattern) s = {upTo(12), upTo(3) == 0, upTo(3) == 0, upTo(2) == 0, upTo(2) == 0};
        }
    }
    for (int& length : song.drums.lengths) length = 1 + upTo(15);
    for (auto& pattern : song.drums.hits) {
        for (auto& row : pattern) row = static_cast<unsigned long>(upTo(0xFFFF));
    }
    constexpr int kBassKnobs[] = {7, 10, 12, 16, 17, 18, 19, 20, 21, 22};
    constexpr int kDrumKnobs[] = {16, 17, 20, 23, 25, 26, 28, 29, 31, 32, 33, 34, 35, 36, 37, 40, 42, 43};
    for (int t = 0; t < 3; ++t) {
        RbsTrack& track = song.tracks[t];
        track.first = upTo(127);
        track.events = {{0, 14, upTo(31)}, {0, 15, upTo(1)}};
        for (int bar = 1 + upTo(3); bar < bars; bar += 1 + upTo(5)) {
            const bool change = upTo(2) != 0;
            track.events.push_back({32 * bar, change ? 14 : 15, change ? upTo(31) : upTo(1)});
        }
        // Not before the pattern events at the start, which are looked for three bytes at a time.
        for (int i = 0; i < 4 * bars; ++i) {
            const int parameter = t == 2 ? kDrumKnobs[upTo(17)] : kBassKnobs[upTo(9)];
            track.events.push_back({upTo(32 * bars), parameter, upTo(upTo(1) == 0 ? 127 : 1)});
        }
        std::ranges::stable_sort(track.events, {}, &RbsEvent::time);
        track.events.push_back({32 * bars, 15, 0});
    }
    return song;
}

std::vector<std::uint8_t> rbsFile(const RbsSong& song) {
    Bytes file(kStreamStart, 0x55);
    for (int i = 0; i < 3; ++i) file[100 + i] = static_cast<std::uint8_t>(song.microseconds >> (16 - 8 * i));
    file[153] = static_cast<std::uint8_t>(song.bars / 256);
    file[154] = static_cast<std::uint8_t>(song.bars % 128);
    file[155] = static_cast<std::uint8_t>(song.bars % 256 / 128);
    Stream stream;
    putLengths(stream, 381, song.basses[0].lengths);
    putLengths(stream, 413, song.basses[1].lengths);
    putLengths(stream, 445, song.drums.lengths);
    putBass(stream, 487, song.basses[0]);
    putBass(stream, 487 + 4096, song.basses[1]);
    putDrums(stream, 8710, song.drums);
    stream.noise(7);
    const Bytes packed = stream.packed();
    file.insert(file.end(), packed.begin(), packed.end());
    file.resize(18868, 0x55);
    for (const RbsTrack& track : song.tracks) putTrack(file, track);
    return file;
}

} // namespace marlune::test
