#include "program/default_project.h"

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "edit/clipboard.h"
#include "edit/song_tools.h"
#include "files/project_file.h"
#include "panel/editing.h"
#include "panel/groove_edits.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/global_config.h"
#include "project/groove.h"
#include "project/pattern_push.h"
#include "project/run_state.h"
#include "setup/config_file.h"
#include "song/mode_switch.h"

namespace marlune {

namespace {

constexpr int kFileTag = 91;
constexpr int kFreshTempo = 140;
constexpr int kFreshBaseNote = 36;
constexpr int kFreshVelocity = 100;
constexpr int kFirstController = 12;
constexpr int kFreshChannels[kModules] = {0, 1, 9};
constexpr int kFreshDrumNotes[kDrums] = {36, 38, 39, 42, 44, 46, 48};

void initIdentity() {
    project.tempo = kFreshTempo;
    refreshTempo();
    project.fileTag = kFileTag;
    project.fileId = {};
    for (int k = 0; k < kKnobs; ++k) knobLabel[k] = kDefaultLabels[k];
}

void initChannels() {
    for (int m = 0; m < kBassModules; ++m) project.bass[m].storedChannel = kFreshChannels[m];
    project.drum.storedChannel = kFreshChannels[kDrumModule];
    for (int m = 0; m < kModules; ++m) config.moduleChannel[m] = kFreshChannels[m];
    for (int m = 0; m < kBassModules; ++m) Set103Chan32(m, kFreshChannels[m]);
    Set109Chan32(kDrumModule, kFreshChannels[kDrumModule]);
    for (int m = 0; m < kBassModules; ++m) Set103StoredChan32(m, kFreshChannels[m]);
    for (int m = 0; m < kBassModules; ++m) {
        project.bass[m].baseNote = kFreshBaseNote;
        config.moduleBaseNote[m] = kFreshBaseNote;
        Set103NoteOffset32(m, kFreshBaseNote);
    }
    for (int m = 0; m < kBassModules; ++m) {
        project.bass[m].baseVelocity = kFreshVelocity;
        config.moduleVelocity[m] = kFreshVelocity;
        Set103Vel32(m, kFreshVelocity);
    }
}

void initBassPattern(BassPattern& pattern) {
    for (BassStep& step : pattern.steps) {
        step.note = 0;
        step.noteOn = true;
        step.up = step.down = step.accent = false; // slide is left alone
    }
    pattern.loopEnd = kSteps - 1;
    pattern.patch = kNoPatch;
}

void initDrumPattern(DrumPattern& pattern) {
    for (auto& step : pattern.drumOn) step.fill(0);
    pattern.loopEnd = kSteps - 1;
    for (int d = 0; d < kDrums; ++d) pattern.drumNote[d] = kFreshDrumNotes[d];
}

void initPatterns() {
    for (BassModule& bass : project.bass) {
        for (auto& bank : bass.patterns) {
            for (BassPattern& pattern : bank) initBassPattern(pattern);
        }
    }
    for (int d = 0; d < kDrums; ++d) config.drumNoteDefault[d] = kFreshDrumNotes[d];
    for (auto& bank : project.drum.patterns) {
        for (DrumPattern& pattern : bank) initDrumPattern(pattern);
    }
}

void initMaps() {
    for (int k = 0; k < kKnobs; ++k) {
        config.outputController[k] = k < kFirstDrumKnob ? kFirstController + k % kBassKnobs : -1;
        DefineController32(k, config.outputController[k]);
    }
    for (NoteMapEntry& entry : project.noteMap) {
        entry.mapBank.fill(-1);
        entry.mapPatt.fill(-1);
        entry.mapUsed = false;
    }
    config.selectBase = 60;
    config.stepBase = 36;
    config.reservedNote0 = 74;
    config.reservedNote1 = 59;
    config.reservedNote2 = 73;
    config.controllerMap.fill(-1);
    for (int k = 0; k < kKnobs; ++k) config.controllerMap[kFirstController + k] = k;
    config.controlChannel = 0;
    for (int k = 0; k < kKnobs; ++k) project.knobValue[k] = k < kFirstDrumKnob ? 0 : kFreshDrumLevel;
}

// The devices are open and stay; what the MIDI setup chose last may not be in the file yet.
void loadConfigButDevices() {
    const GlobalConfig before = config;
    loadGlobalConfig();
    config.midiInDevice = before.midiInDevice;
    config.midiOutDevice = before.midiOutDevice;
    config.syncOutDevice = before.syncOutDevice;
    if (config.syncOffset == before.syncOffset) return;
    config.syncOffset = before.syncOffset;
    SetSyncOffset32(config.syncOffset);
}

} // namespace

void init309() {
    initIdentity();
    initChannels();
    initPatterns();
    initMaps();
    clearGroove(project);
    pushAllPatterns(kDrumModule, 0, 1);
    refreshGroove();
    setEditSel(0);
}

void ClearKeyMap() {
    constexpr const char* kRows[kModules] = {"12345678", "QWERTYUI", "ASDFGHJK"};
    for (KeyMapEntry& entry : config.keyMap) entry = {-1, -1};
    for (int m = 0; m < kModules; ++m) {
        for (int patt = 0; patt < kPatterns; ++patt)
            config.keyMap[kRows[m][patt] - kFirstMappedKey] = {m, patt};
    }
}

void mnuFileNew_Click() {
    releaseCtrl();
    if (wannaSaveYourWorkCancel()) return;
    shell().showPointer(Pointer::hourglass);
    recordReplaced();
    if (songPosition->songMode) SongSwitch(false);
    init309();
    refreshAll();
    ClearCopyBuffer();
    loadConfigButDevices();
    patternImage = project;
    mnuToolsInitSongfromPatt_Click();
    refreshAll();
    refreshTempo();
    nameProject(kUntitled);
    shell().showPointer(Pointer::normal);
}

} // namespace marlune
