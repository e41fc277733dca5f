// A day in virtual time, with cues, modes and songs at random: no note is left, no clock off its grid, no
// memory taken for good.
#include <malloc.h>

#include "boundary/sounding_notes.h"
#include "support/program_test.h"

namespace marlune {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kHours = 2;
#elif defined(__has_feature)
constexpr int kHours = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) ? 2 : 24;
#else
constexpr int kHours = 24;
#endif

// Clocks against the grid that the first one and the tempo lay.
struct Grid {
    void heard(const MidiMessage& message, std::int64_t due) {
        if (message.bytes[0] != kTimingClock) return;
        if (count == 0) first = due;
        const double place = 60e9 / 24 / project.tempo * static_cast<double>(count++);
        worst = std::max(worst, std::abs(static_cast<double>(due - first) - place));
    }
    std::int64_t first = 0, count = 0;
    double worst = 0; // ns
};

TEST(ADay, OfRandomCuesAndSongsLeavesNothingBehind) {
    test::Options options;
    options.recorded = false;
    TestProgram program(options);
    std::mt19937 random(24);
    const auto below = [&random](int count) { return static_cast<int>(random() % count); };
    test::randomProject(24);
    pushAllPatterns(0, 1, kDrumModule);
    config.syncOutDevice = 1;
    MidiInit();
    SoundingNotes notes;
    Grid grid;
    program.devices.ports[0].heard = [&](const MidiMessage& message, std::int64_t) { notes.read(message); };
    program.devices.ports[1].heard = [&](const MidiMessage& message, std::int64_t due) {
        grid.heard(message, due);
    };
    std::size_t heap = 0;
    for (int hour = 0; hour < kHours; ++hour) {
        SCOPED_TRACE(hour);
        project.tempo = hour % 6 == 0 ? kMaxTempo : kMinTempo + below(kMaxTempo - kMinTempo + 1);
        refreshTempo();
        grid = {};
        playButton();
        const std::int64_t steps = 60LL * 4 * project.tempo;
        for (std::int64_t played = 0; played < steps;) {
            const int span = std::min<int>(1 + below(200), static_cast<int>(steps - played));
            program.play(span);
            TestProgram::advanceClock(span * 15'000 / project.tempo);
            played += span;
            const int module = below(3);
            switch (below(5)) {
                case 0: Check1_Click(); break;
                case 1: program.midi(0x90, below(128), 100); break;
                default: program.click(Control::DigitPatt, 2 * module + below(2)); break;
            }
            Form_KeyDown('1' + below(8), below(2));
            Form_KeyUp('1', 0);
            program.view.shown.clear();
            program.shell.passing.clear();
        }
        EXPECT_EQ(grid.count, 6 * steps);
        EXPECT_LE(grid.worst, 1);
        playButton();
        int left = 0;
        notes.releaseAll([&](const MidiMessage&) { ++left; });
        EXPECT_EQ(left, 0);
        if (songPosition->songMode) Check1_Click();
        clearUndoHistory();
        program.shell.asked = {};
        const std::size_t now = ::mallinfo2().uordblks;
        if (hour == 1) heap = now;
        EXPECT_TRUE(hour < 2 || now <= heap + 65'536) << now << " behind " << heap;
    }
}

} // namespace
} // namespace marlune
