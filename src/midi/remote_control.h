// Remote control of the panel by MIDI input: controllers move knobs, notes press steps and keys, phrase notes
// recall combinations of patterns. User-interface thread.
#pragma once

namespace marlune {

// Event mode, transport stopped: reads the queue empty and shows the moved knobs.
void MIDIIn1_Message();

// Polled mode, once per tick: reads the queue empty; the tick shows and sends the moved knobs.
void ClockedMIDIMessage();

// Interprets a note: steps first, then keys, then accent, down, up; a velocity of 0 does nothing. Where
// channels coincide the first match of 109, 103A, 103B wins. channel: 0..15; note, velocity: 0..127.
void handleRemoteNote(int channel, int note, int velocity);

// Plays the phrase stored for a note on the phrase channel, or hands the note to the learner.
void remoteNoteSnapShot(int note, int channel);

// The memorizer's dialog while it is loaded; null otherwise.
class PhraseLearner {
  public:
    virtual ~PhraseLearner() = default;
    virtual void setMidiMessage(int note, int channel) = 0;
};
void setPhraseLearner(PhraseLearner* learner);

} // namespace marlune
