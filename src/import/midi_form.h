// The dialog of the MIDI import: who plays what, with a preview of what would come of it. User-interface
// thread.
#pragma once

#include "boundary/form.h"
#include "import/midi_bars.h"

namespace marlune {

struct MidiImportForm final : Form {
    MidiImportForm();
    ComboBox Combo1, Combo2, Combo3; // sources of the three modules, "None" first
    ComboBox Combo4;                 // which note of a step: highest, last
    TextBox Text1;                   // velocity above which a note is accented
    CheckBox Check1;                 // as a song
    Label Label1, Label2;            // the preview: counts; what would be different
    Button Command1, Command2;

    // Shows the form for a file; true when it was left with OK. The choices are then the user's.
    bool choose(const MidiSong& song, const std::vector<MidiSource>& sources, MidiChoices& choices);

    void describe(FormBuilder& builder) override;
    void Form_Timer() override; // the preview follows the choices
    void Command1_Click();      // OK
    void Command2_Click();      // Cancel

  private:
    [[nodiscard]] MidiChoices entered() const;
    void preview(const MidiChoices& choices);

    const MidiSong* song_ = nullptr;
    const std::vector<MidiSource>* sources_ = nullptr;
    MidiChoices previewed_;
    bool taken_ = false;
};
extern MidiImportForm midiImportForm;

} // namespace marlune
