#include "panel/silent_accents.h"

#include <algorithm>
#include <string>

#include "boundary/app_shell.h"
#include "project/project_record.h"
#include "project/run_state.h"

namespace marlune {

namespace {

bool hasAccents(int module) {
    if (module == kDrumModule) {
        const auto& steps = currentDrum().drumOn;
        return std::any_of(steps.begin(), steps.end(), [](const auto& cells) {
            return cells[kAccentRow] != 0 &&
                   std::any_of(cells.begin(), cells.begin() + kDrums, [](int cell) { return cell != 0; });
        });
    }
    const auto& steps = currentBass(module).steps;
    return std::any_of(steps.begin(), steps.end(),
                       [](const BassStep& step) { return step.accent && step.noteOn; });
}

int accentKnob(int module) {
    return module == kDrumModule ? kAccentKnobOfDrums : kBassKnobs * module + kBassKnobs - 1;
}

} // namespace

void tellSilentAccents() {
    std::string names;
    for (int m = 0; m < kModules; ++m) {
        if (project.knobValue[accentKnob(m)] != 0 || !hasAccents(m)) continue;
        names += (names.empty() ? "" : ", ") + std::string(kModuleNames[m]);
    }
    if (names.empty()) return;
    shell().showStatus("Accented steps of " + names +
                       " are silent: turn up the Accent knob, which stands at 0.");
}

} // namespace marlune
