#include "import/midi_import.h"

#include <string_view>

#include "boundary/app_shell.h"
#include "import/midi_form.h"
#include "util/whole_file.h"

namespace marlune {

bool looksLikeMidiFile(const std::string& path) {
    constexpr std::string_view kMark = "MThd";
    const auto bytes = readFileStart(path, kMark.size()).bytes;
    return std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()) == kMark;
}

void mnuFileImportMidi_Click() {
    if (!startImport()) return;
    dlgCommonDialog = {};
    dlgCommonDialog.filter = "MIDI file (*.mid)|*.mid";
    const std::string name = shell().fileDialog(dlgCommonDialog);
    if (name.empty()) return;
    std::string report;
    const auto ask = [](const MidiSong& song, const std::vector<MidiSource>& sources, MidiChoices& choices) {
        return midiImportForm.choose(song, sources, choices);
    };
    if (!importMidiFile(name, ask, report) && !report.empty())
        shell().messageBox(report, BoxIcon::exclamation, BoxButtons::ok);
}

bool importMidiFile(
    const std::string& path,
    const std::function<bool(const MidiSong&, const std::vector<MidiSource>&, MidiChoices&)>& choose,
    std::string& report) {
    const FileBytes file = readFileStart(path, kLongestMidiFile);
    const auto song = file.ok && file.size <= kLongestMidiFile ? readMidiSong(file.bytes) : std::nullopt;
    if (!song) {
        report = kCorruptMidiFile;
        return false;
    }
    const auto sources = midiSources(*song);
    if (sources.empty()) {
        report = "There are no notes in this file.";
        return false;
    }
    report.clear();
    MidiChoices choices = proposedChoices(sources);
    if (!choose(*song, sources, choices)) return false;
    leaveSongForImport();
    const auto draft = draftOfProject();
    draftMidi(*song, sources, choices, *draft);
    draft->title = withoutExtension(extractFileName(path));
    takeDraft(*draft);
    report = draft->report.text();
    return true;
}

} // namespace marlune
