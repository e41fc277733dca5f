#include "instruments/drum_machine.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "boundary/midi_bytes.h"

namespace marlune {

namespace {

enum DrumIndex { kKick, kSnare, kClap, kClosed, kPedal, kOpen, kTom };

struct DrumRow {
    Timbre timbre;
    float place;
    bool tuned;
};
constexpr DrumRow kDrumVoices[] = {
    {Timbre::kick, 0.5F, true},       {Timbre::snare, 0.44F, false},   {Timbre::clap, 0.68F, true},
    {Timbre::closedHat, 0.78F, true}, {Timbre::pedalHat, 0.24F, true}, {Timbre::openHat, 0.72F, true},
    {Timbre::tom, 0.25F, true},
};

struct NoteRow {
    int note;
    DrumIndex drum;
    float tune; // semitones
};
constexpr NoteRow kNotes[] = {
    {35, kKick, -2}, {36, kKick, 0},   {38, kSnare, 0}, {39, kClap, 0},  {40, kSnare, 3},
    {41, kTom, -7},  {42, kClosed, 0}, {43, kTom, -5},  {44, kPedal, 0}, {45, kTom, -3},
    {46, kOpen, 0},  {47, kTom, -1},   {48, kTom, 0},   {50, kTom, 2},
};

constexpr int kPlainVelocity = 100;
constexpr float kFull = 127;
constexpr int kVolume = 7, kPan = 10, kSoundOff = 120, kResetControllers = 121;

const NoteRow& nearest(int note) noexcept {
    return *std::min_element(std::begin(kNotes), std::end(kNotes), [note](const auto& a, const auto& b) {
        return std::abs(a.note - note) < std::abs(b.note - note);
    });
}

} // namespace

DrumMachine::DrumMachine(int sampleRate) {
    for (const DrumRow& row : kDrumVoices) {
        Voice voice(row.timbre, sampleRate, Voice::Ends::byItself);
        float* const tune = row.tuned ? voice.value("tune") : nullptr;
        float *const level = voice.value("level"), *const volume = voice.value("volume"),
                     *const pan = voice.value("pan");
        drums_.push_back({std::move(voice), row.place, level, volume, pan, tune});
    }
    reset();
}

bool DrumMachine::knows(int note) noexcept {
    return nearest(note).note == note;
}

void DrumMachine::play(const MidiMessage& message) noexcept {
    const int a = message.bytes[1] & 0x7F, b = message.bytes[2] & 0x7F;
    const int kind = statusKind(message.bytes[0]);
    if (kind == kNoteOn && b > 0) hit(a, b);
    if (kind == kControlChange) control(a, b);
}

void DrumMachine::hit(int note, int velocity) noexcept {
    const NoteRow& row = nearest(note);
    Drum& drum = drums_[row.drum];
    if (drum.tune != nullptr) *drum.tune = row.tune;
    *drum.level = std::pow(static_cast<float>(velocity) / kPlainVelocity, 1.3F);
    drum.voice.strike();
    if (row.drum == kClosed || row.drum == kPedal) drums_[kOpen].voice.release();
}

void DrumMachine::control(int controller, int value) noexcept {
    const float part = static_cast<float>(value) / kFull;
    for (Drum& drum : drums_) {
        if (controller == kVolume) *drum.volume = part * part;
        if (controller == kPan) *drum.pan = std::clamp(drum.place + part - 0.5F, 0.0F, 1.0F);
        if (controller == kSoundOff) drum.voice.release();
    }
    if (controller == kResetControllers) reset();
}

void DrumMachine::reset() noexcept {
    for (Drum& drum : drums_) {
        *drum.volume = 1;
        *drum.pan = drum.place;
        drum.voice.release();
    }
}

void DrumMachine::renderTo(int frame) noexcept {
    for (Drum& drum : drums_) drum.voice.renderTo(frame);
}

void DrumMachine::mix(float* left, float* right) noexcept {
    for (Drum& drum : drums_) drum.voice.mix(left, right);
}

bool DrumMachine::asleep() const noexcept {
    return std::all_of(drums_.begin(), drums_.end(), [](const Drum& drum) { return drum.voice.asleep(); });
}

} // namespace marlune
