#include "files/project_file.h"

#include <cstring>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "panel/knobs.h"
#include "panel/mode_switch.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/pattern_push.h"
#include "project/record_limits.h"
#include "project/song_packing.h"
#include "project/song_reset.h"
#include "project/song_track.h"
#include "transport/timer_control.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

constexpr std::size_t kCountOffset = sizeof(ProjectRecord);
constexpr std::size_t kEntriesOffset = kCountOffset + 4;
constexpr std::size_t kLargestFile = kEntriesOffset + kPackedEntrySize * (kMaxPackedCount + 1);
constexpr const char* kFilter = "Marlune pattren (*.mlp)|*.mlp";
constexpr const char* kExtension = "mlp";

std::int32_t packedCountOf(const std::vector<std::uint8_t>& bytes) {
    Le32 count;
    std::memcpy(&count, bytes.data() + kCountOffset, sizeof count);
    return count;
}

void takeRecord(const std::vector<std::uint8_t>& bytes) {
    std::memcpy(&project, bytes.data(), sizeof project);
    limitRecord(project);
    cueCurrent(project);
    for (int m = 0; m < kModules; ++m) {
        const Selection at = selectionOf(project, m);
        setNextBankPatt(m, at.currBank, at.currPatt);
    }
    for (int m = 0; m < kModules; ++m) refreshCurrBankPatt(m);
}

void tellComponent() {
    for (int m = 0; m < kModules; ++m) {
        SetCurrGroup32(m, selectionOf(project, m).currBank);
        SetCurrPatt32(m, selectionOf(project, m).currPatt);
    }
    for (int m = 0; m < kModules; ++m) {
        SetNextGroup32(m, selectionOf(project, m).nextBank);
        SetNextPatt32(m, selectionOf(project, m).nextPatt);
    }
    for (int m = 0; m < kBassModules; ++m) Set103StoredChan32(m, project.bass[m].storedChannel);
    pushAllPatterns(0, 1, kDrumModule);
}

void enterSavedSongMode() {
    SongSwitch(true);
    SetSongTick32(songTick);
    for (int m = 0; m < kModules; ++m) {
        sendSongBar(m);
        SetNextBarGroup32(m, nextBarBank(m, songTick));
        SetNextBarPatt32(m, nextBarPatt(m, songTick));
    }
    holdSongTick = !transportRunning; // a running component plays this tick next
    refreshAll();
}

// The steps of a load; false at the first that fails.
bool takeFile(const FileBytes& file) {
    if (!file.ok || file.bytes.size() < sizeof(ProjectRecord)) return false;
    takeRecord(file.bytes);
    tellComponent();
    if (file.bytes.size() < kEntriesOffset) return false;
    const int count = packedCountOf(file.bytes);
    shell().letEventsRun();
    resetSongFromProject();
    if (count < kMinPackedCount || count > kMaxPackedCount) return false;
    const std::size_t size = kPackedEntrySize * static_cast<std::size_t>(count);
    // One byte more than the significant entries is the least that a saved file has.
    if (file.size < kEntriesOffset + size + 1) return false;
    if (!unpackSong({file.bytes.data() + kEntriesOffset, size})) return false;
    songMode = savedSongMode;
    if (songMode) enterSavedSongMode();
    return true;
}

void refreshLoaded() {
    refresh103Patt(0);
    refresh103Patt(1);
    refresh109Patt(project.drum.selDrum);
    for (int knob = 0; knob < kKnobs; ++knob) refreshKnob(knob);
}

// Asks for a name through the dialog; empty when it was left without one.
std::string askName(bool save) {
    dlgCommonDialog.save = save;
    dlgCommonDialog.title.clear();
    dlgCommonDialog.filter = kFilter;
    dlgCommonDialog.defaultExtension = kExtension;
    std::string name = shell().fileDialog(dlgCommonDialog);
    shell().letEventsRun();
    if (!name.empty()) dlgCommonDialog.fileName = withoutExtension(name);
    return name;
}

void saveAs(const std::string& name) {
    shell().showPointer(Pointer::hourglass);
    shell().letEventsRun();
    const bool saved = saveProjectFile(name);
    shell().showPointer(Pointer::normal);
    if (saved) nameProject(name);
}

} // namespace

bool loadProjectFile(const std::string& fileName) {
    ++recordGeneration;
    if (takeFile(readFileStart(fileName, kLargestFile))) return true;
    shell().messageBox("File Open Error : \nThe file being opened is not a valid Marlune file.",
                       BoxIcon::exclamation, BoxButtons::ok);
    return false;
}

bool saveProjectFile(const std::string& fileName) {
    ProjectRecord record = songMode ? patternImage : project;
    record.tempo = project.tempo; // outlasts song mode, as it does at the switch
    cueCurrent(record);           // as a load leaves it
    const std::vector<std::uint8_t> song = packSong();
    const Le32 count = static_cast<int>(song.size() / kPackedEntrySize);
    std::vector<std::uint8_t> bytes(kEntriesOffset);
    std::memcpy(bytes.data(), &record, sizeof record);
    std::memcpy(bytes.data() + kCountOffset, &count, sizeof count);
    bytes.insert(bytes.end(), song.begin(), song.end());
    bytes.resize(bytes.size() + kPackedEntrySize); // the entry that carries nothing
    if (!writeFileAtomically(fileName, bytes)) {
        shell().showStatus("Can't save " + extractFileName(fileName) + ". The file on disk is as it was.");
        return false;
    }
    savedSongMode = songMode;
    showProjectTitle(fileName);
    return true;
}

void mnuFileOpenPatt_Click() {
    ctrlDown = false;
    if (wannaSaveYourWorkCancel()) return;
    dlgCommonDialog.fileName = withoutExtension(projectFileName);
    const std::string name = askName(false);
    if (name.empty()) return;
    if (songMode) SongSwitch(false);
    showFrame(Control::sel109, project.drum.selDrum, 0);
    shell().showPointer(Pointer::hourglass);
    shell().letEventsRun();
    loadProjectFile(name);
    refreshTempo();
    refreshLoaded();
    nameProject(name);
    shell().showPointer(Pointer::normal);
}

void mnuFileSavePatt_Click() {
    ctrlDown = false;
    while (projectFileName == kUntitled || saveAsRequested) {
        const std::string name = askName(true);
        if (name.empty()) break;
        if (wannaOverwrite(name) != 1) continue; // shows the dialog again
        saveAs(name);
        saveAsRequested = false;
        return;
    }
    if (projectFileName != kUntitled && !saveAsRequested) saveAs(projectFileName);
    saveAsRequested = false;
}

void mnuSaveAs_Click() {
    ctrlDown = false;
    saveAsRequested = true;
    mnuFileSavePatt_Click();
    saveAsRequested = false;
}

void OpenOnLoad(const std::string& fileName) {
    shell().showPointer(Pointer::hourglass);
    loadProjectFile(fileName);
    shell().showPointer(Pointer::normal);
    refreshLoaded();
    refreshTempo();
    nameProject(fileName);
}

bool wannaSaveYourWorkCancel() {
    if (!projectDirty) return false;
    const BoxAnswer answer =
        shell().messageBox("Save changes to " + extractFileName(projectFileName) + "\nbefore closing ? ",
                           BoxIcon::exclamation, BoxButtons::yesNoCancel);
    if (answer == BoxAnswer::no) return false;
    if (answer != BoxAnswer::yes) return true;
    mnuFileSavePatt_Click();
    return projectDirty;
}

int wannaOverwrite(const std::string& fileName) {
    if (!FileExists(fileName)) return 1;
    const BoxAnswer answer = shell().messageBox(fileName + " already exists. Do\nyou want to replace it ?",
                                                BoxIcon::exclamation, BoxButtons::okCancel);
    return answer == BoxAnswer::ok ? 1 : 2;
}

void nameProject(const std::string& fileName) {
    projectFileName = fileName;
    projectDirty = false;
    showProjectTitle(extractFileName(fileName));
}

void showProjectTitle(const std::string& fileName) {
    shell().showTitle("Marlune 200Q [ " + fileName + " ]");
}

} // namespace marlune
