#include "score/sheet_words.h"

#include <algorithm>
#include <vector>

namespace marlune {

const char* const kSheetModuleNames[3] = {"103A", "103B", "109"};

namespace {

constexpr const char* kNotes[] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B", "C"};

// "A", "A and B", "A, B and C"
std::string listed(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += i + 1 == words.size() ? " and " : ", ";
        text += words[i];
    }
    return text;
}

std::string cues(const SheetState& state) {
    std::vector<std::string> words;
    for (int m = 0; m < kModules; ++m) {
        const SheetModule& module = state.modules[m];
        if (!module.cued()) continue;
        const std::string to = "to " + slotName(module.nextBank, module.nextPattern);
        words.push_back(std::string(kSheetModuleNames[m]) + (words.empty() ? " changes " : " ") + to);
    }
    if (words.empty()) return {};
    const char* whose = words.size() > 1 ? "their patterns." : "its pattern.";
    return listed(words) + " at the end of " + whose + "  Esc takes the cue" +
           (words.size() > 1 ? "s back." : " back.");
}

std::string unsaved(const SheetState& state) {
    constexpr std::size_t kTold = 4; // slots of a module; more are counted
    std::string text;
    for (int m = 0; m < kModules; ++m) {
        std::vector<std::string> changed;
        for (int bank = 0; bank < kBanks; ++bank)
            for (int pattern = 0; pattern < kPatterns; ++pattern)
                if (state.modules[m].thumbs[bank][pattern].changed)
                    changed.push_back(slotName(bank, pattern));
        if (changed.empty()) continue;
        const std::string told =
            changed.size() <= kTold ? listed(changed) : std::to_string(changed.size()) + " patterns";
        text += (text.empty() ? "Not saved: " : ", ") + std::string(kSheetModuleNames[m]) + " " + told;
    }
    return text;
}

// What a click on a cell of the roll would do.
std::string rollHint(const SheetState& state, const SheetSpot& at) {
    const SheetModule& module = state.modules[at.module];
    const SheetStep& step = module.steps[at.column];
    const int note = noteOfRow(at.row);
    const int octave = (step.up ? 12 : 0) - (step.down ? 12 : 0);
    const int pitch = std::clamp(note + state.baseNotes[at.module] + octave, 0, 127);
    std::string does = std::string("click sets ") + noteName(note);
    if (step.note == note)
        does = std::string(step.sounds ? "click makes a rest on " : "click brings back ") + noteName(note);
    return "step " + std::to_string(at.column + 1) + "   " + does + "  ( MIDI " + std::to_string(pitch) +
           " )";
}

std::string hint(const SheetState& state, const SheetSpot& at) {
    const SheetModule& module = state.modules[at.module];
    const std::string head =
        std::string(kSheetModuleNames[at.module]) + "  " + slotName(module.bank, module.pattern) + "   ";
    switch (at.part) {
        case SheetPart::roll: return head + rollHint(state, at);
        case SheetPart::pad:
            return head + state.drumNames[at.row] + "   step " + std::to_string(at.column + 1) + "   click " +
                   (module.hit(at.column, at.row) ? "clears the hit" : "sets a hit");
        case SheetPart::loop:
        case SheetPart::loopGrip:
            return head + "loop of " + std::to_string(module.length) + "   drag or wheel";
        case SheetPart::slot: return sheetPlaceName(state, at);
        default: return {};
    }
}

std::string stepWords(const SheetState& state, const SheetSpot& at) {
    const SheetStep& step = state.modules[at.module].steps[at.column];
    std::string text =
        std::string(kSheetModuleNames[at.module]) + " step " + std::to_string(at.column + 1) + ", ";
    text += step.sounds ? noteName(step.note) : std::string("rest on ") + noteName(step.note);
    if (step.up) text += ", octave up";
    if (step.down) text += ", octave down";
    if (step.accent) text += ", accent";
    if (step.held) text += ", held";
    return text;
}

std::string slotWords(const SheetState& state, const SheetSpot& at) {
    const SheetModule& module = state.modules[at.module];
    const SheetSlot& slot = module.thumbs[at.row][at.column];
    std::string text = std::string(kSheetModuleNames[at.module]) + " pattern " + slotName(at.row, at.column);
    if (module.bank == at.row && module.pattern == at.column) text += ", current";
    if (module.cued() && module.nextBank == at.row && module.nextPattern == at.column) text += ", cued";
    if (slot.kind == SheetSlot::Kind::fresh) text += ", fresh";
    if (slot.kind == SheetSlot::Kind::silent) text += ", silent";
    if (slot.changed) text += ", not saved";
    return text;
}

std::string onOff(const std::string& name, bool on) {
    return name + (on ? ", on" : ", off");
}

} // namespace

const char* noteName(int note) {
    return kNotes[std::clamp(note, 0, 12)];
}

SheetStatus sheetStatus(const SheetState& state, const SheetSpot& hover, const std::string& refusal) {
    SheetStatus status;
    const int step = state.modules[state.edited].step + 1;
    if (state.songMode)
        status.right = "Bar " + std::to_string(state.bar + 1) + "   step " + std::to_string(step);
    else
        status.right = state.running ? "Step " + std::to_string(step) : unsaved(state);
    if (!refusal.empty()) {
        status.left = refusal;
        status.refusal = true;
        return status;
    }
    if (state.songMode && !state.armed)
        status.left = "Song mode plays the bars of the song. Patterns are edited in pattern mode.";
    else
        status.left = hint(state, hover);
    if (status.left.empty() && state.running && !state.songMode) status.left = cues(state);
    return status;
}

std::string sheetPlaceName(const SheetState& state, const SheetSpot& at) {
    const std::string module = kSheetModuleNames[at.module];
    const SheetModule& shown = state.modules[at.module];
    const std::string step = " step " + std::to_string(at.column + 1);
    switch (at.part) {
        case SheetPart::modeSwitch: return state.songMode ? "Mode, song" : "Mode, pattern";
        case SheetPart::startStop: return onOff("Start or stop", state.running);
        case SheetPart::undo: return "Undo";
        case SheetPart::redo: return "Redo";
        case SheetPart::zoomIn: return "Zoom in";
        case SheetPart::zoomOut: return "Zoom out";
        case SheetPart::zoomLabel:
        case SheetPart::zoom: return "Zoom";
        case SheetPart::compactToggle: return "Compact";
        case SheetPart::moduleTab:
            return std::string("Edit ") + kSheetModuleNames[at.column] +
                   (at.column == state.edited ? ", selected" : "");
        case SheetPart::editPill: return "Edit " + module + (at.module == state.edited ? ", selected" : "");
        case SheetPart::loop: return module + " loop, " + std::to_string(shown.length);
        case SheetPart::stepCap:
            if (at.module == kDrumModule)
                return "109" + step + (shown.hit(at.column, shown.selDrum) ? ", hit" : "");
            return module + step + (shown.selStep == at.column ? ", selected" : "");
        case SheetPart::key: {
            const bool lit =
                shown.steps[shown.selStep].sounds && shown.steps[shown.selStep].note == noteOfRow(at.row);
            const char* high = at.row == 0 ? "high " : "";
            return module + " key " + high + noteName(noteOfRow(at.row)) + (lit ? ", selected" : "");
        }
        case SheetPart::roll: return stepWords(state, at);
        case SheetPart::octaveUp: return onOff(module + step + ", octave up", shown.steps[at.column].up);
        case SheetPart::octaveDown:
            return onOff(module + step + ", octave down", shown.steps[at.column].down);
        case SheetPart::accent: return onOff(module + step + ", accent", shown.steps[at.column].accent);
        case SheetPart::drumName:
            return "109 " + state.drumNames[at.row] + (shown.selDrum == at.row ? ", selected" : "");
        case SheetPart::pad:
            return state.drumNames[at.row] + step + (shown.hit(at.column, at.row) ? ", hit" : "");
        case SheetPart::slot: return slotWords(state, at);
        default: return {};
    }
}

bool sheetPlaceAwake(const SheetState& state, const SheetSpot& spot) {
    switch (spot.part) {
        case SheetPart::undo: return state.canUndo;
        case SheetPart::redo: return state.canRedo;
        case SheetPart::slot: return state.slotsAwake();
        case SheetPart::stepCap: return state.mayEdit() || spot.module != kDrumModule;
        case SheetPart::key:
        case SheetPart::roll:
        case SheetPart::octaveUp:
        case SheetPart::octaveDown:
        case SheetPart::accent:
        case SheetPart::pad:
        case SheetPart::loop: return state.mayEdit();
        default: return true;
    }
}

std::string sheetGroupName(const SheetState& state, const SheetSpot& group) {
    const std::string module = kSheetModuleNames[group.module];
    switch (group.part) {
        case SheetPart::stepCap: return module + " steps";
        case SheetPart::key: return module + " keys";
        case SheetPart::roll: return module + " roll";
        case SheetPart::octaveUp: return module + " octave up";
        case SheetPart::octaveDown: return module + " octave down";
        case SheetPart::accent: return module + " accents";
        case SheetPart::drumName: return "109 drums";
        case SheetPart::pad: return "109 pads";
        case SheetPart::slot: return module + " patterns";
        case SheetPart::moduleTab: return "Modules";
        default: return sheetPlaceName(state, group);
    }
}

} // namespace marlune
