#include "engine/voices.h"

#include "boundary/midi_bytes.h"
#include "project/step_rules.h"

namespace marlune {

namespace {

constexpr int kAccentKnobOfBass = 5;

void sendRelease(const PlacedNote& note, MidiSink& sink) {
    sink.midi(Role::seq, release(note.channel, note.pitch));
}

} // namespace

void BassVoice::start() noexcept {
    lastNote_.reset();
    lastPatch_ = kNoPatch;
}

PlacedNote BassVoice::placed(const BassStep& step) const noexcept {
    return {channel, pitchOfStep(step, baseNote)};
}

void BassVoice::release(const BassStep& coming, MidiSink& sink) const noexcept {
    if (lastNote_ && *lastNote_ != placed(coming) && !slidesInto(coming)) sendRelease(*lastNote_, sink);
}

bool BassVoice::slidesInto(const BassStep& step) const noexcept {
    return slides && step.slide && step.noteOn && !muted_ && lastNote_ && *lastNote_ != placed(step);
}

void BassVoice::mute(bool on, MidiSink& sink) noexcept {
    if (on && !muted_ && lastNote_) {
        sendRelease(*lastNote_, sink);
        lastNote_.reset();
    }
    muted_ = on;
}

void BassVoice::play(const BassPattern& pattern, int step, const KnobBank& knobs, MidiSink& sink) noexcept {
    const int patch = pattern.patch;
    if (step == 0 && patch != kNoPatch && patch != lastPatch_) {
        sink.midi(Role::seq, midiBytes(kProgramChange + storedChannel, patch));
        lastPatch_ = patch;
        knobs.sendModule(module_, sink);
    }
    const BassStep& cell = pattern.steps[step];
    const PlacedNote note = placed(cell);
    const bool sounds = cell.noteOn && !muted_;
    const std::optional<PlacedNote> before = slidesInto(cell) ? lastNote_ : std::nullopt;
    if (sounds) {
        const int accentKnob = knobs.value(module_ * kBassKnobs + kAccentKnobOfBass);
        sink.midi(Role::seq, noteOn(note.channel, note.pitch, bassVelocity(cell, velocity, accentKnob)));
    }
    if (before) sendRelease(*before, sink);
    if (sounds || lastNote_) lastNote_ = note;
}

void DrumVoice::start() noexcept {
    lastNote_.fill(std::nullopt);
    sounding_.fill(false);
}

void DrumVoice::mute(unsigned drums, MidiSink& sink) noexcept {
    for (int d = 0; d < kDrums; ++d) {
        if ((drums & ~muted_) >> d & 1U && sounding_[d] && lastNote_[d]) {
            sendRelease(*lastNote_[d], sink);
            sounding_[d] = false;
        }
    }
    muted_ = drums;
}

void DrumVoice::play(const DrumPattern& pattern, int step, const KnobBank& knobs, MidiSink& sink) noexcept {
    if (step == 0) {
        for (int d = 0; d < kDrums; ++d) {
            if (sounding_[d] && lastNote_[d]) sendRelease(*lastNote_[d], sink);
        }
        sounding_.fill(false);
    }
    for (int d = 0; d < kDrums; ++d) {
        if (!isDrumHit(pattern, step, d) || (muted_ >> d & 1U) != 0) continue;
        if (lastNote_[d]) sendRelease(*lastNote_[d], sink);
        const PlacedNote note{channel, pattern.drumNote[d]};
        const int level =
            drumVelocity(pattern, step, knobs.value(kFirstDrumKnob + d), knobs.value(kAccentKnobOfDrums));
        sink.midi(Role::seq, noteOn(note.channel, note.pitch, level));
        lastNote_[d] = note;
        sounding_[d] = true;
    }
}

} // namespace marlune
