// The component's own copy of all patterns, written by the entry points one field at a time.
#pragma once

#include <string>

#include "boundary/engine_component.h"
#include "project/project_record.h"

namespace marlune {

class PatternStore {
  public:
    // All patterns are 16 steps of rests without a program.
    PatternStore();

    // Writes the field that the call names; false where the call is none of a pattern. A module, bank,
    // pattern, step or drum that does not exist is ignored, a value is limited to its range.
    bool apply(const EngineCall& call) noexcept;

    void forgetSlides() noexcept;

    // bank 0..3, pattern 0..7, module 0 or 1.
    const BassPattern& bass(int module, int bank, int pattern) const {
        return bass_[module].patterns[bank][pattern];
    }
    const DrumPattern& drum(int bank, int pattern) const { return drum_.patterns[bank][pattern]; }

    // loopEnd of a pattern of any module, 0..15.
    int loopEnd(int module, int bank, int pattern) const;

    // Whether this copy holds what the record holds, as far as the entry points carry it. Where it does not,
    // difference (when given) names the first place with both values.
    bool equalsRecord(const ProjectRecord& record, std::string* difference = nullptr) const;

  private:
    bool applyBass(const EngineCall& call) noexcept;
    bool applyDrum(const EngineCall& call) noexcept;

    std::array<BassModule, kBassModules> bass_;
    DrumModule drum_;
};

} // namespace marlune
