// What the Pattern Sheet shows: a plain picture of the record and the run state, taken in one place.
//
// Equal states look the same. User-interface thread only.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "project/project_record.h"

namespace marlune {

struct SheetStep {
    std::int8_t note = 0; // 0..12
    bool sounds = false;  // else a rest at its note
    bool up = false, down = false, accent = false;
    bool held = false; // a rest that does not cut the note before it
    bool operator==(const SheetStep&) const = default;
};

// A pattern small: of a bassline the height of each step's note above the lowest, 1 to thumbHeights, 0 for a
// step that does not sound; of the drums the rows that sound at a step as bits.
struct SheetSlot {
    enum class Kind : std::uint8_t { music, fresh, silent };
    Kind kind = Kind::silent;
    bool changed = false; // since the last save
    std::uint8_t heights = 1;
    std::array<std::uint8_t, kSteps> dots{};
    bool operator==(const SheetSlot&) const = default;
};

struct SheetModule {
    int bank = 0, pattern = 0; // what plays
    int nextBank = 0, nextPattern = 0;
    int length = kSteps;    // steps of the loop, 1..16
    int loopShown = kSteps; // what the loop field tells while it is turned
    int step = 0;           // lamp, 0..15
    int selStep = 0;        // step under edit of a bassline
    int selDrum = 0;
    std::array<SheetStep, kSteps> steps;     // basslines
    std::array<std::uint8_t, kSteps> hits{}; // drums: bit per row
    std::array<std::array<SheetSlot, kPatterns>, kBanks> thumbs;

    [[nodiscard]] bool cued() const { return nextBank != bank || nextPattern != pattern; }
    [[nodiscard]] bool hit(int step_, int row) const { return ((hits[step_] >> row) & 1) != 0; }
    bool operator==(const SheetModule&) const = default;
};

struct SheetState {
    bool songMode = false, running = false, armed = false;
    bool canUndo = false, canRedo = false;
    bool beat = false; // first half of a beat: cued slots breathe
    int edited = 0;    // module under edit
    int tempo = 0;
    int bar = 0, songStep = 0; // of the song position, from 0
    std::array<int, kBassModules> baseNotes{};
    std::array<std::string, kDrumRows> drumNames;
    std::array<SheetModule, kModules> modules;

    [[nodiscard]] bool mayEdit() const { return !songMode; }
    [[nodiscard]] bool slotsAwake() const { return !songMode || armed; }
    bool operator==(const SheetState&) const = default;
};

SheetState readSheet();

// The patterns that play now, and the knobs: what small pictures elsewhere are made of.
struct PatternsInView {
    std::array<std::array<SheetStep, kSteps>, kBassModules> bass;
    std::array<std::uint8_t, kSteps> drums{}; // bit per row
    std::array<short, kKnobs> knobs{};
};
PatternsInView readPatternsInView();

// The held rests of a bassline: pitches count, and step 1 looks back to the end of the loop.
void markHeld(std::array<SheetStep, kSteps>& steps, int length, int baseNote);

SheetSlot smallBass(const BassPattern& pattern);
SheetSlot smallDrums(const DrumPattern& pattern);

std::string slotName(int bank, int pattern); // "A5"

} // namespace marlune
