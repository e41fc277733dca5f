// Project files (.mlp): the record, then the packed song; and the commands around them.
//
// Layout, little-endian: 19232 bytes ProjectRecord, 4 bytes packedCount, packedCount entries as in
// song_packing.h, and one entry more that carries nothing. User-interface thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "util/whole_file.h"

namespace marlune {

// The packed song in the bytes of a file; none where they hold less than its count tells. Any thread.
std::optional<std::span<const std::uint8_t>> packedSongOf(const FileBytes& file);

// Reads a file into project and tracks and brings component and panel up to date. A file that is not one
// gives the message box; what had been read by then stays. True when the whole file was taken.
bool loadProjectFile(const std::string& fileName);

// The project as a file holds it (in song mode the patterns as they stood when it began).
std::vector<std::uint8_t> projectFileBytes();

// Writes the project (in song mode the patterns as they stood when it began) as a whole or not at all. A
// failure leaves the old file, projectDirty and the title, and is told in a message box.
bool saveProjectFile(const std::string& fileName);

// Asks for a name through the dialog, which proposes what dlgCommonDialog holds; empty when it was left
// without one.
std::string askProjectName(bool save);

void mnuFileSavePatt_Click();
void mnuSaveAs_Click();

// Asks about unsaved work; true means the caller must give up: the user cancelled, or wanted to save and that
// did not happen.
bool wannaSaveYourWorkCancel();

// Asks before a file is replaced: 1 go on, 2 cancel.
int wannaOverwrite(const std::string& fileName);

} // namespace marlune
