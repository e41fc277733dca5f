#include <gtest/gtest.h>

#include "engine/engine_script.h"

namespace marlune::test {
namespace {

TEST(StepPlaying, BassStepsBecomeNotesThatRingUntilThePitchChanges) {
    const char* rows[][3] = {
        {"C C- E^!", "on36 |  | off36 on52!", "off52"}, // a rest of the same pitch does not cut
        {"C C", "on36 | on36 | on36", "off36"},         // nor does the note's own repetition
        {"C D- D", "on36 | off36 | on38", "off38"},
        {"C- D G-", " | on38 | off38", ""}, // nothing to release before something sounded
        {"C-! B_ C^_", " | on35 | off35 on36", "off36"},
        {"A# G", "on46 | off46 on43 | off43 on46", "off46"},
    };
    for (const auto& [steps, sounds, stopped] : rows) {
        Player player;
        setBass(0, 0, steps);
        EXPECT_EQ(player.play(3), sounds) << steps;
        EXPECT_EQ(player.stop(), stopped) << steps;
    }
    Player player; // all together: releases, drums, basslines
    setDrums(0, "2 2");
    setBass(0, 0, "C D");
    setBass(1, 0, "E F");
    EXPECT_EQ(player.play(2), "d:on42 on36 b:on40 | off36 b:off40 d:off42 d:on42 on38 b:on41");
}

TEST(StepPlaying, WhatSoundsIsReleasedWhereItBeganWhateverChangesMeanwhile) {
    Player player; // drums end with their next hit or at the first step
    setDrums(0, "0 07 16 -");
    EXPECT_EQ(player.play(5),
              "d:on40 | d:off40 d:on40! | d:on41 d:on46 |  | d:off40 d:off41 d:off46 d:off40 d:on40");
    Set109Chan32(2, 3);
    Set109DrumNote32(0, 0, 0, 60);
    EXPECT_EQ(player.play(1), "d:off40 3:on60!");
    setDrums(0, "- - - -");
    EXPECT_EQ(player.play(7), " |  | 3:off60 |  |  |  | "); // once
    Player bass;
    setBass(0, 0, "C C-");
    bass.play(1);
    Set103Chan32(0, 4);
    EXPECT_EQ(bass.play(2), "off36 | 4:on36");
    Set103NoteOffset32(0, 50);
    EXPECT_EQ(bass.play(2), "4:off36 | 4:on50");
}

TEST(StepPlaying, AProgramGoesOutOncePerStartWithTheModulesKnobsBehindIt) {
    Player player;
    setBass(1, 0, "C");
    Set103Patch32(1, 0, 0, 5);
    Set103StoredChan32(1, 7);
    for (int knob = 6; knob < 12; ++knob) DefineController32(knob, knob == 10 ? -1 : 20 + knob);
    DefineController32(5, 20); // of the modules beside it
    DefineController32(12, 20);
    const std::string knobs = "b:cc26=100 b:cc27=100 b:cc28=100 b:cc29=100 b:cc31=127 b:on36";
    EXPECT_EQ(player.play(2), "7:pc5 " + knobs + " | b:on36");
    Set103Patch32(1, 0, 0, 9);
    EXPECT_EQ(player.play(1), "7:pc9 " + knobs);
    Set103Patch32(1, 0, 0, kNoPatch);
    EXPECT_EQ(player.play(1), "b:on36");
    player.stop();
    Set103Patch32(1, 0, 0, 9);
    EXPECT_EQ(player.play(1), "7:pc9 " + knobs);
}

TEST(StepPlaying, KnobsGoOutNowOrWithTheNextStepAndCountAtThatVeryStep) {
    Player player;
    setBass(0, 0, "C!");
    setDrums(0, "0");
    for (const auto& [knob, controller] : {std::pair{0, 12}, {1, 128}, {12, 30}}) {
        DefineController32(knob, controller);
    }
    Set103Chan32(0, 2);
    SetController32(0, 200);
    EXPECT_EQ(player.wire.take(Role::seq, false), "2:cc12=127");
    // Knob 5 has no controller and is the velocity all the same.
    for (const auto& [knob, value] : {std::pair{12, 60}, {5, 90}, {1, 3}, {0, 10}, {0, 11}}) {
        PrepareController32(knob, value);
    }
    EXPECT_EQ(player.play(2),
              "2:cc12=11 d:cc30=60 d:on40@60 2:on36@90 | d:off40 d:off40 d:on40@60 2:on36@90");
    PrepareController32(0, 5);
    SetController32(0, 6); // the later value is out already
    EXPECT_EQ(player.play(1), "2:cc12=6 d:off40 d:off40 d:on40@60 2:on36@90");
    for (const int channel : {3, -1, 99}) {
        Set109Chan32(2, channel);
        SetController32(12, 60);
        Set103Chan32(0, channel);
        SetController32(0, 10);
    }
    EXPECT_EQ(player.wire.take(Role::seq, false),
              "3:cc30=60 3:cc12=10 cc30=60 cc12=10 15:cc30=60 15:cc12=10");
}

TEST(StepPlaying, ACueTakesOverWhenItsModuleWraps) {
    Player player;
    setBass(0, 0, "C D E");
    setBass(0, 1, "G A");
    Set103Loop32(1, 0, 0, 1);
    SetNextPatt32(0, 1);
    SetNextGroup32(2, 3);
    EXPECT_EQ(player.play(5), "on36 | off36 on38 | off38 on40 | off40 on43 | off43 on45");
    EXPECT_EQ(player.messages(), "t0:0,0,0 t1:1,1,1 t2:2,0,2 p0=0.1 t3:0,1,3 t4:1,0,4");
    SetModuleTick32(2, 15);
    SetModuleTick32(0, 1);
    SetNextPatt32(0, 0);
    Set103Loop32(0, 0, 1, 0); // shortened under the playing step
    player.play(2);
    EXPECT_EQ(player.messages(), "t5:1,1,15 p0=0.0 p2=3.0 t6:0,0,0");
}

TEST(StepPlaying, StopReleasesWhatSoundsAndStartsOverFromTheStoredPositions) {
    Player player;
    setBass(0, 0, "C D E");
    player.play(2);
    SendShortMessage32(0x95, 70, 1);
    SendShortMessage32(0xF0, 1, 2); // no message of a length
    SendShortMessage32(0x91, 70, 64);
    SendShortMessage32(0x81, 70, 0);
    EXPECT_EQ(player.stop(), "5:on70@1 b:on70@64 b:off70 off38 5:off70");
    EXPECT_EQ(player.messages(), ""); // the ticks went with the stop
    SetModuleTick32(0, 2);
    EXPECT_EQ(player.play(2), "on40 | off40 on36");
    EXPECT_EQ(player.messages(), "t2:2,0,0 t3:0,1,1");
}

TEST(PatternCopy, DiffersFromTheRecordInEachFieldByItself) {
    Player player;
    ProjectRecord record = emptyRecord();
    record.bass[0].patterns[0][0].steps[4].slide = true; // nothing plays it
    std::string difference;
    EXPECT_TRUE(player.engine.equalsRecord(record, &difference)) << difference;
    // Backwards: the first difference is named, and each of these comes before the last.
    std::string before;
    for (const Entry entry :
         {Entry::Set109Loop32, Entry::Set109DrumNote32, Entry::Set109bOn32, Entry::Set103Patch32,
          Entry::Set103Loop32, Entry::Set103Accent32, Entry::Set103Down32, Entry::Set103Up32,
          Entry::Set103NoteOn32, Entry::Set103Note32}) {
        player.engine.call({entry, {1, 2, 3, 5, 1}});
        EXPECT_FALSE(player.engine.equalsRecord(record, &difference));
        EXPECT_NE(difference, std::exchange(before, difference));
    }
    EXPECT_EQ(difference, "103B bank 2 pattern 3 note[5]: component 1, record 0");
}

} // namespace
} // namespace marlune::test
