// convert: a ReBirth song into a Standard MIDI File.
#include <array>
#include <string>

#include "cli/arguments.h"
#include "cli/verbs.h"
#include "rebirth/rebirth_convert.h"

namespace marlune {

namespace {

using Kind = OptionRow::Kind;

struct UnitOptionRow {
    const char* top;
    const char* mid;
    int UnitOptions::*option;
    OptionLimits limits;
};
constexpr UnitOptionRow kUnitRows[] = {
    {"--top-base-note", "--mid-base-note", &UnitOptions::baseNote, kDataByteLimits},
    {"--top-velocity", "--mid-velocity", &UnitOptions::velocity, kDataByteLimits},
    {"--top-channel", "--mid-channel", &UnitOptions::channel, kChannelLimits},
    {"--top-cutoff", "--mid-cutoff", &UnitOptions::cutoff, kDataByteLimits},
    {"--top-reso", "--mid-reso", &UnitOptions::reso, kDataByteLimits},
    {"--top-envmod", "--mid-envmod", &UnitOptions::envMod, kDataByteLimits},
    {"--top-decay", "--mid-decay", &UnitOptions::decay, kDataByteLimits},
    {"--top-accent", "--mid-accent", &UnitOptions::accent, kDataByteLimits},
};
constexpr const char* kDrumsChannel = "--drums-channel";
constexpr const char *kSlides = "--slides", *kAccents = "--accents";

std::vector<OptionRow> convertOptions() {
    std::vector<OptionRow> rows;
    const auto add = [&](const char* name, const OptionLimits& limits) {
        rows.push_back({name, Kind::number, limits.lowest, limits.highest});
    };
    for (const UnitOptionRow& row : kUnitRows) {
        add(row.top, row.limits);
        add(row.mid, row.limits);
    }
    add(kDrumsChannel, kChannelLimits);
    rows.push_back({kSlides, Kind::flag});
    rows.push_back({kAccents, Kind::flag});
    return rows;
}

} // namespace

int tellRebirth(RebirthResult result, const Words& files) {
    switch (result) {
        case RebirthResult::done: return 0;
        case RebirthResult::unreadable: return refuse("Can't read " + files[0]);
        case RebirthResult::corrupt: return refuse(kCorruptRebirthFile);
        case RebirthResult::left:
        case RebirthResult::notWritten: break;
    }
    return refuse("Can't write " + files[1]);
}

int convertVerb(const Words& words) {
    Arguments arguments;
    if (const auto wrong = arguments.parse(words, convertOptions(), 2)) return refuse(*wrong);
    ConverterOptions options;
    for (const UnitOptionRow& row : kUnitRows) {
        options.top.*row.option = arguments.number(row.top, options.top.*row.option);
        options.mid.*row.option = arguments.number(row.mid, options.mid.*row.option);
    }
    options.drumsChannel = arguments.number(kDrumsChannel, options.drumsChannel);
    options.top.slides = options.mid.slides = arguments.has(kSlides);
    options.top.accents = options.mid.accents = arguments.has(kAccents);
    return tellRebirth(convertRebirthFile(arguments.files[0], arguments.files[1], options), arguments.files);
}

} // namespace marlune
