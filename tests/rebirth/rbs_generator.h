// Writes ReBirth songs for tests: the packing told from the writing side, and noise wherever nothing is read.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <vector>

namespace marlune::test {

struct RbsStep {
    int semitone = 0;
    bool up = false, down = false, accent = false, rest = false;
};

struct RbsBass {
    std::array<int, 5> knobs{}; // cutoff, reso, envMod, decay, accent
    std::array<int, 32> lengths{};
    std::array<std::array<RbsStep, 16>, 32> steps{};
};

struct RbsDrums {
    std::array<int, 32> lengths{};
    std::array<std::array<std::bitset<16>, 12>, 32> hits{}; // [pattern][row], bit 0 is step 0
};

struct RbsEvent {
    int time, parameter, value; // time from the start, half-steps
};

struct RbsTrack {
    int first = 0; // value of the event that opens the track
    std::vector<RbsEvent> events;
};

struct RbsSong {
    RbsSong();
    int microseconds = 500000;
    int bars = 1000;
    std::array<RbsBass, 2> basses;
    RbsDrums drums;
    std::array<RbsTrack, 4> tracks;
};

// A song of about so many bars in which everything occurs, pattern events on different bar lines.
RbsSong randomSong(unsigned seed, int bars);

std::vector<std::uint8_t> rbsFile(const RbsSong& song);

} // namespace marlune::test
