// Start, File New and the end of the program, told whole.
#include "commands/reset_program.h"
#include "panel/editing.h"
#include "program/recovery.h"
#include "program/starter.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using Sessions = ProgramTest;

template <typename Values>
std::string list(const char* name, const Values& values) {
    std::string text = std::string(name) + ":";
    for (auto at = values.begin(); at != values.end();) { // "5*3" for three fives
        const auto end = std::find_if(at, values.end(), [at](const auto& v) { return int{v} != int{*at}; });
        text += " " + std::to_string(int{*at}) + (end - at > 1 ? "*" + std::to_string(end - at) : "");
        at = end;
    }
    return text + "\n";
}

TEST_F(Sessions, StartAndEnd) {
    setConfigFolder(folder.path);
    config.syncOffset = 3;
    MDIForm_Unload(); // saves
    EXPECT_EQ(MIDIIn1.isOpen(), false);
    EXPECT_TRUE(transportState->programClosing);
    for (int k = 0; k < kKnobs; ++k) config.controllerMap[100 + k] = 3;
    resetProgram();
    setConfigFolder(folder.path);
    program.calls();
    program.shown();
    test::Session session(program);
    session.marksAnew = false;
    std::string panels;
    session.verbs["start"] = [&](int, int, int) {
        StartupHooks hooks;
        hooks.randomSeed = 9;
        hooks.recoveryFolder = folder.file("copies");
        hooks.showMainWindow = [&] { panels += program.shell.panel ? "panel " : "window "; };
        hooks.showSplash = [&](bool on) { panels += on ? "splash " : "gone "; };
        hooks.configured = [&] {
            panels += program.shell.panel ? "panel " : "hidden ";
            config.midiInDevice = config.midiOutDevice = 9; // beyond the list
        };
        startupMain("", hooks);
    };
    session.verbs["end"] = [](int, int, int) { MDIForm_Unload(); };
    expectSession(session);
    markProject();
    keepRecovery();
    EXPECT_TRUE(std::filesystem::exists(folder.file("copies")));
    startRecovery("");
    EXPECT_EQ(panels, "panel splash panel gone "); // the panel of the run before is hidden behind the splash
    EXPECT_EQ(config.midiInDevice * 10 + config.midiOutDevice, 11);
}

TEST_F(Sessions, FileNew) {
    for (int p = 0; p < kBanks * kPatterns; ++p) {
        for (BassModule& bass : project.bass) {
            BassPattern& pattern = bass.patterns[p / kPatterns][p % kPatterns];
            for (BassStep& s : pattern.steps) {
                s.note = 5;
                s.up = s.down = s.accent = s.slide = true;
            }
            pattern.steps[3].noteOn = false;
            pattern.loopEnd = pattern.patch = 3;
        }
        DrumPattern& drums = project.drum.patterns[p / kPatterns][p % kPatterns];
        drums.drumOn[15].fill(kDrumHit);
        drums.loopEnd = 4;
        drums.drumNote.fill(1);
    }
    for (auto& bars : barTrack) bars.fill({3, 3});
    for (auto& track : knobTrack) track.fill(7);
    for (int k = 0; k < kKnobs; ++k) project.knobValue[k] = 9;
    for (NoteMapEntry& entry : project.noteMap) entry = {};
    config = {};
    for (BassModule& bass : project.bass) bass.storedChannel = bass.baseNote = bass.baseVelocity = 0;
    project.tempo = 99;
    knobLabel[3] = "mine";
    pushAllPatterns(0, 1, 2);
    refreshAll();
    setEditSel(2);
    mnuEditCut_Click();
    program.calls();
    program.shown();
    expectSession(program);
    EXPECT_EQ(knobLabel[3], "Decay");
    const NoteMapEntry& entry = project.noteMap[127];
    std::string stored = std::to_string(project.fileTag) + " " + std::to_string(entry.mapUsed) +
                         list("", entry.mapBank) + list("", entry.mapPatt);
    for (const BassModule& bass : project.bass)
        stored += std::to_string(bass.storedChannel) + " " + std::to_string(bass.baseNote) + " " +
                  std::to_string(bass.baseVelocity) + " " +
                  std::to_string(bass.patterns[2][2].steps[3].slide) + "\n";
    expectKept(stored + list("out", config.outputController) + list("map", config.controllerMap) +
                   list("channels", config.moduleChannel) + list("bases", config.moduleBaseNote) +
                   list("velocities", config.moduleVelocity) + list("notes", config.drumNoteDefault) +
                   std::to_string(config.selectBase) + " " + std::to_string(config.stepBase) + " " +
                   std::to_string(config.reservedNote0) + " " + std::to_string(config.reservedNote1) + " " +
                   std::to_string(config.reservedNote2) + " " + std::to_string(config.controlChannel),
               " settings");
}

TEST_F(Sessions, FileNewFromTheStarter) {
    test::Session session(program);
    session.marksAnew = false;
    session.verbs["examples"] = [](int, int, int) { setExamplesFolder(EXAMPLES); };
    expectSession(session);
}

TEST_F(Sessions, FileNewInSongMode) {
    test::Session session(program);
    session.marksAnew = false;
    config.syncOffset = 2;
    program.shell.answers = {BoxAnswer::no, BoxAnswer::cancel};
    expectSession(session);
}

} // namespace
} // namespace marlune
