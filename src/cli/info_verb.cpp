// info: what is in a project, a ReBirth song or a MIDI file.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <set>

#include "cli/arguments.h"
#include "cli/session.h"
#include "cli/verbs.h"
#include "files/project_file.h"
#include "import/midi_import.h"
#include "import/music_draft.h"
#include "rebirth/rb40_music.h"
#include "rebirth/rebirth_import.h"
#include "util/text_number.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

// What is told, as JSON text: numbers as they are, texts in quotation marks.
std::string quoted(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') json += '\\';
        json += c >= 0 && c < ' ' ? '?' : c;
    }
    return json + "\"";
}

class Facts {
  public:
    void add(const char* name, const std::string& text) { rows_.push_back({name, " " + text, quoted(text)}); }
    void add(const char* name, double number) {
        rows_.push_back({name, " " + decimalText(number), decimalText(number)});
    }
    void add(const char* name, const std::vector<std::string>& list) {
        Row row{name, "", "["};
        for (const std::string& text : list) {
            row.text += "\n  " + text;
            row.json += (row.json.size() > 1 ? ", " : "") + quoted(text);
        }
        row.json += "]";
        rows_.push_back(row);
    }
    void print(bool json) const {
        std::string out = json ? "{" : "";
        for (Row row : rows_) {
            if (json) {
                std::ranges::replace(row.name, ' ', '_');
                out += (out.size() > 1 ? ", " : "") + quoted(row.name) + ": " + row.json;
            } else {
                out += row.name + ":" + row.text + "\n";
            }
        }
        std::fputs((json ? out + "}\n" : out).c_str(), stdout);
    }

  private:
    struct Row {
        std::string name, text, json;
    };
    std::vector<Row> rows_;
};

// Bars up to the last one at which the song changes, 1 for a song that stays as it begins.
int songBars() {
    int bars = 1;
    for (const auto& track : barTrack) {
        for (int bar = 1; bar < kSongBars; ++bar)
            if (track[bar] != track[bar - 1]) bars = std::max(bars, bar + 1);
    }
    for (const auto& knob : knobTrack) {
        for (int tick = 1; tick < kSongTicks; ++tick)
            if (knob[tick] != knob[tick - 1]) bars = std::max(bars, barOf(tick) + 1);
    }
    return bars;
}

int movingKnobs() {
    return static_cast<int>(std::ranges::count_if(knobTrack, [](const auto& knob) {
        return std::ranges::any_of(knob, [&](std::uint8_t value) { return value != knob[0]; });
    }));
}

// Of the project as it was loaded: patterns that sound, and those that the song plays, of each module.
void tellProject(Facts& facts) {
    facts.add("tempo", int{project.tempo});
    facts.add("bars", songBars());
    std::vector<std::string> sounding;
    for (int m = 0; m < kModules; ++m) {
        int patterns = 0;
        for (int p = 0; p < kModulePatterns; ++p) {
            const bool silent = m == kDrumModule ? isSilent(drumPatternAt(project, p))
                                                 : isSilent(bassPatternAt(project, m, p));
            patterns += silent ? 0 : 1;
        }
        std::set<int> played;
        for (const SongBar& bar : barTrack[m]) played.insert(kPatterns * bar.bank + bar.patt);
        sounding.push_back(std::string(kModuleNames[m]) + ": " + std::to_string(patterns) + " sounding, " +
                           std::to_string(played.size()) + " in the song");
    }
    facts.add("patterns", sounding);
    facts.add("moving knobs", movingKnobs());
}

bool tellMidi(const std::vector<std::uint8_t>& bytes, Facts& facts) {
    const auto song = readMidiSong(bytes);
    if (!song) return false;
    const auto sources = midiSources(*song);
    double end = 0;
    for (const MidiFileTrack& track : song->tracks) {
        if (!track.events.empty()) end = std::max(end, track.events.back().tick * song->stepsPerTick);
    }
    facts.add("format", "Standard MIDI File " + std::to_string(song->format));
    facts.add("tracks", static_cast<double>(song->tracks.size()));
    facts.add("tempo", 60e6 / song->tempoMicroseconds);
    facts.add("tempo changes", song->tempoChanges);
    facts.add("meter", std::to_string(song->meter[0]) + "/" + std::to_string(song->meter[1]));
    facts.add("bars", std::ceil(end / kSteps));
    std::vector<std::string> labels;
    labels.reserve(sources.size());
    for (const MidiSource& source : sources) labels.push_back(source.label);
    facts.add("notes", labels);
    return true;
}

bool tellRb40(const std::vector<std::uint8_t>& bytes, Facts& facts) {
    const auto song = readRb40(bytes);
    if (!song) return false;
    facts.add("format", "ReBirth 2 song");
    facts.add("title", song->title);
    facts.add("tempo", song->milliTempo / 1000.0);
    facts.add("bars", rb40SongBars(*song));
    const int bars = std::min(rb40SongBars(*song), kSongBars);
    std::vector<std::string> units;
    const auto tell = [&](const std::string& name, const auto& unit, const std::string& more) {
        const auto numbers = rb40Bars(unit, bars);
        std::set<int> played(numbers.begin(), numbers.end());
        played.erase(kRb40Silent);
        units.push_back(name + ": " + std::to_string(played.size()) + " patterns in the song, " +
                        std::to_string(unit.track.size()) + " events" + more);
    };
    tell("first 303", song->basses[0], "");
    tell("second 303", song->basses[1], "");
    tell("808", song->drums[0], ", " + std::to_string(rb40HitsInSong(*song, 0)) + " hits");
    tell("909", song->drums[1], ", " + std::to_string(rb40HitsInSong(*song, 1)) + " hits");
    facts.add("units", units);
    facts.add("mixer and effect events", static_cast<double>(song->mixer.size()) + song->effectEvents);
    return true;
}

bool endsWith(std::string name, const std::string& end) {
    std::ranges::transform(name, name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name.ends_with(end);
}

} // namespace

int infoVerb(const Words& words) {
    Arguments arguments;
    if (const auto wrong = arguments.parse(words, {{"--json", OptionRow::Kind::flag}}, 1))
        return refuse(*wrong);
    const std::string& name = arguments.files[0];
    Facts facts;
    facts.add("file", extractFileName(name));
    const FileBytes file = readFileStart(name, kLongestMidiFile);
    if (!file.ok) return refuse("Can't read " + name);
    if (looksLikeMidiFile(name)) {
        if (!tellMidi(file.bytes, facts)) return refuse(kCorruptMidiFile);
    } else if (isRb40(file.bytes)) {
        if (!tellRb40(file.bytes, facts)) return refuse(kCorruptRebirthFile);
    } else {
        const Session session{SessionOptions{}};
        const bool rebirth = endsWith(name, ".rbs");
        if (rebirth) {
            const RebirthResult result = importRebirthFile(name, {});
            if (result != RebirthResult::done) return tellRebirth(result, arguments.files);
        } else if (!loadProjectFile(name)) {
            return 1;
        }
        facts.add("format", rebirth ? "ReBirth song" : "Marlune project");
        tellProject(facts);
    }
    facts.print(arguments.has("--json"));
    return 0;
}

} // namespace marlune
