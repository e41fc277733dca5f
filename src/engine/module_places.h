// Where the three modules stand: bank, pattern and step of each, the cue, and in song mode the bars.
#pragma once

#include <array>

#include "engine/pattern_store.h"
#include "engine/sinks.h"

namespace marlune {

struct Selected {
    int bank = 0; // 0..3
    int patt = 0; // 0..7
    bool operator==(const Selected&) const = default;
};

class ModulePlaces {
  public:
    // SetSong32, SetSongTick32, SetModuleTick32 and the selection calls; false for any other call. A module,
    // bank or pattern that does not exist is ignored; a tick and a step are limited.
    bool apply(const EngineCall& call) noexcept;

    bool songMode() const noexcept { return songMode_; }
    int position() const noexcept { return position_; } // of the next step, 0..15999
    int step(int module) const noexcept { return modules_[module].step; }
    Selected playing(int module) const noexcept { return modules_[module].playing; }

    // In song mode at a bar line, moves each module that plays something else than its bar asks for to the
    // bar's pattern at step 0 and reports the pattern and the cue. In pattern mode reports a pattern that was
    // taken over since the step before. Runs before a step sounds.
    void enterStep(MessageSink& messages) noexcept;

    // Moves the position on by one: through the song, or in pattern mode round its bar.
    void advancePosition() noexcept;

    // Moves the steps on. A module past its last step begins again, in pattern mode with its cue. In song
    // mode only bars change a pattern.
    void advanceSteps(const PatternStore& patterns) noexcept;

    // The next start begins at step 0 everywhere unless a step is placed again.
    void stop() noexcept;

  private:
    // A bar's bank and pattern come in two calls; with only one of them made, the module's own counts for
    // the other half.
    struct BarRegister {
        Selected bar;
        bool bankSet = false;
        bool pattSet = false;
    };
    struct Module {
        Selected playing, cued;
        Selected reported; // what the caller knows of
        BarRegister currBar, nextBar;
        int step = 0;
    };
    void applySelection(const EngineCall& call, Module& module) noexcept;
    void enterBar(MessageSink& messages) noexcept;
    void forgetBars() noexcept;

    std::array<Module, kModules> modules_;
    bool songMode_ = false;
    int position_ = 0;
    bool placed_ =
        false; // the position was set and not played yet: this bar's register rules, not the next's
};

} // namespace marlune
