// Every row of the key table in pattern and song mode, stopped and running, with its effect.
#include "support/program_test.h"

namespace marlune {
namespace {

using Keys = SongModeTest;
using State = std::vector<std::pair<const char*, int>>;

State stateNow() {
    const BassPattern& pattern = currentBass(0);
    return {{"tempo", project.tempo},         {"edit", editingState->editSel},
            {"tick", songPosition->songTick}, {"loop", pattern.loopEnd},
            {"note", pattern.steps[0].note},  {"second", pattern.steps[1].note},
            {"patch", pattern.patch},         {"run", transportState->transportRunning},
            {"song", songPosition->songMode}, {"rec", recordingState->recordOn}};
}

// The effect of a key as text: what it changed, what the component heard, whether anything was shown.
std::string effectOf(TestProgram& program, int code, int shift) {
    editingState.write().projectDirty = false;
    program.calls();
    program.shown();
    const State was = stateNow();
    Form_KeyDown(code, shift);
    const State is = stateNow();
    std::string text;
    for (std::size_t i = 0; i < is.size(); ++i) {
        if (is[i] != was[i]) text += is[i].first + std::to_string(is[i].second) + " ";
    }
    if (editingState->projectDirty) text += "dirty ";
    const std::string calls = program.calls();
    for (const char* told : {"SetSong32", "SetNextPatt32", "SetNextGroup32"}) {
        const std::size_t at = calls.find(told);
        if (at != std::string::npos) text += calls.substr(at, calls.find(')', at) + 1 - at) + " ";
    }
    if (text.empty() && !calls.empty()) text = "speaks ";
    if (!text.empty() && program.shown().empty() && calls.empty()) text += "unshown ";
    if (!text.empty()) text.pop_back();
    return text;
}

struct KeyRow {
    int code, shift;
    const char* pattern;               // stopped
    const char* running;               // null: as stopped
    const char* song;                  // stopped; null: as in pattern mode
    const char* songRunning = nullptr; // null: not of interest
};

// The pattern of 103A is "C D ..." with the loop at 10 and patch 5; the tempo is 140; the song stands at 32.
constexpr KeyRow kRows[] = {
    {32, 0, "run1", "run0", nullptr, "run0"},
    {'V', 0, "dirty", nullptr, ""},
    {'M', 0, "note4 second0 dirty", nullptr, ""},
    {'N', 0, "note2 second4 dirty", nullptr, ""},
    {'X', 0, "loop10 dirty", nullptr, nullptr, "loop10 dirty"},
    {'Z', 0, "loop8 dirty", nullptr, nullptr},
    {'3', 0, "loop15 second0 patch-1 dirty SetNextPatt32(0,2)", "dirty SetNextPatt32(0,2)", "dirty unshown",
     "dirty unshown"},
    {'W', 0, "dirty SetNextPatt32(1,1)", nullptr, "dirty unshown"},
    {'K', 0, "dirty SetNextPatt32(2,7)", nullptr, "dirty unshown"},
    {'9', 0, "", nullptr, nullptr},
    {'O', 0, "", nullptr, nullptr},
    {116, 0, "speaks", nullptr, nullptr},
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
    {45, 0, "", nullptr, "rec1 dirty", "rec1 dirty"},
    {33, 0, "", nullptr, "tick48", "tick48"},
    {33, 2, "", nullptr, "tick33", "tick34 run0"}, // stops and steps from where the transport was,
    {34, 0, "", nullptr, "tick16", "tick16"},
    {36, 0, "", nullptr, "tick0", "tick0 run0"},
    {13, 0, "song1 dirty SetSong32(-1)", nullptr, "song0 dirty SetSong32(0)", "song0 dirty SetSong32(0)"},
};

TEST(KeyTable, EachKeyHasItsEffectInEachState) {
    for (const KeyRow& row : kRows) {
        const char* const inPattern[] = {row.pattern, row.running != nullptr ? row.running : row.pattern};
        const char* const inSong[] = {row.song != nullptr ? row.song : row.pattern, row.songRunning};
        for (const bool song : {false, true}) {
            for (const bool running : {false, true}) {
                const char* wanted = song ? inSong[running] : inPattern[running];
                if (wanted == nullptr) continue;
                TestProgram program;
                test::setBassSteps(0, "C D E E E E E E E E E E E E E E");
                currentBass(0).loopEnd = 9;
                editLoop(0, 0);
                setPatch(0, 5);
                songPosition.write().songTick = song ? 32 : 0;
                if (song) Check1_Click();
                if (running) {
                    playButton();
                    program.play(2);
                }
                if (song && running) songPosition.write().songTick = 33; // what the last message said
                editingState.write().ctrlDown = row.shift == 2;
                EXPECT_EQ(effectOf(program, row.code, row.shift), wanted)
                    << "key " << row.code << " shift " << row.shift << (song ? " song" : " pattern")
                    << (running ? " running" : " stopped");
                EXPECT_EQ(program.copyDifference(), "") << row.code;
            }
        }
    }
}

TEST_F(Keys, WindsFurtherWithShiftAndInTicksWithCtrl) {
    songPosition.write().songTick = 320;
    Form_KeyDown(16, 1);
    Form_KeyDown(33, 1);
    EXPECT_EQ(songPosition->songTick, 320 + 8 * 16);
    Form_KeyUp(33, 1);
    Form_KeyUp(16, 0);
    Form_KeyDown(17, 2);
    Form_KeyDown(33, 2);
    Form_KeyDown(34, 2);
    Form_KeyDown(34, 2);
    EXPECT_EQ(songPosition->songTick, 320 + 8 * 16 - 1);
    panelFocusLost(); // the release of Ctrl goes to another window
    Form_KeyDown(34, 0);
    EXPECT_EQ(songPosition->songTick, 320 + 6 * 16);
    EXPECT_EQ(shownFrame(Control::prevButton, 0), 2);
    Form_KeyUp(34, 0);
    EXPECT_EQ(shownFrame(Control::prevButton, 0), 1);
}

TEST_F(Keys, AHeldWindingKeyHaltsTheMusicUntilItIsReleased) {
    playButton();
    program.play(4);
    Form_KeyDown(33, 0);
    Form_KeyDown(33, 0);
    program.play(2); // stands
    EXPECT_EQ(songPosition->songTick, 32);
    Form_KeyUp(33, 0);
    program.play(3);
    EXPECT_EQ(songPosition->songTick, 35);
    Form_KeyDown(34, 0);
    panelFocusLost();
    program.play(1);
    EXPECT_NE(songPosition->songTick % 16, 0); // plays on
}

TEST_F(Keys, TempoAtItsLimits) {
    project.tempo = 240;
    editingState.write().projectDirty = false;
    Form_KeyDown(187, 0);
    EXPECT_EQ(project.tempo, 240);
    EXPECT_FALSE(editingState->projectDirty); // no refresh ran
    Form_KeyDown(221, 0);
    EXPECT_TRUE(editingState->projectDirty);
    project.tempo = 45;
    Form_KeyDown(219, 0);
    EXPECT_EQ(project.tempo, 40);
}

} // namespace
} // namespace marlune
