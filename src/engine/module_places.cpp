#include "engine/module_places.h"

#include <algorithm>

#include "boundary/limits.h"
#include "project/step_rules.h"

namespace marlune {

namespace {

void postSelected(MessageSink& messages, int message, Selected selected) {
    messages.post({message, selected.bank, selected.patt});
}

} // namespace

bool ModulePlaces::apply(const EngineCall& call) noexcept {
    if (call.entry < Entry::SetSong32 || call.entry > Entry::SetNextBarPatt32) return false;
    const int first = call.arguments[0];
    if (call.entry == Entry::SetSong32) {
        if (songMode_ != (first != 0)) forgetBars();
        songMode_ = first != 0;
    } else if (call.entry == Entry::SetSongTick32) {
        position_ = std::clamp(first, 0, kSongTicks - 1);
        placed_ = true;
        forgetBars();
    } else if (first >= 0 && first < kModules) {
        applySelection(call, modules_[first]);
    }
    return true;
}

void ModulePlaces::applySelection(const EngineCall& call, Module& module) noexcept {
    const int value = call.arguments[1];
    const auto bank = [value](int& target) {
        const bool legal = value >= 0 && value < kBanks;
        if (legal) target = value;
        return legal;
    };
    const auto patt = [value](int& target) {
        const bool legal = value >= 0 && value < kPatterns;
        if (legal) target = value;
        return legal;
    };
    switch (call.entry) {
        case Entry::SetModuleTick32: module.step = std::clamp(value, 0, kSteps - 1); break;
        case Entry::SetCurrGroup32:
            bank(module.playing.bank);
            module.reported = module.playing;
            break;
        case Entry::SetCurrPatt32:
            patt(module.playing.patt);
            module.reported = module.playing;
            break;
        case Entry::SetNextGroup32: bank(module.cued.bank); break;
        case Entry::SetNextPatt32: patt(module.cued.patt); break;
        case Entry::SetCurrBarGroup32: module.currBar.bankSet |= bank(module.currBar.bar.bank); break;
        case Entry::SetCurrBarPatt32: module.currBar.pattSet |= patt(module.currBar.bar.patt); break;
        case Entry::SetNextBarGroup32: module.nextBar.bankSet |= bank(module.nextBar.bar.bank); break;
        case Entry::SetNextBarPatt32: module.nextBar.pattSet |= patt(module.nextBar.bar.patt); break;
        default: break;
    }
}

void ModulePlaces::forgetBars() noexcept {
    for (Module& module : modules_) module.currBar = module.nextBar = {};
}

void ModulePlaces::enterStep(MessageSink& messages) noexcept {
    if (songMode_ && position_ % kTicksPerBar == 0) enterBar(messages);
    placed_ = false;
    for (int m = 0; !songMode_ && m < kModules; ++m) {
        Module& module = modules_[m];
        if (module.reported == module.playing) continue;
        module.reported = module.playing;
        postSelected(messages, kPatternMessage + m, module.playing);
    }
}

void ModulePlaces::enterBar(MessageSink& messages) noexcept {
    for (int m = 0; m < kModules; ++m) {
        Module& module = modules_[m];
        const BarRegister& wanted = placed_ ? module.currBar : module.nextBar;
        Selected bar = module.playing;
        if (wanted.bankSet) bar.bank = wanted.bar.bank;
        if (wanted.pattSet) bar.patt = wanted.bar.patt;
        if (bar == module.playing) continue;
        module.playing = module.cued = module.reported = bar;
        module.step = 0;
        postSelected(messages, kPatternMessage + m, bar);
        postSelected(messages, kCueMessage + m, bar);
    }
}

void ModulePlaces::advancePosition() noexcept {
    const int bar = position_ / kTicksPerBar * kTicksPerBar;
    position_ = songMode_ ? (position_ + 1) % kSongTicks : bar + (position_ + 1) % kTicksPerBar;
}

void ModulePlaces::advanceSteps(const PatternStore& patterns) noexcept {
    for (int m = 0; m < kModules; ++m) {
        Module& module = modules_[m];
        const StepAdvance next =
            nextStep(module.step, patterns.loopEnd(m, module.playing.bank, module.playing.patt));
        module.step = next.step;
        if (next.wrapped && !songMode_) module.playing = module.cued;
    }
}

void ModulePlaces::stop() noexcept {
    for (Module& module : modules_) module.step = 0;
}

} // namespace marlune
