// The memorizer's learn mode: ties one incoming note to a combination of patterns. User-interface thread.
#pragma once

#include "boundary/form.h"
#include "midi/remote_control.h"
#include "project/project_record.h"

namespace marlune {

struct marluneSnapShot final : Form, PhraseLearner {
    marluneSnapShot();
    Label currMidiMessageText, currMapped[kModules];
    CheckBox pattMap[kModules];
    Button StoreButton, EditButton;

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Unload() override;
    bool Form_KeyDown(int code) override;

    void setMidiMessage(int note, int channel) override;
    void ShowCurrMidiMessage();
    void pattMap_Click(int module);
    void StoreButton_Click();
    void EditButton_Click();

  private:
    int currentNote = -1; // -1: none yet
    int currentChannel = 0;
};
extern marluneSnapShot memorizer;

// Enters learn mode; a running transport stops.
void mnuToolsLearn_Click();

} // namespace marlune
