#include "engine/sequencer.h"

#include <algorithm>

#include "boundary/midi_bytes.h"
#include "engine/tracked_sink.h"
#include "project/groove.h"

namespace marlune {

namespace {

// Lets pass what sets a state, and keeps back what sounds.
class Noteless final : public MidiSink {
  public:
    explicit Noteless(MidiSink& next) : next_(next) {}
    void midi(Role role, const MidiMessage& message) noexcept override {
        if (statusKind(message.bytes[0]) != kNoteOn) next_.midi(role, message);
    }

  private:
    MidiSink& next_;
};

} // namespace

void Sequencer::apply(const EngineCall& call, Sinks sinks) noexcept {
    TrackedSink midi(sounding_, sinks.midi);
    if (patterns_.apply(call) || knobs_.apply(call, midi) || applyVoice(call)) return;
    if (places_.apply(call)) {
        // Positions that the song had placed don't reach a start in pattern mode.
        if (call.entry == Entry::SetSong32 && !running_ && !places_.songMode()) places_.stop();
        return;
    }
    applyGroove(call, midi);
    if (call.entry == Entry::SetSyncOffset32) sync_.setOffset(call.arguments[0]);
    if (call.entry == Entry::SendShortMessage32) sendShortMessage(call, midi);
}

void Sequencer::applyGroove(const EngineCall& call, MidiSink& midi) noexcept {
    const auto& [first, second, third, unused1, unused2] = call.arguments;
    if (call.entry == Entry::SetSwing32) swing_ = std::clamp(first, 0, kMostSwing - kStraight);
    if (call.entry == Entry::SetSlides32) {
        for (BassVoice& voice : bass_) voice.slides = first != 0;
        if (first == 0) patterns_.forgetSlides();
    }
    if (call.entry != Entry::SetMutes32) return;
    mutes_ = {static_cast<unsigned>(first), static_cast<unsigned>(second), third != 0 && running_};
    if (!mutes_.waiting) takeMutes(midi);
}

void Sequencer::takeMutes(MidiSink& midi) noexcept {
    mutes_.waiting = false;
    for (int m = 0; m < kBassModules; ++m) bass_[m].mute((mutes_.modules >> m & 1U) != 0, midi);
    drums_.mute((mutes_.modules >> kDrumModule & 1U) != 0 ? ~0U : mutes_.drums, midi);
}

bool Sequencer::applyVoice(const EngineCall& call) noexcept {
    const int module = call.arguments[0];
    const int value = call.arguments[1];
    const int channel = std::clamp(value, 0, 15);
    if (call.entry == Entry::Set109Chan32) {
        drums_.channel = channel;
        knobs_.setChannel(kDrumModule, channel);
        return true;
    }
    if (call.entry < Entry::Set103Chan32 || call.entry > Entry::Set103NoteOffset32) return false;
    if (module < 0 || module >= kBassModules) return true;
    BassVoice& voice = bass_[module];
    switch (call.entry) {
        case Entry::Set103Chan32:
            voice.channel = channel;
            knobs_.setChannel(module, channel);
            break;
        case Entry::Set103StoredChan32: voice.storedChannel = channel; break;
        case Entry::Set103Vel32: voice.velocity = std::clamp(value, 0, 127); break;
        default: voice.baseNote = std::clamp(value, 0, 127); break;
    }
    return true;
}

void Sequencer::sendShortMessage(const EngineCall& call, MidiSink& midi) const noexcept {
    const auto& [status, data1, data2, unused1, unused2] = call.arguments;
    if (midiMessageLength(status) == 0) return;
    midi.midi(Role::seq, midiBytes(status, std::clamp(data1, 0, 127), std::clamp(data2, 0, 127)));
}

void Sequencer::start() noexcept {
    running_ = true;
    stepsPlayed_ = 0;
    for (BassVoice& voice : bass_) voice.start();
    drums_.start();
    sync_.start();
}

void Sequencer::stop(Sinks sinks) noexcept {
    running_ = false;
    releaseAll(sinks);
    sync_.stop(sinks.midi);
    places_.stop();
}

bool Sequencer::period(Sinks sinks) noexcept {
    TrackedSink midi(sounding_, sinks.midi);
    if (!sync_.period(places_.position(), places_.songMode(), midi)) return false;
    const bool swung = swing_ > 0 && places_.position() % 2 == 1;
    if (!swung) playStep(midi, sinks.messages);
    return swung;
}

void Sequencer::playDelayed(Sinks sinks) noexcept {
    TrackedSink midi(sounding_, sinks.midi);
    playStep(midi, sinks.messages);
}

void Sequencer::skipDelayed(Sinks sinks) noexcept {
    Noteless midi(sinks.midi);
    playStep(midi, sinks.messages);
}

void Sequencer::interrupt(Sinks sinks) noexcept {
    releaseAll(sinks);
    sync_.stop(sinks.midi);
}

void Sequencer::skipPeriod(Sinks sinks) noexcept {
    Noteless midi(sinks.midi);
    if (sync_.skip(places_.position(), places_.songMode())) playStep(midi, sinks.messages);
}

void Sequencer::playStep(MidiSink& midi, MessageSink& messages) noexcept {
    places_.enterStep(messages);
    const int position = places_.position();
    if (mutes_.waiting && position % kTicksPerBar == 0) takeMutes(midi);
    const std::array<int, kModules> steps{places_.step(0), places_.step(1), places_.step(2)};
    for (int m = 0; m < kBassModules; ++m) bass_[m].release(playingBass(m).steps[steps[m]], midi);
    knobs_.sendPrepared(midi);
    places_.advancePosition();
    const Selected drum = places_.playing(kDrumModule);
    drums_.play(patterns_.drum(drum.bank, drum.patt), steps[kDrumModule], knobs_, midi);
    for (int m = 0; m < kBassModules; ++m) bass_[m].play(playingBass(m), steps[m], knobs_, midi);
    messages.post({kTickMessage, position, packSteps(steps[0], steps[1], steps[2])});
    ++stepsPlayed_;
    places_.advanceSteps(patterns_);
}

void Sequencer::skipSteps(int steps, Sinks sinks) noexcept {
    for (int i = 0; i < steps; ++i) {
        places_.enterStep(sinks.messages);
        places_.advancePosition();
        places_.advanceSteps(patterns_);
    }
}

const BassPattern& Sequencer::playingBass(int module) const noexcept {
    const Selected selected = places_.playing(module);
    return patterns_.bass(module, selected.bank, selected.patt);
}

} // namespace marlune
