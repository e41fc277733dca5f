// Makes the demo projects: make_examples FOLDER writes harbour_nights.mlp, tide_pool.mlp and slow_lantern.mlp
// there, and the starter project and configuration into the folder's subfolder "starter".
//
// Patterns are written as text. Bass: sixteen steps of a note name C..B or C' with ^ octave up, _ octave
// down, ! accent, or - for a rest. Drums: one line of sixteen per row, x a hit.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "commands/reset_program.h"
#include "files/project_file.h"
#include "program/startup.h"
#include "project/global_config.h"
#include "project/song_track.h"
#include "setup/config_file.h"

namespace marlune {

namespace {

using BassText = const char*;

struct DrumText {
    const char* rows[kDrumRows]; // BDrum, Snare, Clap, ClHt1, ClHt2, OpHat, Loop, Accent
};

constexpr const char* kNone = "................";

// Bank A of 103A, the lead line in A minor.
constexpr BassText kLead[kPatterns] = {
    "A_! A_ A - A_ C' - A_ G_! - A_ A - E_ G_ A_", "A_! A A_ - C - A_ E_ A_! - G_ A - C' B A",
    "F_! F_ F - F_ A - F_ G_! - G_ G - B G_ D",    "A_! - - A_ - - A - A_! - - C' - - B -",
    "A_ A! A_ A A_! A C' A_ E! E_ G A_ C'! B A G", "D_! D_ D - F - D_ A E_! - E_ E - G# B_ E",
    "A! - A^ - C' - A E G! - A - E - D -",         "A_! A_ A_ A_ A_! A_ A_ A_ A_! A A_ A A_! C' B A",
};

// Bank A of 103B, the answer above it.
constexpr BassText kAnswer[kPatterns] = {
    "- - A - - - C' - - - E - - G - -",        "- - E^ - - - C^ - - A - - B - - -",
    "- - F - - - A - - - G - - B - D^",        "A - - - - - - - E^! - - - - - - -",
    "A! - C' - E^ - C' - A! - C' - G^ - E^ -", "- D^ - - F^ - - D^ - - E^! - - B - -",
    "E^ - D^ - C^ - B - A - G - A - - -",      "- - - - - - - - - - - - A E^ C^ A",
};

constexpr DrumText kDrumTexts[kPatterns] = {
    {{"x...x...x...x...", kNone, kNone, "..x...x...x...x.", kNone, kNone, kNone, "x.......x......."}},
    {{"x...x...x...x...", "....x.......x...", kNone, "x.x.x.x.x.x.x.x.", kNone, "..x...x...x...x.", kNone,
      "....x.......x..."}},
    {{"x...x...x..xx...", "....x.......x...", "....x.......x...", "xxxxxxxxxxxxxxxx", kNone,
      "..x...x...x...x.", kNone, "x...x...x...x..."}},
    {{"x......x..x.....", "....x.......x..x", kNone, "x.xxx.xxx.xxx.xx", "......x.......x.", kNone, kNone,
      "....x.......x..."}},
    {{kNone, kNone, "....x.......x...", "x.x.x.x.x.x.x.x.", kNone, kNone, "x..x..x...x..x..", kNone}},
    {{"x...x...x...x...", "....x.......xxxx", "....x.......x.x.", "x.x.x.x.x.x.x.x.", kNone,
      "..x...x...x.....", kNone, "............x.xx"}},
    {{"x.......x.......", "............x...", kNone, "..x...x...x...x.", kNone, "......x.......x.",
      "....x.......x...", kNone}},
    {{"x.x.x.x.xxxxxxxx", "xxxxxxxxxxxxxxxx", kNone, kNone, kNone, kNone, kNone, "x...x...x.x.xxxx"}},
};

constexpr int kSilence = kPatterns - 1; // pattern 8 of bank D: where the song has ended

void writeBass(BassPattern& pattern, const std::string& text) {
    constexpr const char* kNames[] = {"C", "C#", "D", "Eb", "E", "F", "F#", "G", "G#", "A", "Bb", "B", "C'"};
    std::istringstream words(text);
    std::string word;
    for (BassStep& step : pattern.steps) {
        words >> word;
        const auto flag = [&word](char mark) {
            const auto at = word.find(mark);
            if (at != std::string::npos) word.erase(at, 1);
            return at != std::string::npos;
        };
        step.accent = flag('!');
        step.up = flag('^');
        step.down = flag('_');
        step.noteOn = word != "-";
        for (int n = 0; n < 13; ++n) {
            if (word == kNames[n]) step.note = n;
        }
    }
}

void writeDrums(DrumPattern& pattern, const DrumText& text) {
    for (int row = 0; row < kDrumRows; ++row) {
        for (int s = 0; s < kSteps; ++s) pattern.drumOn[s][row] = text.rows[row][s] == 'x' ? kDrumHit : 0;
    }
}

void writePatterns() {
    for (int p = 0; p < kPatterns; ++p) {
        writeBass(project.bass[0].patterns[0][p], kLead[p]);
        writeBass(project.bass[1].patterns[0][p], kAnswer[p]);
        writeDrums(project.drum.patterns[0][p], kDrumTexts[p]);
    }
    // A pattern of twelve steps drifts against the sixteen of the others.
    project.bass[1].patterns[0][6].loopEnd = 11;
    for (BassModule& bass : project.bass) {
        for (BassStep& step : bass.patterns[kBanks - 1][kSilence].steps) step.noteOn = false;
    }
}

void select(int module, int patt) {
    const Selection at = selectionOf(project, module);
    at.currPatt = at.nextPatt = patt;
    at.currBank = at.nextBank = 0;
}

// The knobs of the jam, also where the song's knobs start.
void setKnobs() {
    constexpr int kValues[kKnobs] = {62, 84,  70,  58, 12, 112, 48, 60, 54, 72,
                                     96, 104, 104, 92, 84, 72,  66, 70, 78, 104};
    for (int k = 0; k < kKnobs; ++k) project.knobValue[k] = kValues[k];
}

// One section of the song: bars, and the patterns of the three modules that take turns in it (-1: silence).
struct Section {
    int bars;
    std::vector<int> lead, answer, drums;
    double cutoffFrom, cutoffTo;
};

const std::vector<Section> kSong = {
    {8, {-1, -1, 3, 3}, {-1}, {0}, 8, 50},
    {8, {0, 0, 0, 2}, {-1, -1, 0, 0}, {0, 0, 0, 3}, 30, 80},
    {8, {0, 1, 0, 2}, {0, 0, 1, 2}, {1, 1, 1, 5}, 60, 100},
    {8, {4, 4, 5, 5}, {1, 1, 5, 5}, {2, 2, 2, 5}, 90, 50},
    {8, {-1, -1, -1, 3}, {3, 6, 3, 6}, {4, 4, 4, 6}, 20, 30},
    {8, {7}, {-1, -1, 7, 7}, {4, 4, 7, 7}, 10, 127},
    {12, {4, 1, 4, 5}, {4, 4, 4, 5}, {2, 2, 2, 5}, 110, 70},
    {8, {6, 6, 2, 5}, {6}, {3, 3, 3, 5}, 70, 40},
    {8, {0, 0, 3, 3}, {0, 0, -1, -1}, {1, 1, 0, 6}, 60, 5},
};

std::uint8_t knobByte(double value) {
    return static_cast<std::uint8_t>(std::clamp(static_cast<int>(std::lround(value)), 0, 127));
}

void writeSection(const Section& section, int firstBar) {
    const std::vector<int>* turns[kModules] = {&section.lead, &section.answer, &section.drums};
    for (int bar = 0; bar < section.bars; ++bar) {
        for (int m = 0; m < kModules; ++m) {
            const auto& turn = *turns[m];
            const int patt = turn[static_cast<std::size_t>(bar) % turn.size()];
            setBar(m, (firstBar + bar) * kTicksPerBar, patt < 0 ? kBanks - 1 : 0, patt < 0 ? kSilence : patt);
        }
    }
    const int ticks = section.bars * kTicksPerBar;
    for (int t = 0; t < ticks; ++t) {
        const int tick = firstBar * kTicksPerBar + t;
        const double along = static_cast<double>(t) / ticks;
        const double cutoff = section.cutoffFrom + (section.cutoffTo - section.cutoffFrom) * along;
        const double slow = std::sin(t * 0.049); // about one wave in eight bars
        knobTrack[0][tick] = knobByte(cutoff + 8 * std::sin(t * 0.39));
        knobTrack[1][tick] = knobByte(78 + 24 * slow);
        knobTrack[2][tick] = knobByte(64 + 30 * along);
        knobTrack[3][tick] = knobByte(52 - 22 * slow);
        knobTrack[6][tick] = knobByte(40 + 40 * (1 - along) + 12 * slow);
        knobTrack[9][tick] = knobByte(70 + 30 * along);
        if (t % kTicksPerBar >= 12) knobTrack[17][tick] = knobByte(60 + 3 * (t % kTicksPerBar));
    }
}

bool makeSong(const std::string& path) {
    writePatterns();
    setKnobs();
    project.tempo = 132;
    for (int m = 0; m < kModules; ++m) select(m, m == kDrumModule ? 2 : m == 0 ? 4 : 1);
    std::array<int, kKnobs> knobs{};
    for (int k = 0; k < kKnobs; ++k) knobs[k] = project.knobValue[k];
    initKnobTrack(knobs);
    fillBarTrack({kSilence, kSilence, kSilence}, {kBanks - 1, kBanks - 1, kBanks - 1});
    int bar = 0;
    for (const Section& section : kSong) {
        writeSection(section, bar);
        bar += section.bars;
    }
    return saveProjectFile(path);
}

bool makeJam(const std::string& path) {
    writePatterns();
    setKnobs();
    project.tempo = 118;
    select(0, 3);
    select(1, 6);
    select(kDrumModule, 6);
    std::array<int, kKnobs> knobs{};
    for (int k = 0; k < kKnobs; ++k) knobs[k] = project.knobValue[k];
    initKnobTrack(knobs);
    fillBarTrack({3, 6, 6}, {0, 0, 0});
    return saveProjectFile(path);
}

// A slow line that shows what the six knobs of a bass do: four bars each, then all of them at once.
constexpr BassText kSlowLine[] = {
    "C_! - C_ C - Eb C_ - C_! Bb_ - C - G_ F_! -", "C_! - C_ C - Eb C_ - F_! F - Eb - C_ Bb_! C",
    "C_! C_ - C' - G_ C_ - C_! - Eb G - Bb_ C_! -", "G_! - G_ Bb_ - C G_ - Bb_! C_ - Eb - F_ G_! Bb_"};
constexpr BassText kSlowChord = "- - - - G - - - - - - - Eb - - -";
constexpr DrumText kSlowDrums[] = {
    {{"x.......x.......", "....x.......x...", kNone, "..x...x...x...x.", kNone, kNone, kNone, kNone}},
    {{"x.....x...x.....", "....x.......x...", "............x...", "x.x.x.x.x.x.x.x.", "...x......x.....",
      "......x.......x.", "..............xx", "....x..........."}},
};
constexpr int kSlowKnobs[kBassKnobs] = {44, 72, 64, 60, 0, 108};
constexpr int kBarsOfKnob = 4;

// Along its four bars a knob goes down to one end, up to the other and back to where it stands.
double showOff(int knob, double along) {
    const double start = kSlowKnobs[knob], low = knob == 5 ? 60 : 0;
    if (along < 0.25) return start + (low - start) * along * 4;
    if (along < 0.75) return low + (127 - low) * (along - 0.25) * 2;
    return 127 + (start - 127) * (along - 0.75) * 4;
}

bool makeSlowLine(const std::string& path) {
    project.tempo = 104;
    for (int p = 0; p < 4; ++p) writeBass(project.bass[0].patterns[0][p], kSlowLine[p]);
    writeBass(project.bass[1].patterns[0][0], kSlowChord);
    for (int p = 0; p < 2; ++p) writeDrums(project.drum.patterns[0][p], kSlowDrums[p]);
    std::array<int, kKnobs> knobs{44,  72,  64,  60,  0,  108, 30, 40, 50, 80,
                                  100, 104, 116, 104, 84, 80,  70, 72, 86, 122};
    for (int k = 0; k < kKnobs; ++k) project.knobValue[k] = knobs[k];
    initKnobTrack(knobs);
    fillBarTrack({0, 0, 0}, {0, 0, 0});
    constexpr int kSolos = kBassKnobs * kBarsOfKnob, kBars = kSolos + 8;
    for (int bar = 0; bar < kBars; ++bar) {
        setBar(0, bar * kTicksPerBar, 0, bar % 4);
        setBar(kDrumModule, bar * kTicksPerBar, 0, bar % 4 == 3 || bar >= kSolos ? 1 : 0);
    }
    for (int t = 0; t < kBars * kTicksPerBar; ++t) {
        const int knob = t / (kBarsOfKnob * kTicksPerBar);
        const double along =
            static_cast<double>(t % (kBarsOfKnob * kTicksPerBar)) / (kBarsOfKnob * kTicksPerBar);
        if (knob < kBassKnobs) knobTrack[knob][t] = knobByte(showOff(knob, along));
        for (int k = 0; knob >= kBassKnobs && k < kBassKnobs; ++k)
            knobTrack[k][t] = knobByte(70 + 50 * std::sin(t * (0.021 + 0.009 * k)));
    }
    return saveProjectFile(path);
}

// Where a new project may begin: everything fresh, the knobs where they are heard.
bool makeStarter(const std::string& path) {
    constexpr int kValues[kKnobs] = {48, 72,  64,  56,  0,  112, 40, 64, 56, 64,
                                     96, 112, 110, 100, 96, 84,  76, 84, 90, 120};
    std::array<int, kKnobs> knobs{};
    for (int k = 0; k < kKnobs; ++k) knobs[k] = project.knobValue[k] = kValues[k];
    initKnobTrack(knobs);
    fillBarTrack({0, 0, 0}, {0, 0, 0});
    return saveProjectFile(path);
}

} // namespace

} // namespace marlune

int main(int argc, char** argv) {
    using namespace marlune;
    if (argc != 2) {
        std::fputs("make_examples FOLDER\n", stderr);
        return 2;
    }
    const std::string folder = argv[1];
    struct Example {
        const char* name;
        bool (*make)(const std::string& path);
    };
    for (const auto& [name, make] :
         {Example{"/harbour_nights.mlp", makeSong}, Example{"/tide_pool.mlp", makeJam},
          Example{"/slow_lantern.mlp", makeSlowLine}, Example{"/starter/new.mlp", makeStarter}}) {
        resetProgram();
        StartupHooks hooks;
        hooks.openDevices = false;
        startupMain("", hooks);
        if (!make(folder + name)) return 1;
    }
    // The built-in synthesizer for both outputs (the clock then goes out once), the virtual input.
    config.midiInDevice = config.midiOutDevice = config.syncOutDevice = 0;
    config.statusBarVisible = true;
    setConfigFolder(folder + "/starter");
    saveGlobalConfig();
    return 0;
}
