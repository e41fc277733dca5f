// play, resave and ports.
#include <unistd.h>

#include <cstdio>

#include "cli/arguments.h"
#include "cli/session.h"
#include "cli/verbs.h"
#include "files/project_file.h"
#include "project/song_track.h"
#include "song/mode_switch.h"
#include "song/song_moves.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

constexpr int kDefaultBars = 4;

using Kind = OptionRow::Kind;
const std::vector<OptionRow> kPlayOptions = {
    {"--song", Kind::flag},
    {"--bar", Kind::number, 1, kSongBars},
    {"--bars", Kind::number, 1, 100000},
    {"--out", Kind::text},
    {"--config", Kind::text},
    {"--log", Kind::text},
    {"--fast", Kind::flag},
};
std::string digit(int bank, int patt) {
    return std::string(1, static_cast<char>('A' + bank)) + std::to_string(patt + 1);
}

// One line that tells where the three modules are, rewritten in place.
void showProgress() {
    std::string line = "\r";
    if (songPosition->songMode) line += "bar " + std::to_string(barOf(songPosition->songTick) + 1) + "  ";
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(project, m);
        std::string lamps(kSteps, '.');
        lamps[songPosition->moduleStep[m] % kSteps] = '#';
        lamps.resize(currentLoopEnd(m) + 1);
        line += std::string(kModuleNames[m]) + " " + digit(at.currBank, at.currPatt) + " [" + lamps + "]  ";
    }
    std::fputs((line + "\033[K").c_str(), stdout);
    std::fflush(stdout);
}

} // namespace

int refuse(const std::string& text) {
    std::fprintf(stderr, "%s\n", text.c_str());
    return 1;
}

bool takeProject(const std::string& name, const Arguments& arguments) {
    if (!loadProjectFile(name)) return false;
    if (!arguments.has("--song")) return true;
    if (!songPosition->songMode) SongSwitch(true);
    moveSongForward(arguments.number("--bar", 1) - 1, true, true);
    return true;
}

int playVerb(const Words& words) {
    Arguments arguments;
    if (const auto wrong = arguments.parse(words, kPlayOptions, 1)) return refuse(*wrong);
    if (arguments.has("--bar") && !arguments.has("--song")) return refuse("--bar goes with --song");
    SessionOptions options{!arguments.has("--fast"), arguments.text("--config"), arguments.text("--out")};
    options.log = arguments.has("--log");
    Session session(options);
    if (!session.error().empty()) return refuse(session.error());
    if (!takeProject(arguments.files[0], arguments)) return 1;
    const bool terminal = ::isatty(STDOUT_FILENO) == 1 && !arguments.has("--fast");
    session.play(arguments.number("--bars", kDefaultBars), [&] {
        if (terminal) showProgress();
    });
    if (terminal) std::puts("");
    if (!session.log.complete()) return refuse("The log lost messages.");
    const std::string& text = session.log.text();
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    if (arguments.has("--log") && !writeFileAtomically(arguments.text("--log"), bytes)) {
        return refuse("Can't write " + arguments.text("--log"));
    }
    return 0;
}

int resaveVerb(const Words& words) {
    Arguments arguments;
    if (const auto wrong = arguments.parse(words, {}, 2)) return refuse(*wrong);
    const Session session{SessionOptions{}};
    if (!loadProjectFile(arguments.files[0])) return 1;
    return saveProjectFile(arguments.files[1]) ? 0 : refuse(session.shell.status());
}

int portsVerb(const Words& words) {
    Arguments arguments;
    if (const auto wrong = arguments.parse(words, {}, 0)) return refuse(*wrong);
    PlatformOptions options;
    options.sound = false;
    Platform platform(options);
    std::puts("Outputs:");
    for (int i = 0; i < platform.outputs().count(); ++i) {
        std::printf("  %d  %s\n", i, platform.outputs().name(i).c_str());
    }
    std::puts("Inputs:");
    for (int i = 0; i < platform.inputs().count(); ++i) {
        std::printf("  %d  %s\n", i, platform.inputs().name(i).c_str());
    }
    return 0;
}

} // namespace marlune
