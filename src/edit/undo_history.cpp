#include "edit/undo_history.h"

#include <deque>

#include "boundary/menus.h"
#include "edit/musical_state.h"
#include "panel/editing.h"
#include "project/run_state.h"

namespace marlune {

namespace {

constexpr std::size_t kMaxBytes = 16U << 20U;
constexpr int kMergeMs = 1000;

// The file that the project is named after, which Open changes with the music.
struct ProjectName {
    std::string fileName;
    bool asks = false;
    bool operator==(const ProjectName&) const = default;
};

struct Step {
    MusicDifference difference;
    int kind = 0;
    std::size_t bytes = 0;
    ProjectName nameBefore{}, nameAfter{};
};

struct History {
    std::deque<Step> done, undone; // newest at the back
    std::size_t bytes = 0;         // of done
    int depth = 0;                 // brackets open
    bool gesture = false;          // one of them is that of a pointer held down
    bool recording = false;        // the bracket of a recording pass is held open
    unsigned generation = 0;       // of the record that the steps belong to
    std::vector<std::uint8_t> before;
    ProjectName nameBefore;
    CStopWatch sinceLast;
};

History& history() {
    static History instance;
    return instance;
}

void showMenus() {
    setMenuEnabled(Menu::mnuEditUndo, !history().done.empty());
    setMenuEnabled(Menu::mnuEditRedo, !history().undone.empty());
}

ProjectName presentName() {
    return {editingState->projectFileName, editingState->saveAsks};
}

// A step that came with another file goes with that file's name; what is there now is in neither file.
void takeName(const ProjectName& from, const ProjectName& to) {
    if (from == to) return;
    nameProject(to.fileName);
    if (to.asks) doubtProjectFile();
    markProject();
}

bool recordIsAnother() {
    return history().generation != editingState->recordGeneration;
}

void keep(MusicDifference difference, int kind) {
    History& h = history();
    const std::size_t bytes = sizeOf(difference);
    h.done.push_back({std::move(difference), kind, bytes, h.nameBefore, presentName()});
    h.bytes += bytes;
    while (h.bytes > kMaxBytes && h.done.size() > 1) {
        h.bytes -= h.done.front().bytes;
        h.done.pop_front();
    }
    h.undone.clear();
    h.sinceLast.Reset();
}

Step take(std::deque<Step>& steps) {
    Step step = std::move(steps.back());
    steps.pop_back();
    return step;
}

// Whether the edit just made goes on with the last step.
bool continues(int kind) {
    const History& h = history();
    return kind != 0 && !h.done.empty() && h.done.back().kind == kind && h.undone.empty() &&
           h.sinceLast.Elapsed() < kMergeMs;
}

bool ready(const std::deque<Step>& steps) {
    if (recordIsAnother()) clearUndoHistory();
    return history().depth == 0 && !history().recording && !steps.empty();
}

} // namespace

void beginEdit() {
    History& h = history();
    if (h.depth++ > 0 || h.recording) return;
    if (recordIsAnother()) clearUndoHistory();
    h.before = captureMusic();
    h.nameBefore = presentName();
}

void restartEdit() {
    History& h = history();
    if (h.depth == 0 || h.recording) return;
    if (recordIsAnother()) clearUndoHistory();
    h.before = captureMusic();
    h.nameBefore = presentName();
}

void endEdit(int kind) {
    History& h = history();
    if (h.depth == 0 || --h.depth > 0) return;
    if (recordIsAnother()) {
        clearUndoHistory();
        return;
    }
    h.recording = recordingState->recordOn && transportState->transportRunning;
    if (h.recording) return;
    MusicDifference difference = differenceTo(h.before, !songPosition->songMode);
    if (difference.empty()) return;
    if (continues(kind)) {
        const Step last = take(h.done);
        h.bytes -= last.bytes;
        putInto(h.before, last.difference, Side::before);
        difference = differenceTo(h.before, !songPosition->songMode);
    }
    if (!difference.empty()) keep(std::move(difference), kind);
    showMenus();
}

void beginGesture() {
    if (history().gesture) endEdit(); // a release that never came
    beginEdit();
    history().gesture = true;
}

void endGesture() {
    if (!history().gesture) return;
    history().gesture = false;
    endEdit();
}

void abandonEdit() {
    History& h = history();
    if (h.depth != 1 || h.recording || recordIsAnother()) {
        endEdit();
        return;
    }
    h.depth = 0;
    const MusicDifference difference = differenceTo(h.before, !songPosition->songMode);
    if (!difference.empty()) applyMusic(difference, Side::before);
    showMenus();
}

void mnuEditUndo_Click() {
    History& h = history();
    if (!ready(h.done)) return;
    Step step = take(h.done);
    h.bytes -= step.bytes;
    applyMusic(step.difference, Side::before);
    takeName(step.nameAfter, step.nameBefore);
    h.undone.push_back(std::move(step));
    showMenus();
}

void mnuEditRedo_Click() {
    History& h = history();
    if (!ready(h.undone)) return;
    Step step = take(h.undone);
    h.bytes += step.bytes;
    applyMusic(step.difference, Side::after);
    takeName(step.nameBefore, step.nameAfter);
    h.done.push_back(std::move(step));
    showMenus();
}

int undoSteps() {
    return static_cast<int>(history().done.size());
}

std::size_t undoBytes() {
    return history().bytes;
}

void clearUndoHistory() {
    History& h = history();
    h.done.clear();
    h.undone.clear();
    h.bytes = 0;
    h.recording = false;
    h.generation = editingState->recordGeneration;
    showMenus();
}

void resetUndoHistory() {
    history() = {};
    history().generation = editingState->recordGeneration;
}

} // namespace marlune
