// Export of a stretch of the song to a Standard MIDI File: the menu entry, its two forms, the frame of a run.
//
// The file has format 1, 120 ticks to the quarter note, seven tracks: meta events; notes and controllers of
// 103A, 103B and 109 in turn. It appears under its name only when it is whole. User-interface thread.
#pragma once

#include <string>

#include "boundary/form.h"

namespace marlune {

void mnuFileExport_Click();

// Asks for a name, plays the ticks from startTick up to endTick (which isn't played) into the file and puts
// everything back as it was. True when a file was written; a cancel in the meter ends the file early.
bool ExportToMID(const std::string& title, int startTick, int endTick);

inline constexpr int kDefaultExportBars = 16;

struct marluneExport final : Form {
    marluneExport();
    TextBox Text1;                       // number of bars
    int exportBars = kDefaultExportBars; // what it offers: the number last taken
    Label Label1, Label2;
    Button Command1, Command2;

    void describe(FormBuilder& builder) override;
    void Form_Load() override;
    void Form_Activate() override;
    bool Command1_Click(); // Save; true when a file was written
    void Command2_Click(); // Cancel
};
extern marluneExport exportForm;

struct ExportMeter final : Form {
    ExportMeter();
    ProgressBar ProgressBar1;
    Button Command1;
    std::string tag = "0"; // "1" once cancelled

    void describe(FormBuilder& builder) override;
    void Form_Load() override { tag = "0"; }
    void Form_Activate() override { tag = "0"; }
    void Command1_Click();
};
extern ExportMeter exportMeter;

} // namespace marlune
