#include "panel/key_slider.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using DrumEditing = ProgramTest;
using Drags = ProgramTest;

// What one action on a step says to the component and leaves on the panel.
struct StepRow {
    const char* step;
    void (*action)();
    const char* calls;
    const char* shown;
};

TEST(StepEditing, TellsTheComponentAndShowsItself) {
    const StepRow rows[] = {
        {"F", [] { set103Note(0, 5); }, "Set103NoteOn32(0,0,0,0,0)", "keys(0)=13"},
        {"F-", [] { set103Note(0, 5); }, "Set103NoteOn32(0,0,0,0,-1)", "keys(0)=5"},
        {"F-", [] { set103Note(0, 7); }, "Set103Note32(0,0,0,0,7) Set103NoteOn32(0,0,0,0,-1)", "keys(0)=7"},
        {"F", [] { upClick(0); }, "Set103Up32(0,0,0,0,-1)", "up(0)=1"},
        {"F^", [] { upClick(0); }, "Set103Up32(0,0,0,0,0)", "up(0)=0"},
        {"F_", [] { upClick(0); }, "Set103Up32(0,0,0,0,-1) Set103Up32(0,0,0,0,0) Set103Down32(0,0,0,0,0)",
         "down(0)=0"},
        {"F^", [] { downClick(0); }, "Set103Down32(0,0,0,0,-1) Set103Down32(0,0,0,0,0) Set103Up32(0,0,0,0,0)",
         "up(0)=0"},
        {"F!", [] { accentClick(0); }, "Set103Accent32(0,0,0,0,0)", "accent(0)=0"},
    };
    for (const StepRow& row : rows) {
        TestProgram program;
        test::setBassSteps(0, row.step);
        refreshAll();
        program.calls();
        program.shown();
        editingState.write().projectDirty = false;
        row.action();
        EXPECT_EQ(program.calls(), row.calls) << row.step;
        EXPECT_EQ(program.shown(), row.shown) << row.step;
        EXPECT_TRUE(editingState->projectDirty);
        EXPECT_EQ(program.copyDifference(), "");
    }
}

TEST_F(DrumEditing, TogglesTheRowUnderEdit) {
    program.click(Control::sel109, 7);
    program.calls();
    program.click(Control::step109LED, 2);
    EXPECT_EQ(project.drum.patterns[0][0].drumOn[2][7], 255);
    EXPECT_TRUE(shownLamp(2));
    EXPECT_EQ(program.calls(), "Set109bOn32(0,0,2,7,1)");
    project.drum.patterns[0][0].drumOn[4][7] = 1; // as only a file brings it: lit, but no hit to a click
    refresh109Patt(7);
    EXPECT_TRUE(shownLamp(4));
    program.click(Control::step109LED, 4);
    EXPECT_EQ(project.drum.patterns[0][0].drumOn[4][7], 255);
    program.click(Control::sel109, 1);
    EXPECT_EQ(shownFrame(Control::sel109, 7) * 10 + shownFrame(Control::sel109, 1), 1);
    EXPECT_FALSE(shownLamp(2));
    program.click(Control::Offset109, 3);
    EXPECT_EQ(project.drum.selDrum, 1);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST(Slider, AddsItsMinimumToTheStart) {
    marluneKeySlider slider;
    slider.initKey(1000, 900, 1, 16, 5);
    EXPECT_EQ(slider.moveKey(1000), 6);
    EXPECT_EQ(slider.moveKey(1000 - 900), 16);
    EXPECT_EQ(slider.moveKey(30000), 1);
    slider.initKey(0, 1800, -1, 127, 20);
    EXPECT_EQ(slider.moveKey(0), 19);
    EXPECT_EQ(slider.moveKey(-100000), 127);
}

TEST_F(Drags, OfAPatchShowWhileTheyLastAndStoreAtTheRelease) {
    panelPointer(Control::PatchID, 1, {.action = PointerAction::press, .y = 2000});
    panelPointer(Control::PatchID, 1, {.action = PointerAction::move, .y = 2000});
    EXPECT_EQ(shownText(Control::PatchID, 1), "NONE");
    panelPointer(Control::PatchID, 1, {.action = PointerAction::move, .y = 2000 - 225});
    EXPECT_EQ(shownText(Control::PatchID, 1), "14");
    EXPECT_EQ(project.bass[1].patterns[0][0].patch, -1);
    program.calls();
    panelPointer(Control::PatchID, 1, {.action = PointerAction::release, .y = 0});
    EXPECT_EQ(program.calls(), "Set103Patch32(1,0,0,14)"); // what is shown, wherever the release was
    panelWheel(Control::PatchID, 1, -20);
    EXPECT_EQ(project.bass[1].patterns[0][0].patch, -1);
    EXPECT_EQ(shownText(Control::PatchID, 1), "NONE");
}

TEST_F(Drags, OfKnobsSpanTheirRangeInFiftyPixelsFromTheGrip) {
    program.drag(Control::knobSprite, 0, 5000, 5000 - 750, 50);
    EXPECT_EQ(project.knobValue[0], 127);
    EXPECT_EQ(shownFrame(Control::knobSprite, 0), 53);
    panelPointer(Control::knobSprite, 7, {.y = 3000});
    EXPECT_EQ(editingState->editSel, 1);
    panelPointer(Control::knobSprite, 7, {.action = PointerAction::move, .y = -9000}); // far beyond
    panelPointer(Control::knobSprite, 7, {.action = PointerAction::move, .y = 3000 - 300});
    EXPECT_EQ(project.knobValue[7], 51); // no offset has built up
    program.calls();
    panelPointer(Control::knobSprite, 7, {.action = PointerAction::move, .y = 3000 - 301});
    EXPECT_EQ(program.calls(), ""); // the same value again
    const int before = project.knobValue[7];
    panelPointer(Control::knobSprite, 7, {.action = PointerAction::move, .y = 2000, .fine = true});
    EXPECT_EQ(project.knobValue[7], before); // Shift goes on from here
    panelPointer(Control::knobSprite, 7, {.action = PointerAction::move, .y = 2000 - 600, .fine = true});
    EXPECT_EQ(project.knobValue[7], before + 10);
    panelWheel(Control::knobSprite, 19, +1);
    EXPECT_EQ(project.knobValue[19], 101);
    EXPECT_EQ(editingState->editSel, 2);
    EXPECT_EQ(knobFrame(0) * 10000 + knobFrame(100) * 100 + knobFrame(127), 4253);
}

TEST_F(Drags, OfKnobsAreLockedInSongModeUntilRecordingIsArmed) {
    Check1_Click();
    program.calls();
    program.drag(Control::knobSprite, 19, 1000, 500);
    panelWheel(Control::knobSprite, 3, 5);
    EXPECT_EQ(project.knobValue[19], 100);
    EXPECT_EQ(program.calls(), "");
    recButton_Click();
    songPosition.write().songTick = 21;
    program.drag(Control::knobSprite, 3, 1000, 700);
    EXPECT_EQ(knobTrack[3][21], 51);
    EXPECT_EQ(knobTrack[3][20] + knobTrack[3][22], 0);
    EXPECT_EQ(program.calls().substr(0, 26), "PrepareController32(3,13) "); // with the next step
}

TEST_F(Drags, OfTheTempoStayBetweenItsLimits) {
    program.drag(Control::knobTempo, 0, 1000, 1000 - 75);
    EXPECT_EQ(project.tempo, 160);
    program.drag(Control::knobTempo, 0, 1000, 9000);
    EXPECT_EQ(project.tempo, 40);
    EXPECT_EQ(shownFrame(Control::knobTempo, 0), 0);
    program.drag(Control::knobTempo, 0, 1000, 10);
    EXPECT_EQ(project.tempo, 240);
    EXPECT_EQ(shownFrame(Control::knobTempo, 0), 53);
}

// A screen of 12 twips to the pixel, every control at one place.
class DenseForm final : public PanelForm {
  public:
    [[nodiscard]] TwipsPerPixel twipsPerPixel() const override { return {12.4, 11.6}; }
    [[nodiscard]] Placement form() const override { return whole; }
    void placeForm(const Placement& at) override { whole = at; }
    [[nodiscard]] Placement control(Control control, int index) const override {
        const auto at = places.find({control, index});
        return at == places.end() ? Placement{1500, 3000, 765, 465} : at->second;
    }
    void placeControl(Control control, int index, const Placement& at) override {
        places[{control, index}] = at;
    }
    Placement whole{0, 0, 16800, 9750};
    std::map<std::pair<Control, int>, Placement> places;
};

TEST(Scaling, StartUpKeepsPicturesSizesAndTextsCentres) {
    DenseForm form;
    setPanelForm(&form);
    const TestProgram program;
    setPanelForm(nullptr);
    EXPECT_EQ(form.whole, (Placement{0, 0, 13440, 7800}));
    EXPECT_EQ(form.control(Control::step103B, 15), (Placement{1200, 2400, 612, 372}));
    EXPECT_EQ(form.control(Control::SelEditPicture, 2), (Placement{1200, 2400, 765, 465}));
    EXPECT_EQ(form.control(Control::UserTitle, 19), (Placement{1124, 2354, 765, 465}));
    EXPECT_EQ(form.control(Control::microDisplay, 0), (Placement{1124, 2354 + 465, 765, 465}));
    EXPECT_EQ(panelPosition(20000, 12000, {0, 0, 16800, 9750}, {12, 12}).left, 3280);
    EXPECT_EQ(panelPosition(20000, 12000, {0, 0, 16800, 9750}, {15, 15}).top, 372);
    marluneScaling half;
    half.scaleX = 0.5;
    EXPECT_EQ(half.resizeX(5), 2); // 2.5 goes to the even neighbour
}

} // namespace
} // namespace marlune
