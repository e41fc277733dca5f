// Made by tools/make_layout.py from windows.json: change that file, then run the script.

#include "score/map_layout.h"
#include "score/sheet_layout.h"

namespace marlune {

namespace {

// clang-format off
constexpr Placed<SheetPart> kWide[] = {
    {SheetPart::strip, {{10, 8, 1100, 44}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::modeSwitch, {{190, 14, 132, 32}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::startStop, {{336, 14, 84, 32}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::tempo, {{492, 14, 68, 32}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::bar, {{614, 14, 86, 32}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::viewOnly, {{720, 18, 119, 24}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::undo, {{852, 16, 30, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::redo, {{886, 16, 30, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::zoomOut, {{934, 16, 26, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::zoomLabel, {{963, 16, 54, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::zoomIn, {{1020, 16, 26, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::compactToggle, {{1064, 16, 34, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::statusBar, {{0, 496, 1120, 24}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::plate, {{0, 60, 360, 428}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::moduleName, {{14, 78, 68, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::editPill, {{88, 81, 58, 22}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::now, {{162, 80, 44, 24}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::cueArrow, {{213, 87, 7, 10}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::next, {{227, 80, 44, 24}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::loop, {{292, 80, 54, 24}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::loopBracket, {{62, 119, 283, 3}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::loopGrip, {{0, 115.5, 8, 9}, 1, 1, 0, 0, 0, 0, {-6, -4, 20, 17}}, true},
    {SheetPart::rail, {{57, 124, 293, 14}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::lamp, {{62, 124, 16, 14}, 16, 1, 17, 0, 4, 4, {0, 0, 0, 0}}, true},
    {SheetPart::stepCap, {{62, 141, 16, 20}, 16, 1, 17, 0, 4, 4, {0, 0, 0, 0}}, true},
    {SheetPart::slotNumber, {{30, 376, 37, 12}, 8, 1, 40, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::bankLetter, {{12, 392, 12, 20}, 1, 4, 0, 23, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::slot, {{30, 392, 37, 20}, 8, 4, 40, 23, 0, 0, {-1.5, -1.5, 40, 23}}, true},
    {SheetPart::key, {{12, 166, 45, 12}, 1, 13, 0, 12, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::roll, {{62, 166, 16, 12}, 16, 13, 17, 12, 4, 4, {-0.5, 0, 17, 12}}, true},
    {SheetPart::octaveLabel, {{12, 327, 45, 21}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::octaveUp, {{62, 327, 16, 10}, 16, 1, 17, 0, 4, 4, {0, 0, 0, 0}}, true},
    {SheetPart::octaveDown, {{62, 338, 16, 10}, 16, 1, 17, 0, 4, 4, {0, 0, 0, 0}}, true},
    {SheetPart::accentLabel, {{12, 351, 45, 20}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::accent, {{62, 351, 16, 20}, 16, 1, 17, 0, 4, 4, {0, 0, 0, 0}}, true},
    {SheetPart::drumName, {{12, 166, 46, 23}, 1, 8, 0, 26, 0, 0, {0, 0, 0, 0}}, true},
    {SheetPart::pad, {{62, 166, 16, 23}, 16, 8, 17, 26, 4, 4, {-0.5, -1.5, 17, 26}}, true},
    {SheetPart::drumRow, {{8, 164.5, 341, 26}, 1, 8, 0, 26, 0, 0, {0, 0, 0, 0}}, true},
};

constexpr Placed<SheetPart> kCompact[] = {
    {SheetPart::strip, {{10, 8, 740, 44}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::moduleTab, {{18, 13, 124, 33}, 3, 1, 130, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::startStop, {{420, 14, 78, 32}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::tempo, {{506, 14, 62, 32}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::undo, {{580, 16, 30, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::redo, {{614, 16, 30, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::zoom, {{650, 16, 40, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::compactToggle, {{697, 16, 40, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::plate, {{10, 60, 740, 328}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::rail, {{71, 77, 440, 15}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::stepCap, {{76, 95, 25, 21}, 16, 1, 26, 0, 4, 5, {0, 0, 0, 0}}, false},
    {SheetPart::key, {{22, 121, 49, 15}, 1, 13, 0, 15, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::roll, {{76, 121, 25, 15}, 16, 13, 26, 15, 4, 5, {-0.5, 0, 26, 15}}, false},
    {SheetPart::octaveUp, {{76, 321, 25, 10.5}, 16, 1, 26, 0, 4, 5, {0, 0, 0, 0}}, false},
    {SheetPart::octaveDown, {{76, 332.5, 25, 10.5}, 16, 1, 26, 0, 4, 5, {0, 0, 0, 0}}, false},
    {SheetPart::accent, {{76, 346, 25, 21}, 16, 1, 26, 0, 4, 5, {0, 0, 0, 0}}, false},
    {SheetPart::pad, {{76, 121, 25, 25.5}, 16, 8, 26, 28.5, 4, 5, {-0.5, -1.5, 26, 28.5}}, false},
    {SheetPart::now, {{522, 90, 58, 36}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::next, {{608, 90, 58, 36}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::loop, {{682, 90, 54, 36}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::slot, {{538, 154, 23, 32}, 8, 4, 25, 35, 0, 0, {-1, -1.5, 25, 35}}, false},
    {SheetPart::otherModule, {{562, 302, 174, 36}, 1, 2, 0, 42, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::lamp, {{76, 77, 25, 15}, 16, 1, 26, 0, 4, 5, {0, 0, 0, 0}}, false},
    {SheetPart::loopBracket, {{76, 72, 430, 3}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::loopGrip, {{0, 68.5, 8, 9}, 1, 1, 0, 0, 0, 0, {-6, -4, 20, 17}}, false},
    {SheetPart::cueArrow, {{589, 102, 9, 12}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::octaveLabel, {{22, 321.5, 45, 21}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::accentLabel, {{22, 346.5, 45, 20}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::drumName, {{22, 121, 49, 25.5}, 1, 8, 0, 28.5, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::drumRow, {{17, 119.5, 494, 28.5}, 1, 8, 0, 28.5, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::slotNumber, {{538, 138, 23, 12}, 8, 1, 25, 0, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::bankLetter, {{519, 154, 12, 32}, 1, 4, 0, 35, 0, 0, {0, 0, 0, 0}}, false},
    {SheetPart::statusBar, {{0, 396, 760, 24}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
};

constexpr Placed<MapPart> kMap[] = {
    {MapPart::strip, {{10, 8, 1100, 44}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::modeSwitch, {{148, 14, 132, 32}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::transport, {{290, 10, 325, 40}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::reset, {{298, 14, 30, 31}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::previousBar, {{332, 14, 28, 31}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::barDigits, {{364, 14, 92, 32}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::nextBar, {{460, 14, 28, 31}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::stop, {{500, 14, 34, 31}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::play, {{538, 14, 34, 31}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::record, {{576, 14, 34, 31}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::pointerMode, {{625, 17, 76, 26}, 3, 1, 76, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::follow, {{866, 14, 76, 31}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::undo, {{952, 16, 30, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::redo, {{986, 16, 30, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::size, {{1022, 16, 46, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::dockToggle, {{1073, 16, 30, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::overviewPlate, {{10, 60, 1100, 66}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::barZoom, {{20, 88, 28, 28}, 3, 1, 31, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::overview, {{119, 78, 986, 45}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::overviewRow, {{122, 83, 980, 11}, 1, 3, 0, 13, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::overviewFrame, {{0, 77, 0, 47}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::mainPlate, {{10, 134, 1100, 312}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::ruler, {{119, 142, 986, 20}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::laneHeader, {{16, 166, 98, 38}, 1, 3, 0, 41, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::lane, {{119, 166, 986, 38}, 1, 3, 0, 41, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::knobChips, {{122, 295, 980, 22}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::knobHeader, {{16, 323, 98, 37}, 1, 3, 0, 40, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::knobLane, {{119, 323, 986, 37}, 1, 3, 0, 40, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::palettePlate, {{10, 454, 280, 136}, 3, 1, 290, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::palettePick, {{240, 460, 38, 20}, 3, 1, 290, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::paletteSlot, {{40, 497, 28, 20}, 8, 4, 31, 23, 0, 0, {-1.5, -1.5, 31, 23}}, false},
    {MapPart::selectionPlate, {{880, 454, 230, 136}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::selectionModule, {{964, 461, 30, 17}, 3, 1, 33, 0, 0, 0, {-1, -5, 33, 27}}, false},
    {MapPart::selectionKnobs, {{1063, 461, 40, 17}, 1, 1, 0, 0, 0, 0, {-1, -5, 42, 27}}, false},
    {MapPart::selectionFirst, {{894, 484, 54, 26}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::selectionLast, {{960, 484, 54, 26}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::selectionCount, {{1026, 484, 36, 26}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::copy, {{894, 520, 98.5, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::paste, {{998, 520, 98.5, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::insert, {{894, 553, 63.5, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::remove, {{963, 553, 63.5, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::init, {{1032, 553, 63.5, 28}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
    {MapPart::statusBar, {{0, 596, 1120, 24}, 1, 1, 0, 0, 0, 0, {0, 0, 0, 0}}, false},
};
// clang-format on

} // namespace

std::span<const Placed<SheetPart>> sheetTable(SheetForm form) {
    if (form == SheetForm::compact) return kCompact;
    return kWide;
}

std::span<const Placed<MapPart>> mapTable() {
    return kMap;
}

} // namespace marlune
