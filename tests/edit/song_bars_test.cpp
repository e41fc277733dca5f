// Whole bars edited at once: what the tracks hold, what the component is told, what undo takes back.
#include "edit/song_bars.h"

#include "support/program_test.h"

namespace marlune {
namespace {

struct SongBars : SongModeTest {
    SongBars() {
        for (int m = 0; m < kModules; ++m)
            for (int bar = 0; bar < kSongBars; ++bar)
                barTrack[m][bar] = {static_cast<std::uint8_t>((bar + m) % kPatterns),
                                    static_cast<std::uint8_t>(bar / 4 % kBanks)};
        for (int k = 0; k < kKnobs; ++k)
            for (int tick = 0; tick < kSongTicks; ++tick)
                knobTrack[k][tick] = static_cast<std::uint8_t>((tick / kTicksPerBar + k) % 128);
        placeAt(2);
        clearUndoHistory();
    }
    void placeAt(int bar) {
        rewindSong();
        moveSongForward(bar, true, false);
        program.calls();
    }
    // Bars as "A1 A2", from a bar counted from 1.
    static std::string bars(int module, int first, int count = 6) {
        std::string text;
        for (int bar = first - 1; bar < first - 1 + count; ++bar) {
            const SongBar at = barTrack[module][bar];
            text += (text.empty() ? "" : " ") +
                    std::string{static_cast<char>('A' + at.bank), static_cast<char>('1' + at.patt)};
        }
        return text;
    }
    // The values at the first tick of the bars.
    static std::string values(int knob, int first, int count = 6) {
        std::string text;
        for (int bar = first - 1; bar < first - 1 + count; ++bar)
            text += (text.empty() ? "" : " ") + std::to_string(knobTrack[knob][bar * kTicksPerBar]);
        return text;
    }
    template <typename Edit>
    void undoTakesBack(Edit edit) {
        const auto before = captureMusic();
        {
            const EditBracket bracket;
            edit();
        }
        const auto after = captureMusic();
        EXPECT_NE(after, before);
        EXPECT_TRUE(editingState->projectDirty);
        const int steps = undoSteps();
        mnuEditUndo_Click();
        EXPECT_EQ(undoSteps(), steps - 1);
        EXPECT_EQ(captureMusic(), before);
        mnuEditRedo_Click();
        EXPECT_EQ(captureMusic(), after);
        EXPECT_EQ(program.copyDifference(), "");
    }
    static constexpr BarLanes kFirst{{true, false, false}, true};
    static constexpr BarLanes kBare{{true, false, true}, false};
};

TEST_F(SongBars, FillingIsHeardFromTheNextStepOn) {
    undoTakesBack([] { fillBars(0, {1, 3}, {6, 3}); });
    EXPECT_EQ(bars(0, 1), "A1 D7 D7 D7 B5 B6");
    program.calls();
    playButton();
    program.play(5);
    program.calls();
    fillBars(1, {2, 1}, {7, 2}); // the bar that plays
    EXPECT_EQ(program.calls(), "song(37#5 D7>D7@5 C8>A5@5 A5>A6@5)");
    program.play(1);
    EXPECT_EQ(selectionOf(project, 1).currPatt, 7);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(SongBars, InsertedBarsTakePatternModesChoiceAndHoldTheKnobs) {
    undoTakesBack([] { EXPECT_EQ(insertBars(kFirst, {2, 2}), 2); });
    EXPECT_EQ(bars(0, 1), "A1 A2 A1 A1 A3 A4");
    EXPECT_EQ(bars(0, 997, 4), "A3 A4 B5 B6"); // 999 and 1000 are gone
    EXPECT_EQ(values(1, 1), "1 2 2 2 3 4");
    EXPECT_EQ(values(6, 1), "6 7 8 9 10 11"); // another module's knob
    EXPECT_EQ(bars(1, 1), "A2 A3 A4 A5 B6 B7");
}

TEST_F(SongBars, WhatIsNothingMoreThanPatternModesChoiceIsNotLost) {
    for (int bar = 990; bar < kSongBars; ++bar) barTrack[0][bar] = barTrack[2][bar] = patternModeBar(0);
    EXPECT_EQ(insertBars(kBare, {0, 10}), 0);
    EXPECT_EQ(insertBars(kBare, {0, 4}), 4);
}

TEST_F(SongBars, DeletedBarsCloseUpAndTheEndRepeats) {
    undoTakesBack([] { deleteBars(kFirst, {1, 3}); });
    EXPECT_EQ(bars(0, 1), "A1 B5 B6 B7 B8 C1");
    EXPECT_EQ(bars(0, 995), "B6 B7 B8 B8 B8 B8");
    EXPECT_EQ(values(0, 1), "0 4 5 6 7 8");
    EXPECT_EQ(values(0, 995), "101 102 103 103 103 103");
    EXPECT_EQ(bars(2, 1, 2), "A3 A4");
    EXPECT_EQ(values(12, 1, 2), "12 13");
    undoTakesBack([] { deleteBars(kBare, {0, 1000}); });
    EXPECT_EQ(bars(0, 1, 3), "B8 B8 B8");
    EXPECT_EQ(values(0, 1, 3), "0 4 5"); // without knobs
}

TEST_F(SongBars, InitTakesBarsAndKnobsOfPatternModeAndLeavesThePosition) {
    patternImage.knobValue[3] = 77;
    undoTakesBack([] { initBars(kFirst, {1, 2}); });
    EXPECT_EQ(bars(0, 1, 4), "A1 A1 A1 A4");
    EXPECT_EQ(values(3, 1, 4), "3 77 77 6");
    EXPECT_EQ(songPosition->songTick, 2 * kTicksPerBar);
    EXPECT_EQ(project.knobValue[3], 77); // where the song stands
}

TEST_F(SongBars, OneLaneGoesToThePanelsClipboardSeveralToTheirOwn) {
    copyBars(kFirst, {0, 2});
    EXPECT_EQ(program.shell.status, "SONG COPY: ( 103A Patterns and knobs ) from BAR 1 thru 2 .");
    EXPECT_EQ(pasteBarsAt(10, kDrumModule), BarPaste::otherKind);
    undoTakesBack([] { EXPECT_EQ(pasteBarsAt(10, 1), BarPaste::done); });
    EXPECT_EQ(bars(1, 10, 4), "C3 A1 A2 D6");
    EXPECT_EQ(values(6, 10, 4), "15 0 1 18");
    setEditSel(0);
    mnuEditPaste_Click(); // the panel's, at the position
    EXPECT_EQ(bars(0, 2, 4), "A2 A1 A2 B5");
    copyBars(kBare, {0, 3});
    undoTakesBack([] { EXPECT_EQ(pasteBarsAt(998, 1), BarPaste::done); });
    EXPECT_EQ(bars(0, 997, 4), "B5 B6 A1 A2"); // as far as there is room, each lane to its own
    EXPECT_EQ(bars(1, 999, 2), "B8 B1");
    EXPECT_EQ(bars(2, 999, 2), "A3 A4");
    EXPECT_EQ(values(0, 999, 2), "102 103");
    Check1_Click();
    Check1_Click();
    EXPECT_EQ(barsToPaste(),
              songClipboard->songCopyReady); // what the mode switch forgets is forgotten here, too
}

TEST_F(SongBars, AKnobIsDrawnAsALineBetweenThePlacesOfThePointer) {
    const auto at = [](int knob, int first, int last) {
        std::string text;
        for (int tick = first; tick <= last; ++tick) text += std::to_string(knobTrack[knob][tick]) + " ";
        return text;
    };
    undoTakesBack([] { drawKnob(2, 40, 10, 36, 50); });
    EXPECT_EQ(at(2, 35, 41), "4 50 40 30 20 10 4 ");
    patternImage.knobValue[2] = 99;
    undoTakesBack([] { eraseKnob(2, 31, 33); });
    EXPECT_EQ(at(2, 30, 34), "3 99 99 99 4 ");
    EXPECT_EQ(project.knobValue[2], 99); // tick 32 is where the song stands
}

} // namespace
} // namespace marlune
