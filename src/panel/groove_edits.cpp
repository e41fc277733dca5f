#include "panel/groove_edits.h"

#include "boundary/engine_component.h"
#include "panel/editing.h"
#include "panel/knobs.h"
#include "panel/shown_state.h"
#include "project/groove.h"
#include "project/pattern_push.h"
#include "project/run_state.h"
#include "util/text_number.h"

namespace marlune {

namespace {

constexpr int kDragTwips = 750;

void storeSwing(int percent) {
    const int before = swingOf(project);
    if (percent == before) return;
    setSwing(project, percent);
    if (swingOf(project) == before) return;
    markProject();
    refreshGroove();
}

} // namespace

void refreshGroove() {
    GrooveState& state = grooveState.write();
    const int swing = swingOf(project);
    if (swing != state.toldSwing) SetSwing32(swing - kStraight);
    state.toldSwing = swing;
    const bool slides = playsSlides(project);
    if (slides && !state.toldSlides) pushAllSlides();
    if (slides != state.toldSlides) SetSlides32(slides ? -1 : 0);
    state.toldSlides = slides;
    showText(Control::swing, 0, std::to_string(swing) + "%");
    for (int m = 0; m < kBassModules; ++m) showSlide(m);
}

void swing_MouseDown(bool leftButton, double y) {
    if (leftButton) startDrag(y, swingOf(project));
}

void swing_MouseMove(bool leftButton, double y, bool fine) {
    if (!leftButton) return;
    const double distance = dragDistance(y, fine, swingOf(project));
    storeSwing(project.dragStartValue + roundHalfEven(distance * (kMostSwing - kStraight) / kDragTwips));
}

void stepSwing(int steps) {
    storeSwing(swingOf(project) + steps);
}

void showSlide(int module) {
    const bool slide = currentBass(module).steps[project.bass[module].selStep].slide;
    showFrame(Control::slideLamp, module, slide && playsSlides(project) ? 1 : 0);
}

void slideClick(int module) {
    BassModule& bass = project.bass[module];
    BassStep& step = currentBass(module).steps[bass.selStep];
    const bool first = !playsSlides(project);
    step.slide = first || !step.slide; // a flag of others shows as none until then
    markProject();
    if (first) {
        playSlides(project);
        refreshGroove();
        return;
    }
    Set103Slide32(module, bass.currBank, bass.currPatt, bass.selStep, step.slide.number());
    showSlide(module);
}

} // namespace marlune
