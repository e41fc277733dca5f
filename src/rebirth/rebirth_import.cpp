#include "rebirth/rebirth_import.h"

#include <algorithm>
#include <functional>

#include "boundary/app_shell.h"
#include "import/music_draft.h"
#include "panel/editing.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/pattern_push.h"
#include "project/song_track.h"
#include "rebirth/drum_choice.h"
#include "rebirth/error_form.h"
#include "song/song_moves.h"
#include "song/song_place.h"
#include "util/text_number.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

constexpr std::uint8_t kEmpty = 255; // no bank and no value: nothing has been written here yet
constexpr int kBarlessKnob = 18;     // no parameter of the file moves it

// Offsets of the start values of a bass module's knobs; 0 for the one that has none and starts at 0.
constexpr int kStartValues[kBassModules][kBassKnobs] = {
    {rbsPlace(487), rbsPlace(488), rbsPlace(489), rbsPlace(490), 0, rbsPlace(491)},
    {rbsPlace(4583), rbsPlace(4584), rbsPlace(4585), rbsPlace(4586), 0, rbsPlace(4587)},
};
static_assert(kStartValues[0][0] == 556 && kStartValues[0][2] == 559 && kStartValues[0][5] == 561);
static_assert(kStartValues[1][0] == 5237 && kStartValues[1][1] == 5239 && kStartValues[1][5] == 5242);

struct KnobParameter {
    int parameter, knob; // knob counted within the module
};
constexpr KnobParameter kBassParameters[] = {{17, 0}, {18, 1}, {19, 2}, {20, 3}, {7, 4}, {21, 5}};
constexpr KnobParameter kDrumParameters[] = {{17, 0}, {20, 1}, {34, 2}, {42, 3}, {32, 4}, {40, 5}, {16, 7}};

// The project's knob that a track's parameter moves, -1 for none.
int knobOf(int module, int parameter) {
    const auto find = [&](const auto& rows, int first) {
        for (const KnobParameter& row : rows) {
            if (row.parameter == parameter) return first + row.knob;
        }
        return -1;
    };
    return module == kDrumModule ? find(kDrumParameters, kFirstDrumKnob)
                                 : find(kBassParameters, kBassKnobs * module);
}

// Tick of a knob event at a time in half-steps: even times but 0 land one tick late.
int tickOf(int time) {
    return time != 0 && time % 2 == 0 ? time / 2 + 1 : time / 2;
}

void fillBars(int module) {
    auto& bars = barTrack[module];
    const auto first =
        std::find_if(bars.begin(), bars.end(), [](const SongBar& bar) { return bar.bank != kEmpty; });
    const Selection at = selectionOf(project, module);
    SongBar held = first != bars.end() ? *first
                                       : SongBar{static_cast<std::uint8_t>(int{at.currPatt}),
                                                 static_cast<std::uint8_t>(int{at.currBank})};
    for (SongBar& bar : bars) {
        if (bar.bank == kEmpty) bar = held;
        held = bar;
    }
}

void fillKnob(int knob) {
    auto held = static_cast<std::uint8_t>(std::clamp<int>(project.knobValue[knob], 0, kTopValue));
    for (std::uint8_t& value : knobTrack[knob]) {
        if (value == kEmpty) value = held;
        held = value;
    }
}

// The last pass of either command: positions, loop points, and everything to the component.
void spreadPatterns() {
    const auto limitLoops = [](auto& module) {
        for (auto& bank : module.patterns) {
            for (auto& pattern : bank) pattern.loopEnd = std::clamp<int>(pattern.loopEnd, 0, kSteps - 1);
        }
    };
    stepsToZero();
    for (BassModule& module : project.bass) limitLoops(module);
    limitLoops(project.drum);
    pushAllPatterns(0, 1, kDrumModule);
}

std::string askForFile() {
    dlgCommonDialog = {};
    dlgCommonDialog.filter = "ReBirth file (*.rbs)|*.rbs";
    std::string name = shell().fileDialog(dlgCommonDialog);
    if (!name.empty()) dlgCommonDialog.fileName = withoutExtension(name);
    return name;
}

} // namespace

RebirthResult RebirthImport::takeImage(RbsImage image) {
    image_ = std::move(image);
    if (!units_.readRbsUnits(image_)) return RebirthResult::corrupt;
    convertAllPatterns();
    // Limited before it is stored: the fastest tempo a file can tell is more than the field holds.
    const int tempo = roundHalfEven(60000000.0 / microsecondsPerQuarter(image_));
    project.tempo = std::clamp(tempo, kMinTempo, kMaxTempo);
    refreshTempo();
    for (int module = 0; module < kBassModules; ++module) getInit303knobVals(module);
    for (int module = 0; module < kBassModules; ++module) refresh103Patt(module);
    refresh109Patt(project.drum.selDrum);
    return RebirthResult::done;
}

void RebirthImport::convertAllPatterns() const {
    for (int bank = 0; bank < kBanks; ++bank) {
        for (int pattern = 0; pattern < kPatterns; ++pattern) {
            for (int m = 0; m < kBassModules; ++m)
                units_.basses[m].Convert_PatternToMarLune(m, bank, pattern);
            units_.drums.Convert_PatternToMarLune(bank, pattern);
        }
    }
}

void RebirthImport::getInit303knobVals(int module) const {
    for (int k = 0; k < kBassKnobs; ++k) {
        const int offset = kStartValues[module][k];
        project.knobValue[kBassKnobs * module + k] = offset != 0 ? std::min(image_[offset], kTopValue) : 0;
    }
    for (int knob = 0; knob < kFirstDrumKnob; ++knob) refreshKnob(knob);
}

void RebirthImport::RebirthSongToMarlune() {
    for (auto& bars : barTrack) bars.fill({kEmpty, kEmpty});
    for (auto& knob : knobTrack) knob.fill(kEmpty);
    for (int module = 0; module < kModules; ++module) takeTrack(module);
    for (int module = 0; module < kModules; ++module) fillBars(module);
    for (int knob = 0; knob < kKnobs; ++knob) fillKnob(knob);
    knobTrack[kBarlessKnob].fill(0);
    markProject();
}

void RebirthImport::takeTrack(int module) {
    Song_Tracks& track = units_.tracks[module];
    track.rewind();
    while (track.readPos < track.trackLast) {
        track.SONG_Extract_303_One_Knob_for_MarLune();
        const int value = track.eventData2;
        const int bar = track.eventTime / kUnitsPerBar;
        if (track.eventData1 == kRbsPatternChange && value < kRbsPatterns && bar < kSongBars) {
            barTrack[module][bar] = {static_cast<std::uint8_t>(value % kPatterns),
                                     static_cast<std::uint8_t>(value / kPatterns)};
        }
        const int knob = knobOf(module, track.eventData1);
        const int tick = tickOf(track.eventTime);
        if (knob >= 0 && tick < kSongTicks) {
            knobTrack[knob][tick] = static_cast<std::uint8_t>(std::min(value, kTopValue));
        }
    }
}

namespace {

// The component and the panel follow the song as it has become.
void takeUpImport() {
    if (songPosition->songMode) {
        takeUpSong();
        refreshKnobsAtSongTick();
    } else {
        placePatterns();
    }
    refreshAll();
}

// choose: the drum unit, or nothing to leave the command. report may be null.
RebirthResult importRb40(const std::vector<std::uint8_t>& bytes, bool patternsOnly,
                         const std::function<std::optional<Rb40Drums>(const Rb40Song&)>& choose,
                         std::string* report) {
    const auto song = readRb40(bytes);
    if (!song) return RebirthResult::corrupt;
    const auto drums = choose(*song);
    if (!drums) return RebirthResult::left;
    shell().showPointer(Pointer::hourglass);
    leaveSongForImport();
    const auto draft = draftOfProject();
    draftRb40(*song, *drums, patternsOnly, *draft);
    takeDraft(*draft);
    if (report != nullptr) *report = draft->report.text();
    shell().showPointer(Pointer::normal);
    return RebirthResult::done;
}

RebirthResult importOldFormat(FileBytes file, bool patternsOnly) {
    RebirthImport job;
    const RebirthResult result =
        file.ok ? job.takeImage(rbsImageOf(std::move(file))) : RebirthResult::unreadable;
    if (result != RebirthResult::done) {
        if (patternsOnly) spreadPatterns();
        return result;
    }
    shell().letPaintRun();
    shell().showPointer(Pointer::hourglass);
    spreadPatterns();
    if (!patternsOnly) job.RebirthSongToMarlune();
    takeUpImport();
    shell().showPointer(Pointer::normal);
    return result;
}

void importCommand(bool patternsOnly) {
    if (!startImport()) return;
    const std::string name = askForFile();
    if (name.empty()) {
        if (patternsOnly) spreadPatterns();
        return;
    }
    FileBytes file = readFileStart(name, kRb40LongestFile);
    const auto ask = [&](const Rb40Song& song) { return askForDrums(song, patternsOnly); };
    const RebirthResult result = isRb40(file.bytes) ? importRb40(file.bytes, patternsOnly, ask, nullptr)
                                                    : importOldFormat(std::move(file), patternsOnly);
    if (result != RebirthResult::done && result != RebirthResult::left) showCorruptRebirthFile();
}

} // namespace

void mnuFileImportRebPatt_Click() {
    importCommand(true);
}

void mnuFileRebirthImport_Click() {
    importCommand(false);
}

RebirthResult importRebirthFile(const std::string& path, const RebirthImportOptions& options,
                                std::string* report) {
    FileBytes file = readFileStart(path, kRb40LongestFile);
    if (!file.ok) return RebirthResult::unreadable;
    if (!isRb40(file.bytes)) return importRbsImage(rbsImageOf(std::move(file)), options.patternsOnly);
    return importRb40Bytes(file.bytes, options, report);
}

RebirthResult importRb40Bytes(const std::vector<std::uint8_t>& bytes, const RebirthImportOptions& options,
                              std::string* report) {
    const auto choose = [&](const Rb40Song& song) {
        return std::optional(options.drums.value_or(rb40DefaultDrums(song, options.patternsOnly)));
    };
    return importRb40(bytes, options.patternsOnly, choose, report);
}

RebirthResult importRbsImage(RbsImage image, bool patternsOnly) {
    RebirthImport job;
    const RebirthResult result = job.takeImage(std::move(image));
    if (result != RebirthResult::done) return result;
    spreadPatterns();
    if (!patternsOnly) job.RebirthSongToMarlune();
    takeUpImport();
    return result;
}

} // namespace marlune
