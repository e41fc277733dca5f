// A clock that isn't ours, from the dialog to the panel.
#include "transport/clock_follow.h"
#include "setup/clock_file.h"
#include "support/program_test.h"

namespace marlune {
namespace {

// A source and a room that do what the test says.
struct Script final : ClockSource, ClockRoom {
    void place(std::int64_t n, std::int64_t ns) noexcept override { first = ns - n * 20'000'000; }
    std::int64_t timeOf(std::int64_t n) const noexcept override { return first + n * 20'000'000; }
    ClockWish takeWish() noexcept override { return std::exchange(wish, {}); }
    bool offers(ClockKind kind) override { return kind != ClockKind::jack; }
    using ClockSource::sight;
    ClockSight sight(ClockKind /*kind*/) override { return seen; }
    void choose(const ClockSettings& settings, double tempo) override {
        said += "choose " + std::string(clockName(settings.kind)) + " " +
                std::to_string(static_cast<int>(tempo)) + "; ";
    }
    void setTempo(double tempo) override {
        said += "tempo " + std::to_string(static_cast<int>(tempo)) + "; ";
    }
    void transport(bool running, int tick) override {
        said += (running ? "runs " : "rests ") + std::to_string(tick) + "; ";
    }
    std::string take() { return std::exchange(said, {}); }
    std::int64_t first = 0;
    ClockWish wish;
    ClockSight seen;
    std::string said;
};

struct Follow : ProgramTest {
    Follow() {
        setClockRoom(&room);
        for (const ClockKind kind : {ClockKind::link, ClockKind::midi})
            program.engine.offerClock(kind, &room);
        program.calls();
    }
    ~Follow() override {
        SetClock32(0);
        setClockRoom(nullptr);
    }
    void wishes(ClockWish::Kind kind, int tick) {
        room.wish = {kind, tick};
        program.engine.playUntil(program.engine.nowNs());
        engineSpoke();
    }
    Script room;
};

TEST_F(Follow, ADialogChoosesAFileKeepsAndThePanelTells) {
    setConfigFolder(folder.path);
    program.shell.modal = {[](Form&) {
        EXPECT_EQ(midiSetupForm.clock.items,
                  (std::vector<std::string>{"Internal", "Ableton Link", "MIDI clock"}));
        midiSetupForm.clock.selected = 1;
        midiSetupForm.clockOffset.text = "-250";
        midiSetupForm.shareStart.checked = false;
        midiSetupForm.cmdOK_Click();
    }};
    mnuOptionsMidiSetup_Click();
    EXPECT_EQ(room.take(), "choose Ableton Link 140; ");
    const ClockSettings chosen{ClockKind::link, -100, false, true, false};
    EXPECT_EQ(loadClockSettings(), chosen);
    EXPECT_NE(program.calls().find("SetClockOffset32(-100000) SetClock32(1)"), std::string::npos);
    program.shown();
    room.seen = {128.4, true, 2};
    for (int look = 0; look < 6; ++look) tendClock();
    EXPECT_EQ(program.shown(), R"(clockBadge enabled knobTempo=23 tempoBPM="128")");
    EXPECT_EQ(program.shell.status, "Link: 2 others are there.");
    stepTempo(+2); // from theirs, and to them
    tendClock();
    EXPECT_EQ(room.take() + program.shown(), R"(tempo 130; tempoBPM="130")");
    const std::string rubbish = "source = sundial\noffset = x\n= 3\nlead-jack = on\n\xff\xfe";
    writeBytes(folder.file("clock.cfg"), {rubbish.begin(), rubbish.end()});
    EXPECT_EQ(loadClockSettings(), (ClockSettings{ClockKind::internal, 0, true, true, true}));
    takeClockSettings(); // as a start does
    EXPECT_EQ(shownText(Control::clockBadge, 0) + shownText(Control::tempoBPM, 0), "130");
}

TEST_F(Follow, WishesAreCarriedOutInBothModes) {
    chooseClock({.kind = ClockKind::midi});
    EXPECT_EQ(shownText(Control::clockBadge, 0), "MIDI");
    room.take();
    wishes(ClockWish::locate, 32); // means nothing to patterns
    wishes(ClockWish::start, 32);
    program.play(5);
    EXPECT_EQ(room.take(), "runs 0; ");
    wishes(ClockWish::stop, 0);
    wishes(ClockWish::stop, 0);
    EXPECT_EQ(room.take(), "rests 5; ");
    EXPECT_FALSE(transportState->transportRunning);
    Check1_Click();
    wishes(ClockWish::locate, 48);
    EXPECT_EQ(songPosition->songTick, 48);
    wishes(ClockWish::start, 160);
    program.play(3);
    wishes(ClockWish::locate, 320);
    program.play(2);
    EXPECT_EQ(songPosition->playedTick, 321);
    wishes(ClockWish::start, kWhereItStands); // begins its bar anew
    EXPECT_EQ(songPosition->songTick, 320);
    EXPECT_EQ(room.take(), "runs 160; rests 163; runs 320; rests 322; runs 320; ");
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(Follow, FourTapsInARowMakeATempo) {
    const auto tap = [](std::initializer_list<int> after) {
        for (const int ms : after) {
            TestProgram::advanceClock(ms);
            Form_KeyDown('B', 0);
        }
        return int{project.tempo};
    };
    EXPECT_EQ(tap({5000, 500, 500}), 140);
    EXPECT_EQ(tap({500}), 120);
    EXPECT_EQ(tap({490, 510, 460}), 122);
    EXPECT_EQ(tap({900, 400, 400, 400}), 150); // out of the row: a new one
    EXPECT_EQ(tap({1900, 1500, 1500, 1500}), 40);
    EXPECT_EQ(tap({3000, 100, 100, 100}), 240);
    program.click(Control::tapTempo);
    EXPECT_EQ(project.tempo, 240);
}

} // namespace
} // namespace marlune
