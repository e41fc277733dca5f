// The painters of the tiles. Each draws its look with its box at the origin; what the fields of the look mean
// stands beside it. module is the module's in all of them.
#pragma once

#include "windows/tile.h"

namespace marlune {

// art_frame.cpp
void artBed(const Ink& ink, const TileLook& look, const QRectF& box);
void artStrip(const Ink& ink, const TileLook& look,
              const QRectF& box); // text: the window's name, may be empty
void artPlate(const Ink& ink, const TileLook& look,
              const QRectF& box); // kTileEdit; text: module name or empty
void artStatus(const Ink& ink, const TileLook& look,
               const QRectF& box); // text; kTileLit: refused; number: letters at the right
void artStatusRight(const Ink& ink, const TileLook& look, const QRectF& box); // text
void artModeSwitch(const Ink& ink, const TileLook& look, const QRectF& box);  // kTileLit: song
void artStartStop(const Ink& ink, const TileLook& look, const QRectF& box);   // kTileLit: running
void artViewOnly(const Ink& ink, const TileLook& look, const QRectF& box);
void artCaption(const Ink& ink, const TileLook& look,
                const QRectF& box); // text; kTileSelected: end of the box
enum class CapSign : std::int16_t {
    undo,
    redo,
    minus,
    plus,
    compact,
    wide,
    fit,
    dock,
    toStart,
    back,
    forward,
    stop,
    play,
    record,
};
void artCap(const Ink& ink, const TileLook& look, const QRectF& box); // number: CapSign, or -1 and text
// A cap of the transport; number: CapSign; kTileLit: green for play, red for record
void artTransportCap(const Ink& ink, const TileLook& look, const QRectF& box);
void artLabelGlass(const Ink& ink, const TileLook& look, const QRectF& box); // text in Inter
// A glass for dots and the unlit ones; number: places, second: pitch; kTileCued moonlight, kTileSelected:
// chevrons
void artDigits(const Ink& ink, const TileLook& look, const QRectF& box);
void artLitPlace(const Ink& ink, const TileLook& look, const QRectF& box); // text upon it; kTileAsleep dim
void artCueArrow(const Ink& ink, const TileLook& look, const QRectF& box); // kTileCued
void artPill(const Ink& ink, const TileLook& look, const QRectF& box);     // kTileLit
void artModuleTab(const Ink& ink, const TileLook& look,
                  const QRectF& box); // text "name\nA5"; kTileLit, kTileCued

// art_roll.cpp
void artRail(const Ink& ink, const TileLook& look, const QRectF& box);    // kTileEdit
void artLamp(const Ink& ink, const TileLook& look, const QRectF& box);    // kTileLit, kTileEdit
void artBracket(const Ink& ink, const TileLook& look, const QRectF& box); // kTileEdit
void artGrip(const Ink& ink, const TileLook& look, const QRectF& box);
void artStepCap(const Ink& ink, const TileLook& look,
                const QRectF& box); // number: step from 0; kTileLit, kTileBeyond
void artKeys(const Ink& ink, const TileLook& look,
             const QRectF& box); // number: lit note or -1; second: hovered
void artRollGlass(const Ink& ink, const TileLook& look, const QRectF& box);
void artCells(const Ink& ink, const TileLook& look,
              const QRectF& box); // one column; number: step; kTileEdit: a band of light
// kTileRest, kTileHeld, kTileAccent, kTileUp, kTileLow, kTilePlaying;
// second: how far a held bar reaches back, in tenths of a pixel
void artNote(const Ink& ink, const TileLook& look, const QRectF& box);
void artHoverCell(const Ink& ink, const TileLook& look, const QRectF& box);   // kTileHover
void artPlayingBand(const Ink& ink, const TileLook& look, const QRectF& box); // upon a column that plays
void artPastLoop(const Ink& ink, const TileLook& look, const QRectF& box);
void artOctaveCell(const Ink& ink, const TileLook& look, const QRectF& box); // kTileUp or kTileLow; kTileLit
void artAccentCap(const Ink& ink, const TileLook& look, const QRectF& box);  // kTileLit

// art_pads.cpp
void artDrumRow(const Ink& ink, const TileLook& look, const QRectF& box);
void artDrumName(const Ink& ink, const TileLook& look, const QRectF& box); // text; kTileSelected
void artPad(const Ink& ink, const TileLook& look,
            const QRectF& box); // number: step, second: row; kTileLit, kTilePlaying

// art_slots.cpp
void artSlotNumber(const Ink& ink, const TileLook& look, const QRectF& box); // text; kTileSelected
// text: sixteen dots; number: heights; second: SheetSlot::Kind; kTileLit current, kTileCued, kTileChanged
void artSlot(const Ink& ink, const TileLook& look, const QRectF& box);
void artSlotGlow(const Ink& ink, const TileLook& look, const QRectF& box); // kTileLit, beneath all slots
// Another module's live picture. text: sixteen dots; number: heights; second: step that plays or -1.
void artOther(const Ink& ink, const TileLook& look, const QRectF& box);

// art_map.cpp
void artArmed(const Ink& ink, const TileLook& look, const QRectF& box);       // the frame of the transport
void artGlass(const Ink& ink, const TileLook& look, const QRectF& box);       // sunk, empty
void artPointerMode(const Ink& ink, const TileLook& look, const QRectF& box); // number: 0..2; kTileLit
void artFollow(const Ink& ink, const TileLook& look, const QRectF& box);      // kTileLit
void artHeader(const Ink& ink, const TileLook& look, const QRectF& box);      // text: name, or "knob\nmodule"
void artRecordDot(const Ink& ink, const TileLook& look, const QRectF& box);   // in the middle of the box
void artChip(const Ink& ink, const TileLook& look, const QRectF& box);    // text; kTileLit, kTileHeld: moves
void artPalette(const Ink& ink, const TileLook& look, const QRectF& box); // text: module; kTileEdit
void artPaintFrame(const Ink& ink, const TileLook& look, const QRectF& box); // around a slot
void artToggle(const Ink& ink, const TileLook& look, const QRectF& box);     // text; kTileLit
void artCommand(const Ink& ink, const TileLook& look, const QRectF& box);    // text
void artDash(const Ink& ink, const TileLook& look, const QRectF& box);

// art_song.cpp: the time line
void artDark(const Ink& ink, const TileLook& look, const QRectF& box);  // number: opacity, per cent
void artLane(const Ink& ink, const TileLook& look, const QRectF& box);  // ground; module 3: of knobs
void artRuler(const Ink& ink, const TileLook& look, const QRectF& box); // ground
// One number of the ruler and the marks up to the next; text: the number; number: bars, second: every so many
// has a mark; kTileLit: bright
void artRulerMarks(const Ink& ink, const TileLook& look, const QRectF& box);
// A run, or what of it is in view. number: slot, second: heights; text: see runText. kTileRest: silent,
// kTileBeyond: its left end is out of view, kTileHeld: the right one
void artRun(const Ink& ink, const TileLook& look, const QRectF& box);
std::string runText(double ppb, double offset, const std::string& dots);
// A piece of a knob's curve: text: the value before, then least and greatest value of each column
void artCurve(const Ink& ink, const TileLook& look, const QRectF& box);
void artKnobDot(const Ink& ink, const TileLook& look, const QRectF& box);
void artHairline(const Ink& ink, const TileLook& look, const QRectF& box);     // number: opacity, per cent
void artFootLine(const Ink& ink, const TileLook& look, const QRectF& box);     // second: pixels x 10 of a bar
void artTrail(const Ink& ink, const TileLook& look, const QRectF& box);        // kTileAccent: red
void artPlayhead(const Ink& ink, const TileLook& look, const QRectF& box);     // kTileAccent: red
void artSelectionBar(const Ink& ink, const TileLook& look, const QRectF& box); // text
void artSelectionFrame(const Ink& ink, const TileLook& look, const QRectF& box);
void artHoverBar(const Ink& ink, const TileLook& look, const QRectF& box);
// A row of the overview: text: runs, seven bytes each, see overviewRun
void artOverviewRow(const Ink& ink, const TileLook& look, const QRectF& box);
std::string overviewRun(double x, double width, int bank, bool silent);
void artOverviewNumber(const Ink& ink, const TileLook& look,
                       const QRectF& box); // text; kTileAsleep; kTileSelected: at the right
void artBreak(const Ink& ink, const TileLook& look, const QRectF& box);
void artOverviewFrame(const Ink& ink, const TileLook& look, const QRectF& box);
void artMoonBox(const Ink& ink, const TileLook& look,
                const QRectF& box); // number: radius; kTileAccent red, kTilePlaying white

} // namespace marlune
