// Where everything stands on the Song Map, in its pixels at scale 1, and what lies at a point.
//
// The table is made from windows.json by tools/make_layout.py for the smallest window; what is wider goes to
// the time line, what is higher to the knob lanes. Pure; any thread. bar: 0..999, counted from 0; tick:
// 0..15999.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "project/project_record.h"
#include "score/grid.h"

namespace marlune {

enum class MapPart {
    strip,
    modeSwitch,
    transport,
    reset,
    previousBar,
    barDigits,
    nextBar,
    stop,
    play,
    record,
    pointerMode,
    follow,
    undo,
    redo,
    size,
    dockToggle,
    overviewPlate,
    barZoom,
    overview,
    overviewRow,
    overviewFrame,
    mainPlate,
    ruler,
    laneHeader,
    lane,
    knobChips,
    knobHeader,
    knobLane,
    palettePlate,
    palettePick,
    paletteSlot,
    selectionPlate,
    selectionModule,
    selectionKnobs,
    selectionFirst,
    selectionLast,
    selectionCount,
    copy,
    paste,
    insert,
    remove,
    init,
    statusBar,
    none,
};
inline constexpr int kMapParts = static_cast<int>(MapPart::none);

std::span<const Placed<MapPart>> mapTable(); // windows_table.cpp

inline constexpr double kMapWidth = 1120; // the smallest window
inline constexpr double kMapHeight = 620;
inline constexpr std::array<double, 14> kBarWidths{1, 1.5, 2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64, 96};
inline constexpr double kFirstBarWidth = 24;

// What of the song is in view.
struct MapView {
    double width = kMapWidth, height = kMapHeight;
    bool dock = true; // palette and selection
    int first = 0;    // the bar at the left
    double ppb = kFirstBarWidth;
    std::vector<int> knobs; // the lanes shown, from the top
    int knobScroll = 0;     // lanes above the first one shown
    int end = 0;            // first bar after which nothing changes
    bool folding = true;
    std::array<double, kKnobs> chipTexts{}; // widths of the names
    friend bool operator==(const MapView&, const MapView&) = default;
};

// A place on the map. column: of a grid, a knob's chip or the half of a double cap; row: of a grid; module:
// of lanes and slots; knob: of lanes and chips, else -1.
struct MapSpot {
    MapPart part = MapPart::none;
    int module = 0;
    int column = 0;
    int row = 0;
    int knob = -1;
    friend bool operator==(const MapSpot&, const MapSpot&) = default;
};

// --- the time line

double timeWidth(const MapView& view); // W
double barX(const MapView& view, double bar);
double songX(const MapView& view, int tick);
double barsInView(const MapView& view);
int barAtX(const MapView& view, double x);          // limited to the song
int tickAtX(const MapView& view, double x);         // limited to the song
void scrollTo(MapView& view, int first);            // limited so that the song stays in view
void zoomAbout(MapView& view, int steps, double x); // steps > 0: wider bars; the bar at x stays there
void fitSong(MapView& view);                        // all up to the end, as large as it fits
void showBar(MapView& view, int bar);               // scrolls where it is out of sight

bool isFolded(const MapView& view);
int foldBar(const MapView& view); // F: from here on folded
double overviewX(const MapView& view, double bar);
double overviewBarAt(const MapView& view, double x);

// --- lanes of knobs

int knobRows(const MapView& view);          // of the lanes that fit in
int laneKnob(const MapView& view, int row); // shown in that row
double knobPitch(const MapView& view);
int valueAtY(const Box& lane, double y); // 0..127
double yOfValue(const Box& lane, int value);

// --- places

Box mapBox(const MapView& view, MapPart part, int module = 0, int column = 0, int row = 0);
Box spotBox(const MapView& view, const MapSpot& spot);
Box chipBox(const MapView& view, int knob);
Box frameBox(const MapView& view); // of the overview
int columnsOf(MapPart part);
int rowsOf(const MapView& view, MapPart part);

MapSpot mapSpotAt(const MapView& view, double x, double y);

} // namespace marlune
