// The dialog of the ReBirth to MIDI converter. User-interface thread.
#pragma once

#include <string>

#include "boundary/form.h"
#include "rebirth/rebirth_convert.h"

namespace marlune {

// Asks for the settings of one conversion; entries are limited to what MIDI allows on OK. The check boxes of
// the basslines count for songs of ReBirth 2; those of the drums are shown and read by nothing.
struct Rebirth_to_MIDI final : Form {
    Rebirth_to_MIDI();
    TextBox TOP_303_Base_Note, TOP_303_Note_Velocity, TOP_303_MIDI_Channel;
    TextBox TOP_303_Cutoff, TOP_303_Reso, TOP_303_EnvMod, TOP_303_Decay, TOP_303_Accent;
    TextBox MID_303_Base_Note, MID_303_Note_Velocity, MID_303_MIDI_Channel;
    TextBox MID_303_Cutoff, MID_303_Reso, MID_303_EnvMod, MID_303_Decay, MID_303_Accent;
    TextBox DRUMS_MIDI_Channel;
    CheckBox TOP_303_Convert_Slide, TOP_303_Convert_Accent, TOP_303_convert_Knobs;
    CheckBox MID_303_Convert_Slide, MID_303_Convert_Accent, MID_303_convert_Knobs;
    CheckBox DRUMS_Convert_Tune, Check2;
    Label Progress; // title of the frame around the bar
    ProgressBar ProgressBar1;
    Button OK_Button, Cancel_Button;

    std::string inputFileName, outputFileName;

    // Entry of the command: asks for the song, then shows the form.
    void RebirthFileOpen();

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void OK_Button_Click();
    void Cancel_Button_Click() { unload(); }

    // Takes the entries into options; true when one that must be there is empty, which closes the form
    // without a conversion. An empty controller counts as 0.
    bool validateOptions();
    ConverterOptions options;

  private:
    void askOutputFileName();
    void convertFile();
};
extern Rebirth_to_MIDI rebirthToMidiForm;

void mnuFileConvert_Click();

} // namespace marlune
