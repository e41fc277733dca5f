// A song of ReBirth 2 as it stands in its file: nested chunks, each with a type of four letters and a
// big-endian size. Chunks that nobody here needs are skipped, wherever they stand. Any thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace marlune {

inline constexpr std::size_t kRb40LongestFile = 8U << 20; // many times what the largest song needs
inline constexpr int kRb40Patterns = 32;                  // of a unit
inline constexpr int kRb40Steps = 16;
inline constexpr int kRb40PositionsPerBar = 32; // two to a step

// Settings of a unit: the number of a setting is its byte in the unit's chunk and its controller in the
// track.
inline constexpr int kRb40Enabled = 0;
inline constexpr int kRb40Pattern = 1; // 0..31; in a track also 32, none
inline constexpr int kRb40Settings = 30;

struct Rb40BassStep {
    int pitch = 0; // 0..12
    bool slide = false, accent = false, up = false, down = false, rest = true;
    bool operator==(const Rb40BassStep&) const = default;
};

struct Rb40BassPattern {
    bool shuffle = false;
    int length = kRb40Steps; // 1..16
    std::array<Rb40BassStep, kRb40Steps> steps;
    bool operator==(const Rb40BassPattern&) const = default;
};

enum Rb40Row { // of both drum units
    kRb40Accent,
    kRb40BassDrum,
    kRb40Snare,
    kRb40LowTom,
    kRb40MidTom,
    kRb40HighTom,
    kRb40RimShot,
    kRb40Clap,
    kRb40Row8, // 808: cow bell, cymbal, open hat, closed hat; 909: closed hat, open hat, crash, ride
    kRb40Row9,
    kRb40Row10,
    kRb40Row11,
    kRb40Rows
};
inline constexpr int kRb40Hit = 1, kRb40AccentedHit = 2, kRb40Flam = 3; // cells; the 808 has hits only

struct Rb40DrumPattern {
    bool shuffle = false;
    int length = kRb40Steps;
    std::array<std::array<std::uint8_t, kRb40Rows>, kRb40Steps> cells{}; // [step][row], 0..3
    bool operator==(const Rb40DrumPattern&) const = default;
};

struct Rb40Event {
    int position; // from the start, limited to kRb40LastPosition
    std::uint8_t controller, value;
    bool operator==(const Rb40Event&) const = default;
};
using Rb40Track = std::vector<Rb40Event>; // in the order of positions
inline constexpr int kRb40LastPosition = 0x0FFFFFFF;

template <typename Pattern>
struct Rb40Unit {
    std::array<std::uint8_t, kRb40Settings> start{}; // settings at the start, 0 where a unit has fewer
    std::array<Pattern, kRb40Patterns> patterns;
    Rb40Track track;
    bool operator==(const Rb40Unit&) const = default;
};

enum Rb40DrumUnit { kRb40Of808, kRb40Of909, kRb40DrumUnits };

struct Rb40Song {
    std::uint32_t milliTempo = 0;  // beats per minute x 1000
    std::uint32_t loopEndBars = 0; // bars up to the end of the loop, rounded up
    std::string title;             // UTF-8, printable
    std::array<Rb40Unit<Rb40BassPattern>, 2> basses;
    std::array<Rb40Unit<Rb40DrumPattern>, kRb40DrumUnits> drums;
    Rb40Track mixer;
    int effectEvents = 0; // of the four effects
    bool operator==(const Rb40Song&) const = default;
};

// Whether these bytes mean to be such a song. What isn't has another format.
bool isRb40(std::span<const std::uint8_t> file);

// Nothing where a chunk that is needed is missing, too short, or reaches beyond what it lies in, and where a
// track ends inside an event. What stands behind the last chunk is ignored.
std::optional<Rb40Song> readRb40(std::span<const std::uint8_t> file);

} // namespace marlune
