// One voice of the built-in instruments: a sound with named values, that sleeps while nothing is heard of it.
#pragma once

#include <array>
#include <memory>

#include "instruments/faust_sounds.h"

namespace marlune {

// Frames that a voice is asked for in one go; its sound doesn't depend on how they are cut into pieces.
inline constexpr int kVoiceBlock = 64;

// Construction allocates; everything else is real-time safe. One thread at a time.
class Voice {
  public:
    // When it may fall asleep: after its release, or as soon as it is silent.
    enum class Ends { byRelease, byItself };

    Voice(Timbre timbre, int sampleRate, Ends ends);
    ~Voice();
    Voice(Voice&&) noexcept;
    Voice& operator=(Voice&&) = delete;

    // The value of that name in the .dsp file, to be set at any time; valid as long as the voice lives. A
    // name that isn't there ends the program: it is a slip of this house.
    float* value(const char* name);

    // A note begins at the frame reached. From sleep it always begins in the same way.
    void strike() noexcept;
    void release() noexcept { *gate_ = 0; }
    bool held() const noexcept { return *gate_ > 0; }

    // For a sound that has an input: what goes in until the block's end; wakes it.
    void feed(const float* left, const float* right) noexcept;

    // Computes up to that frame of the present block, 0..kVoiceBlock; what lies behind is left alone.
    void renderTo(int frame) noexcept;

    // Completes the block, adds it to left and right, and begins the next one.
    void mix(float* left, float* right) noexcept;

    bool asleep() const noexcept { return asleep_; }

  private:
    void wake() noexcept;
    void listen(int from, int to) noexcept;

    using Block = std::array<float, kVoiceBlock>;
    std::unique_ptr<dsp> sound_;
    Ends ends_;
    std::unique_ptr<float> unused_ = std::make_unique<float>(0.0F); // for what the sound hasn't got
    float *gate_, *strike_, *fresh_;
    bool asleep_ = true;
    int quiet_ = 0; // frames of silence up to here
    int done_ = 0;  // frames of this block
    Block left_{}, right_{}, inLeft_{}, inRight_{};
};

// While it lives, numbers too small to matter count as 0 on this thread: they would slow the sounds down.
class NoDenormals {
  public:
    NoDenormals() noexcept;
    ~NoDenormals();
    NoDenormals(const NoDenormals&) = delete;
    NoDenormals& operator=(const NoDenormals&) = delete;

  private:
    unsigned long long before_;
};

} // namespace marlune
