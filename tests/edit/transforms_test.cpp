#include "support/program_test.h"

namespace marlune {
namespace {

using Transforms = ProgramTest;
using PatchSteps = ProgramTest;
using Randomizers = ProgramTest;
using SongRandomizer = SongModeTest;

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

TEST_F(Transforms, TransposeTellsTheComponentOfCarriedOctaves) {
    test::setBassSteps(0, "C C_ C^ C'");
    program.calls();
    transposePatt(0, -1);
    const std::string calls = program.calls();
    EXPECT_TRUE(
        calls.starts_with("Set103Down32(0,0,0,0,-1) Set103Note32(0,0,0,0,11) Set103Note32(0,0,0,1,0) "
                          "Set103Up32(0,0,0,2,0) Set103Down32(0,0,0,2,0) Set103Note32(0,0,0,2,11) "
                          "Set103Note32(0,0,0,3,11)"))
        << calls;
    EXPECT_EQ(program.copyDifference(), "");
    setEditSel(2);
    project.drum.selDrum = 3;
    project.drum.patterns[0][0].drumNote[3] = 127;
    mnuEditTransposeUp_Click();
    mnuEditTransposeDown_Click();
    EXPECT_EQ(shownText(Control::Offset109, 3), "126");
    project.drum.selDrum = 7;
    mnuEditTransposeDown_Click();
    EXPECT_EQ(project.drum.patterns[0][0].drumNote[7], 0);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(Transforms, RotationComesRoundAfterSixteenAndLeavesTheLoop) {
    test::setBassSteps(0, "C D! E^ F_ - G");
    project.bass[0].patterns[0][0].loopEnd = 3;
    project.drum.patterns[0][0].drumOn[15][2] = 255;
    const ProjectRecord before = project;
    mnuEditMoveRight_Click();
    EXPECT_EQ(project.bass[0].patterns[0][0].steps[1].note, 0);
    EXPECT_EQ(project.bass[0].patterns[0][0].steps[3].note, 4);
    setEditSel(2);
    mnuEditMoveRight_Click();
    EXPECT_EQ(project.drum.patterns[0][0].drumOn[0][2], 255);
    for (int i = 0; i < 15; ++i) mnuEditMoveRight_Click();
    setEditSel(0);
    mnuEditMoveLeft_Click();
    EXPECT_EQ(std::memcmp(&project.bass, &before.bass, sizeof before.bass), 0);
    EXPECT_EQ(std::memcmp(&project.drum.patterns, &before.drum.patterns, sizeof before.drum.patterns), 0);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(PatchSteps, GuardTheirModesDifferently) {
    mnuPatchDec_Click();
    EXPECT_EQ(currentBass(0).patch, -1);
    mnuPatchInc_Click();
    EXPECT_EQ(shownText(Control::PatchID, 0), "0");
    currentBass(0).patch = 127;
    mnuPatchInc_Click();
    EXPECT_EQ(currentBass(0).patch, 127);
    Check1_Click();
    currentBass(0).patch = 5;
    mnuPatchDec_Click();
    EXPECT_EQ(currentBass(0).patch, 5);
    mnuPatchInc_Click();
    EXPECT_EQ(currentBass(0).patch, 6);
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

TEST_F(SongRandomizer, FillsTheChosenModulesFromTheBar) {
    songPosition.write().songTick = 16 * 997 + 3;
    const auto enter = [](const char* count) {
        return [count](Form&) {
            EXPECT_EQ(songRandomizer.Text1.text, "4");
            EXPECT_EQ(songRandomizer.Label2.text, "[ Starting at Bar:998  ]");
            songRandomizer.Text1.text = count;
            songRandomizer.Check1[1].checked = true;
            songRandomizer.Command1_Click();
        };
    };
    editingState.write().projectDirty = false;
    program.shell.modal = {enter("x"), enter("999")};
    mnuToolsSongRandom_Click();
    EXPECT_EQ(program.shell.boxes.back(), "Enter the number of Bars to randomize (1 to 1000)");
    EXPECT_FALSE(editingState->projectDirty);
    int changed[kModules] = {};
    for (int round = 0; round < 20; ++round) {
        program.shell.modal = {enter("999")};
        mnuToolsSongRandom_Click();
        for (int m = 0; m < kModules; ++m) changed[m] += barPatt(m, 15999) + barBank(m, 15999);
        ASSERT_LT(barPatt(0, 15999), 8);
        ASSERT_LT(barBank(0, 15999), 4);
    }
    EXPECT_GT(changed[0], 0);
    EXPECT_GT(changed[1], 0);
    EXPECT_EQ(changed[2], 0);
    EXPECT_EQ(barPatt(0, 16 * 996), 0);
    EXPECT_EQ(project.bass[0].currPatt,
              barPatt(0, songPosition->songTick)); // taken up at the present position
}

} // namespace
} // namespace marlune
