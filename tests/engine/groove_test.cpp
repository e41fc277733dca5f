#include <gtest/gtest.h>

#include "engine/engine_script.h"
#include "engine/midi_clock.h"

namespace marlune::test {
namespace {

constexpr std::int64_t kMs = 1'000'000;

// What went out on a port with its time in ms since the first event, clock bytes as a dot.
std::string timed(const Recorder& port) {
    std::string line;
    for (const Sent& s : port.log) {
        const bool clock = s.message.bytes[0] >= 0xF8;
        line +=
            clock ? "." : ' ' + text(s.message) + '@' + std::to_string((s.ns - port.log[0].ns) / kMs) + ' ';
    }
    return line;
}

TEST(Swing, MovesTheEvenSixteenthsAndNeitherBarLinesNorTheClock) {
    MemoryDevices devices;
    Player player(&devices);
    setBass(0, 0, "C D E");
    OpenMidiPort32(0);
    SetSwing32(25); // 75 %
    StartMarluneTimer32(20, 0);
    player.periods(6 * 6 + 3);
    EXPECT_EQ(
        timed(devices.ports[0]),
        ".. on36@0 ......... off36@180  on38@180 ... off38@240  on40@240 ......... off40@420  on36@420 ... "
        "off36@480  on38@480 ......... off38@660  on40@660 ..");
    // Whatever the swing, and wherever it is changed.
    Dice dice;
    for (int i = 0; i < 400; ++i) {
        SetSwing32(dice(26));
        player.periods(1 + dice(20));
    }
    int step = 0, clock = 0;
    for (const Sent& s : devices.ports[0].log) {
        const std::int64_t ns = s.ns - 25 * kMs;
        if (s.message.bytes[0] == 0xF8) {
            ASSERT_EQ(ns, clock++ * 20 * kMs);
        }
        if ((s.message.bytes[0] & 0xF0) != 0x90 || s.message.bytes[2] == 0) continue;
        const std::int64_t late = ns - step * 120 * kMs;
        EXPECT_EQ(text(s.message), "on" + std::to_string(36 + step % 3 * 2));
        EXPECT_TRUE(step++ % 2 == 0 ? late == 0 : late >= 0 && late <= 60 * kMs) << late;
    }
    EXPECT_GT(step, 500);
    StopMarluneTimer32();
    EXPECT_TRUE(Sounding(devices.ports[0].log).on.empty());
}

TEST(Slides, BeginBeforeTheNoteBeforeItIsReleased) {
    const auto play = [](bool on, const char* steps, int slid) {
        Player player;
        setBass(0, 0, steps);
        for (int s = 0; s < 4; ++s) Set103Slide32(0, 0, 0, s, (slid >> s & 1) != 0);
        SetSlides32(on ? -1 : 0);
        return player.play(5);
    };
    EXPECT_EQ(play(true, "C D E F", 6), "on36 | on38 off36 | on40 off38 | off40 on41 | off41 on36");
    EXPECT_EQ(play(false, "C D E F", 6), "on36 | off36 on38 | off38 on40 | off40 on41 | off41 on36");
    EXPECT_EQ(play(true, "C C E- F", 15),
              "on36 | on36 | off36 | on41 off40 | on36 off41"); // a rest slides nowhere
}

TEST(Mutes, SilenceWhatPlaysOnAtOnceOrWithTheBar) {
    Player player;
    setBass(0, 0, "C D E F");
    setBass(1, 0, "G");
    setDrums(0, "0 01 2 -");
    EXPECT_EQ(player.play(2), "d:on40 on36 b:on43 | off36 d:off40 d:on40 d:on41 on38 b:on43");
    SetMutes32(1, 1, 0);
    EXPECT_EQ(player.play(3), "off38 d:off40 d:on42 b:on43 | b:on43 | d:off41 d:off42 b:on43");
    SetMutes32(2, 0, -1); // waits for the bar line: eleven steps on
    EXPECT_EQ(player.play(11),
              "d:off41 d:on41 b:on43 | d:off42 d:on42 b:on43 | b:on43 | d:off41 d:off42 b:on43 | d:off41 "
              "d:on41 b:on43 | "
              "d:off42 d:on42 b:on43 | b:on43 | d:off41 d:off42 b:on43 | d:off41 d:on41 b:on43 | d:off42 "
              "d:on42 b:on43 | "
              "b:on43");
    EXPECT_EQ(player.play(3),
              "b:off43 d:off41 d:off42 d:off40 d:on40 on36 | off36 d:off40 d:on40 d:off41 d:on41 on38 | "
              "off38 d:off42 "
              "d:on42 on40");
    player.stop();
}

} // namespace
} // namespace marlune::test
