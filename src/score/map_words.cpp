#include "score/map_words.h"

#include <algorithm>
#include <vector>

namespace marlune {

namespace {

constexpr const char* kPointers[] = {"SELECT", "PAINT", "ERASE"};

std::string joined(const std::vector<std::string>& words, const char* last) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += i + 1 == words.size() ? last : ", ";
        text += words[i];
    }
    return text;
}

std::string place(int tick) {
    return "Bar " + std::to_string(barOf(tick) + 1) + "   step " + std::to_string(tick % kTicksPerBar + 1);
}

std::string selected(const MapSelection& selection) {
    std::vector<std::string> lanes;
    for (int m = 0; m < kModules; ++m)
        if (selection.lanes.modules[m]) lanes.emplace_back(kSheetModuleNames[m]);
    return "Selected: " + rangeWords("", selection.bars) + " of " + joined(lanes, ", ") +
           (selection.lanes.knobs ? ", with knobs" : "");
}

std::string recording(const MapState& state) {
    std::vector<std::string> bars;
    std::vector<std::string> all;
    int first = kSongBars;
    for (int m = 0; m < kModules; ++m) {
        if (state.marks.bars[m].empty()) continue;
        bars.emplace_back(kSheetModuleNames[m]);
        first = std::min(first, state.marks.bars[m].front().first);
    }
    if (!bars.empty()) all.push_back("bars of " + joined(bars, " and "));
    for (int k = 0; k < kKnobs; ++k) {
        if (state.marks.ticks[k].empty()) continue;
        all.push_back(state.knobNames[k]);
        first = std::min(first, barOf(state.marks.ticks[k].front().first));
    }
    if (all.empty()) return "Recording is armed: patterns and knobs that you choose and move are kept.";
    return "Recording from bar " + std::to_string(first + 1) + ": " +
           joined(all, all.size() > 1 ? ", and " : "") +
           ". Stop keeps it; undo then takes the whole take back.";
}

std::string hint(const MapState& state, const MapDesk& desk, const MapSpot& hover, int tick) {
    switch (hover.part) {
        case MapPart::lane:
        case MapPart::knobLane:
        case MapPart::ruler: {
            std::string text = place(tick);
            if (hover.part == MapPart::lane)
                text += "      " + std::string(kSheetModuleNames[hover.module]) + "  " +
                        barName(barTrack[hover.module][barOf(tick)]);
            for (const int knob : desk.view.knobs)
                text += "      " + state.knobNames[knob] + " " + std::to_string(knobTrack[knob][tick]);
            return text;
        }
        case MapPart::paletteSlot:
        case MapPart::knobChips: return mapPlaceName(state, desk, hover);
        default: return {};
    }
}

std::string onOff(const std::string& name, bool on) {
    return name + (on ? ", on" : ", off");
}

std::string chosen(const std::string& name, bool on) {
    return name + (on ? ", selected" : "");
}

std::string knobName(const MapState& state, int knob) {
    return state.knobNames[knob] + " " + kSheetModuleNames[moduleOfKnob(knob)];
}

std::string slotWords(const MapState& state, const MapDesk& desk, const MapSpot& at) {
    const SongBar bar{static_cast<std::uint8_t>(at.column), static_cast<std::uint8_t>(at.row)};
    const SheetSlot::Kind kind = state.slot(at.module, bar).kind;
    std::string text = std::string(kSheetModuleNames[at.module]) + " pattern " + barName(bar);
    if (state.current[at.module] == bar) text += ", current";
    if (state.running && state.cued[at.module] == bar && state.current[at.module] != bar) text += ", cued";
    if (desk.paint[at.module] == bar) text += ", paint";
    if (kind == SheetSlot::Kind::fresh) text += ", fresh";
    if (kind == SheetSlot::Kind::silent) text += ", silent";
    return text;
}

std::string digitWords(const MapDesk& desk, const char* name, int value) {
    return std::string(name) + (desk.selection.any() ? ", " + std::to_string(value) : ", none");
}

} // namespace

std::string barName(SongBar bar) {
    return slotName(bar.bank, bar.patt);
}

std::string rangeWords(const std::string& verb, BarRange bars) {
    if (bars.count == 1) return verb + "bar " + std::to_string(bars.first + 1);
    return verb + "bars " + std::to_string(bars.first + 1) + " to " + std::to_string(bars.end());
}

SheetStatus mapStatus(const MapState& state, const MapDesk& desk, const MapSpot& hover, int tick,
                      const std::string& refusal) {
    SheetStatus status;
    const bool plays = state.running && state.songMode;
    status.right = !plays && desk.selection.any() ? selected(desk.selection) : place(state.tick);
    if (!refusal.empty()) {
        status.left = refusal;
        status.refusal = true;
        return status;
    }
    status.left = hint(state, desk, hover, tick);
    if (!status.left.empty()) return status;
    if (!state.songMode)
        status.left = "Pattern mode plays the patterns of the panel. The song is edited in song mode.";
    else if (state.armed)
        status.left = recording(state);
    else if (state.running)
        status.left = "Playing";
    return status;
}

std::string mapPlaceName(const MapState& state, const MapDesk& desk, const MapSpot& at) {
    const MapSelection& selection = desk.selection;
    const std::string module = kSheetModuleNames[at.module];
    switch (at.part) {
        case MapPart::modeSwitch: return state.songMode ? "Mode, song" : "Mode, pattern";
        case MapPart::reset: return "To the start";
        case MapPart::previousBar: return "Previous bar";
        case MapPart::nextBar: return "Next bar";
        case MapPart::stop: return "Stop";
        case MapPart::play: return onOff("Play", state.running);
        case MapPart::record: return onOff("Record", state.armed);
        case MapPart::pointerMode:
            return chosen(kPointers[at.column], static_cast<int>(desk.pointer) == at.column);
        case MapPart::follow: return onOff("FOLLOW", desk.follow);
        case MapPart::undo: return "Undo";
        case MapPart::redo: return "Redo";
        case MapPart::size: return "Zoom";
        case MapPart::dockToggle: return onOff("Palette", desk.view.dock);
        case MapPart::barZoom:
            return at.column == 0 ? "Narrower bars" : at.column == 1 ? "Wider bars" : "Whole song";
        case MapPart::overviewFrame: {
            const int last =
                std::min(kSongBars, desk.view.first + static_cast<int>(barsInView(desk.view)) + 1);
            return "Bars " + std::to_string(desk.view.first + 1) + " to " + std::to_string(last) + " of 1000";
        }
        case MapPart::laneHeader: return chosen("Edit " + module, at.module == state.edited);
        case MapPart::lane: {
            const auto& runs = state.lanes[at.module];
            const MapRun& run = runs[std::min(static_cast<std::size_t>(at.column), runs.size() - 1)];
            return module + " " + rangeWords("", run.bars) + ", " + barName(run.plays);
        }
        case MapPart::knobChips:
            return onOff(knobName(state, at.knob), std::find(desk.view.knobs.begin(), desk.view.knobs.end(),
                                                             at.knob) != desk.view.knobs.end()) +
                   (state.knobMoves[at.knob] ? ", moves" : "");
        case MapPart::knobLane:
            return knobName(state, at.knob) + ", bar " + std::to_string(state.bar() + 1) + " step " +
                   std::to_string(state.tick % kTicksPerBar + 1) + ", " +
                   std::to_string(knobTrack[at.knob][state.tick]);
        case MapPart::paletteSlot: return slotWords(state, desk, at);
        case MapPart::selectionModule:
            return chosen(std::string("Selection of ") + kSheetModuleNames[at.column],
                          selection.any() && selection.lanes.modules[at.column]);
        case MapPart::selectionKnobs: return chosen("KNOBS", selection.any() && selection.lanes.knobs);
        case MapPart::selectionFirst: return digitWords(desk, "First bar", selection.bars.first + 1);
        case MapPart::selectionLast: return digitWords(desk, "Last bar", selection.bars.end());
        case MapPart::selectionCount: return digitWords(desk, "Bars", selection.bars.count);
        case MapPart::copy: return "COPY";
        case MapPart::paste: return "PASTE";
        case MapPart::insert: return "INSERT";
        case MapPart::remove: return "DELETE";
        case MapPart::init: return "INIT";
        default: return {};
    }
}

std::string mapGroupName(const MapState& state, const MapDesk& desk, const MapSpot& group) {
    switch (group.part) {
        case MapPart::pointerMode: return "Pointer";
        case MapPart::barZoom: return "Bar width";
        case MapPart::laneHeader: return "Modules";
        case MapPart::lane: return std::string(kSheetModuleNames[group.module]) + " bars";
        case MapPart::knobChips: return "Knobs";
        case MapPart::knobLane: return "Knob lanes";
        case MapPart::paletteSlot: return std::string(kSheetModuleNames[group.module]) + " palette";
        case MapPart::selectionModule: return "Selection";
        default: return mapPlaceName(state, desk, group);
    }
}

bool mapPlaceAwake(const MapState& state, const MapDesk& desk, const MapSpot& at) {
    switch (at.part) {
        case MapPart::undo: return state.canUndo;
        case MapPart::redo: return state.canRedo;
        case MapPart::previousBar:
        case MapPart::nextBar:
        case MapPart::play:
        case MapPart::record:
        case MapPart::pointerMode:
        case MapPart::lane:
        case MapPart::knobLane:
        case MapPart::paletteSlot: return state.songMode;
        case MapPart::paste: return state.mayCommand() && state.canPaste;
        case MapPart::insert:
        case MapPart::remove:
        case MapPart::init: return state.mayCommand() && desk.selection.any();
        case MapPart::copy: return state.songMode && desk.selection.any();
        case MapPart::selectionModule:
        case MapPart::selectionKnobs:
        case MapPart::selectionFirst:
        case MapPart::selectionLast:
        case MapPart::selectionCount: return desk.selection.any();
        default: return true;
    }
}

} // namespace marlune
