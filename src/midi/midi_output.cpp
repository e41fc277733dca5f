#include "midi/midi_output.h"

#include "boundary/engine_component.h"
#include "boundary/midi_bytes.h"
#include "project/global_config.h"

namespace marlune {

void midiNoteOn(int channel, int note, int velocity) {
    SendShortMessage32(kNoteOn + (channel & 0x0F), limitedData(note), limitedData(velocity));
}

void midiProgramChange(int channel, int patch) {
    if (patch < 0) return;
    SendShortMessage32(kProgramChange + (channel & 0x0F), limitedData(patch), 0);
}

void pushOutputAssignment() {
    for (int m = 0; m < kBassModules; ++m) Set103Vel32(m, config.moduleVelocity[m]);
    for (int m = 0; m < kBassModules; ++m) Set103NoteOffset32(m, config.moduleBaseNote[m]);
    for (int m = 0; m < kBassModules; ++m) Set103Chan32(m, config.moduleChannel[m]);
    Set109Chan32(kDrumModule, config.moduleChannel[kDrumModule]);
    for (int knob = 0; knob < kKnobs; ++knob) DefineController32(knob, config.outputController[knob]);
}

} // namespace marlune
