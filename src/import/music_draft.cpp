#include "import/music_draft.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "edit/undo_history.h"
#include "files/project_file.h"
#include "panel/editing.h"
#include "panel/groove_edits.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/groove.h"
#include "project/pattern_push.h"
#include "song/mode_switch.h"
#include "song/song_place.h"
#include "transport/transport.h"

namespace marlune {

void ImportReport::note(int count, const std::string& what) {
    if (count > 0) notes.push_back(std::to_string(count) + " " + what);
}

std::string ImportReport::text() const {
    std::string line = std::to_string(bars) + (bars == 1 ? " bar, patterns " : " bars, patterns ");
    for (int m = 0; m < kModules; ++m) line += (m > 0 ? " + " : "") + std::to_string(patterns[m]);
    line += ", " + std::to_string(events) + " events.";
    for (std::size_t i = 0; i < notes.size(); ++i) line += (i == 0 ? " Not as it was: " : ", ") + notes[i];
    return notes.empty() ? line : line + ".";
}

bool isSilent(const BassPattern& pattern) {
    return std::ranges::none_of(pattern.steps, [](const BassStep& step) { return bool{step.noteOn}; });
}

bool isSilent(const DrumPattern& pattern) {
    for (int step = 0; step < kSteps; ++step) {
        for (int drum = 0; drum < kDrums; ++drum)
            if (pattern.drumOn[step][drum] != 0) return false;
    }
    return true;
}

void silence(BassPattern& pattern) {
    pattern.steps.fill(BassStep{});
    pattern.loopEnd = kSteps - 1;
    pattern.patch = kNoPatch;
}

void silence(DrumPattern& pattern) {
    for (auto& step : pattern.drumOn) step.fill(0);
    pattern.loopEnd = kSteps - 1;
}

std::unique_ptr<MusicDraft> draftOfProject() {
    auto draft = std::make_unique<MusicDraft>();
    draft->record = project;
    draft->bars = barTrack;
    draft->knobs = knobTrack;
    return draft;
}

bool startImport() {
    releaseCtrl();
    if (transportState->transportRunning) StopPlay();
    return !wannaSaveYourWorkCancel();
}

void leaveSongForImport() {
    if (!songPosition->songMode) return;
    SongSwitch(false);
    restartEdit();
}

void takeDraft(const MusicDraft& draft) {
    clearGroove(project);
    for (int m = 0; m < kBassModules; ++m) project.bass[m].patterns = draft.record.bass[m].patterns;
    project.drum.patterns = draft.record.drum.patterns;
    project.knobValue = draft.record.knobValue;
    project.tempo = int{draft.record.tempo};
    if (draft.withSong) {
        barTrack = draft.bars;
        knobTrack = draft.knobs;
    }
    refreshTempo();
    stepsToZero();
    pushAllPatterns(0, 1, kDrumModule);
    refreshGroove();
    placePatterns();
    refreshAll();
    markProject();
    if (!draft.title.empty()) proposeName(draft.title);
    shell().showPassing(draft.report.text());
}

} // namespace marlune
