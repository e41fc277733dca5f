#include "support/program_test.h"

namespace marlune {
namespace {

using Transforms = ProgramTest;
using Randomizers = ProgramTest;

TEST_F(Transforms, TransposeMovesThePitchByOneUntilItsEnds) {
    for (int note = 0; note <= 12; ++note) {
        for (const int octave : {-1, 0, 1}) {
            for (const int delta : {-1, 1}) {
                BassStep step;
                step.note = note;
                step.up = octave > 0;
                step.down = octave < 0;
                const BassStep moved = transposed(step, delta);
                const bool atEnd =
                    (note == 0 && octave < 0 && delta < 0) || (note == 12 && octave > 0 && delta > 0);
                EXPECT_EQ(pitchOfStep(moved, 40) - pitchOfStep(step, 40), atEnd ? 0 : delta)
                    << note << ' ' << octave;
                EXPECT_FALSE(moved.up && moved.down);
            }
        }
    }
}

// Chi-square of counts against expected shares; the bound is that of p = 0.001 for so many degrees of
// freedom.
void expectShares(const std::vector<int>& counts, const std::vector<double>& shares, double bound) {
    double total = 0;
    for (const int count : counts) total += count;
    double chi = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const double expected = shares[i] * total;
        chi += (counts[i] - expected) * (counts[i] - expected) / expected;
    }
    EXPECT_LT(chi, bound);
}

TEST_F(Randomizers, HaveTheirDistributions) {
    setRandomSource(seededRandom(7));
    std::vector<int> notes(13), rests(2), octaves(3), accents(2);
    for (int round = 0; round < 500; ++round) {
        randPitch(0);
        RandNote(0);
        randoctave(0);
        randAccent(0);
        for (const BassStep& step : currentBass(0).steps) {
            ++notes[step.note];
            ++rests[step.noteOn ? 1 : 0];
            ++octaves[step.up ? 1 : step.down ? 2 : 0];
            ++accents[step.accent ? 1 : 0];
            ASSERT_FALSE(step.up && step.down);
        }
    }
    // r x 13 rounded, at most 12: half a share for 0, one and a half for 12.
    std::vector<double> shares(13, 1.0 / 13);
    shares[0] = 0.5 / 13;
    shares[12] = 1.5 / 13;
    expectShares(notes, shares, 32.9);
    expectShares(rests, {0.5, 0.5}, 10.8);
    expectShares(accents, {0.5, 0.5}, 10.8);
    expectShares(octaves, {1.0 / 3, 1.0 / 3, 1.0 / 3}, 13.8);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(Randomizers, TouchTheirAspectOnly) {
    setEditSel(2);
    project.drum.selDrum = 3;
    const DrumPattern before = currentDrum();
    mnuToolsROctave_Click(); // nothing on the drums
    EXPECT_EQ(std::memcmp(&before, &currentDrum(), sizeof before), 0);
    mnuToolsRAccents_Click();
    int accents = 0;
    for (const auto& row : currentDrum().drumOn) {
        accents += row[7] != 0 ? 1 : 0;
        EXPECT_EQ(row[3], 0);
    }
    EXPECT_GT(accents, 0);
    project.drum.selDrum = 7;
    mnuToolsRNotes_Click(); // also on row 7
    EXPECT_EQ(program.copyDifference(), "");
}

} // namespace
} // namespace marlune
