// Which notes sound on an output: a set of channel and note that reads along with what goes out, so that
// nothing can be left hanging, whoever asked for the note.
#pragma once

#include <bitset>

#include "boundary/midi_bytes.h"

namespace marlune {

// Not for several threads at once.
class SoundingNotes {
  public:
    // Reads one outgoing message: a note-on adds, a release takes away, anything else changes nothing.
    void read(const MidiMessage& message) noexcept {
        const int kind = statusKind(message.bytes[0]);
        if (message.size != 3 || (kind != kNoteOn && kind != kNoteOff)) return;
        notes_[channelOfStatus(message.bytes[0]) * 128 + (message.bytes[1] & 0x7F)] =
            kind == kNoteOn && message.bytes[2] != 0;
    }

    // Calls send(release) for every note that sounds, by channel and then by note, and is empty afterwards.
    template <typename Send>
    void releaseAll(Send&& send) noexcept {
        if (notes_.none()) return;
        for (int index = 0; index < 16 * 128; ++index)
            if (notes_[index]) send(release(index / 128, index % 128));
        notes_.reset();
    }

  private:
    std::bitset<std::size_t{16} * 128> notes_; // channel x 128 + note
};

} // namespace marlune
