// The twenty knobs as the component knows them: controller number, value, and whether a new value waits for
// the next step.
#pragma once

#include <array>
#include <bitset>

#include "engine/sinks.h"
#include "project/project_record.h"

namespace marlune {

class KnobBank {
  public:
    KnobBank();

    // DefineController32, SetController32 and PrepareController32; false for any other call. A knob that does
    // not exist is ignored; a controller outside 0..127 counts as none; a value is limited to 0..127.
    bool apply(const EngineCall& call, MidiSink& sink) noexcept;

    // Channel of the controllers of a module.
    void setChannel(int module, int channel) noexcept { channels_[module] = channel; }

    // Sends what was prepared since the last step, in knob order, each knob once with its last value.
    void sendPrepared(MidiSink& sink) noexcept;

    // Sends the six knobs of a bass module.
    void sendModule(int module, MidiSink& sink) const noexcept;

    // A prepared value counts at once: the next step's velocities are the first to ask for it.
    int value(int knob) const noexcept { return values_[knob]; }

  private:
    void send(int knob, MidiSink& sink) const noexcept;

    std::array<int, kKnobs> controllers_; // -1: none
    std::array<int, kKnobs> values_{};
    std::bitset<kKnobs> prepared_;
    std::array<int, kModules> channels_{0, 1, 9};
};

} // namespace marlune
