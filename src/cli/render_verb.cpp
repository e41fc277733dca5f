// render: a project into one sound file, or into one for each module.
#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "cli/arguments.h"
#include "cli/session.h"
#include "cli/verbs.h"
#include "platform/settings_file.h"
#include "platform/signals.h"
#include "platform/sound_file.h"
#include "platform/synth_renderer.h"
#include "project/pattern_push.h"
#include "project/song_track.h"

namespace marlune {

namespace {

constexpr int kDefaultBars = 4;
constexpr int kTailSeconds = 2; // for what still rings after the last bar
constexpr int kLeadSeconds = 1; // no event comes later than that before its time
constexpr int kAllModules = -1;

using Kind = OptionRow::Kind;
const std::vector<OptionRow> kOptions = {
    {"--song", Kind::flag},
    {"--bar", Kind::number, 1, kSongBars},
    {"--bars", Kind::number, 1, 1000},
    {"--stems", Kind::flag},
    {"--rate", Kind::number, 44100, 48000},
    {"--bits", Kind::number, 16, 24},
    {"--config", Kind::text},
    {"--progress", Kind::flag},
};

// Empties the patterns of the modules that are not to be heard: their knobs and patches stay, as another one
// may share their channel.
void leaveOnly(int module) {
    if (module == kAllModules) return;
    for (int m = 0; m < kBassModules; ++m) {
        if (m == module) continue;
        for (auto& bank : project.bass[m].patterns)
            for (BassPattern& pattern : bank)
                for (BassStep& step : pattern.steps) step.noteOn = false;
    }
    if (module != kDrumModule) {
        for (auto& bank : project.drum.patterns)
            for (DrumPattern& pattern : bank)
                for (auto& step : pattern.drumOn) step.fill(0);
    }
    pushAllPatterns(0, 1, kDrumModule);
}

// "take.wav" becomes "take-103A.wav".
std::string stemName(const std::string& name, int module) {
    if (module == kAllModules) return name;
    const std::string tag = std::string("-") + kModuleNames[module];
    const auto dot = name.rfind('.');
    const bool extension = dot != std::string::npos && name.find('/', dot) == std::string::npos;
    return extension ? name.substr(0, dot) + tag + name.substr(dot) : name + tag;
}

struct Interrupted : std::runtime_error {
    Interrupted() : std::runtime_error("Interrupted: no file was written.") {}
};

// The sound is written while it is made: a long song takes no more memory than a short one.
class Take {
  public:
    Take(const Arguments& arguments, int module)
        : arguments_(arguments),
          name_(stemName(arguments.files[1], module)),
          synth_({arguments.number("--rate", SynthRenderer::kSampleRate),
                  roomWanted(arguments.text("--config"))}),
          session_({.configFolder = arguments.text("--config"), .device = {}, .render = &synth_}),
          taken_(takeProject(arguments.files[0], arguments)),
          file_(name_, {synth_.sampleRate(), arguments.number("--bits", 16)}) {
        if (taken_) leaveOnly(module);
    }

    // The exit status. share: where this take begins and ends in the whole, 0..1.
    int run(double begin, double end) {
        if (!taken_) return 1;
        const int bars = arguments_.number("--bars", kDefaultBars);
        const double length = bars * kSteps * 15.0 / project.tempo;
        session_.play(bars, [&] {
            if (signals_.take()) throw Interrupted();
            const bool piece = renderUpTo(played() - kLeadSeconds, false);
            if (piece && arguments_.has("--progress")) tell(begin + (end - begin) * played() / length);
        });
        renderUpTo(played() + kTailSeconds, true);
        if (!file_.finish()) return refuse("Can't write " + name_);
        if (!synth_.hasFont()) std::fputs("No sound font was found: patches are silent.\n", stderr);
        return 0;
    }

  private:
    double played() const { return static_cast<double>(session_.virtualNs()) / 1e9; }

    // Whole pieces only, but for the end; true when there was one.
    bool renderUpTo(double seconds, bool last) {
        constexpr std::int64_t kPiece = 1 << 14;
        const auto frames = static_cast<std::int64_t>(seconds * synth_.sampleRate());
        if (!last && frames - synth_.rendered() < kPiece) return false;
        while (file_.ok() && synth_.rendered() < frames)
            file_.write(synth_.render(static_cast<int>(std::min(kPiece, frames - synth_.rendered()))));
        return true;
    }

    static void tell(double share) {
        std::printf("%d\n", std::clamp(static_cast<int>(100 * share), 0, 100));
        std::fflush(stdout);
    }

    Signals signals_; // so that what was begun is cleared away
    const Arguments& arguments_;
    std::string name_;
    SynthRenderer synth_;
    Session session_;
    bool taken_;
    SoundFile file_;
};

} // namespace

int renderVerb(const Words& words) {
    Arguments arguments;
    if (const auto wrong = arguments.parse(words, kOptions, 2)) return refuse(*wrong);
    if (arguments.has("--bar") && !arguments.has("--song")) return refuse("--bar goes with --song");
    const int rate = arguments.number("--rate", 44100), bits = arguments.number("--bits", 16);
    if (rate != 44100 && rate != 48000) return refuse("--rate is 44100 or 48000");
    if (bits != 16 && bits != 24) return refuse("--bits is 16 or 24");
    if (!arguments.has("--stems")) return Take(arguments, kAllModules).run(0, 1);
    for (int m = 0; m < kModules; ++m) {
        const int status = Take(arguments, m).run(m / 3.0, (m + 1) / 3.0);
        if (status != 0) return status;
    }
    return 0;
}

} // namespace marlune
