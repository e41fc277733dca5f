// One module of the Pattern Sheet: header, time axis, roll or pads, patterns.

#include <string>
#include <utility>

#include "windows/sheet_tools.h"

namespace marlune {

namespace {

class ModulePart final : public SheetTools {
  public:
    using SheetTools::SheetTools;

    void add(int m) {
        header(m);
        timeAxis(m);
        if (m == kDrumModule)
            drums();
        else
            roll(m);
        slotGrid(m);
    }

  private:
    void header(int m) {
        const SheetModule& shown = state_.modules[m];
        const bool wide = show_.form == SheetForm::wide;
        if (wide) {
            TileLook pill = lookAt(SheetPart::editPill, m);
            pill.set(kTileLit, edited(m));
            put(artPill, boxOf(SheetPart::editPill, m), 9, pill);
        }
        const Box now = boxOf(SheetPart::now, m);
        const Box next = boxOf(SheetPart::next, m);
        const Box loop = boxOf(SheetPart::loop, m);
        const double above = wide ? 5 : 6;
        const double inset = wide ? 1 : 0;
        captionAt(now.x + inset, now.y - above, "NOW");
        captionAt(next.x + (wide ? 1 : 2), next.y - above, "NEXT");
        captionAt(loop.x + inset, loop.y - above, "LOOP");
        const int pitch = wide ? 2 : 3;
        digits(now, m, slotName(shown.bank, shown.pattern), 2, pitch);
        digits(next, m, slotName(shown.nextBank, shown.nextPattern), 2, pitch,
               shown.cued() ? kTileCued : kTileAsleep);
        TileLook arrow = plain(m);
        arrow.set(kTileCued, shown.cued());
        put(artCueArrow, boxOf(SheetPart::cueArrow, m), 1, arrow);
        const std::uint32_t hover = lookAt(SheetPart::loop, m).marks & (kTileHover | kTileDown);
        digits(loop, m, std::to_string(shown.loopShown), 2, 2,
               state_.mayEdit() ? kTileSelected | (hover != 0 ? kTileHover : 0U) : std::uint32_t{kTileHeld});
    }

    void timeAxis(int m) {
        const SheetModule& shown = state_.modules[m];
        TileLook rail = plain(m);
        rail.set(kTileEdit, edited(m));
        put(artRail, boxOf(SheetPart::rail, m), 1, rail);
        for (int s = 0; s < kSteps; ++s) {
            const Box cap = boxOf(SheetPart::stepCap, m, s);
            const Box row = boxOf(SheetPart::lamp, m, s);
            const Box box{cap.middleX() - 13, row.middleY() - 13, 26, 26};
            TileLook lamp = plain(m);
            put(artLamp, box, 1, lamp);
            if (shown.step != s) continue;
            lamp.set(kTileLit);
            putMoving(artLamp, box, 1, lamp);
        }
        Box bracket = boxOf(SheetPart::loopBracket, m);
        bracket.width = boxOf(SheetPart::stepCap, m, shown.length - 1).right() - bracket.x;
        put(artBracket, bracket, 2, plain(m));
        TileLook grip = lookAt(SheetPart::loopGrip, m);
        grip.set(kTileAsleep, !state_.mayEdit());
        put(artGrip, loopGripBox(show_.form, m, shown.length), 1, grip);
        for (int s = 0; s < kSteps; ++s) {
            TileLook cap = lookAt(SheetPart::stepCap, m, s);
            cap.number = static_cast<std::int16_t>(s);
            cap.set(kTileLit, m != kDrumModule && shown.selStep == s);
            cap.set(kTileBeyond, s >= shown.length);
            put(artStepCap, boxOf(SheetPart::stepCap, m, s), cap.is(kTileLit) ? kHaloMargin : kCapMargin,
                cap);
        }
    }

    [[nodiscard]] bool playing(int m, int step) const {
        return state_.running && state_.modules[m].step == step;
    }
    // The whole height of a column of the roll or of the pads.
    [[nodiscard]] Box column(SheetPart part, int m, int step) const {
        const Grid grid = sheetGrid(show_.form, part, m);
        Box box = grid.at(step, 0);
        box.height = grid.at(step, grid.rows - 1).bottom() - box.y;
        return box;
    }

    void roll(int m) {
        const SheetModule& shown = state_.modules[m];
        keyboard(m);
        Box all = column(SheetPart::roll, m, 0);
        all.width = column(SheetPart::roll, m, kSteps - 1).right() - all.x;
        put(artRollGlass, all, 4, plain(m));
        scene_.back().solid = 0;
        for (int s = 0; s < kSteps; ++s) {
            Box box = column(SheetPart::roll, m, s);
            box.x -= 0.5;
            box.width += 1;
            TileLook cells = plain(m);
            cells.number = static_cast<std::int16_t>(s / 4 * 4);
            cells.set(kTileEdit, shown.selStep == s);
            put(artCells, box, 0, cells);
            if (playing(m, s)) putMoving(artPlayingBand, box, 0, plain(m));
        }
        for (int s = 0; s < kSteps; ++s) note(m, s);
        TileLook hover = plain(m);
        hover.set(kTileHover,
                  show_.hover.part == SheetPart::roll && show_.hover.module == m && state_.mayEdit());
        const bool over = hover.is(kTileHover);
        put(artHoverCell,
            boxOf(SheetPart::roll, m, over ? show_.hover.column : 0, over ? show_.hover.row : 0), 1, hover);
        pastLoop(SheetPart::roll, m, all);
        lanes(m);
    }

    void pastLoop(SheetPart part, int m, const Box& all) {
        const int length = state_.modules[m].length;
        Box box = all;
        box.x = length < kSteps ? column(part, m, length).x - 4.5 : all.right();
        box.width = length < kSteps ? all.right() + 2 - box.x : 0;
        box.y -= 1;
        box.height += 2;
        put(artPastLoop, box, 1, plain(m));
    }

    void keyboard(int m) {
        const SheetModule& shown = state_.modules[m];
        const SheetStep& selected = shown.steps[shown.selStep];
        const Grid grid = sheetGrid(show_.form, SheetPart::key, m);
        Box box = grid.at(0, 0);
        box.height = grid.at(0, grid.rows - 1).bottom() - box.y;
        TileLook keys = plain(m);
        keys.number = static_cast<std::int16_t>(selected.sounds ? selected.note : -1);
        const bool over = show_.hover.part == SheetPart::key && show_.hover.module == m;
        keys.second = static_cast<std::int16_t>(over ? noteOfRow(show_.hover.row) : -1);
        keys.set(kTileAsleep, !state_.mayEdit());
        put(artKeys, box, 3, keys);
    }

    void note(int m, int s) {
        const SheetStep& step = state_.modules[m].steps[s];
        TileLook look = plain(m);
        look.set(kTileRest, !step.sounds);
        look.set(kTileHeld, step.held);
        look.set(kTileAsleep, !state_.mayEdit());
        if (step.sounds) {
            look.set(kTileAccent, step.accent);
            look.set(kTileUp, step.up && !step.down);
            look.set(kTileLow, step.down && !step.up);
        }
        const Box box = boxOf(SheetPart::roll, m, s, kTopNote - step.note);
        if (step.held && s > 0)
            look.second =
                static_cast<std::int16_t>((box.x - boxOf(SheetPart::roll, m, s - 1).right() + 1) * 10);
        put(artNote, box, look.is(kTileAccent) || step.held ? kHaloMargin : 1, look);
        if (!playing(m, s) || (!step.sounds && !step.held)) return;
        look.set(kTilePlaying);
        putMoving(artNote, box, kHaloMargin, look);
    }

    void lanes(int m) {
        const SheetModule& shown = state_.modules[m];
        for (const auto& [part, text] :
             {std::pair{SheetPart::octaveLabel, "OCTAVE"}, {SheetPart::accentLabel, "ACCENT"}}) {
            TileLook look = plain(m, text);
            look.set(kTileSelected);
            put(artCaption, boxOf(part, m), 4, look);
        }
        for (int s = 0; s < kSteps; ++s) {
            const SheetStep& step = shown.steps[s];
            const auto cell = [&](SheetPart part, TileArt art, std::uint32_t marks, bool lit, int margin) {
                TileLook look = lookAt(part, m, s);
                look.marks |= marks;
                look.set(kTileLit, lit);
                look.set(kTileBeyond, s >= shown.length);
                look.set(kTileAsleep, !state_.mayEdit());
                if (!state_.mayEdit()) look.marks &= ~std::uint32_t{kTileHover | kTileDown};
                put(art, boxOf(part, m, s), margin, look);
            };
            cell(SheetPart::octaveUp, artOctaveCell, kTileUp, step.up, 0);
            cell(SheetPart::octaveDown, artOctaveCell, kTileLow, step.down, 0);
            cell(SheetPart::accent, artAccentCap, 0, step.accent, step.accent ? 6 : kCapMargin);
        }
    }

    void drums() {
        const SheetModule& shown = state_.modules[kDrumModule];
        for (int s = 0; s < kSteps; ++s) {
            Box box = column(SheetPart::pad, kDrumModule, s);
            if (playing(kDrumModule, s))
                putMoving(artPlayingBand, {box.x - 1, box.y - 1, box.width + 2, box.height + 4}, 0,
                          plain(kDrumModule));
        }
        put(artDrumRow, boxOf(SheetPart::drumRow, kDrumModule, 0, shown.selDrum), 1, plain(kDrumModule));
        for (int row = 0; row < kDrumRows; ++row) {
            TileLook name = lookAt(SheetPart::drumName, kDrumModule, 0, row);
            name.text = state_.drumNames[row];
            name.set(kTileSelected, shown.selDrum == row);
            put(artDrumName, boxOf(SheetPart::drumName, kDrumModule, 0, row), 2, name);
            for (int s = 0; s < kSteps; ++s) pad(shown, s, row);
        }
    }

    void pad(const SheetModule& shown, int s, int row) {
        TileLook look = lookAt(SheetPart::pad, kDrumModule, s, row);
        look.number = static_cast<std::int16_t>(s / 4 * 4);
        look.second = static_cast<std::int16_t>(row == kAccentRow ? row : 0);
        const bool hit = shown.hit(s, row);
        look.set(kTileLit, hit);
        look.set(kTileBeyond, s >= shown.length);
        look.set(kTileAsleep, !state_.mayEdit());
        if (!state_.mayEdit()) look.marks &= ~std::uint32_t{kTileHover | kTileDown};
        const Box box = boxOf(SheetPart::pad, kDrumModule, s, row);
        put(artPad, box, 2, look);
        if (!playing(kDrumModule, s)) return; // the band lies on the pads at rest
        look.set(kTilePlaying, hit && row != kAccentRow);
        putMoving(artPad, box, look.is(kTilePlaying) ? kHaloMargin : 2, look);
    }

    void slotGrid(int m) {
        const SheetModule& shown = state_.modules[m];
        for (int pattern = 0; pattern < kPatterns; ++pattern) {
            TileLook look = plain(m, std::to_string(pattern + 1));
            look.set(kTileSelected, shown.pattern == pattern);
            put(artSlotNumber, boxOf(SheetPart::slotNumber, m, pattern), 1, look);
        }
        for (int bank = 0; bank < kBanks; ++bank) {
            TileLook look = plain(m, std::string(1, static_cast<char>('A' + bank)));
            look.set(kTileSelected, shown.bank == bank);
            put(artSlotNumber, boxOf(SheetPart::bankLetter, m, 0, bank), 1, look);
        }
        TileLook glow = plain(m);
        glow.set(kTileLit, state_.slotsAwake());
        put(artSlotGlow, boxOf(SheetPart::slot, m, shown.pattern, shown.bank), kHaloMargin, glow);
        for (int bank = 0; bank < kBanks; ++bank)
            for (int pattern = 0; pattern < kPatterns; ++pattern) slot(m, bank, pattern);
    }

    void slot(int m, int bank, int pattern) {
        const SheetModule& shown = state_.modules[m];
        const SheetSlot& small = shown.thumbs[bank][pattern];
        TileLook look = lookAt(SheetPart::slot, m, pattern, bank);
        look.text.assign(small.dots.begin(), small.dots.end());
        look.number = small.heights;
        look.second = static_cast<std::int16_t>(small.kind);
        look.set(kTileLit, shown.bank == bank && shown.pattern == pattern);
        const bool cued = shown.cued() && shown.nextBank == bank && shown.nextPattern == pattern;
        look.set(kTileCued, cued);
        look.set(kTileBright, cued && state_.beat);
        look.set(kTileChanged, small.changed);
        look.set(kTileAsleep, !state_.slotsAwake());
        if (!state_.slotsAwake()) look.marks &= ~std::uint32_t{kTileHover | kTileDown};
        put(artSlot, boxOf(SheetPart::slot, m, pattern, bank), 5, look);
    }
};

} // namespace

void addSheetModule(Scene& scene, const SheetState& state, const SheetShow& show, int module) {
    ModulePart(scene, state, show).add(module);
}

} // namespace marlune
