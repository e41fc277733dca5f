#include "engine/sounding_notes.h"

#include "engine/midi_bytes.h"

namespace marlune {

void SoundingNotes::read(const MidiMessage& message) noexcept {
    const int kind = message.bytes[0] & 0xF0;
    if (kind != kNoteOn && kind != kNoteOff) return;
    const int index = (message.bytes[0] & 0x0F) * 128 + (message.bytes[1] & 0x7F);
    notes_[index] = kind == kNoteOn && message.bytes[2] != 0;
}

void SoundingNotes::releaseAll(MidiSink& sink) noexcept {
    if (notes_.none()) return;
    for (int index = 0; index < 16 * 128; ++index) {
        if (notes_[index]) sink.midi(Role::seq, release(index / 128, index % 128));
    }
    notes_.reset();
}

} // namespace marlune
