// Takes a ReBirth song into the project: top bassline to 103A, middle to 103B, drums to 109.
// User-interface thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "rebirth/rb40_import.h"
#include "rebirth/rebirth_units.h"

namespace marlune {

// The job of one import of the old format.
class RebirthImport {
  public:
    // Takes over patterns, tempo and the bassline knobs. Where the file is refused nothing has changed.
    RebirthResult takeImage(RbsImage image);

    // Rebuilds the song tracks. Only after a file was taken. Bars before a module's first pattern change play
    // that first pattern (without any, what the module plays now), ticks before a knob's first event hold the
    // knob's present value; what lies behind bar 999 is dropped. Knob 18 is 0 throughout.
    void RebirthSongToMarlune();

  private:
    void convertAllPatterns() const;
    void getInit303knobVals(int module) const; // 0 or 1
    void takeTrack(int module);

    RbsImage image_;
    RebirthUnits units_;
};

// The two commands take both formats: ReBirth 2 as draftRb40 tells, everything else as the old one. Where
// both drum units of a song have hits they ask which one is meant.
void mnuFileImportRebPatt_Click();
void mnuFileRebirthImport_Click();

struct RebirthImportOptions {
    bool patternsOnly = false;
    std::optional<Rb40Drums> drums; // of ReBirth 2; none: the unit with more hits
};

// Without dialogs: patterns, tempo and knobs, and the song as well unless patternsOnly. The component is
// told. report: what became of a song of ReBirth 2.
RebirthResult importRebirthFile(const std::string& path, const RebirthImportOptions& options,
                                std::string* report = nullptr);
RebirthResult importRbsImage(RbsImage image, bool patternsOnly);
RebirthResult importRb40Bytes(const std::vector<std::uint8_t>& bytes, const RebirthImportOptions& options,
                              std::string* report = nullptr);

} // namespace marlune
