// Moves a channel's sound to the exact sample, for a synthesizer that starts notes at the start of a block
// only.
#pragma once

#include <array>
#include <cstdint>

namespace marlune {

// The sound of a block is read a few frames later, as many as its first note lies behind the block's start.
// From one such shift to the next the reader fades over within the last frames of the old sound, so that the
// new note itself is heard through one of them only. One thread; pure arithmetic.
class SampleShift {
  public:
    static constexpr int kBlock = 64;

    // A note begins at this frame (0..kBlock-1) of the next block to be written. Only a block's first note
    // counts.
    void noteAt(int frame) noexcept;

    // Takes the next block of sound in, and adds the one before it, shifted, to left and right.
    void pass(const float* inLeft, const float* inRight, float* left, float* right) noexcept;

    // Whether there was a note at all; before that there is nothing to hear.
    bool used() const noexcept { return used_; }

  private:
    struct Fade {
        int shift = 0;
        std::int64_t from = 0, to = 0; // output frames
    };

    static constexpr int kHistory = 4 * kBlock; // a power of two
    static constexpr int kFade = 32;

    std::int64_t written_ = 0; // frames taken in so far; the start of the next block
    int shift_ = 0;
    int waiting_ = 0;
    std::array<Fade, 2> fades_; // in order; the first `waiting_` of them are to come or under way
    std::int64_t lastNoteBlock_ = -1;
    bool used_ = false;
    std::array<float, kHistory> left_{}, right_{};
};

} // namespace marlune
