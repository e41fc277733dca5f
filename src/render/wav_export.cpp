#include "render/wav_export.h"

#include <cstdlib>
#include <filesystem>

#include "boundary/app_shell.h"
#include "files/project_file.h"
#include "panel/form_parts.h"
#include "panel/mutes.h"
#include "platform/child_process.h"
#include "platform/config_folder.h"
#include "project/run_state.h"
#include "project/song_track.h"
#include "setup/config_file.h"
#include "util/text_number.h"
#include "util/whole_file.h"

namespace marlune {

WavExportForm wavExportForm;
WavMeter wavMeter;

namespace {

constexpr int kUsualBars = 16, kMostBars = 1000;
constexpr int kLookMs = 40;
std::string renderProgram;

std::string program() {
    return renderProgram.empty() ? programFolder() + "/marlune-cli" : renderProgram;
}

// The project and its settings as they stand, where the other process can read them.
class Snapshot {
  public:
    explicit Snapshot(bool leaveOut) {
        std::string name = std::filesystem::temp_directory_path().string() + "/marlune-export-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) return;
        folder_ = name;
        std::vector<std::uint8_t> bytes = projectFileBytes();
        if (leaveOut) leaveOutSilent(*reinterpret_cast<ProjectRecord*>(bytes.data()));
        ok_ = writeFileAtomically(project(), bytes) && saveGlobalConfigTo(folder_);
        std::error_code ignored; // it need not be there
        std::filesystem::copy_file(configFolderInUse() + "/settings.cfg", folder_ + "/settings.cfg", ignored);
    }
    ~Snapshot() {
        std::error_code ignored;
        if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
    }
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

    [[nodiscard]] bool ok() const { return ok_; }
    [[nodiscard]] std::string project() const { return folder_ + "/project.mlp"; }
    [[nodiscard]] const std::string& folder() const { return folder_; }

  private:
    std::string folder_;
    bool ok_ = false;
};

std::string askName() {
    FileDialog dialog;
    dialog.save = true;
    dialog.fileName = withoutExtension(editingState->projectFileName);
    dialog.filter = "Sound File (*.wav)|*.wav";
    dialog.defaultExtension = "wav";
    for (;;) {
        std::string name = shell().fileDialog(dialog);
        if (name.empty() || wannaOverwrite(name) == 1) return name;
        dialog.fileName = withoutExtension(name);
    }
}

// The last whole line of what the renderer has said is how far it is, in hundredths.
int progressIn(const std::string& output) {
    const auto end = output.rfind('\n');
    if (end == std::string::npos) return 0;
    const auto before = end == 0 ? std::string::npos : output.rfind('\n', end - 1);
    return leadingInteger(output.substr(before == std::string::npos ? 0 : before + 1));
}

// Lets it work and shows how far it is; false where the user ended it.
bool watch(ChildProcess& renderer) {
    wavMeter.Bar = {0, 100, 0};
    wavMeter.cancelled = false;
    wavMeter.show();
    while (renderer.running() && !wavMeter.cancelled) {
        shell().waitForEvents(kLookMs);
        wavMeter.Bar.value = progressIn(renderer.output());
        shell().formChanged(wavMeter);
    }
    wavMeter.hide();
    shell().formChanged(wavMeter);
    return !wavMeter.cancelled;
}

bool render(const std::string& name, const std::vector<std::string>& options) {
    const Snapshot snapshot(wantsSilentLeftOut());
    std::string refusal = "The disk for temporary files is full.";
    if (snapshot.ok()) {
        std::vector<std::string> words = {program(),  "render",          snapshot.project(), name,
                                          "--config", snapshot.folder(), "--progress"};
        words.insert(words.end(), options.begin(), options.end());
        ChildProcess renderer(words);
        if (!watch(renderer)) {
            shell().showPassing("The export was cancelled; no file was written.");
            return false;
        }
        if (renderer.status() == 0) {
            shell().showPassing("Exported to " + extractFileName(name) + ".");
            return true;
        }
        refusal = renderer.complaints();
        if (refusal.empty()) refusal = "The program marlune-cli is missing or ended early.";
    }
    shell().messageBox("Error:  The export to " + extractFileName(name) + " failed.\n" + refusal,
                       BoxIcon::critical, BoxButtons::ok);
    return false;
}

} // namespace

void mnuFileExportWav_Click() {
    wavExportForm.showModal();
}

void setRenderProgram(const std::string& path) {
    renderProgram = path;
}

WavExportForm::WavExportForm() {
    caption = "Export to WAV File";
    What.items = {"The selected patterns", "The song"};
    Files.items = {"Everything in one file", "One file for each module"};
    Rate.items = {"44.1 kHz", "48 kHz"};
    Depth.items = {"16 bit", "24 bit"};
    Files.selected = Rate.selected = Depth.selected = 0;
    cmdSave.caption = "Save";
    cmdCancel.caption = "Cancel";
}

void WavExportForm::describe(FormBuilder& builder) {
    builder.beginFrame("What is played");
    builder.comboBox("Music :", What);
    builder.textBox("Number of Bars :", Bars, 6);
    builder.label(Start);
    builder.endFrame();
    builder.beginFrame("What is written");
    builder.comboBox("Files :", Files);
    builder.comboBox("Rate :", Rate);
    builder.comboBox("Depth :", Depth);
    builder.endFrame();
    okCancelRow(
        builder, cmdSave, [this] { cmdSave_Click(); }, cmdCancel, [this] { cmdCancel_Click(); });
}

void WavExportForm::Form_Load() {
    Bars.text = std::to_string(kUsualBars);
}

void WavExportForm::Form_Activate() {
    What.selected = songPosition->songMode ? 1 : 0;
    Start.text = songPosition->songMode ? startingBarText() : "The song starts at bar 1";
}

std::vector<std::string> WavExportForm::options(int bars) const {
    std::vector<std::string> words = {"--bars", std::to_string(bars),
                                      "--rate", Rate.selected == 1 ? "48000" : "44100",
                                      "--bits", Depth.selected == 1 ? "24" : "16"};
    if (Files.selected == 1) words.emplace_back("--stems");
    if (What.selected == 1)
        for (const std::string& word :
             {std::string("--song"), std::string("--bar"),
              std::to_string(songPosition->songMode ? barOf(songPosition->songTick) + 1 : 1)})
            words.push_back(word);
    return words;
}

bool WavExportForm::cmdSave_Click() {
    const int bars = isNumeric(Bars.text) ? leadingInteger(Bars.text) : 0;
    if (bars < 1 || bars > kMostBars) {
        shell().messageBox("Enter the number of Bars to export (1 to 1000)", BoxIcon::exclamation,
                           BoxButtons::ok);
        return false;
    }
    hide();
    const std::string name = askName();
    return !name.empty() && render(name, options(bars));
}

WavMeter::WavMeter() {
    caption = "Exporting to WAV File";
    cmdCancel.caption = "Cancel";
}

void WavMeter::describe(FormBuilder& builder) {
    builder.progressBar(Bar);
    builder.button(cmdCancel, FormBuilder::Role::reject, [this] { cancelled = true; });
}

} // namespace marlune
