// Takes a ReBirth song into the project: top bassline to 103A, middle to 103B, drums to 109.
// User-interface thread.
#pragma once

#include <string>

#include "rebirth/rebirth_units.h"

namespace marlune {

// The job of one import.
class RebirthImport {
  public:
    // Asks for a file and takes over patterns, tempo and the bassline knobs. False where the dialog was left
    // or the file refused, in which case nothing has changed.
    bool RebirthToMarlune();

    // The same with a name at hand, without showing anything of a refusal.
    RebirthResult takeFile(const std::string& path);
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

void mnuFileImportRebPatt_Click();
void mnuFileRebirthImport_Click();

// Without dialogs: patterns, tempo and knobs, and the song as well unless patternsOnly. The component is
// told.
RebirthResult importRebirthFile(const std::string& path, bool patternsOnly);
RebirthResult importRbsImage(RbsImage image, bool patternsOnly);

} // namespace marlune
