#include "support/program_test.h"

namespace marlune {
namespace {

TEST(SongTrack, FollowersAndStepsAtTheEdges) {
    clearSongTracks();
    setBar(0, 998 * 16, 1, 2);
    setNextBar(0, 998 * 16 + 5, 3, 4);
    EXPECT_EQ(nextBarPatt(0, 15999), 4); // bar 999 follows itself
    setNextBar(0, 15999, 2, 2);
    EXPECT_EQ(barBank(0, 15999), 3);
    songTick = 15999;
    advanceSongTick();
    EXPECT_EQ(songTick, 0);

    // A pattern that stays runs on through the bar lines.
    for (int bar = 4; bar <= 6; ++bar) setBar(1, 16 * bar, 0, 5);
    EXPECT_EQ(moduleStepAtTick(1, 6 * 16, 12), 8);
    EXPECT_EQ(moduleStepAtTick(1, 7 * 16 + 3, 12), 3);
    EXPECT_EQ(moduleStepAtTick(2, 15999, 16), 15); // one run down to bar 0
    EXPECT_EQ(moduleStepAtTick(2, 15999, 7), 15999 % 7);
}

TEST(SongMoves, SnapToBarsAndStopAtTheEnds) {
    TestProgram program;
    Check1_Click();
    const auto from = [](int tick) { songTick = tick; };
    from(37);
    moveSongForward(1, true, true);
    EXPECT_EQ(songTick, 48);
    from(37);
    moveSongBack(1, true, true);
    EXPECT_EQ(songTick, 16);
    moveSongBack(5, true, true);
    EXPECT_EQ(songTick, 0);
    from(15990);
    moveSongForward(8, true, true);
    EXPECT_EQ(songTick, 15999);
    EXPECT_EQ(shownText(Control::timeDisplay, 0), "1000");
    EXPECT_EQ(shownText(Control::microDisplay, 0), "");
    from(20);
    recordOn = true;
    moveSongForward(1, false, false);
    EXPECT_EQ(shownText(Control::microDisplay, 0), "[ 6/16]");
    EXPECT_FALSE(recordOn);
}

TEST(SongMoves, TakeThePatternsAndKnobsOfThePlace) {
    TestProgram program;
    setBar(0, 32, 1, 3);
    setBar(0, 48, 2, 4);
    project.bass[0].patterns[1][3].loopEnd = 2;
    knobTrack[7][33] = 55;
    Check1_Click();
    program.calls();
    moveSongForward(33, false, true);
    EXPECT_EQ(project.bass[0].currBank, 1);
    EXPECT_EQ(project.bass[0].currPatt, 3);
    EXPECT_EQ(moduleStep[0], 1);
    EXPECT_EQ(project.knobValue[7], 55);
    EXPECT_EQ(shownFrame(Control::DigitPatt, 1), 20);
    EXPECT_EQ(program.calls(),
              "PrepareController32(7,55) SetModuleTick32(0,1) SetModuleTick32(1,1) SetModuleTick32(2,1) "
              "SetSongTick32(33)");
    rewindSong();
    EXPECT_EQ(project.bass[0].currPatt, 0);
    EXPECT_EQ(program.calls(), "SetSongTick32(0) PrepareController32(7,0)");
}

} // namespace
} // namespace marlune
