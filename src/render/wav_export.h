// File > Export to .WAV: the project into sound files. The rendering is done by marlune-cli in a process of
// its own, so that the instrument goes on playing, and nothing of its state is touched. User-interface
// thread.
#pragma once

#include <string>
#include <vector>

#include "boundary/form.h"

namespace marlune {

void mnuFileExportWav_Click();

// Where marlune-cli is; beside the running program unless told otherwise.
void setRenderProgram(const std::string& path);

struct WavExportForm final : Form {
    WavExportForm();
    ComboBox What;  // 0 pattern mode as it is selected, 1 the song
    TextBox Bars;   // 1 to 1000
    ComboBox Files; // 0 everything in one, 1 one for each module
    ComboBox Rate;  // 0 44.1 kHz, 1 48 kHz
    ComboBox Depth; // 0 16 bit, 1 24 bit
    Label Start;
    Button cmdSave, cmdCancel;

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void Form_Activate() override;
    bool cmdSave_Click(); // true when the files were written
    void cmdCancel_Click() { hide(); }

  private:
    [[nodiscard]] std::vector<std::string> options(int bars) const;
};
extern WavExportForm wavExportForm;

struct WavMeter final : Form {
    WavMeter();
    ProgressBar Bar;
    Button cmdCancel;
    bool cancelled = false;

    void describe(FormBuilder& builder) override;
};
extern WavMeter wavMeter;

} // namespace marlune
