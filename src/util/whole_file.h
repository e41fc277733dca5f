// Files read with a limit and written as a whole or not at all.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace marlune {

struct FileBytes {
    bool ok = false;        // a regular file that could be read
    std::uint64_t size = 0; // its length, which may be more than was read
    std::vector<std::uint8_t> bytes;
};

// Reads at most limit bytes from the start of a regular file. Anything else (folder, FIFO, device, missing or
// unreadable file) fails at once, without waiting.
FileBytes readFileStart(const std::string& path, std::size_t limit);

// Replaces a file by these bytes so that a reader sees the old or the new content, never a mixture, whatever
// happens meanwhile: temporary file of a fresh name in the same folder, flushed to disk, renamed over the old
// one. A symbolic link keeps pointing at its target, which is replaced. False when it failed, also where the
// link points at nothing or the file is read-only; the old file then stands and no temporary file stays. What
// a killed process has left of an earlier attempt at the same file goes with the next one.
bool writeFileAtomically(const std::string& path, std::span<const std::uint8_t> bytes);

// Removes what killed processes have left in a folder of files that they were writing: temporary files whose
// names begin with that.
void removeLeftovers(const std::string& folder, const std::string& prefix = ".");

// True when name is not empty and names a regular file.
bool FileExists(const std::string& name);

// The text after the last "\" or "/"; the whole path when it has none.
std::string extractFileName(const std::string& path);

// The name without its last four characters where these are a dot and three letters.
std::string withoutExtension(const std::string& name);

} // namespace marlune
