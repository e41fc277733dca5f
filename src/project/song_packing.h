// The song tracks as a project file stores them. Pure but for the tracks themselves.
//
// packedCount entries of 8 bytes, little-endian: value (32 bits), data (low byte of 16 bits, the high byte
// 0), two bytes 0. The first 3000 are the bars (value bank, data pattern; module 0 bars 0..999, then 1, then
// 2). The rest are the knobs, run-length coded: for each knob, one entry at every tick where its value
// differs from that of the tick before (255 before tick 0), value = knob x 16000 + tick, data = the knob's
// value.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace marlune {

inline constexpr int kMinPackedCount = 3000;
inline constexpr int kMaxPackedCount = 323000;
inline constexpr std::size_t kPackedEntrySize = 8;

// The significant entries as bytes.
std::vector<std::uint8_t> packSong();

// Takes entries into the tracks; values are limited to their ranges. What the entries don't reach keeps its
// value. False where an entry is malformed; nothing is taken then.
bool unpackSong(std::span<const std::uint8_t> entries);

} // namespace marlune
