// The dialogs of the MIDI maps and of the knob labels. Entries are repaired silently on OK; Cancel writes
// nothing. Channels are shown counted from 1. User-interface thread.
#pragma once

#include "boundary/form.h"
#include "project/project_record.h"

namespace marlune {

// Channels, velocities, base notes, drum notes and controller numbers of what is played.
struct marluneOptionsMidiOutput final : Form {
    marluneOptionsMidiOutput();
    TextBox newMapping[kKnobs], chan[kModules], vel[kBassModules], offset[kBassModules], noteNum[kDrums];
    Button cmdOK, CmdCancel;

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void cmdOK_Click();
    void cmdCancel_Click() { unload(); }
};
extern marluneOptionsMidiOutput midiOutputForm;
void mnuOptionsMidiControl_Click();

// Which controllers move the knobs, which notes press the panel. With the focus in a knob's box a controller
// moved on any channel enters its number.
struct marluneOptionsMidiInput final : Form {
    marluneOptionsMidiInput();
    TextBox newMapping[kKnobs], chan, pOff[2], pTriggChan;
    Button cmdOK, CmdCancel;

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void Form_Timer() override;
    void cmdOK_Click();
    void cmdCancel_Click() { unload(); }

  private:
    bool readMappings();
    int learning = -1; // knob whose box has the focus, -1 for none
};
extern marluneOptionsMidiInput midiInputForm;
void mnuOptionsMidiInput_Click();

// The captions of the knobs.
struct Customize final : Form {
    Customize();
    TextBox Text1[kKnobs];
    Button Command1, cmdOK, cmdCancel;

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void Command1_Click(); // Default
    void cmdOK_Click();
    void cmdCancel_Click() { unload(); }
};
extern Customize customizeForm;
void mnuOtpionsCustomize_Click();

} // namespace marlune
