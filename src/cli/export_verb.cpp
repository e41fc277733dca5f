// export: the song into a Standard MIDI File.
#include "cli/arguments.h"
#include "cli/session.h"
#include "cli/verbs.h"
#include "files/export_driver.h"
#include "files/project_file.h"
#include "project/song_track.h"
#include "song/song_place.h"

namespace marlune {

namespace {

using Kind = OptionRow::Kind;
const std::vector<OptionRow> kOptions = {{"--config", Kind::text},
                                         {"--bar", Kind::number, 1, kSongBars},
                                         {"--bars", Kind::number, -1000000, 1000000}};

} // namespace

int exportVerb(const Words& words) {
    Arguments arguments;
    if (const auto wrong = arguments.parse(words, kOptions, 2)) return refuse(*wrong);
    SessionOptions options;
    options.configFolder = arguments.text("--config");
    Session session(options);
    if (!loadProjectFile(arguments.files[0])) return 1;
    placeSong((arguments.number("--bar", 1) - 1) * kTicksPerBar);
    session.shell.answer = arguments.files[1];
    session.shell.mayOverwrite = true;
    exportForm.Text1.text = std::to_string(arguments.number("--bars", exportForm.exportBars));
    if (arguments.files[1].empty()) return refuse("The name of the file is empty.");
    return exportForm.Command1_Click() ? 0 : refuse(session.shell.status());
}

} // namespace marlune
