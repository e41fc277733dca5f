#include "files/export_driver.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "files/export_sequencer.h"
#include "files/project_file.h"
#include "midi/midi_input.h"
#include "panel/form_parts.h"
#include "panel/mutes.h"
#include "panel/refresh.h"
#include "project/song_track.h"
#include "song/recording_end.h"
#include "song/song_place.h"
#include "transport/transport.h"
#include "util/text_number.h"
#include "util/whole_file.h"

namespace marlune {

marluneExport exportForm;
ExportMeter exportMeter;

namespace {

constexpr const char* kTrackNames[kExportTracks] = {"",
                                                    "103A Bassline",
                                                    "103A Bassline Control",
                                                    "103B Bassline",
                                                    "103B Bassline Control",
                                                    "109 Drummer",
                                                    "109 Drummer Control"};
constexpr const char* kExporterText = "Marlune 200q MIDI Exporter v1.00";
constexpr std::array<std::uint8_t, 4> kFourFour = {4, 2, 30, 8};
constexpr int kMicrosecondsPerMinute = 60000000;

void openTracks(MidiFileWriter& writer, const std::string& title) {
    for (int track = 0; track < kExportTracks; ++track) {
        writer.addTrack();
        writer.text(kMetaTrackName, track == 0 ? title : kTrackNames[track]);
        if (track != 0) continue;
        writer.text(kMetaCopyright, kExporterText);
        writer.timeSignature(kFourFour);
        writer.tempo(kMicrosecondsPerMinute / project.tempo);
    }
}

// What a run changes, put back at the end of its scope whatever happens in between. The recording is not:
// a run disarms it. The modules stay at the steps where it left them.
class SavedState {
  public:
    SavedState() = default;
    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;
    ~SavedState() {
        restSteps(exportSteps());
        project = record_;
        MIDIIn1.setMessageEvents(events_);
    }

  private:
    bool events_ = MIDIIn1.MessageEvents;
    ProjectRecord record_ = project;
};

void playTicks(int startTick, int endTick) {
    ProgressBar& bar = exportMeter.ProgressBar1;
    bar = {barOf(startTick), endTick / kTicksPerBar + 2, barOf(startTick)};
    for (int played = 0; exportMeter.tag == "0" && played < endTick - startTick; ++played) {
        ExportToMIDProcessTick();
        if (!isBarLine(exportTick()) || exportTick() == 0) continue;
        bar.value = barOf(exportTick());
        shell().formChanged(exportMeter);
        shell().letEventsRun();
    }
}

// Plays the stretch into a file in memory.
void runInto(MemoryMidiFile& file, const std::string& title, int startTick, int endTick, bool leaveOut) {
    const SavedState saved;
    if (recordingState->recordOn) endRecording();
    if (leaveOut) leaveOutSilent(project);
    cueCurrent(project);             // the song alone says what comes
    MIDIIn1.setMessageEvents(false); // what is played now would not survive the run
    openTracks(file, title);
    beginExportRun(file, startTick);
    exportMeter.show();
    for (int knob = 0; knob < kKnobs; ++knob) {
        project.knobValue[knob] = knobTrack[knob][startTick];
        midiKnobUpdateMIDExp(knob);
    }
    playTicks(startTick, endTick);
    exportMeter.hide();
    shell().formChanged(exportMeter);
}

std::string askName() {
    dlgCommonDialog.save = true;
    dlgCommonDialog.title.clear();
    dlgCommonDialog.filter = "MIDI File (*.mid)|*.mid";
    dlgCommonDialog.defaultExtension = "mid";
    for (;;) {
        std::string name = shell().fileDialog(dlgCommonDialog);
        if (name.empty()) return name;
        dlgCommonDialog.fileName = withoutExtension(name);
        if (wannaOverwrite(name) == 1) return name;
    }
}

} // namespace

void mnuFileExport_Click() {
    StopPlay();
    exportForm.showModal();
}

bool ExportToMID(const std::string& title, int startTick, int endTick) {
    const std::string name = askName();
    if (name.empty()) return false;
    MemoryMidiFile file;
    runInto(file, title, startTick, endTick, wantsSilentLeftOut());
    if (file.finish(name)) return true;
    shell().messageBox("Can't write " + extractFileName(name) + ".\nThe file on disk is as it was.",
                       BoxIcon::exclamation, BoxButtons::ok);
    return false;
}

marluneExport::marluneExport() {
    caption = "Export to MIDI File";
    Label1.text = "Number of Bars :";
    Command1.caption = "Save";
    Command2.caption = "Cancel";
}

void marluneExport::describe(FormBuilder& builder) {
    builder.beginFrame("Export Details");
    builder.textBox(Label1.text, Text1, 6);
    builder.label(Label2);
    builder.endFrame();
    okCancelRow(
        builder, Command1, [this] { Command1_Click(); }, Command2, [this] { Command2_Click(); });
}

void marluneExport::Form_Load() {
    Text1.text = std::to_string(exportBars);
}

void marluneExport::Form_Activate() {
    Text1.text = std::to_string(exportBars);
    Label2.text = startingBarText();
    Command1.enabled = true;
}

bool marluneExport::Command1_Click() {
    const auto bars = enteredBars(Text1, "Enter the number of Bars to export (1 to 1000)");
    if (!bars) return false;
    const int exportStartBar = shownBar();
    exportBars = *bars;
    Command1.enabled = false;
    hide();
    shell().letPaintRun();
    return ExportToMID("", exportStartBar * kTicksPerBar, (exportStartBar + exportBars) * kTicksPerBar);
}

void marluneExport::Command2_Click() {
    hide();
}

ExportMeter::ExportMeter() {
    caption = "Exporting to MIDI File";
    Command1.caption = "Cancel";
}

void ExportMeter::describe(FormBuilder& builder) {
    builder.progressBar(ProgressBar1);
    builder.button(Command1, FormBuilder::Role::reject, [this] { Command1_Click(); });
}

void ExportMeter::Command1_Click() {
    tag = "1";
    unload();
}

} // namespace marlune
