#include <gtest/gtest.h>

#include <random>

#include "engine/engine_script.h"

namespace marlune::test {
namespace {

// A song at a bar line, with one-note patterns that tell themselves apart: C in pattern 0, D in 1, E in 2.
struct SongPlayer : Player {
    using Player::Player;
    void place(int tick) {
        setBass(0, 0, "C C C C C C C C C C C C C C C C");
        setBass(0, 1, "D D D D D D D D D D D D D D D D");
        setBass(0, 2, "E E");
        SetSong32(-1);
        SetSongTick32(tick);
    }
    // Only what changes from step to step.
    std::string firstSounds(int steps) {
        std::string line;
        for (int s = 0; s < steps; ++s) {
            const std::string step = play(1);
            if (step.find("off") != std::string::npos) line += std::to_string(s) + ": " + step + ' ';
        }
        return line;
    }
};

TEST(SongPlaying, AStartUsesThisBarAndEachBarLineTheNext) {
    SongPlayer player;
    player.place(32);
    SetCurrBarGroup32(0, 0);
    SetCurrBarPatt32(0, 1);
    SetNextBarGroup32(0, 0);
    SetNextBarPatt32(0, 2);
    SetModuleTick32(0, 9);
    EXPECT_EQ(player.play(1), "on38"); // this bar's, although a next one is set
    EXPECT_EQ(player.messages(), "p0=0.1 c0=0.1 t32:0,0,0");
    player.play(15);
    player.messages();
    EXPECT_EQ(player.play(1), "off38 on40");
    EXPECT_EQ(player.messages(), "p0=0.2 c0=0.2 t48:0,0,0");
    SetSong32(0); // the bar's pattern has become the cue as well: the wrap stays with it
    player.play(1);
    EXPECT_EQ(player.messages(), "t49:1,1,1");
}

TEST(SongPlaying, AnUnchangedPatternRunsThroughTheBarLineAndCuesStayOut) {
    SongPlayer player;
    player.place(0);
    Set103Loop32(0, 0, 0, 11);
    SetNextPatt32(0, 1); // left over from pattern mode
    player.play(12);
    SetNextBarPatt32(0, 0);
    player.messages();
    player.play(5);
    EXPECT_EQ(player.messages(), "t12:0,12,12 t13:1,13,13 t14:2,14,14 t15:3,15,15 t16:4,0,0");
}

TEST(SongPlaying, BarsThatAreNotSetSinceThePlacingMoveNothing) {
    SongPlayer player;
    player.place(0);
    SetCurrBarPatt32(0, 1);
    SetNextBarPatt32(0, 1);
    SetSongTick32(15); // forgets both
    EXPECT_EQ(player.firstSounds(4), "");
    SetNextBarPatt32(0, 2);
    SetSong32(0);
    SetSong32(-1); // forgets as well
    SetSongTick32(31);
    SetNextBarPatt32(0, 1); // one half: the bank is the module's own
    EXPECT_EQ(player.firstSounds(2), "1: off36 on38 ");
    SetSongTick32(0); // placed while running: this bar's register is empty
    EXPECT_EQ(player.firstSounds(2), "");
}

TEST(SongPlaying, ThePositionWrapsBehindTheLastTickInBothModes) {
    for (const int song : {0, -1}) {
        SongPlayer player;
        player.place(15999);
        SetSong32(song);
        Set103Loop32(0, 0, 0, 0);
        player.play(2);
        EXPECT_EQ(player.messages(), "t15999:0,0,0 t0:0,1,1");
    }
}

TEST(SongPlaying, AThousandBarsLeaveNoNoteOn) {
    Player player;
    std::mt19937 random(7);
    const auto pick = [&random](int count) { return static_cast<int>(random() % count); };
    for (int n = 0; n < 60'000; ++n) {
        Set103Note32(pick(2), pick(4), pick(8), pick(16), pick(13));
        Set103NoteOn32(pick(2), pick(4), pick(8), pick(16), pick(2));
        Set109bOn32(pick(4), pick(8), pick(16), pick(8), pick(4) / 3);
        Set109DrumNote32(pick(4), pick(8), pick(8), 30 + pick(60));
    }
    SetSong32(-1);
    SetSongTick32(0);
    StartMarluneTimer32(10, 0);
    std::size_t most = 0;
    for (int tick = 0; tick < 16'000; ++tick) {
        if (tick % 16 == 5) SetNextBarPatt32(pick(3), pick(8)), SetNextBarGroup32(pick(3), pick(4));
        if (tick % 50 == 0) Set103Chan32(pick(2), pick(3)), Set109Chan32(2, 9 + pick(2));
        if (tick % 70 == 0) Set103NoteOffset32(pick(2), 24 + pick(40));
        player.periods(6);
        if (tick % 400 == 399) most = std::max(most, Sounding(player.wire.log).most);
        if (tick % 400 == 399 && tick < 15'000) {
            StopMarluneTimer32();
            EXPECT_TRUE(Sounding(player.wire.log).on.empty()) << tick;
            player.wire.log.clear();
            StartMarluneTimer32(10, 0);
        }
    }
    StopMarluneTimer32();
    EXPECT_TRUE(Sounding(player.wire.log).on.empty());
    EXPECT_LE(most, 9U + 7U); // two basslines, seven drums, and drums of a channel just left
    EXPECT_GE(most, 6U);
}

// The clock stream as the two roles hear it: periods played, then the stop.
std::string clocked(Player& player, Role role, int periods) {
    setBass(0, 0, "C");
    StartMarluneTimer32(20, 0);
    player.wire.log.clear();
    player.periods(periods);
    StopMarluneTimer32();
    return player.wire.take(role, true);
}

TEST(SyncStream, OpensAndClosesAsThePositionAsks) {
    struct Row {
        int song, tick, offset;
        const char* sent;
    };
    const Row rows[] = {
        {0, 0, 0, "FA F8 on36 F8 F8 off36 FC"},
        {0, 40, 0, "FA F8 on36 F8 F8 off36 FC"},
        {-1, 0, 0, "FA F8 on36 F8 F8 off36 FC"},
        {-1, 15984, 0, "spp15984 FB F8 on36 F8 F8 off36 FC"},
        {-1, 32, 2, "spp32 FB F8 F8 F8 on36 off36 FC"},
        {-1, 32, -2, "on36 spp32 FB F8 off36 FC"}, // announces where the notes began
        {0, 0, 99, "FA F8 F8 F8 FC"},              // as +4
    };
    for (const Row& row : rows) {
        Player player;
        SetSong32(row.song);
        SetSongTick32(row.tick);
        SetSyncOffset32(row.offset);
        EXPECT_EQ(clocked(player, Role::seq, 3), row.sent) << row.tick << ' ' << row.offset;
        const std::string again = clocked(player, Role::sync, 3);
        EXPECT_EQ(again.find("on"), std::string::npos);
        EXPECT_NE(again.find("F8"), std::string::npos);
    }
    Player player;
    EXPECT_EQ(clocked(player, Role::seq, 0), ""); // stopped before the first period: nothing to end
}

TEST(SyncStream, GoesOutOnceWhereBothRolesNameOneDevice) {
    for (const int syncDevice : {0, 1}) {
        MemoryDevices devices;
        const auto bytes = [&devices](int device) {
            std::string line;
            for (const Sent& s : devices.ports[device].log) line += text(s.message) + ' ';
            return line;
        };
        Player player(&devices);
        EXPECT_EQ(OpenSyncPort32(syncDevice), 1);
        EXPECT_EQ(OpenMidiPort32(0), 1);
        clocked(player, Role::seq, 2);
        EXPECT_EQ(bytes(0), "FA F8 on36 F8 off36 FC ");
        EXPECT_EQ(bytes(1), syncDevice == 1 ? "FA F8 F8 FC " : "");
        EXPECT_EQ(OpenMidiPort32(2), 0);
        EXPECT_EQ(devices.ports[0].users, syncDevice == 0 ? 1 : 0);
    }
}

} // namespace
} // namespace marlune::test
