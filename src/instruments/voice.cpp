#include "instruments/voice.h"

#include <faust/dsp/dsp.h>
#include <faust/gui/UI.h>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>

namespace marlune {

namespace {

constexpr float kSilence = 1e-5F;  // -100 dB
constexpr int kQuietFrames = 6000; // longer than any delay inside a sound

// Faust's way of telling what values there are.
class Finder final : public UI {
  public:
    explicit Finder(const char* name) : name_(name) {}
    float* found = nullptr;

    void openTabBox(const char* /*label*/) override {}
    void openHorizontalBox(const char* /*label*/) override {}
    void openVerticalBox(const char* /*label*/) override {}
    void closeBox() override {}
    void addButton(const char* label, float* zone) override { take(label, zone); }
    void addCheckButton(const char* label, float* zone) override { take(label, zone); }
    void addVerticalSlider(const char* label, float* zone, float, float, float, float) override {
        take(label, zone);
    }
    void addHorizontalSlider(const char* label, float* zone, float, float, float, float) override {
        take(label, zone);
    }
    void addNumEntry(const char* label, float* zone, float, float, float, float) override {
        take(label, zone);
    }
    void addHorizontalBargraph(const char* /*label*/, float* /*zone*/, float, float) override {}
    void addVerticalBargraph(const char* /*label*/, float* /*zone*/, float, float) override {}
    void addSoundfile(const char* /*label*/, const char* /*file*/, Soundfile** /*zone*/) override {}

  private:
    void take(const char* label, float* zone) {
        if (std::strcmp(label, name_) == 0) found = zone;
    }
    const char* name_;
};

float* find(dsp& sound, const char* name) {
    Finder finder(name);
    sound.buildUserInterface(&finder);
    return finder.found;
}

} // namespace

Voice::Voice(Timbre timbre, int sampleRate, Ends ends) : sound_(makeSound(timbre, sampleRate)), ends_(ends) {
    const auto orUnused = [this](const char* name) {
        float* zone = find(*sound_, name);
        return zone != nullptr ? zone : unused_.get();
    };
    gate_ = orUnused("gate");
    strike_ = orUnused("strike");
    fresh_ = orUnused("fresh");
}

Voice::~Voice() = default;
Voice::Voice(Voice&&) noexcept = default;

float* Voice::value(const char* name) {
    float* zone = find(*sound_, name);
    if (zone == nullptr) throw std::logic_error(std::string("no such value in the sound: ") + name);
    return zone;
}

// One frame that nobody hears brings every smoothed value to where it stands.
void Voice::wake() noexcept {
    sound_->instanceClear();
    *gate_ = *strike_ = 0;
    *fresh_ = 1;
    float in[2] = {}, out[2] = {};
    float *ins[2] = {&in[0], &in[1]}, *outs[2] = {&out[0], &out[1]};
    sound_->compute(1, ins, outs);
    *fresh_ = 0;
    asleep_ = false;
}

void Voice::strike() noexcept {
    if (asleep_) wake();
    quiet_ = 0;
    *gate_ = 1;
    *strike_ = 1 - *strike_;
}

void Voice::feed(const float* left, const float* right) noexcept {
    std::copy(left + done_, left + kVoiceBlock, inLeft_.begin() + done_);
    std::copy(right + done_, right + kVoiceBlock, inRight_.begin() + done_);
    if (std::any_of(inLeft_.begin(), inLeft_.end(), [](float x) { return std::abs(x) > kSilence; }) ||
        std::any_of(inRight_.begin(), inRight_.end(), [](float x) { return std::abs(x) > kSilence; })) {
        if (asleep_) wake();
        quiet_ = 0;
    }
}

void Voice::renderTo(int frame) noexcept {
    if (frame <= done_) return;
    if (asleep_) {
        std::fill(left_.begin() + done_, left_.begin() + frame, 0.0F);
        std::fill(right_.begin() + done_, right_.begin() + frame, 0.0F);
    } else {
        float* ins[2] = {&inLeft_[done_], &inRight_[done_]};
        float* outs[2] = {&left_[done_], &right_[done_]};
        sound_->compute(frame - done_, ins, outs);
        listen(done_, frame);
    }
    done_ = frame;
}

// Falls asleep after a time of silence, at the same frame however the block is cut; at once, silently, where
// a number got out of hand.
void Voice::listen(int from, int to) noexcept {
    for (int i = from; i < to && !asleep_; ++i) {
        const float size = std::max(std::abs(left_[i]), std::abs(right_[i]));
        if (!(size < 100.0F)) {
            asleep_ = true;
        } else if (size > kSilence || (ends_ == Ends::byRelease && held())) {
            quiet_ = 0;
        } else {
            asleep_ = ++quiet_ >= kQuietFrames;
        }
        if (!asleep_) continue;
        std::fill(left_.begin() + i, left_.begin() + to, 0.0F);
        std::fill(right_.begin() + i, right_.begin() + to, 0.0F);
    }
}

void Voice::mix(float* left, float* right) noexcept {
    renderTo(kVoiceBlock);
    for (int i = 0; i < kVoiceBlock; ++i) {
        left[i] += left_[i];
        right[i] += right_[i];
    }
    done_ = 0;
}

#if defined(__SSE2__)
constexpr unsigned kFlushBits = 0x8040; // results and operands
NoDenormals::NoDenormals() noexcept : before_(_mm_getcsr()) {
    _mm_setcsr(static_cast<unsigned>(before_) | kFlushBits);
}
NoDenormals::~NoDenormals() {
    _mm_setcsr(static_cast<unsigned>(before_));
}
#elif defined(__aarch64__)
constexpr unsigned long long kFlushBit = 1ULL << 24U;
NoDenormals::NoDenormals() noexcept {
    asm volatile("mrs %0, fpcr" : "=r"(before_));
    asm volatile("msr fpcr, %0" : : "r"(before_ | kFlushBit));
}
NoDenormals::~NoDenormals() {
    asm volatile("msr fpcr, %0" : : "r"(before_));
}
#else
NoDenormals::NoDenormals() noexcept : before_(0) {}
NoDenormals::~NoDenormals() = default;
#endif

} // namespace marlune
