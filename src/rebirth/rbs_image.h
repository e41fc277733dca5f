// A ReBirth song file (.rbs) as a byte array, and the reading rules that hold all over it.
//
// No identifier or version is looked at: every place but the song tracks is a constant. From the length
// tables to the end of the drum patterns the file is a stream of seven-bit bytes with a flag byte at every
// offset p with p mod 8 = 6, which holds the top bits of the seven bytes before it: bit 6 of the byte at p -
// 7, down to bit 0 of the byte at p - 1. Any thread.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "util/whole_file.h"

namespace marlune {

inline constexpr int kRbsPatterns = 32; // of a unit; number = 8 x bank + pattern

// Offset of a data byte by its index among the data bytes, flag bytes left out.
constexpr int rbsPlace(int dataIndex) {
    return dataIndex + (dataIndex + 1) / 7;
}

inline constexpr int kRbsTempo = 100;    // 3 bytes, most significant first: microseconds per quarter note
inline constexpr int kRbsBarCount = 153; // 3 bytes
inline constexpr int kRbsSongTracks = 18868;
inline constexpr int kRbsTracks = 4;
inline constexpr int kRbsLongestSpan = 40420; // of a song track chunk, size + 7
// What the longest file that is not corrupt can need.
inline constexpr int kRbsLongestFile = kRbsSongTracks + kRbsTracks * (kRbsLongestSpan + 1);

// Index 0 .. fileLength; the element behind the last byte of the file is 0.
class RbsImage {
  public:
    RbsImage() = default;
    explicit RbsImage(std::vector<std::uint8_t> file) : bytes_(std::move(file)) {}

    [[nodiscard]] int fileLength() const { return static_cast<int>(bytes_.size()); }
    // 0 for every index outside the file.
    [[nodiscard]] int operator[](int offset) const {
        return offset >= 0 && offset < fileLength() ? bytes_[static_cast<std::size_t>(offset)] : 0;
    }
    // Whether the file reaches to the end of a place.
    [[nodiscard]] bool holds(int offset, int length) const {
        return offset >= 0 && length <= fileLength() - offset;
    }

  private:
    std::vector<std::uint8_t> bytes_;
};

// As much of a file that was read as the format can need.
RbsImage rbsImageOf(FileBytes file);

// The byte at offset with its top bit put back. flagOffset: its flag byte, 1 to 7 behind it.
int byteWithTopBit(const RbsImage& image, int offset, int flagOffset);

struct StepGroup {
    std::array<std::uint8_t, 4> bytes; // seven bits each: the top bits of pattern bytes carry nothing
    int next;                          // offset of the next group
};
// Four data bytes, stepping over a flag byte among them.
StepGroup readStepGroup(const RbsImage& image, int offset);

using RbsLengths = std::array<int, kRbsPatterns>; // 1..16
RbsLengths readLengthTable(const RbsImage& image, int firstOffset);

} // namespace marlune
