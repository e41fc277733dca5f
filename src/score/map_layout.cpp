#include "score/map_layout.h"

#include <algorithm>
#include <cmath>

#include "project/song_track.h"

namespace marlune {

namespace {

constexpr double kTimeLeft = 122; // of the time line
constexpr double kBeside = 140;   // beside the time line
constexpr double kDockHeight = 142;
constexpr double kKnobRoom = 120; // of the knob lanes in the smallest window
constexpr double kLeastPitch = 27;
constexpr double kLaneGap = 3;
constexpr double kLaneInset = 4; // a curve keeps off top and bottom
constexpr double kFoldedRest = 120;
constexpr double kFoldGap = 14; // between the song and what is folded
constexpr int kFoldStep = 16;
constexpr int kLeastFold = 64;
constexpr int kLastFold = 800;
constexpr double kChipPad = 13;
constexpr double kChipGap = 3;
constexpr double kModuleGap = 12;
constexpr double kPalettePitch = 290;
constexpr double kGripReach = 8;
constexpr int kFirstOfDock = static_cast<int>(MapPart::palettePlate);

const Grid& gridOf(MapPart part) {
    static const auto kIndex = [] {
        std::array<Grid, kMapParts> index;
        for (const Placed<MapPart>& placed : mapTable())
            index[static_cast<std::size_t>(placed.part)] = placed.grid;
        return index;
    }();
    return kIndex[static_cast<std::size_t>(part)];
}

double moreWidth(const MapView& view) {
    return view.width - kMapWidth;
}
double moreHeight(const MapView& view) {
    return view.height - kMapHeight;
}

bool isOfDock(MapPart part) {
    return static_cast<int>(part) >= kFirstOfDock && part != MapPart::statusBar && part != MapPart::none;
}

bool isWide(MapPart part) { // as wide as the window, but for the rims
    switch (part) {
        case MapPart::strip:
        case MapPart::overviewPlate:
        case MapPart::overview:
        case MapPart::mainPlate:
        case MapPart::ruler:
        case MapPart::lane:
        case MapPart::knobLane:
        case MapPart::knobChips:
        case MapPart::overviewRow:
        case MapPart::statusBar: return true;
        default: return false;
    }
}

// What a box of the smallest window becomes in this one.
Box fitted(const MapView& view, MapPart part, Box box) {
    const double wide = moreWidth(view);
    const double high = moreHeight(view);
    if (isWide(part)) box.width += wide;
    if (part >= MapPart::follow && part <= MapPart::dockToggle) box.x += wide;
    if (isOfDock(part)) box = box.moved(wide / 2, high);
    if (part == MapPart::statusBar) box.y += high;
    if (part == MapPart::mainPlate) box.height += high + (view.dock ? 0 : kDockHeight);
    if (part == MapPart::knobLane || part == MapPart::knobHeader) box.height = knobPitch(view) - kLaneGap;
    return box;
}

// From the topmost to the lowest.
constexpr MapPart kFrameParts[] = {
    MapPart::modeSwitch, MapPart::reset,    MapPart::previousBar, MapPart::nextBar, MapPart::stop,
    MapPart::play,       MapPart::record,   MapPart::pointerMode, MapPart::follow,  MapPart::undo,
    MapPart::redo,       MapPart::size,     MapPart::dockToggle,  MapPart::strip,   MapPart::barZoom,
    MapPart::overview,   MapPart::ruler,    MapPart::laneHeader,  MapPart::lane,    MapPart::knobHeader,
    MapPart::knobLane,   MapPart::statusBar};
constexpr MapPart kDockParts[] = {MapPart::paletteSlot,    MapPart::palettePick,    MapPart::selectionModule,
                                  MapPart::selectionKnobs, MapPart::selectionFirst, MapPart::selectionLast,
                                  MapPart::selectionCount, MapPart::copy,           MapPart::paste,
                                  MapPart::insert,         MapPart::remove,         MapPart::init,
                                  MapPart::palettePlate,   MapPart::selectionPlate};

int modulesOf(MapPart part) {
    return part == MapPart::paletteSlot ? kModules : 1;
}

MapSpot spotOf(const MapView& view, MapPart part, int module, int column, int row) {
    MapSpot spot{part, module, column, row};
    if (part == MapPart::lane || part == MapPart::laneHeader) spot.module = row;
    if (part == MapPart::palettePlate || part == MapPart::palettePick || part == MapPart::selectionModule)
        spot.module = column;
    if (part == MapPart::knobLane || part == MapPart::knobHeader) {
        spot.knob = laneKnob(view, row);
        spot.module = moduleOfKnob(spot.knob);
    }
    return spot;
}

bool findIn(const MapView& view, MapPart part, double x, double y, MapSpot& found) {
    for (int module = 0; module < modulesOf(part); ++module) {
        for (int row = 0; row < rowsOf(view, part); ++row) {
            for (int column = 0; column < columnsOf(part); ++column) {
                Box box = mapBox(view, part, module, column, row);
                if (const Box& hit = gridOf(part).hit; hit.width > 0)
                    box = {box.x + hit.x, box.y + hit.y, hit.width, hit.height};
                if (!box.contains(x, y)) continue;
                found = spotOf(view, part, module, column, row);
                return true;
            }
        }
    }
    return false;
}

} // namespace

// --- the time line

double timeWidth(const MapView& view) {
    return view.width - kBeside;
}

double barX(const MapView& view, double bar) {
    return kTimeLeft + (bar - view.first) * view.ppb;
}

double songX(const MapView& view, int tick) {
    return barX(view, 1.0 * tick / kTicksPerBar);
}

double barsInView(const MapView& view) {
    return timeWidth(view) / view.ppb;
}

int barAtX(const MapView& view, double x) {
    return std::clamp(view.first + static_cast<int>(std::floor((x - kTimeLeft) / view.ppb)), 0,
                      kSongBars - 1);
}

int tickAtX(const MapView& view, double x) {
    const double tick = (view.first + (x - kTimeLeft) / view.ppb) * kTicksPerBar;
    return std::clamp(static_cast<int>(std::floor(tick)), 0, kSongTicks - 1);
}

void scrollTo(MapView& view, int first) {
    const int last = kSongBars - static_cast<int>(std::floor(barsInView(view)));
    view.first = std::clamp(first, 0, std::max(last, 0));
}

void zoomAbout(MapView& view, int steps, double x) {
    const double bar = view.first + (x - kTimeLeft) / view.ppb;
    const auto* at = std::min_element(kBarWidths.begin(), kBarWidths.end(), [&](double a, double b) {
        return std::abs(a - view.ppb) < std::abs(b - view.ppb);
    });
    const auto place = std::clamp<std::ptrdiff_t>(at - kBarWidths.begin() + steps, 0, kBarWidths.size() - 1);
    view.ppb = kBarWidths[static_cast<std::size_t>(place)];
    scrollTo(view, static_cast<int>(std::lround(bar - (x - kTimeLeft) / view.ppb)));
}

void fitSong(MapView& view) {
    view.ppb = kBarWidths.front();
    for (const double width : kBarWidths)
        if ((view.end + 1) * width <= timeWidth(view)) view.ppb = width;
    scrollTo(view, 0);
}

void showBar(MapView& view, int bar) {
    const int room = std::max(1, static_cast<int>(std::floor(barsInView(view))));
    if (bar < view.first)
        scrollTo(view, bar);
    else if (bar >= view.first + room)
        scrollTo(view, bar - room + 1);
}

int foldBar(const MapView& view) {
    return std::max(kLeastFold, (view.end + kFoldStep) / kFoldStep * kFoldStep);
}

bool isFolded(const MapView& view) {
    return view.folding && foldBar(view) <= kLastFold;
}

double overviewX(const MapView& view, double bar) {
    const double width = timeWidth(view);
    if (!isFolded(view)) return kTimeLeft + bar * width / kSongBars;
    const int fold = foldBar(view);
    if (bar <= fold) return kTimeLeft + bar * (width - kFoldedRest - kFoldGap) / fold;
    return kTimeLeft + width - kFoldedRest + (bar - fold) * kFoldedRest / (kSongBars - fold);
}

double overviewBarAt(const MapView& view, double x) {
    const double width = timeWidth(view);
    const int fold = foldBar(view);
    double bar = (x - kTimeLeft) * kSongBars / width;
    if (isFolded(view)) {
        const double rest = x - (kTimeLeft + width - kFoldedRest);
        bar = rest >= 0 ? fold + rest * (kSongBars - fold) / kFoldedRest
                        : std::min<double>(fold, (x - kTimeLeft) * fold / (width - kFoldedRest - kFoldGap));
    }
    return std::clamp<double>(bar, 0, kSongBars);
}

// --- lanes of knobs

double knobPitch(const MapView& view) {
    const double room = kKnobRoom + moreHeight(view) + (view.dock ? 0 : kDockHeight);
    const auto lanes = static_cast<double>(std::max<std::size_t>(view.knobs.size(), 1));
    return std::max(kLeastPitch, std::floor(room / lanes));
}

int knobRows(const MapView& view) {
    const double room = kKnobRoom + moreHeight(view) + (view.dock ? 0 : kDockHeight);
    const int fit = static_cast<int>(std::floor(room / knobPitch(view)));
    return std::clamp(fit, 0, std::max(0, static_cast<int>(view.knobs.size()) - view.knobScroll));
}

int laneKnob(const MapView& view, int row) {
    return view.knobs.at(static_cast<std::size_t>(view.knobScroll) + static_cast<std::size_t>(row));
}

int valueAtY(const Box& lane, double y) {
    const double share = (lane.bottom() - kLaneInset - y) / (lane.height - 2 * kLaneInset);
    return static_cast<int>(std::clamp(std::lround(share * 127), 0L, 127L));
}

double yOfValue(const Box& lane, int value) {
    return lane.bottom() - kLaneInset - (lane.height - 2 * kLaneInset) * value / 127;
}

// --- places

int columnsOf(MapPart part) {
    return gridOf(part).columns;
}

int rowsOf(const MapView& view, MapPart part) {
    const bool knobs = part == MapPart::knobLane || part == MapPart::knobHeader;
    return knobs ? knobRows(view) : gridOf(part).rows;
}

Box mapBox(const MapView& view, MapPart part, int module, int column, int row) {
    Grid grid = gridOf(part);
    if (part == MapPart::knobLane || part == MapPart::knobHeader) grid.pitchY = knobPitch(view);
    const Box box = grid.at(column, row);
    return fitted(view, part, box.moved(part == MapPart::paletteSlot ? module * kPalettePitch : 0, 0));
}

Box chipBox(const MapView& view, int knob) {
    const Box row = mapBox(view, MapPart::knobChips);
    double fixed = 0;
    for (int k = 0; k < kKnobs; ++k) {
        fixed += view.chipTexts[k] + kChipPad;
        if (k > 0) fixed += moduleOfKnob(k) == moduleOfKnob(k - 1) ? kChipGap : kModuleGap;
    }
    const double more = (row.width - fixed) / kKnobs;
    double x = row.x;
    for (int k = 0; k < knob; ++k)
        x += view.chipTexts[k] + kChipPad + more +
             (moduleOfKnob(k) == moduleOfKnob(k + 1) ? kChipGap : kModuleGap);
    return {x, row.y, view.chipTexts[knob] + kChipPad + more, row.height};
}

Box frameBox(const MapView& view) {
    const Box frame = gridOf(MapPart::overviewFrame).cell;
    const double left = overviewX(view, view.first);
    const double right = overviewX(view, std::min<double>(kSongBars, view.first + barsInView(view)));
    return {left, frame.y, right - left, frame.height};
}

Box spotBox(const MapView& view, const MapSpot& spot) {
    if (spot.part == MapPart::knobChips) return chipBox(view, spot.knob);
    if (spot.part == MapPart::overviewFrame) return frameBox(view);
    return mapBox(view, spot.part, spot.module, spot.column, spot.row);
}

MapSpot mapSpotAt(const MapView& view, double x, double y) {
    MapSpot found;
    if (mapBox(view, MapPart::overview).contains(x, y)) {
        const Box frame = frameBox(view);
        // column: 0 inside, 1 and 2 the grips
        if (std::abs(x - frame.x) < kGripReach) return {MapPart::overviewFrame, 0, 1, 0};
        if (std::abs(x - frame.right()) < kGripReach) return {MapPart::overviewFrame, 0, 2, 0};
        if (frame.contains(x, y)) return {MapPart::overviewFrame, 0, 0, 0};
    }
    if (mapBox(view, MapPart::knobChips).contains(x, y)) {
        for (int knob = 0; knob < kKnobs; ++knob)
            if (chipBox(view, knob).contains(x, y))
                return {MapPart::knobChips, moduleOfKnob(knob), knob, 0, knob};
    }
    for (const MapPart part : kFrameParts)
        if (findIn(view, part, x, y, found)) return found;
    if (!view.dock) return found;
    for (const MapPart part : kDockParts)
        if (findIn(view, part, x, y, found)) return found;
    return found;
}

} // namespace marlune
