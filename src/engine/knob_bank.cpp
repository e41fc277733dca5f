#include "engine/knob_bank.h"

#include <algorithm>

#include "boundary/midi_bytes.h"

namespace marlune {

namespace {

constexpr int kNoController = -1;
constexpr int kFirstController = 12; // of each bass module until defined otherwise

} // namespace

KnobBank::KnobBank() {
    for (int knob = 0; knob < kKnobs; ++knob) {
        controllers_[knob] = knob < kFirstDrumKnob ? kFirstController + knob % kBassKnobs : kNoController;
    }
}

bool KnobBank::apply(const EngineCall& call, MidiSink& sink) noexcept {
    if (call.entry < Entry::DefineController32 || call.entry > Entry::PrepareController32) return false;
    const int knob = call.arguments[0];
    if (knob < 0 || knob >= kKnobs) return true;
    const int number = call.arguments[1];
    if (call.entry == Entry::DefineController32) {
        controllers_[knob] = number >= 0 && number <= 127 ? number : kNoController;
        return true;
    }
    values_[knob] = std::clamp(number, 0, 127);
    prepared_[knob] = call.entry == Entry::PrepareController32;
    if (call.entry == Entry::SetController32) send(knob, sink);
    return true;
}

void KnobBank::send(int knob, MidiSink& sink) const noexcept {
    if (controllers_[knob] == kNoController) return;
    const int channel = channels_[moduleOfKnob(knob)];
    sink.midi(Role::seq, midiBytes(kControlChange + channel, controllers_[knob], values_[knob]));
}

void KnobBank::sendPrepared(MidiSink& sink) noexcept {
    for (int knob = 0; knob < kKnobs; ++knob) {
        if (prepared_[knob]) send(knob, sink);
    }
    prepared_.reset();
}

void KnobBank::sendModule(int module, MidiSink& sink) const noexcept {
    for (int knob = module * kBassKnobs; knob < (module + 1) * kBassKnobs; ++knob) send(knob, sink);
}

} // namespace marlune
