// What the Pattern Sheet says: the status bar, and the names of its places for screen readers. Pure.
#pragma once

#include <string>

#include "score/sheet_layout.h"
#include "score/sheet_state.h"

namespace marlune {

struct SheetStatus {
    std::string left, right;
    bool refusal = false; // left is a refusal
    bool operator==(const SheetStatus&) const = default;
};
// hover: the place under the pointer or the cursor; refusal: what is told instead, empty for none.
SheetStatus sheetStatus(const SheetState& state, const SheetSpot& hover, const std::string& refusal);

std::string sheetPlaceName(const SheetState& state,
                           const SheetSpot& spot); // "103A step 7, C, octave up, accent"
std::string sheetGroupName(const SheetState& state, const SheetSpot& group); // "103A roll"

bool sheetPlaceAwake(const SheetState& state, const SheetSpot& spot); // whether a click there does anything

const char* noteName(int note); // "C", "A#"; 0..12
extern const char* const kSheetModuleNames[3];

} // namespace marlune
