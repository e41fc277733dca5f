// The export to sound files as the user meets it, with the real renderer behind it.
#include <sndfile.h>

#include "panel/editing.h"
#include "render/wav_export.h"
#include "support/program_test.h"

namespace marlune {
namespace {

struct WavExport : ProgramTest {
    WavExport() {
        setRenderProgram(MARLUNE_CLI);
        wavExportForm.unload();
        for (ComboBox* box : {&wavExportForm.Files, &wavExportForm.Rate, &wavExportForm.Depth})
            box->selected = 0;
    }
    ~WavExport() override { setRenderProgram(""); }

    // Opens the dialog by its menu entry; `fill` is what the user does before pressing Save.
    bool save(const std::string& name, const std::function<void()>& fill) {
        bool saved = false;
        program.shell.fileNames = {name};
        program.shell.modal.emplace_back([&](Form&) {
            fill();
            saved = wavExportForm.cmdSave_Click();
            wavExportForm.hide();
        });
        menuClicked(Menu::mnuFileExportWav);
        return saved;
    }

    SF_INFO infoOf(const std::string& name) const {
        SF_INFO info{};
        if (SNDFILE* file = sf_open(folder.file(name).c_str(), SFM_READ, &info)) sf_close(file);
        return info;
    }

    std::string files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return test::joined(names);
    }
};

TEST_F(WavExport, WritesWhatIsChosenAndTouchesNothing) {
    test::setBassSteps(0, "C! E - G");
    program.calls();
    const ProjectRecord before = project;
    markProject();
    std::string shown;
    program.shell.modeless = [&](Form& form) { shown = form.caption; };
    ASSERT_TRUE(save(folder.file("a.wav"), [] { wavExportForm.Bars.text = "2"; }));
    EXPECT_EQ(shown, "Exporting to WAV File");
    EXPECT_EQ(program.shell.status, "Exported to a.wav.");
    const double seconds = 2 * 16 * 15.0 / 140 + 2; // two bars and what rings
    EXPECT_NEAR(static_cast<double>(infoOf("a.wav").frames) / 44100, seconds, 0.1);
    EXPECT_EQ(infoOf("a.wav").format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(std::memcmp(&before, &project, sizeof before), 0);
    EXPECT_TRUE(editingState->projectDirty);
    EXPECT_EQ(program.calls() + program.wire(), "");

    ASSERT_TRUE(save(folder.file("s.wav"), [] {
        wavExportForm.What.selected = wavExportForm.Files.selected = 1;
        wavExportForm.Rate.selected = wavExportForm.Depth.selected = 1;
    }));
    EXPECT_EQ(files(), "a.wav s-103A.wav s-103B.wav s-109.wav");
    EXPECT_EQ(infoOf("s-109.wav").samplerate, 48000);
    EXPECT_EQ(infoOf("s-109.wav").format, SF_FORMAT_WAV | SF_FORMAT_PCM_24);
}

TEST_F(WavExport, TellsWhatWentWrongAndLeavesNothingHalf) {
    for (const char* bars : {"0", "1001", "some"})
        EXPECT_FALSE(save(folder.file("a.wav"), [bars] { wavExportForm.Bars.text = bars; }));
    EXPECT_EQ(program.shell.boxes.back(), "Enter the number of Bars to export (1 to 1000)");
    EXPECT_FALSE(save("", [] { wavExportForm.Bars.text = "1000"; }));
    program.shell.modeless = [&](Form&) { program.shell.after(400, [] { wavMeter.cancelled = true; }); };
    EXPECT_FALSE(save(folder.file("a.wav"), [] { wavExportForm.Bars.text = "1000"; }));
    EXPECT_EQ(program.shell.status, "The export was cancelled; no file was written.");
    EXPECT_EQ(files(), "");
    program.shell.modeless = nullptr;
    EXPECT_FALSE(save("/nowhere/a.wav", [] { wavExportForm.Bars.text = "1"; }));
    EXPECT_EQ(program.shell.boxes.back(),
              "Error:  The export to a.wav failed.\nCan't write /nowhere/a.wav\n");
    setRenderProgram("/nowhere/marlune-cli");
    EXPECT_FALSE(save(folder.file("a.wav"), [] { wavExportForm.Bars.text = "1"; }));
    EXPECT_NE(program.shell.boxes.back().find("marlune-cli is missing"), std::string::npos);
}

} // namespace
} // namespace marlune
