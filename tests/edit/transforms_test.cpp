#include <map>

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

// Draws that fall evenly: after so many each share has had exactly its part.
RandomSource evenDraws(int count) {
    return [count, i = 0]() mutable {
        return (static_cast<float>(i++ % count) + 0.5F) / static_cast<float>(count);
    };
}

// "name 40 80*11 120" for how often each value came.
std::string told(const std::string& name, const std::map<int, int>& counts) {
    std::string text = name;
    for (auto at = counts.begin(); at != counts.end();) {
        const auto end =
            std::find_if(at, counts.end(), [at](const auto& v) { return v.second != at->second; });
        const auto alike = std::distance(at, end);
        text += " " + std::to_string(at->first) + ":" + std::to_string(at->second) +
                (alike > 1 ? "*" + std::to_string(alike) : "");
        at = end;
    }
    return text + "\n";
}

TEST_F(Randomizers, GiveEachValueItsShareAndTouchNothingElse) {
    constexpr int kRounds = 195; // of 16 draws
    std::string text;
    for (int m = 0; m < kBassModules; ++m) {
        const BassModule other = project.bass[1 - m];
        std::map<int, int> counts[4];
        for (const auto randomize : {randPitch, RandNote, randoctave, randAccent}) {
            setRandomSource(evenDraws(kRounds * kSteps));
            for (int round = 0; round < kRounds; ++round) {
                randomize(m);
                for (const BassStep& step : currentBass(m).steps) {
                    if (randomize == randPitch) ++counts[0][step.note];
                    if (randomize == RandNote) ++counts[1][step.noteOn ? 1 : 0];
                    if (randomize == randoctave) ++counts[2][(step.up ? 1 : 0) + (step.down ? 2 : 0)];
                    if (randomize == randAccent) ++counts[3][step.accent ? 1 : 0];
                }
            }
        }
        const char* names[] = {"notes", "rests", "octaves", "accents"};
        for (int i = 0; i < 4; ++i) text += told(kModuleNames[m] + std::string(" ") + names[i], counts[i]);
        EXPECT_EQ(std::memcmp(&other, &project.bass[1 - m], sizeof other), 0);
    }
    for (int row = 0; row < kDrumRows; ++row) {
        project.drum.selDrum = row;
        std::map<int, int> notes, hits;
        for (int round = 0; round < 256; ++round) {
            if (round == 0) setRandomSource(evenDraws(256));
            randPitch(kDrumModule);
            ++notes[currentDrum().drumNote[row]];
        }
        for (const auto randomize : {RandNote, randAccent}) {
            const DrumPattern before = currentDrum();
            setRandomSource(evenDraws(256));
            for (int round = 0; round < 16; ++round) {
                randomize(kDrumModule);
                for (int s = 0; s < kSteps; ++s)
                    for (int r = 0; r < kDrumRows; ++r)
                        hits[r] += currentDrum().drumOn[s][r] != before.drumOn[s][r] ? 1 : 0;
            }
        }
        text += told("row " + std::to_string(row) + " notes", notes) + told("hits", hits);
    }
    EXPECT_EQ(program.copyDifference(), "");
    Check1_Click();
    for (int m = 0; m < kModules; ++m) {
        std::map<int, int> banks, patts;
        setRandomSource(evenDraws(1600));
        program.shell.modal = {[m](Form&) {
            for (int other = 0; other < kModules; ++other) songRandomizer.Check1[other].checked = other == m;
            songRandomizer.Text1.text = "800";
            songRandomizer.Command1_Click();
        }};
        clearSongTracks();
        mnuToolsSongRandom_Click();
        for (int t = 0; t < kSongTicks; t += kTicksPerBar) {
            ++banks[barBank(m, t)];
            ++patts[barPatt(m, t)];
            for (int other = 0; other < kModules; ++other)
                ASSERT_TRUE(other == m || barBank(other, t) + barPatt(other, t) == 0);
        }
        text += told(kModuleNames[m] + std::string(" banks"), banks) + told("patterns", patts);
    }
    expectKept(text);
}

} // namespace
} // namespace marlune
