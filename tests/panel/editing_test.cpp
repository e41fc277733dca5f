#include "panel/key_slider.h"
#include "support/program_test.h"

namespace marlune {
namespace {

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
