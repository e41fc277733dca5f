#include "files/project_file.h"

#include <cstring>

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "panel/editing.h"
#include "panel/groove_edits.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "panel/shown_state.h"
#include "project/pattern_push.h"
#include "project/record_limits.h"
#include "project/song_packing.h"
#include "project/song_track.h"
#include "song/mode_switch.h"
#include "song/song_place.h"
#include "song/song_reset.h"
#include "transport/timer_control.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

constexpr std::size_t kCountOffset = sizeof(ProjectRecord);
constexpr std::size_t kEntriesOffset = kCountOffset + 4;
constexpr std::size_t kLargestFile = kEntriesOffset + kPackedEntrySize * (kMaxPackedCount + 1);
constexpr const char* kFilter = "Marlune pattren (*.mlp)|*.mlp";
constexpr const char* kExtension = "mlp";

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
    placePatterns();
    for (int m = 0; m < kBassModules; ++m) Set103StoredChan32(m, project.bass[m].storedChannel);
    pushAllPatterns(0, 1, kDrumModule);
    refreshGroove();
}

// The steps of a load; false at the first that fails.
bool takeFile(const FileBytes& file) {
    if (!file.ok || file.bytes.size() < sizeof(ProjectRecord)) return false;
    takeRecord(file.bytes);
    tellComponent();
    if (file.bytes.size() < kEntriesOffset) return false;
    shell().letPaintRun();
    resetSongFromProject();
    const auto song = packedSongOf(file);
    if (!song || !unpackSong(*song)) return false;
    if (editingState->savedSongMode) SongSwitch(true);
    return true;
}

void saveAs(const std::string& name) {
    shell().showPointer(Pointer::hourglass);
    shell().letPaintRun();
    const bool saved = saveProjectFile(name);
    shell().showPointer(Pointer::normal);
    if (!saved) return;
    nameProject(name);
    shell().noteRecentFile(name, true);
}

void saveProject(bool underNewName) {
    releaseCtrl();
    std::string name = editingState->projectFileName;
    dlgCommonDialog.fileName = withoutExtension(name);
    if (editingState->saveAsks && wannaOverwrite(name) != 1) underNewName = true;
    while (underNewName) {
        name = askProjectName(true);
        if (name.empty()) return;
        if (wannaOverwrite(name) == 1) break; // else the dialog is shown again
    }
    saveAs(name);
}

} // namespace

std::optional<std::span<const std::uint8_t>> packedSongOf(const FileBytes& file) {
    if (file.bytes.size() < kEntriesOffset) return std::nullopt;
    Le32 stored;
    std::memcpy(&stored, file.bytes.data() + kCountOffset, sizeof stored);
    const int count = stored;
    if (count < kMinPackedCount || count > kMaxPackedCount) return std::nullopt;
    const std::size_t size = kPackedEntrySize * static_cast<std::size_t>(count);
    // One byte more than the significant entries is the least that a saved file has.
    if (file.size < kEntriesOffset + size + 1) return std::nullopt;
    return std::span(file.bytes).subspan(kEntriesOffset, size);
}

bool loadProjectFile(const std::string& fileName) {
    if (takeFile(readFileStart(fileName, kLargestFile))) return true;
    shell().messageBox("File Open Error : \nThe file being opened is not a valid Marlune file.",
                       BoxIcon::exclamation, BoxButtons::ok);
    return false;
}

std::string askProjectName(bool save) {
    dlgCommonDialog.save = save;
    dlgCommonDialog.title.clear();
    dlgCommonDialog.filter = kFilter;
    dlgCommonDialog.defaultExtension = kExtension;
    if (save && !editingState->proposedName.empty()) dlgCommonDialog.fileName = editingState->proposedName;
    std::string name = shell().fileDialog(dlgCommonDialog);
    shell().letPaintRun();
    if (!name.empty()) dlgCommonDialog.fileName = withoutExtension(name);
    return name;
}

std::vector<std::uint8_t> projectFileBytes() {
    ProjectRecord record = songPosition->songMode ? patternImage : project;
    record.tempo = project.tempo; // outlasts song mode, as it does at the switch
    record.groove = project.groove;
    cueCurrent(record); // as a load leaves it
    const std::vector<std::uint8_t> song = packSong();
    const Le32 count = static_cast<int>(song.size() / kPackedEntrySize);
    std::vector<std::uint8_t> bytes(kEntriesOffset + song.size() +
                                    kPackedEntrySize); // the last entry is empty
    std::memcpy(bytes.data(), &record, sizeof record);
    std::memcpy(bytes.data() + kCountOffset, &count, sizeof count);
    std::memcpy(bytes.data() + kEntriesOffset, song.data(), song.size());
    return bytes;
}

bool saveProjectFile(const std::string& fileName) {
    if (!writeFileAtomically(fileName, projectFileBytes())) {
        shell().messageBox("Can't save " + extractFileName(fileName) + ".\nThe file on disk is as it was.",
                           BoxIcon::exclamation, BoxButtons::ok);
        return false;
    }
    noteSavedMode();
    showProjectTitle(fileName);
    return true;
}

void mnuFileSavePatt_Click() {
    saveProject(editingState->projectFileName == kUntitled);
}

void mnuSaveAs_Click() {
    saveProject(true);
}

bool wannaSaveYourWorkCancel() {
    if (!editingState->projectDirty) return false;
    const BoxAnswer answer = shell().messageBox(
        "Save changes to " + extractFileName(editingState->projectFileName) + "\nbefore closing ? ",
        BoxIcon::exclamation, BoxButtons::yesNoCancel);
    if (answer == BoxAnswer::no) return false;
    if (answer != BoxAnswer::yes) return true;
    mnuFileSavePatt_Click();
    return editingState->projectDirty;
}

int wannaOverwrite(const std::string& fileName) {
    if (!FileExists(fileName)) return 1;
    const BoxAnswer answer = shell().messageBox(fileName + " already exists. Do\nyou want to replace it ?",
                                                BoxIcon::exclamation, BoxButtons::okCancel);
    return answer == BoxAnswer::ok ? 1 : 2;
}

} // namespace marlune
