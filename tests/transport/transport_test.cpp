#include <set>

#include "support/program_test.h"

namespace marlune {
namespace {

using Transport = ProgramTest;
using Recording = ProgramTest;

TEST_F(Transport, StopByThePlayButtonTakesCuesAndStopInPlaceLeavesThem) {
    playButton();
    program.play(5);
    Form_KeyDown('4', 0); // cues pattern 4 of 103A
    EXPECT_EQ(project.bass[0].currPatt, 0);
    stopButton_Hit();
    EXPECT_EQ(project.bass[0].currPatt, 0);
    EXPECT_EQ(project.bass[0].nextPatt, 3);
    EXPECT_EQ(songPosition->moduleStep[0], 0);
    EXPECT_TRUE(MIDIIn1.MessageEvents); // controllers move knobs again
    playButton();
    program.play(5);
    playButton();
    EXPECT_EQ(project.bass[0].currPatt, 3);
    EXPECT_TRUE(MIDIIn1.MessageEvents);
}

TEST_F(Transport, EveryNoteThatStartedEnds) {
    for (int s = 0; s < kSteps; s += 3) program.click(Control::step109LED, s);
    test::setBassSteps(0, "C - E^ - G! - - C' D_");
    for (const auto stop : {playButton, stopButton_Hit}) { // the latter in song mode
        program.wire();
        playButton();
        program.play(21);
        stop();
        int messages = 0;
        std::set<std::string> sounding;
        for (const std::string& message : program.devices.ports[0].sent) {
            if (message[0] != '9') continue;
            ++messages;
            sounding.insert(message.substr(0, 5));
            if (message.ends_with(" 00")) sounding.erase(message.substr(0, 5));
        }
        EXPECT_GT(messages, 20);
        EXPECT_TRUE(sounding.empty());
        Check1_Click();
    }
}

TEST_F(Transport, SongStartsOnTheBarLineWithTheStepsThatBelongThere) {
    project.bass[1].patterns[0][0].loopEnd = 11;
    Check1_Click();
    songPosition.write().songTick = 16 * 3 + 7;
    program.calls();
    playButton();
    EXPECT_EQ(songPosition->songTick, 48);
    EXPECT_EQ(songPosition->moduleStep[1], 0); // 48 mod 12
    const std::string calls = program.calls();
    EXPECT_LT(calls.find("HoldTicks32(-1)"),
              calls.find("SetMarluneTempo32(140) song(48 A1>A1@0 A1>A1@0 A1>A1@0)"));
    EXPECT_LT(calls.find("StartMarluneTimer32(17,0)"), calls.find("HoldTicks32(0)"));
    program.play(20);
    EXPECT_EQ(songPosition->moduleStep[1], (19) % 12);
    StopPlay();
    EXPECT_EQ(songPosition->songTick, 48 + 20); // stays where the last tick left it
}

TEST_F(Transport, AStartFindsItsPlaceWhateverTheSongHadPlaced) {
    test::setBassSteps(0, "C D E F G A B C C C C C C C C C");
    for (int bar = 4; bar < 20; ++bar) setBar(0, 16 * bar, 0, 2);
    project.bass[0].patterns[0][2].loopEnd = 11;
    Check1_Click();
    moveSongForward(5, false, true);
    Check1_Click();
    program.wire();
    playButton();
    program.play(1);
    EXPECT_NE(program.wire().find("fa f8 90 24 "), std::string::npos); // step 1, not 6
    StopPlay();

    Check1_Click();
    songPosition.write().songTick = 16 * 6;
    selectionOf(project, 0).nextPatt = 1; // left over from pattern mode
    playButton();
    program.play(2);
    playButton();
    EXPECT_EQ(shownFrame(Control::DigitPatt, 0), 2); // the bar's
    program.calls();
    playButton();
    EXPECT_NE(program.calls().find("song(96 A3>A3@8"), std::string::npos); // (96 - 64) mod 12
    program.play(1);
    program.wire();
    MDIForm_Unload(); // as by a signal
    EXPECT_NE(program.wire().find("fc"), std::string::npos);
}

TEST_F(Recording, ArmsOnlyInSongModeAndFreesTheKnobs) {
    recButton_Click();
    EXPECT_FALSE(recordingState->recordOn);
    Check1_Click();
    EXPECT_FALSE(shownEnabled(Control::knobSprite, 18));
    EXPECT_TRUE(shownEnabled(Control::knobSprite, 19));
    stopButton_Hit(); // nothing runs
    recButton_Click();
    EXPECT_TRUE(recordingState->recordOn && shownEnabled(Control::knobSprite, 18) && MIDIIn1.MessageEvents);
    program.doubleClick(Control::RecButton);
    EXPECT_TRUE(recordingState->recordOn);
    recButton_Click();
    EXPECT_FALSE(recordingState->recordOn || shownEnabled(Control::knobSprite, 0));
    // Whatever ends recording puts out the lamp and locks the knobs.
    for (const auto end :
         {stopButton_Hit, startStopButton_Click, Check1_Click, mnuToolsInitBarfromPatt_Click}) {
        if (!songPosition->songMode) Check1_Click();
        recButton_Click();
        playSongButton_Click();
        program.play(2);
        end();
        EXPECT_FALSE(recordingState->recordOn);
        EXPECT_EQ(shownFrame(Control::RecButton, 0), songPosition->songMode ? 1 : 0);
        EXPECT_EQ(shownEnabled(Control::knobSprite, 0), !songPosition->songMode);
        StopPlay();
        EXPECT_EQ(shownFrame(Control::playSongButton, 0), songPosition->songMode ? 1 : 0);
    }
}

} // namespace
} // namespace marlune
