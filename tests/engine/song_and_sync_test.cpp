#include <gtest/gtest.h>

#include "engine/engine_script.h"

namespace marlune::test {
namespace {

// A song from a tick on, with patterns that tell themselves apart: C in pattern 0, D in 1, E in 2.
struct SongPlayer : Player {
    explicit SongPlayer(int tick) {
        setBass(0, 0, "C C C C C C C C C C C C C C C C");
        setBass(0, 1, "D D D D D D D D D D D D D D D D");
        setBass(0, 2, "E E");
        SetSong32(-1);
        SetSongTick32(tick);
    }
};

TEST(SongPlaying, AStartUsesThisBarAndEachBarLineTheNext) {
    SongPlayer player(32);
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
    SongPlayer player(0);
    Set103Loop32(0, 0, 0, 11);
    SetNextPatt32(0, 1); // left over from pattern mode
    player.play(12);
    SetNextBarPatt32(0, 0);
    player.messages();
    player.play(5);
    EXPECT_EQ(player.messages(), "t12:0,12,12 t13:1,13,13 t14:2,14,14 t15:3,15,15 t16:4,0,0");
}

TEST(SongPlaying, BarsThatAreNotSetSinceThePlacingMoveNothing) {
    SongPlayer player(0);
    SetCurrBarPatt32(0, 1);
    SetNextBarPatt32(0, 1);
    SetSongTick32(15); // forgets both
    EXPECT_EQ(player.play(2), "on36 | on36");
    SetSongTick32(31);
    SetNextBarPatt32(0, 2);
    SetSong32(0);
    SetSong32(-1); // forgets as well
    EXPECT_EQ(player.play(2), "on36 | on36");
    SetSongTick32(15999);
    SetNextBarPatt32(0, 1); // one half: the bank is the module's own
    player.messages();
    EXPECT_EQ(player.play(2), "on36 | off36 on38");
    EXPECT_EQ(player.messages(), "t15999:4,4,4 p0=0.1 c0=0.1 t0:0,5,5"); // the last tick, and the first
    SetSongTick32(0); // placed while running: this bar's register is empty
    EXPECT_EQ(player.play(2), "on38 | on38");
}

TEST(SongPlaying, AThousandBarsLeaveNoNoteOnWhateverWasCalledBefore) {
    Player player;
    Dice dice;
    const int values[] = {-2'000'000'000, -1, 2, 15, 16, 2'000'000'000};
    const auto any = [&] { return values[dice(6)]; };
    for (int n = 0; n < 400'000; ++n) {
        const auto entry = static_cast<Entry>(dice(static_cast<int>(Entry::SendShortMessage32) + 1));
        if (entry < Entry::SetSyncOffset32) continue;
        player.engine.call({entry, {any(), any(), any(), any(), any()}});
        if (n % 1000 == 0) player.play(1);
    }
    player.stop();
    player.messages();
    SetSyncOffset32(0);
    for (int n = 0; n < 60'000; ++n) {
        Set103Note32(dice(2), dice(4), dice(8), dice(16), dice(13));
        Set103NoteOn32(dice(2), dice(4), dice(8), dice(16), dice(2));
        Set109bOn32(dice(4), dice(8), dice(16), dice(8), dice(4) / 3);
        Set109DrumNote32(dice(4), dice(8), dice(8), 30 + dice(60));
    }
    SetSong32(-1);
    SetSongTick32(0);
    std::size_t most = 0;
    for (int tick = 0; tick < 16'000; ++tick) {
        if (tick % 400 == 0) StartMarluneTimer32(10, 0);
        if (tick % 16 == 5) SetNextBarPatt32(dice(3), dice(8)), SetNextBarGroup32(dice(3), dice(4));
        if (tick % 50 == 0) Set103Chan32(dice(2), dice(3)), Set109Chan32(2, 9 + dice(2));
        if (tick % 70 == 0) Set103NoteOffset32(dice(2), 24 + dice(40));
        player.periods(6);
        EXPECT_NE(player.messages().find("t" + std::to_string(tick) + ":"), std::string::npos);
        if (tick % 400 != 399) continue;
        StopMarluneTimer32();
        const Sounding sounding(player.wire.log);
        EXPECT_TRUE(sounding.on.empty()) << tick;
        most = std::max(most, sounding.most);
        player.wire.log.clear();
    }
    EXPECT_LE(most, 9U + 7U); // two basslines, seven drums, and drums of a channel just left
    EXPECT_GE(most, 6U);
}

// The clock stream: so many periods, then the stop.
void clocked(Player& player, int periods) {
    setBass(0, 0, "C");
    StartMarluneTimer32(20, 0);
    player.wire.log.clear();
    player.periods(periods);
    StopMarluneTimer32();
}

TEST(SyncStream, OpensAndClosesAsThePositionAsks) {
    const std::tuple<int, int, int, int, const char*> rows[] = {
        // song, tick, offset, periods
        {0, 0, 0, 3, "FA F8 on36 F8 F8 off36 FC"},
        {0, 40, 0, 3, "FA F8 on36 F8 F8 off36 FC"},
        {-1, 0, 0, 3, "FA F8 on36 F8 F8 off36 FC"},
        {-1, 15984, 0, 3, "spp15984 FB F8 on36 F8 F8 off36 FC"},
        {-1, 32, 2, 3, "spp32 FB F8 F8 F8 on36 off36 FC"},
        {-1, 32, -2, 3, "on36 spp32 FB F8 off36 FC"}, // announces where the notes began
        {0, 0, 99, 3, "FA F8 F8 F8 FC"},              // as +4
        {0, 0, 0, 0, ""},                             // nothing to end before the first period
    };
    for (const auto& [song, tick, offset, periods, sent] : rows) {
        Player player;
        SetSong32(song);
        SetSongTick32(tick);
        SetSyncOffset32(offset);
        clocked(player, periods);
        EXPECT_EQ(player.wire.take(Role::seq, true), sent) << tick << ' ' << offset;
    }
}

TEST(SyncStream, GoesOutOnceWhereBothRolesNameOneDevice) {
    for (const int syncDevice : {0, 1}) {
        MemoryDevices devices;
        Player player(&devices);
        EXPECT_EQ(OpenSyncPort32(syncDevice), 1);
        EXPECT_EQ(OpenMidiPort32(0), 1);
        clocked(player, 2);
        EXPECT_EQ(devices.ports[0].take(Role::seq, true), "FA F8 on36 F8 off36 FC");
        EXPECT_EQ(devices.ports[1].take(Role::seq, true), syncDevice == 1 ? "FA F8 F8 FC" : "");
        EXPECT_EQ(OpenMidiPort32(2), 0);
        EXPECT_EQ(devices.ports[0].users, syncDevice == 0 ? 1 : 0);
    }
}

} // namespace
} // namespace marlune::test
