#include "engine/pattern_store.h"

#include <algorithm>

#include "project/groove.h"

namespace marlune {

namespace {

bool within(int value, int count) {
    return value >= 0 && value < count;
}
int limitNote(int note) {
    return std::clamp(note, 0, kTopNote);
}
int limitLoop(int loopEnd) {
    return std::clamp(loopEnd, 0, kSteps - 1);
}
int limitPatch(int patch) {
    return std::clamp(patch, kNoPatch, 127);
}
int limitDrumNote(int note) {
    return std::clamp(note, 0, 127);
}

// Walks two patterns side by side and remembers where they first part.
class Comparison {
  public:
    Comparison(int module, int bank, int pattern) : module_(module), bank_(bank), pattern_(pattern) {}

    void check(const char* field, int index, int mine, int theirs) {
        if (!text_.empty() || mine == theirs) return;
        text_ = std::string(kModuleNames[module_]) + " bank " + std::to_string(bank_) + " pattern " +
                std::to_string(pattern_) + ' ' + field;
        if (index >= 0) text_ += '[' + std::to_string(index) + ']';
        text_ += ": component " + std::to_string(mine) + ", record " + std::to_string(theirs);
    }
    const std::string& text() const { return text_; }

  private:
    int module_, bank_, pattern_;
    std::string text_;
};

void compare(Comparison& result, const BassPattern& mine, const BassPattern& theirs, bool slides) {
    for (int s = 0; s < kSteps; ++s) {
        result.check("note", s, mine.steps[s].note, limitNote(theirs.steps[s].note));
        result.check("noteOn", s, mine.steps[s].noteOn, theirs.steps[s].noteOn);
        result.check("up", s, mine.steps[s].up, theirs.steps[s].up);
        result.check("down", s, mine.steps[s].down, theirs.steps[s].down);
        result.check("accent", s, mine.steps[s].accent, theirs.steps[s].accent);
        if (slides) result.check("slide", s, mine.steps[s].slide, theirs.steps[s].slide);
    }
    result.check("loopEnd", -1, mine.loopEnd, limitLoop(theirs.loopEnd));
    result.check("patch", -1, mine.patch, limitPatch(theirs.patch));
}

void compare(Comparison& result, const DrumPattern& mine, const DrumPattern& theirs) {
    for (int s = 0; s < kSteps; ++s) {
        for (int d = 0; d < kDrumRows; ++d) {
            result.check("drumOn", s * kDrumRows + d, mine.drumOn[s][d] != 0, theirs.drumOn[s][d] != 0);
        }
    }
    for (int d = 0; d < kDrumRows; ++d) {
        result.check("drumNote", d, mine.drumNote[d], limitDrumNote(theirs.drumNote[d]));
    }
    result.check("loopEnd", -1, mine.loopEnd, limitLoop(theirs.loopEnd));
}

} // namespace

PatternStore::PatternStore() : bass_{}, drum_{} {
    for (int b = 0; b < kBanks; ++b) {
        for (int p = 0; p < kPatterns; ++p) {
            for (BassModule& module : bass_) {
                module.patterns[b][p].loopEnd = kSteps - 1;
                module.patterns[b][p].patch = kNoPatch;
            }
            drum_.patterns[b][p].loopEnd = kSteps - 1;
        }
    }
}

bool PatternStore::apply(const EngineCall& call) noexcept {
    return applyBass(call) || applyDrum(call);
}

bool PatternStore::applyBass(const EngineCall& call) noexcept {
    const bool slide = call.entry == Entry::Set103Slide32;
    if ((call.entry < Entry::Set103Note32 || call.entry > Entry::Set103Patch32) && !slide) return false;
    const auto [module, bank, pattern, place, flag] = call.arguments; // place: step, or the value of two
    if (!within(module, kBassModules) || !within(bank, kBanks) || !within(pattern, kPatterns)) return true;
    BassPattern& target = bass_[module].patterns[bank][pattern];
    if (call.entry == Entry::Set103Loop32) target.loopEnd = limitLoop(place);
    if (call.entry == Entry::Set103Patch32) target.patch = limitPatch(place);
    if ((call.entry >= Entry::Set103Loop32 && !slide) || !within(place, kSteps)) return true;
    BassStep& step = target.steps[place];
    switch (call.entry) {
        case Entry::Set103Note32: step.note = limitNote(flag); break;
        case Entry::Set103NoteOn32: step.noteOn = flag != 0; break;
        case Entry::Set103Up32: step.up = flag != 0; break;
        case Entry::Set103Down32: step.down = flag != 0; break;
        case Entry::Set103Slide32: step.slide = flag != 0; break;
        default: step.accent = flag != 0; break;
    }
    return true;
}

static_assert(Entry::Set103Loop32 < Entry::Set103Patch32 && Entry::Set103Accent32 < Entry::Set103Loop32);

void PatternStore::forgetSlides() noexcept {
    for (BassModule& module : bass_)
        for (auto& bank : module.patterns)
            for (BassPattern& pattern : bank)
                for (BassStep& step : pattern.steps) step.slide = false;
}

bool PatternStore::applyDrum(const EngineCall& call) noexcept {
    if (call.entry < Entry::Set109bOn32 || call.entry > Entry::Set109Loop32) return false;
    const auto [bank, pattern, place, value, hit] = call.arguments;
    if (!within(bank, kBanks) || !within(pattern, kPatterns)) return true;
    DrumPattern& target = drum_.patterns[bank][pattern];
    if (call.entry == Entry::Set109Loop32) {
        target.loopEnd = limitLoop(place);
    } else if (call.entry == Entry::Set109DrumNote32) {
        if (within(place, kDrumRows)) target.drumNote[place] = limitDrumNote(value);
    } else if (within(place, kSteps) && within(value, kDrumRows)) {
        target.drumOn[place][value] = hit != 0 ? kDrumHit : 0;
    }
    return true;
}

int PatternStore::loopEnd(int module, int bank, int pattern) const {
    return module == kDrumModule ? drum(bank, pattern).loopEnd : bass(module, bank, pattern).loopEnd;
}

bool PatternStore::equalsRecord(const ProjectRecord& record, std::string* difference) const {
    for (int module = 0; module < kModules; ++module) {
        for (int b = 0; b < kBanks; ++b) {
            for (int p = 0; p < kPatterns; ++p) {
                Comparison result(module, b, p);
                if (module == kDrumModule) {
                    compare(result, drum(b, p), record.drum.patterns[b][p]);
                } else {
                    compare(result, bass(module, b, p), record.bass[module].patterns[b][p],
                            playsSlides(record));
                }
                if (result.text().empty()) continue;
                if (difference != nullptr) *difference = result.text();
                return false;
            }
        }
    }
    return true;
}

} // namespace marlune
