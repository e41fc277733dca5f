// What a user edits, seen as one row of bytes: patterns, knobs, tempo, note map, both song tracks.
// Selections, last notes and positions are not part of it. User-interface thread.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace marlune {

// The live pieces, in a fixed order; together they are the row.
std::vector<std::span<std::uint8_t>> musicalPieces();

std::vector<std::uint8_t> captureMusic();

// Bytes that differ: where, and what stood and stands there, run-length coded as (count, value) pairs.
struct MusicRun {
    std::uint32_t offset;
    std::vector<std::uint8_t> before, after;
};
using MusicDifference = std::vector<MusicRun>;

// In song mode the knob values follow the track by themselves: they don't count as a difference then.
MusicDifference differenceTo(const std::vector<std::uint8_t>& before, bool withKnobValues);

std::size_t sizeOf(const MusicDifference& difference); // in memory, bytes

enum class Side { before, after };
void putInto(std::vector<std::uint8_t>& music, const MusicDifference& difference, Side side);

// Puts one side into the live pieces, tells the component, redraws.
void applyMusic(const MusicDifference& difference, Side side);

} // namespace marlune
