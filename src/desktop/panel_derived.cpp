#include "desktop/panel_derived.h"

#include "desktop/panel_widget.h"
#include "score/sheet_state.h"

namespace marlune {

void showDerived(PanelWidget& panel) {
    const PatternsInView view = readPatternsInView();
    std::array<std::array<StepMark, kSteps>, kBassModules> marks;
    for (int m = 0; m < kBassModules; ++m) {
        for (int s = 0; s < kSteps; ++s) {
            const SheetStep& step = view.bass[m][s];
            marks[m][s] = {step.note, step.sounds, step.up, step.down, step.accent};
        }
    }
    panel.showDerived(marks, view.drums, view.knobs);
}

} // namespace marlune
