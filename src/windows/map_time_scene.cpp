// The Song Map's time line: overview, ruler, lanes with runs, lanes of knobs, playhead and selection.

#include <algorithm>
#include <cmath>
#include <string>

#include "windows/map_tools.h"

namespace marlune {

namespace {

constexpr double kRim = 3; // lanes reach this far beyond the time line
constexpr double kHeadWidth = 16;
constexpr double kTrailWidth = 10;
constexpr int kOverviewNumbers = 16; // bars
constexpr int kRoughNumbers = 100;   // of the whole song unfolded

class TimeLine final : public MapTools {
  public:
    using MapTools::MapTools;

    void add() {
        left_ = boxOf(MapPart::ruler).x;
        right_ = boxOf(MapPart::ruler).right();
        bars_ = std::min(kSongBars, view_.first + static_cast<int>(std::ceil(barsInView(view_) + 1)));
        overview();
        plate(boxOf(MapPart::mainPlate));
        captionAt(22, 156, "BARS");
        captionAt(22, 310, "KNOBS");
        ruler();
        for (int m = 0; m < kModules; ++m) lane(m);
        chips();
        for (int row = 0; row < knobRows(view_); ++row)
            put(artLane, boxOf(MapPart::knobLane, 0, 0, row), 0, plain(kStripColours));
        for (int row = 0; row < knobRows(view_); ++row) knobLane(row);
        if (desk_.selection.any() && state_.songMode) selection();
        hover();
        playhead();
    }

  private:
    [[nodiscard]] double end() const { return std::min(right_, barX(view_, kSongBars) + kRim); }
    [[nodiscard]] double bottom() const {
        const int rows = knobRows(view_);
        return rows > 0 ? boxOf(MapPart::knobLane, 0, 0, rows - 1).bottom()
                        : boxOf(MapPart::lane, 0, 0, kModules - 1).bottom();
    }
    [[nodiscard]] int numberEvery() const { return view_.ppb >= 16 ? 4 : view_.ppb >= 4 ? 16 : 64; }
    [[nodiscard]] int marksEvery() const { return view_.ppb >= 12 ? 1 : view_.ppb >= 4 ? 4 : 16; }

    // --- overview

    void overview() {
        plate(boxOf(MapPart::overviewPlate));
        captionAt(22, 76, "ZOOM");
        constexpr CapSign kSigns[] = {CapSign::minus, CapSign::plus, CapSign::fit};
        for (int i = 0; i < 3; ++i) {
            TileLook look = lookAt({MapPart::barZoom, 0, i});
            look.number = static_cast<std::int16_t>(kSigns[i]);
            put(artCap, boxOf(MapPart::barZoom, 0, i), kCapRim, look);
        }
        const Box glass = boxOf(MapPart::overview);
        put(artDark, glass, 1, numbered(0, 100));
        for (int m = 0; m < kModules; ++m) overviewRow(m);
        overviewNumbers();
        const Box frame = frameBox(view_);
        if (desk_.selection.any()) {
            const double from = overviewX(view_, desk_.selection.bars.first);
            const double to = overviewX(view_, desk_.selection.bars.end());
            put(artMoonBox, {from, glass.y, std::max(to - from, 1.0), 3}, 0, numbered(0, 1));
        }
        put(artDark, {glass.x, glass.y, frame.x - glass.x, glass.height}, 0, numbered(0, 42));
        put(artDark, {frame.right(), glass.y, glass.right() - frame.right(), glass.height}, 0,
            numbered(0, 42));
        TileLook look = plain(kStripColours);
        look.set(kTileHover, show_.hover.part == MapPart::overviewFrame);
        put(artOverviewFrame, frame, 6, look);
        TileLook head = numbered(kStripColours, 1);
        head.set(state_.armed ? kTileAccent : kTilePlaying);
        const double x = overviewX(view_, 1.0 * state_.tick / kTicksPerBar);
        if (state_.songMode) putMoving(artMoonBox, {x - 1, glass.y, 2, glass.height}, 0, head);
    }
    void overviewRow(int m) {
        const Box row = boxOf(MapPart::overviewRow, 0, 0, m);
        TileLook look = plain(m);
        const int fold = isFolded(view_) ? foldBar(view_) : kSongBars;
        const double gap = isFolded(view_) || view_.width > 2 * kMapWidth ? 0.4 : 0.1;
        const auto add = [&](const MapRun& run, int first, int last) {
            if (first >= last) return;
            const double from = overviewX(view_, first + (first == fold ? 0.01 : 0));
            const double to = overviewX(view_, last);
            look.text += overviewRun(from - row.x + gap, to - from - 2 * gap, run.plays.bank,
                                     state_.slot(m, run.plays).kind == SheetSlot::Kind::silent);
        };
        for (const MapRun& run : state_.lanes[m]) {
            add(run, run.bars.first, std::min(run.bars.end(), fold));
            add(run, std::max(run.bars.first, fold), run.bars.end());
        }
        put(artOverviewRow, row, 0, look);
        for (const MarkedRange& range : state_.marks.bars[m]) {
            const double from = overviewX(view_, range.first);
            TileLook foot = numbered(kStripColours, 1);
            foot.set(kTileAccent);
            put(artMoonBox, {from, row.bottom() - 3, overviewX(view_, range.last + 1) - from, 3}, 0, foot);
        }
    }
    void overviewNumber(int bar, bool asleep) {
        TileLook look = plain(kStripColours, std::to_string(bar + 1));
        look.set(kTileAsleep, asleep);
        put(artOverviewNumber, {overviewX(view_, bar + (asleep ? 0.01 : 0)), 66, 40, 10}, 1, look);
    }
    void overviewNumbers() {
        const Box glass = boxOf(MapPart::overview);
        const bool folded = isFolded(view_);
        const int fold = folded ? foldBar(view_) : kSongBars;
        int every = kOverviewNumbers;
        while (folded && overviewX(view_, every) - overviewX(view_, 0) < 40) every *= 2;
        if (folded) {
            for (int bar = 0; bar < fold; bar += every)
                if (overviewX(view_, fold) - overviewX(view_, bar) > 40) overviewNumber(bar, false);
            overviewNumber(fold, true);
            if (fold < 400) overviewNumber(499, true);
            TileLook mark = plain(kStripColours);
            mark.set(kTileHover, show_.hover.part == MapPart::overview);
            put(artBreak, {overviewX(view_, fold) + 3, glass.y + 3, 10, 41}, 2, mark);
        } else {
            for (int bar = 0; bar < kSongBars - kRoughNumbers / 2; bar += kRoughNumbers)
                overviewNumber(bar == 0 ? 0 : bar - 1, false);
        }
        TileLook last = plain(kStripColours, "1000");
        last.set(kTileAsleep, folded);
        last.set(kTileSelected);
        put(artOverviewNumber, {glass.right() - 43, 66, 40, 10}, 1, last);
    }

    // --- ruler

    void ruler() {
        const Box ruler = boxOf(MapPart::ruler);
        put(artRuler, ruler, 0, plain(kStripColours));
        const int every = numberEvery();
        for (int bar = view_.first / every * every; bar < bars_; bar += every) {
            const int from = std::max(bar, (view_.first + marksEvery() - 1) / marksEvery() * marksEvery());
            const int upTo = std::min(bar + every, bars_);
            const bool first = from == bar;
            const double x = barX(view_, bar);
            if (first) {
                TileLook look = numbered(kStripColours, upTo - bar, marksEvery());
                look.text = std::to_string(bar + 1);
                look.set(kTileLit, bar % 16 == 0);
                putClipped(artRulerMarks, {x, ruler.y, (upTo - bar) * view_.ppb, ruler.height}, look);
                continue;
            }
            for (int mark = from; mark < upTo; mark += marksEvery()) // of a number that is out of view
                if (barX(view_, mark) < right_)
                    put(artHairline, {barX(view_, mark), ruler.y + 14, 1, 5}, 0, numbered(kStripColours, 18));
        }
    }
    // Cut off at the right end of the time line.
    void putClipped(TileArt art, Box box, const TileLook& look) {
        if (box.x >= right_) return;
        if (art == artRulerMarks && box.right() > right_) {
            const double ppb = view_.ppb;
            TileLook cut = look;
            cut.number = static_cast<std::int16_t>(std::ceil((right_ - box.x) / ppb));
            box.width = cut.number * ppb;
            if (box.right() > right_ + 2) {
                cut.number = static_cast<std::int16_t>(cut.number - 1);
                box.width = std::max(cut.number, std::int16_t{1}) * ppb;
            }
            put(art, box, 0, cut);
            return;
        }
        put(art, box, 0, look);
    }

    // --- lanes

    void header(MapPart part, int row, int module, const std::string& name, const std::string& number,
                int places, bool records) {
        const Box box = boxOf(part, 0, 0, row);
        TileLook look = plain(module, name);
        look.set(kTileEdit, part == MapPart::laneHeader && state_.edited == module);
        look.set(kTileHover, show_.hover.part == part && show_.hover.row == row);
        put(artHeader, box, 1, look);
        const bool knob = part == MapPart::knobHeader;
        const Box glass{box.x + 54, box.y + (box.height - (knob ? 21 : 22)) / 2, knob ? 40.0 : 38.0,
                        knob ? 21.0 : 22.0};
        digits(glass, module, number, places, 2);
        if (records) put(artRecordDot, {box.x + 93, box.y - 2.5, 8, 8}, 2, plain(kStripColours));
    }
    void lane(int m) {
        const Box box = boxOf(MapPart::lane, 0, 0, m);
        put(artLane, box, 0, plain(m));
        const auto& runs = state_.lanes[m];
        auto run = std::upper_bound(runs.begin(), runs.end(), view_.first,
                                    [](int bar, const MapRun& r) { return bar < r.bars.end(); });
        for (; run != runs.end() && run->bars.first < bars_; ++run) putRun(m, box, *run);
        for (const MarkedRange& range : state_.marks.bars[m])
            foot({0, box.bottom() - 2.5, 0, 2.5}, barX(view_, range.first), barX(view_, range.last + 1));
        header(MapPart::laneHeader, m, m, kSheetModuleNames[m], barName(state_.current[m]), 2,
               state_.armed && state_.barRecording[m]);
    }
    void putRun(int m, const Box& lane, const MapRun& run) {
        const double from = barX(view_, run.bars.first);
        const double to = barX(view_, run.bars.end());
        const Box box{std::max(from, left_), lane.y, 0, lane.height};
        const double upTo = std::min(to, right_);
        if (upTo <= box.x) return;
        const SheetSlot& slot = state_.slot(m, run.plays);
        TileLook look = numbered(m, run.plays.bank * kPatterns + run.plays.patt, slot.heights);
        look.set(kTileRest, slot.kind == SheetSlot::Kind::silent);
        look.set(kTileBeyond, from < left_);
        look.set(kTileHeld, to > right_);
        std::string dots(slot.dots.begin(), slot.dots.end());
        if (slot.kind == SheetSlot::Kind::fresh) dots.assign(kSteps, '\1');
        look.text = runText(view_.ppb,
                            std::max(0.0, barX(view_, std::max(run.bars.first, view_.first)) - box.x), dots);
        put(artRun, {box.x, box.y, upTo - box.x, box.height}, 0, look);
    }
    // A foot line with a dot at each bar.
    void foot(Box box, double from, double to) {
        const double ppb = view_.ppb;
        const double hidden = std::max(0.0, std::ceil((left_ - from) / ppb));
        box.x = std::max(from, left_);
        box.width = std::min(to, right_) - box.x;
        if (box.width <= 0) return;
        put(artFootLine, box, 2, numbered(kStripColours, (from + hidden * ppb - box.x) * 10, ppb * 10));
    }

    // --- knobs

    void chips() {
        for (int k = 0; k < kKnobs; ++k) {
            const int m = moduleOfKnob(k);
            TileLook look = lookAt({MapPart::knobChips, m, k, 0, k}, state_.knobNames[k]);
            look.set(kTileLit, std::find(view_.knobs.begin(), view_.knobs.end(), k) != view_.knobs.end());
            look.set(kTileHeld, state_.knobMoves[k]);
            const Box box = chipBox(view_, k);
            put(artChip, box, look.is(kTileLit) ? 5 : kCapRim, look);
            if (state_.armed && state_.knobRecording[k])
                put(artRecordDot, {box.right() - 5.6, box.y - 2.6, 7.2, 7.2}, 2, plain(kStripColours));
        }
    }
    void knobLane(int row) {
        const Box box = boxOf(MapPart::knobLane, 0, 0, row);
        const int knob = laneKnob(view_, row);
        const int every = numberEvery();
        for (int bar = view_.first / every * every; bar < bars_; bar += every) {
            const int from = std::max(bar, view_.first);
            const int upTo = std::min({bar + every, bars_, kSongBars});
            const double x = barX(view_, from);
            const double width = std::min(barX(view_, upTo), right_ - kRim) - x;
            if (width > 0) curve(knob, from, {x, box.y, width, box.height});
        }
        for (const MarkedRange& range : state_.marks.ticks[knob]) {
            const double from = std::max(songX(view_, range.first), left_);
            const double to = std::min(songX(view_, range.last + 1), right_);
            if (to <= from) continue;
            TileLook red = plain(kStripColours);
            red.set(kTileAccent);
            put(artTrail, {from, box.y, to - from, box.height}, 0, red);
            foot({0, box.bottom() - 2.5, 0, 2.5}, songX(view_, range.first), to);
        }
        header(MapPart::knobHeader, row, moduleOfKnob(knob),
               state_.knobNames[knob] + "\n" + kSheetModuleNames[moduleOfKnob(knob)],
               std::to_string(state_.knobValues[knob]), 3, state_.armed && state_.knobRecording[knob]);
    }
    // A column is a tick, or as many as half a pixel is wide.
    void curve(int knob, int bar, const Box& box) {
        const auto& track = knobTrack[knob];
        const int ticks = view_.ppb >= 8 ? 1 : view_.ppb >= 4 ? 2 : view_.ppb >= 2 ? 4 : 8;
        const int first = bar * kTicksPerBar;
        const int columns = static_cast<int>(std::ceil(box.width / view_.ppb * kTicksPerBar / ticks - 1e-6));
        TileLook look = plain(moduleOfKnob(knob));
        look.text.reserve(static_cast<std::size_t>(columns) * 2 + 1);
        look.text += static_cast<char>(track[std::max(first - 1, 0)]);
        for (int c = 0; c < columns && first + c * ticks < kSongTicks; ++c) {
            const auto* from = track.begin() + first + c * ticks;
            if (ticks == 1) {
                look.text.append(2, static_cast<char>(*from));
                continue;
            }
            const auto [low, high] = std::minmax_element(from, std::min(from + ticks, track.end()));
            look.text += static_cast<char>(*low);
            look.text += static_cast<char>(*high);
        }
        put(artCurve, box, 0, look);
        scene_.back().solid = 0;
    }

    // --- upon the lanes

    void selection() {
        const MapSelection& chosen = desk_.selection;
        const double from = barX(view_, chosen.bars.first);
        const double to = barX(view_, chosen.bars.end());
        if (to <= left_ || from >= right_) return;
        const Box ruler = boxOf(MapPart::ruler);
        const double x = std::max(from, left_);
        const double width = std::min(to, right_) - x;
        const std::string words = chosen.bars.count > 1 ? std::to_string(chosen.bars.first + 1) + " \u2013 " +
                                                              std::to_string(chosen.bars.end())
                                                        : std::to_string(chosen.bars.first + 1);
        put(artSelectionBar, {x, ruler.y, width, ruler.height}, 0, plain(kStripColours, words));
        for (int m = 0; m < kModules; ++m) {
            if (!chosen.lanes.modules[m]) continue;
            int last = m;
            while (last + 1 < kModules && chosen.lanes.modules[last + 1]) ++last;
            const double top = boxOf(MapPart::lane, 0, 0, m).y - 2;
            const double foot = boxOf(MapPart::lane, 0, 0, last).bottom() + 2;
            put(artSelectionFrame, {x, top, width, foot - top}, 2, plain(kStripColours));
            m = last;
        }
    }
    void hover() {
        const MapPart part = show_.hover.part;
        if (part != MapPart::lane && part != MapPart::knobLane) return;
        const int bar = barOf(show_.hoverTick);
        if (part == MapPart::lane) {
            const Box lane = boxOf(MapPart::lane, 0, 0, show_.hover.row);
            const double x = std::max(barX(view_, bar), left_);
            const double width = std::min(barX(view_, bar + 1), right_) - x;
            if (width > 3)
                putMoving(artHoverBar, {x + 0.25, lane.y, width - 0.5, lane.height}, 1, plain(kStripColours));
        }
        const double x = songX(view_, show_.hoverTick) + view_.ppb / kTicksPerBar / 2;
        if (x < left_ || x > right_) return;
        const double top = boxOf(MapPart::ruler).bottom();
        putMoving(artHairline, {x, top, 1, bottom() - top}, 0, numbered(kStripColours, 28));
        for (int row = 0; row < knobRows(view_); ++row) {
            const int knob = laneKnob(view_, row);
            const double y = yOfValue(boxOf(MapPart::knobLane, 0, 0, row), knobTrack[knob][show_.hoverTick]);
            putMoving(artKnobDot, {x - 4, y - 4, 8, 8}, 2, plain(moduleOfKnob(knob)));
        }
    }
    void playhead() {
        if (!state_.songMode) return;
        const double x = songX(view_, state_.tick);
        if (x < barX(view_, view_.first) - 0.5 || x > right_) return;
        const Box ruler = boxOf(MapPart::ruler);
        TileLook look = plain(kStripColours);
        look.set(state_.armed ? kTileAccent : kTilePlaying);
        if (state_.running) {
            const double from = std::max(left_, x - kTrailWidth + 1);
            putMoving(artTrail, {from, ruler.y, x - from, bottom() - ruler.y}, 0, look);
        }
        putMoving(artPlayhead, {x - kHeadWidth / 2, ruler.y, kHeadWidth, bottom() - ruler.y}, 1, look);
    }

    double left_ = 0, right_ = 0; // of the lanes
    int bars_ = 0;                // first bar beyond the right end
};

} // namespace

void addMapTime(Scene& scene, const MapState& state, const MapDesk& desk, const MapShow& show) {
    TimeLine(scene, state, desk, show).add();
}

} // namespace marlune
