// import: songs of others as a project.
#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "cli/arguments.h"
#include "cli/session.h"
#include "cli/verbs.h"
#include "files/project_file.h"
#include "import/midi_import.h"
#include "rebirth/rebirth_import.h"

namespace marlune {

namespace {

using Kind = OptionRow::Kind;
constexpr const char* kPatternsOnly = "--patterns-only";
constexpr const char* kDrums = "--drums";
constexpr const char* kChannels[kModules] = {"--103a", "--103b", "--109"};
constexpr const char* kLast = "--last";
constexpr const char* kAccentAbove = "--accent-above";

const std::vector<OptionRow> kOptions = {
    {kPatternsOnly, Kind::flag},         {kDrums, Kind::text},
    {kChannels[0], Kind::number, 0, 16}, {kChannels[1], Kind::number, 0, 16},
    {kChannels[2], Kind::number, 0, 16}, {kLast, Kind::flag},
    {kAccentAbove, Kind::number, 0, 127}};

constexpr std::array<const char*, 3> kDrumUnits = {"808", "909", "both"}; // as Rb40Drums

int takeMidi(const Arguments& arguments, std::string& report) {
    bool known = true;
    const auto choose = [&](const MidiSong&, const std::vector<MidiSource>& sources, MidiChoices& choices) {
        for (int m = 0; m < kModules; ++m) {
            if (!arguments.has(kChannels[m])) continue;
            const int channel = arguments.number(kChannels[m], 0) - 1;
            const auto found =
                std::ranges::find(sources, channel, &MidiSource::channel); // its whole comes first
            choices.source[m] =
                found == sources.end() ? kNoSource : static_cast<int>(found - sources.begin());
            known = known && (channel < 0 || found != sources.end());
        }
        choices.highest = !arguments.has(kLast);
        choices.accentAbove = arguments.number(kAccentAbove, choices.accentAbove);
        choices.asSong = !arguments.has(kPatternsOnly);
        return known;
    };
    if (importMidiFile(arguments.files[0], choose, report)) return 0;
    return refuse(known ? report : "A channel has no notes. See marlune-cli info " + arguments.files[0]);
}

int takeRebirth(const Arguments& arguments, std::string& report) {
    RebirthImportOptions options;
    options.patternsOnly = arguments.has(kPatternsOnly);
    if (arguments.has(kDrums)) {
        const auto* const unit = std::ranges::find(kDrumUnits, arguments.text(kDrums));
        if (unit == kDrumUnits.end()) return refuse("--drums takes 808, 909 or both");
        options.drums = static_cast<Rb40Drums>(unit - kDrumUnits.begin());
    }
    return tellRebirth(importRebirthFile(arguments.files[0], options, &report), arguments.files);
}

} // namespace

int importVerb(const Words& words) {
    Arguments arguments;
    if (const auto wrong = arguments.parse(words, kOptions, 2)) return refuse(*wrong);
    const Session session{SessionOptions{}};
    std::string report;
    const bool midi = looksLikeMidiFile(arguments.files[0]);
    if (const int status = (midi ? takeMidi : takeRebirth)(arguments, report)) return status;
    if (!report.empty()) std::printf("%s\n", report.c_str());
    return saveProjectFile(arguments.files[1]) ? 0 : refuse(session.shell.status());
}

} // namespace marlune
