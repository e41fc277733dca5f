// Every row of the key table in pattern and song mode, stopped and running, with its effect.
#include "support/program_test.h"

namespace marlune {
namespace {

// The effect of a key as text: what it changed, what the component heard, how many controls it showed.
struct Snapshot {
    int tempo = project.tempo, edit = editSel, tick = songTick, loop = currentLoopEnd(0);
    int note = currentBass(0).steps[0].note, first = currentBass(0).steps[1].note,
        patch = currentBass(0).patch;
    bool running = transportRunning, song = songMode, recording = recordOn, dirty = projectDirty;
};

std::string effectOf(TestProgram& program, int code, int shift) {
    projectDirty = false;
    program.calls();
    program.shown();
    const Snapshot was;
    Form_KeyDown(code, shift);
    const Snapshot is;
    std::string text;
    const auto tell = [&text](const char* name, int before, int after) {
        if (before != after) text += std::string(name) + std::to_string(after) + " ";
    };
    tell("tempo", was.tempo, is.tempo);
    tell("edit", was.edit, is.edit);
    tell("tick", was.tick, is.tick);
    tell("loop", was.loop, is.loop);
    tell("note", was.note, is.note);
    tell("second", was.first, is.first);
    tell("patch", was.patch, is.patch);
    tell("run", was.running, is.running);
    tell("song", was.song, is.song);
    tell("rec", was.recording, is.recording);
    if (is.dirty) text += "dirty ";
    const std::string calls = program.calls();
    if (calls.find("SetSong32") != std::string::npos) text += calls.substr(0, calls.find(')') + 1) + " ";
    if (is.song != was.song) return text;
    if (calls.find("SetNextPatt32") != std::string::npos) text += calls.substr(0, calls.find(')') + 1) + " ";
    if (calls.find("SetNextGroup32") != std::string::npos) text += calls.substr(0, calls.find(')') + 1) + " ";
    if (text.empty() && !calls.empty()) text = "speaks ";
    if (!text.empty() && program.shown().empty() && calls.empty()) text += "unshown ";
    if (!text.empty()) text.pop_back();
    return text;
}

struct KeyRow {
    int code, shift;
    const char* pattern; // stopped
    const char* running; // null: as stopped
    const char* song;    // stopped; null: as in pattern mode
};

// The pattern of 103A is "C D ..." with the loop at 10 and patch 5; the tempo is 140; the song stands at 32.
constexpr KeyRow kRows[] = {
    {32, 0, "run1", "run0", nullptr},
    {'M', 0, "note4 second0 dirty", nullptr, ""},
    {'N', 0, "note2 second4 dirty", nullptr, ""},
    {'X', 0, "loop10 dirty", nullptr, nullptr},
    {'Z', 0, "loop8 dirty", nullptr, nullptr},
    {'3', 0, "loop15 second0 patch-1 dirty SetNextPatt32(0,2)", "dirty SetNextPatt32(0,2)", "dirty unshown"},
    {'W', 0, "dirty SetNextPatt32(1,1)", nullptr, "dirty unshown"},
    {'K', 0, "dirty SetNextPatt32(2,7)", nullptr, "dirty unshown"},
    {'9', 0, "", nullptr, nullptr},
    {'O', 0, "", nullptr, nullptr},
    {'V', 0, "", nullptr, nullptr},
    {187, 0, "tempo141 dirty", nullptr, nullptr},
    {107, 0, "tempo141 dirty", nullptr, nullptr},
    {189, 0, "tempo139 dirty", nullptr, nullptr},
    {109, 0, "tempo139 dirty", nullptr, nullptr},
    {221, 0, "tempo150 dirty", nullptr, nullptr},
    {219, 0, "tempo130 dirty", nullptr, nullptr},
    {190, 0, "note1 second3 dirty", nullptr, ""},
    {188, 0, "note11 second1 dirty", nullptr, ""},
    {37, 0, "edit1", nullptr, nullptr},
    {39, 0, "edit2", nullptr, nullptr},
    {37, 1, "edit1", nullptr, nullptr},
    {39, 2, "edit2", nullptr, nullptr},
    {186, 0, "patch4 dirty", nullptr, "dirty unshown"},
    {222, 0, "patch6 dirty", nullptr, nullptr},
    {'2', 1, "loop15 second0 patch-1 dirty SetNextGroup32(0,1)", "dirty SetNextGroup32(0,1)",
     "dirty unshown"},
    {'F', 1, "dirty SetNextGroup32(2,3)", nullptr, "dirty unshown"},
    {'5', 1, "", nullptr, nullptr},
    {'Q', 2, "", nullptr, nullptr},
    {'Q', 4, "", nullptr, nullptr},
    {32, 1, "", nullptr, nullptr},
    {45, 0, "", nullptr, "rec1 dirty"},
    {33, 0, "", nullptr, "tick48"},
    {34, 0, "", nullptr, "tick16"},
    {36, 0, "", nullptr, "tick0"},
};

void prepare(bool song, bool running, TestProgram& program) {
    test::setBassSteps(0, "C D E E E E E E E E E E E E E E");
    currentBass(0).loopEnd = 9;
    editLoop(0, 0);
    setPatch(0, 5);
    if (song) {
        songTick = 32;
        Check1_Click();
    }
    if (running) {
        playButton();
        program.play(2);
    }
}

TEST(KeyTable, EachKeyHasItsEffectInEachState) {
    for (const KeyRow& row : kRows) {
        for (const bool song : {false, true}) {
            for (const bool running : {false, true}) {
                TestProgram program;
                prepare(song, running, program);
                const char* wanted = song && row.song != nullptr                  ? row.song
                                     : running && row.running != nullptr && !song ? row.running
                                                                                  : row.pattern;
                if (song && running) continue; // below
                EXPECT_EQ(effectOf(program, row.code, row.shift), wanted)
                    << "key " << row.code << " shift " << row.shift << (song ? " song" : " pattern")
                    << (running ? " running" : " stopped");
                EXPECT_EQ(program.copyDifference(), "") << row.code;
                StopPlay();
            }
        }
    }
}

TEST(KeyTable, SongModeRunning) {
    const struct {
        int code, shift;
        bool ctrl;
        const char* effect;
    } rows[] = {{32, 0, false, "run0"},
                {33, 0, false, "tick48"},
                {34, 0, false, "tick16"},
                {33, 2, true, "tick34 run0"}, // stops and steps from where the transport was
                {36, 0, false, "tick0 run0"},
                {45, 0, false, "rec1 dirty"},
                {13, 0, false, "song0 dirty SetSong32(0)"},
                {'X', 0, false, "loop10 dirty"},
                {'1', 0, false, "dirty unshown"}};
    for (const auto& row : rows) {
        TestProgram program;
        prepare(true, true, program);
        ctrlDown = row.ctrl;
        songTick = 33; // what the last message said
        EXPECT_EQ(effectOf(program, row.code, row.shift).substr(0, std::string(row.effect).size()),
                  row.effect)
            << row.code;
        StopPlay();
    }
}

TEST(KeyTable, WindsFurtherWithShiftAndInTicksWithCtrl) {
    TestProgram program;
    Check1_Click();
    songTick = 320;
    Form_KeyDown(16, 1);
    Form_KeyDown(33, 1);
    EXPECT_EQ(songTick, 320 + 8 * 16);
    Form_KeyUp(33, 1);
    Form_KeyUp(16, 0);
    Form_KeyDown(17, 2);
    Form_KeyDown(33, 2);
    Form_KeyDown(34, 2);
    Form_KeyDown(34, 2);
    EXPECT_EQ(songTick, 320 + 8 * 16 - 1);
    panelFocusLost(); // the release of Ctrl goes to another window
    Form_KeyDown(34, 0);
    EXPECT_EQ(songTick, 320 + 6 * 16);
    EXPECT_EQ(shownFrame(Control::prevButton, 0), 2);
    Form_KeyUp(34, 0);
    EXPECT_EQ(shownFrame(Control::prevButton, 0), 1);
}

TEST(KeyTable, AHeldWindingKeyHaltsTheMusicUntilItIsReleased) {
    TestProgram program;
    Check1_Click();
    playButton();
    program.play(4);
    Form_KeyDown(33, 0);
    Form_KeyDown(33, 0);
    program.play(2); // stands
    EXPECT_EQ(songTick, 32);
    Form_KeyUp(33, 0);
    program.play(3);
    EXPECT_EQ(songTick, 35);
    Form_KeyDown(34, 0);
    panelFocusLost();
    program.play(1);
    EXPECT_NE(songTick % 16, 0); // plays on
    StopPlay();
}

TEST(KeyTable, TempoAtItsLimits) {
    TestProgram program;
    project.tempo = 240;
    projectDirty = false;
    Form_KeyDown(187, 0);
    EXPECT_EQ(project.tempo, 240);
    EXPECT_FALSE(projectDirty); // no refresh ran
    Form_KeyDown(221, 0);
    EXPECT_TRUE(projectDirty);
    project.tempo = 45;
    Form_KeyDown(219, 0);
    EXPECT_EQ(project.tempo, 40);
}

} // namespace
} // namespace marlune
