// marlune-cli: the instrument for scripts and for machines without a display.
#include <cstdio>
#include <exception>
#include <string>

#include "cli/verbs.h"

namespace marlune {

namespace {

struct Verb {
    const char* name;
    int (*run)(const Words& words);
    const char* usage;
};

constexpr Verb kVerbs[] = {
    {"play", playVerb,
     "PROJECT.mlp [--song] [--bar N] [--bars N] [--out DEVICE] [--config DIR] [--log FILE] [--fast]"},
    {"render", renderVerb,
     "PROJECT.mlp OUT.wav [--song] [--bar N] [--bars N] [--stems] [--rate 44100|48000] [--bits 16|24]\n"
     "    [--config DIR] [--progress]"},
    {"export", exportVerb, "PROJECT.mlp OUT.mid [--config DIR] [--bar FIRST] [--bars COUNT]"},
    {"import", importVerb,
     "SONG.rbs OUT.mlp [--patterns-only] [--drums 808|909|both]\n"
     "    or SONG.mid OUT.mlp [--patterns-only] [--103a CHANNEL] [--103b CHANNEL] [--109 CHANNEL] [--last]\n"
     "    [--accent-above VELOCITY]; channel 0 for none"},
    {"convert", convertVerb,
     "SONG.rbs OUT.mid [--top-base-note N] [--top-velocity N] [--top-channel N] [--top-cutoff N]\n"
     "    [--top-reso N] [--top-envmod N] [--top-decay N] [--top-accent N] [--mid-... N] [--drums-channel "
     "N]\n    [--slides] [--accents]"},
    {"info", infoVerb, "FILE [--json]"},
    {"resave", resaveVerb, "PROJECT.mlp OUT.mlp"},
    {"ports", portsVerb, ""},
};

int usage(std::FILE* out) {
    for (const Verb& verb : kVerbs) std::fprintf(out, "marlune-cli %s %s\n", verb.name, verb.usage);
    return out == stdout ? 0 : 2;
}

int run(const Words& words) {
    if (words.empty()) return usage(stderr);
    if (words[0] == "--help" || words[0] == "-h") return usage(stdout);
    for (const Verb& verb : kVerbs) {
        if (words[0] == verb.name) return verb.run(Words(words.begin() + 1, words.end()));
    }
    std::fprintf(stderr, "unknown verb %s\n", words[0].c_str());
    return usage(stderr);
}

} // namespace

} // namespace marlune

int main(int argc, char** argv) {
    try {
        return marlune::run(marlune::Words(argv + 1, argv + argc));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
