#include "project/run_state.h"

namespace marlune {

int drawBudgetMs = 0;
bool transportRunning = false;
bool songMode = false;
std::array<std::int16_t, kModules> moduleStep{};
std::array<int, kModules> stepWork{};
int songTick = 0;
bool holdSongTick = false;
bool recordOn = false;
std::array<bool, kKnobs> knobRecording{};
std::array<bool, kModules> barRecording{};
std::array<std::uint8_t, kKnobs> knobMoved{};
int windBaseTempo = 0;
int windRate = 0;
bool savedSongMode = false;
int editSel = 0;
bool projectDirty = false;
std::string projectFileName = kUntitled;
std::array<std::string, kKnobs> knobLabel;
bool inTick = false;
CStopWatch tickWatch;
bool ctrlDown = false;
bool programClosing = false;
bool saveAsRequested = false;
int exportBars = 16;
bool importCancelled = false;
unsigned recordGeneration = 0;
std::string patternCopyStatus;
std::string songCopyStatus;

void resetRunState() {
    drawBudgetMs = 0;
    transportRunning = songMode = holdSongTick = recordOn = savedSongMode = false;
    projectDirty = inTick = ctrlDown = programClosing = saveAsRequested = importCancelled = false;
    moduleStep = {};
    stepWork = {};
    songTick = windBaseTempo = windRate = editSel = 0;
    knobRecording = {};
    barRecording = {};
    knobMoved = {};
    projectFileName = kUntitled;
    knobLabel = {};
    tickWatch.Reset();
    exportBars = 16;
    ++recordGeneration;
    patternCopyStatus.clear();
    songCopyStatus.clear();
}

} // namespace marlune
