// Music on its way into the project: patterns, bars and knobs are put together aside, and taken as a whole.
// User-interface thread.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "project/song_track.h"

namespace marlune {

// What became of an import, in words.
struct ImportReport {
    int bars = 0;                         // of the song
    std::array<int, kModules> patterns{}; // that the song plays, of each module
    int events = 0;                       // notes, hits and knob movements taken
    std::vector<std::string> notes;       // what was left out or had to give way, a phrase each

    // "12 tom hits", where there are any.
    void note(int count, const std::string& what);
    // One line: "64 bars, patterns 12 + 3 + 8, 410 events. Without: ..."
    [[nodiscard]] std::string text() const;
};

// The pattern of a module by its number, 8 x bank + pattern.
inline constexpr int kModulePatterns = kBanks * kPatterns;
inline BassPattern& bassPatternAt(ProjectRecord& record, int module, int number) {
    return record.bass[module].patterns[number / kPatterns][number % kPatterns];
}
inline DrumPattern& drumPatternAt(ProjectRecord& record, int number) {
    return record.drum.patterns[number / kPatterns][number % kPatterns];
}
inline SongBar songBarOf(int number) {
    return {static_cast<std::uint8_t>(number % kPatterns), static_cast<std::uint8_t>(number / kPatterns)};
}

bool isSilent(const BassPattern& pattern);
bool isSilent(const DrumPattern& pattern);
void silence(BassPattern& pattern); // rests for the full length
void silence(DrumPattern& pattern); // no hits for the full length

struct MusicDraft {
    ProjectRecord record; // patterns, knob values and tempo count
    std::array<std::array<SongBar, kSongBars>, kModules> bars;
    std::array<std::array<std::uint8_t, kSongTicks>, kKnobs> knobs;
    bool withSong = true; // bars and knobs are meant as well
    std::string title;    // proposed as the name of the project's file; may be empty
    ImportReport report;
};

// Begins as what the project is now.
std::unique_ptr<MusicDraft> draftOfProject();

// What every import command does first: stops the transport and asks about unsaved work. False when the user
// gave up.
bool startImport();

// Nothing that is done to the live record in song mode outlasts it: an import goes to pattern mode first, as
// opening a file does, and only then takes its draft of the project. What the import does is one step of
// undo.
void leaveSongForImport();

// The project is as the draft says; component and panel with it. The report is shown for a while.
void takeDraft(const MusicDraft& draft);

} // namespace marlune
