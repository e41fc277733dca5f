#include "panel/mutes.h"

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "panel/shown_state.h"
#include "project/run_state.h"

namespace marlune {

namespace {

constexpr int kHeard = 0;
constexpr int kMuted = 1;
constexpr int kSolo = 2;

unsigned bit(int index) {
    return 1U << static_cast<unsigned>(index);
}

unsigned silent(const SilentParts& parts, int count) {
    return parts.solo != 0 ? ~parts.solo & (bit(count) - 1) : parts.muted;
}

void showLamps(const SilentParts& parts, int count, int first) {
    for (int i = 0; i < count; ++i) {
        const bool isSilent = (silent(parts, count) & bit(i)) != 0;
        showFrame(Control::muteLamp, first + i,
                  isSilent                     ? kMuted
                  : (parts.solo & bit(i)) != 0 ? kSolo
                                               : kHeard);
    }
}

void toggle(SilentParts& parts, int index, Silencing how, bool atBarLine) {
    (how == Silencing::mute ? parts.muted : parts.solo) ^= bit(index);
    SetMutes32(silentModules(), silentDrums(), atBarLine ? -1 : 0);
    showLamps(grooveState->modules, kModules, 0);
    showLamps(grooveState->drums, kDrums, kModules);
}

} // namespace

void toggleModule(int module, Silencing how, bool atBarLine) {
    toggle(grooveState.write().modules, module, how, atBarLine);
}

void toggleDrum(int drum, Silencing how, bool atBarLine) {
    toggle(grooveState.write().drums, drum, how, atBarLine);
}

unsigned silentModules() {
    return silent(grooveState->modules, kModules);
}

unsigned silentDrums() {
    return silent(grooveState->drums, kDrums);
}

bool wantsSilentLeftOut() {
    if (silentModules() == 0 && silentDrums() == 0) return false;
    return shell().messageBox(
               "Some modules or drums are muted.\nOK leaves them out, Cancel exports everything.",
               BoxIcon::exclamation, BoxButtons::okCancel) == BoxAnswer::ok;
}

void leaveOutSilent(ProjectRecord& record) {
    for (int m = 0; m < kBassModules; ++m) {
        if ((silentModules() & bit(m)) == 0) continue;
        for (auto& bank : record.bass[m].patterns)
            for (BassPattern& pattern : bank)
                for (BassStep& step : pattern.steps) step.noteOn = false;
    }
    const unsigned drums = (silentModules() & bit(kDrumModule)) != 0 ? bit(kDrums) - 1 : silentDrums();
    for (auto& bank : record.drum.patterns)
        for (DrumPattern& pattern : bank)
            for (auto& step : pattern.drumOn)
                for (int d = 0; d < kDrums; ++d)
                    if ((drums & bit(d)) != 0) step[d] = 0;
}

} // namespace marlune
