#include <sys/wait.h>
#include <unistd.h>
#include "commands/reset_program.h"
#include "panel/editing.h"
#include "program/starter.h"

#include "panel/editing.h"
#include "program/recovery.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using Startup = ProgramTest;
using Closing = ProgramTest;
using FileNew = ProgramTest;

TEST_F(Startup, LeavesACleanNewProjectWhoseCopyTheComponentHas) {
    EXPECT_EQ(program.shell.title, "Marlune 200Q [ untitled.mlp ]");
    EXPECT_FALSE(editingState->projectDirty);
    EXPECT_TRUE(program.shell.statusBar);
    EXPECT_TRUE(program.shell.boxes.empty());
    EXPECT_EQ(program.copyDifference(), "");
    EXPECT_EQ(shownText(Control::UserTitle, 19), "Accent");
    EXPECT_EQ(shownFrame(Control::SelEditPicture, 0) + 2 * shownFrame(Control::SelEditPicture, 1), 2);
    playButton(); // a new project sounds: a low C on every step
    program.play(2);
    EXPECT_NE(program.wire().find("90 24 64"), std::string::npos);
}

TEST_F(Startup, WarnsOnceWithoutDevicesAndOpensTheNamedProject) {
    project.tempo = 99;
    saveProjectFile(folder.file("named.mlp"));
    test::Options options;
    options.devicesChosen = false;
    options.commandLine = folder.file("named.mlp");
    TestProgram opened(options);
    ASSERT_EQ(opened.shell.boxes.size(), 1U);
    EXPECT_TRUE(opened.shell.boxes[0].starts_with("Warning: Can't open selected MIDI Device"));
    EXPECT_EQ(project.tempo, 99);
    EXPECT_EQ(opened.shell.title, "Marlune 200Q [ named.mlp ]");
    EXPECT_FALSE(editingState->projectDirty);
}

TEST_F(Startup, HelpsAtTheFirstStartAndAtNoOther) {
    std::vector<std::string> boxes;
    const auto start = [&](const char* examples, BoxAnswer demo) {
        MDIForm_Unload();
        resetProgram();
        program.shell.boxes.clear();
        program.shell.answers = {BoxAnswer::ok, demo};
        setConfigFolder(folder.path);
        StartupHooks hooks;
        hooks.examplesFolder = examples;
        startupMain("", hooks);
        boxes = program.shell.boxes;
    };
    start(EXAMPLES, BoxAnswer::ok);
    ASSERT_EQ(boxes.size(), 2U);
    EXPECT_TRUE(boxes[0].starts_with(
        "Warning: Can't open selected MIDI Device(s) or No MIDI Device(s) Selected.\n"
        "MIDI has been disabled.  Select Midi Devices from Midi Setup.\n\nThis is the first start: "));
    EXPECT_TRUE(boxes[1].starts_with("Open the demo song?"));
    EXPECT_EQ(project.tempo, 132);
    EXPECT_EQ(program.shell.title, "Marlune 200Q [ untitled.mlp ]");
    program.wire();
    playButton();
    program.play(2);
    EXPECT_NE(program.wire(), ""); // the output is open
    start(EXAMPLES, BoxAnswer::ok);
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(config.midiOutDevice, 0);
    std::filesystem::remove(folder.file("marlune.cfg"));
    setConfigFolder("");
    start(EXAMPLES, BoxAnswer::cancel);
    EXPECT_EQ(boxes.size(), 2U);
    EXPECT_EQ(project.tempo, 140);
    setConfigFolder("");
    std::filesystem::remove(folder.file("marlune.cfg"));
    start("/nowhere", BoxAnswer::ok); // no help at hand: told as ever
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_TRUE(boxes[0].ends_with("Select Midi Devices from Midi Setup."));
}

TEST_F(FileNew, FromTheStarterSetsTheKnobsWhereTheyAreHeard) {
    menuClicked(Menu::mnuFileNewStarter); // no examples are known
    EXPECT_TRUE(program.shell.status.starts_with("The starter project is missing"));
    setExamplesFolder(EXAMPLES);
    markProject();
    menuClicked(Menu::mnuFileNewStarter); // the question is answered with Cancel
    EXPECT_EQ(project.knobValue[0], 0);
    program.shell.answers = {BoxAnswer::no};
    menuClicked(Menu::mnuFileNewStarter);
    for (const int knob : {0, 1, 2, 3, 5, 6, 7, 8, 9, 11, 19}) EXPECT_GT(project.knobValue[knob], 30) << knob;
    EXPECT_EQ(program.shell.title, "Marlune 200Q [ untitled.mlp ]");
    EXPECT_FALSE(editingState->projectDirty);
    EXPECT_EQ(program.copyDifference(), "");
    program.shell.status.clear();
    accentClick(0);
    EXPECT_EQ(program.shell.status, "");
    forgetUnsavedChanges();
    mnuFileNew_Click(); // as ever: the knobs at 0
    accentClick(0);
    EXPECT_EQ(program.shell.status,
              "Accented steps of 103A are silent: turn up the Accent knob, which stands at 0.");
    program.shell.status.clear();
    playButton();
    EXPECT_TRUE(program.shell.status.starts_with("Accented steps of 103A are silent"));
}

TEST_F(Startup, RefusesASecondInstanceBeforeAnythingElse) {
    project.tempo = 55;
    StartupHooks hooks;
    hooks.anotherInstanceRuns = [] { return true; };
    EXPECT_FALSE(startupMain("", hooks));
    EXPECT_EQ(program.shell.boxes[0],
              "Error:  Marlune200q is already running.\nYou may run only one instance of Marlune at a time.");
    EXPECT_EQ(project.tempo, 55);
    EXPECT_EQ(program.calls(), "");
}

TEST_F(Closing, AsksStopsAndReleasesInThatOrder) {
    EXPECT_TRUE(MDIForm_QueryUnload()); // nothing to save: no question
    editingState.write().projectDirty = true;
    playButton();
    program.play(3);
    EXPECT_FALSE(MDIForm_QueryUnload()); // cancelled: everything goes on
    EXPECT_TRUE(transportState->transportRunning);
    EXPECT_EQ(program.shell.boxes.back(), "Save changes to untitled.mlp\nbefore closing ? ");
    program.shell.answers = {BoxAnswer::yes}; // but the file dialog is left without a name
    EXPECT_FALSE(MDIForm_QueryUnload());
    program.shell.answers = {BoxAnswer::no};
    EXPECT_TRUE(MDIForm_QueryUnload());
    EXPECT_FALSE(transportState->transportRunning);
    EXPECT_FALSE(program.shell.panel);
}

// What a process that ended badly leaves, and what the next start makes of it.
TEST(Recovery, KeepsWhatDiffersFromTheFileAndOffersItAsUnsavedWork) {
    const TemporaryFolder folder;
    const std::string song = folder.file("song.mlp"), copies = folder.file("copies");
    const auto kept = [&] {
        return std::filesystem::exists(copies + "/" + std::to_string(::getpid()) + ".mlp");
    };
    {
        TestProgram program;
        startRecovery(copies);
        project.tempo = 99;
        ASSERT_TRUE(saveProjectFile(song));
        nameProject(song);
        TestProgram::advanceClock(40'000);
        markProject(); // the mark alone is no content
        tendRecovery();
        EXPECT_FALSE(kept());
        project.tempo = 111;
        tendRecovery(); // less than 30 s after the last look
        EXPECT_FALSE(kept());
        TestProgram::advanceClock(31'000);
        tendRecovery();
        EXPECT_TRUE(kept());
        nameProject(song); // saved
        EXPECT_FALSE(kept());
        project.tempo = 112;
        keepRecovery(); // a signal
        startRecovery("");
    }
    const pid_t gone = ::fork();
    if (gone == 0) ::_exit(0);
    ::waitpid(gone, nullptr, 0);
    const std::string orphan = copies + "/" + std::to_string(gone);
    for (const char* extension : {".mlp", ".name"})
        std::filesystem::rename(copies + "/" + std::to_string(::getpid()) + extension, orphan + extension);
    for (const BoxAnswer answer : {BoxAnswer::cancel, BoxAnswer::yes, BoxAnswer::no}) {
        TestProgram program;
        startRecovery(copies);
        program.shell.answers = {answer};
        EXPECT_EQ(offerRecovery(), answer == BoxAnswer::yes);
        EXPECT_EQ(program.shell.boxes.at(0),
                  "Marlune ended without saving song.mlp.\nOpen the work as it was then ?");
        EXPECT_EQ(std::filesystem::exists(orphan + ".mlp"), answer == BoxAnswer::cancel);
        if (answer == BoxAnswer::yes) {
            EXPECT_EQ(project.tempo, 112);
            EXPECT_EQ(editingState->projectFileName, song);
            EXPECT_TRUE(editingState->projectDirty && editingState->saveAsks && kept());
            for (const char* extension : {".mlp", ".name"}) // ends badly once more
                std::filesystem::rename(copies + "/" + std::to_string(::getpid()) + extension,
                                        orphan + extension);
        }
        startRecovery("");
    }
}

} // namespace
} // namespace marlune
