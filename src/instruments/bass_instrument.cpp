#include "instruments/bass_instrument.h"

#include <algorithm>
#include <cmath>

#include "boundary/midi_bytes.h"

namespace marlune {

namespace {

constexpr int kPlainVelocity = 100;
constexpr int kAccentController = 17;
constexpr int kVolume = 7;
constexpr int kSoundOff = 120, kResetControllers = 121, kNotesOff = 123;
constexpr float kBendRange = 2;
constexpr float kFull = 127;

float gain(float decibels) {
    return std::pow(10.0F, decibels / 20);
}

} // namespace

BassInstrument::BassInstrument(int sampleRate, float place)
    : voice_(Timbre::bass, sampleRate, Voice::Ends::byRelease),
      note_(voice_.value("note")),
      glide_(voice_.value("glide")),
      level_(voice_.value("level")),
      accent_(voice_.value("accent")),
      controllers_{{{12, voice_.value("cutoff"), 0.45F},
                    {13, voice_.value("resonance"), 0.5F},
                    {14, voice_.value("amount"), 0.45F},
                    {15, voice_.value("decay"), 0.45F},
                    {16, voice_.value("shape"), 0},
                    {10, voice_.value("pan"), place},
                    {kVolume, voice_.value("volume"), 1}}},
      volume_(voice_.value("volume")) {
    reset();
}

void BassInstrument::reset() noexcept {
    releaseAll();
    for (const Controller& each : controllers_) *each.value = each.start;
    bend_ = 0;
    accentLevel_ = -1;
    aim();
}

void BassInstrument::releaseAll() noexcept {
    held_ = 0;
    voice_.release();
}

void BassInstrument::play(const MidiMessage& message) noexcept {
    const int a = message.bytes[1] & 0x7F, b = message.bytes[2] & 0x7F;
    switch (statusKind(message.bytes[0])) {
        case kNoteOff: noteOff(a); break;
        case kNoteOn: b > 0 ? noteOn(a, b) : noteOff(a); break;
        case kControlChange: control(a, b); break;
        case kPitchBend:
            bend_ = kBendRange * (static_cast<float>(a | b << 7) - 8192) / 8192;
            aim();
            break;
        default: break;
    }
}

void BassInstrument::noteOn(int note, int velocity) noexcept {
    const bool again = held_ > 0 && heldNotes_[held_ - 1] == note;
    const bool legato = held_ > 0 && !again;
    const auto end = heldNotes_.begin() + held_;
    held_ = static_cast<int>(std::remove(heldNotes_.begin(), end, note) - heldNotes_.begin());
    if (held_ == static_cast<int>(heldNotes_.size())) {
        std::move(heldNotes_.begin() + 1, heldNotes_.end(), heldNotes_.begin());
        --held_;
    }
    heldNotes_[held_++] = note;
    *glide_ = legato ? 1 : 0;
    shape(velocity);
    aim();
    if (!legato) voice_.strike();
}

void BassInstrument::noteOff(int note) noexcept {
    if (held_ == 0) return;
    const auto end = heldNotes_.begin() + held_;
    held_ = static_cast<int>(std::remove(heldNotes_.begin(), end, note) - heldNotes_.begin());
    *glide_ = 1;
    if (held_ == 0)
        voice_.release();
    else
        aim();
}

void BassInstrument::aim() noexcept {
    if (held_ > 0) *note_ = static_cast<float>(heldNotes_[held_ - 1]) + bend_;
}

void BassInstrument::shape(int velocity) noexcept {
    const float beyond = static_cast<float>(velocity - kPlainVelocity) / (kFull - kPlainVelocity);
    if (velocity == accentLevel_ && velocity != kPlainVelocity) {
        *accent_ = static_cast<float>(velocity) / kFull;
        *level_ = gain(1 + 4 * *accent_);
    } else if (beyond > 0) {
        *accent_ = beyond;
        *level_ = gain(5 * beyond);
    } else {
        *accent_ = 0;
        *level_ = static_cast<float>(velocity) / kPlainVelocity;
    }
}

void BassInstrument::control(int controller, int value) noexcept {
    if (controller == kAccentController) accentLevel_ = value;
    if (controller == kSoundOff || controller >= kNotesOff) releaseAll();
    if (controller == kResetControllers) reset();
    for (const Controller& each : controllers_)
        if (each.number == controller) *each.value = static_cast<float>(value) / kFull;
    if (controller == kVolume) *volume_ *= *volume_; // as loudness is felt
}

} // namespace marlune
