// The Song Map driven by real events: gestures, commands, keys, refusals, what it tells and remembers.
#include <QAccessible>
#include <QScreen>
#include <QSettings>

#include "map_fixture.h"
#include "sheet_fixture.h"
#include "song/song_place.h"

namespace marlune {
namespace {

using Part = MapPart;
using SongMap = MapTest;

TEST_F(SongMap, ThePointerSelects) {
    click(inLane(1, 5.5));
    EXPECT_EQ(selected(), "6-6 .x..");
    EXPECT_EQ(editingState->editSel, 1);
    drag({inLane(0, 3.5), inLane(2, 9.5)});
    EXPECT_EQ(selected(), "4-10 xxx.");
    QTest::mouseDClick(&window, Qt::LeftButton, {}, inLane(2, 20.5));
    QTest::mouseRelease(&window, Qt::LeftButton, {}, inLane(2, 20.5));
    settle();
    EXPECT_EQ(selected(), "1-1000 ..x."); // the run
    drag({inRuler(12.5), inRuler(8.5)});
    EXPECT_EQ(selected(), "9-13 xxx.");
    click(inRuler(16.5), Qt::ShiftModifier);
    EXPECT_EQ(selected(), "9-17 xxx.");
    drag({inRuler(17), inRuler(11.5)}); // its right end
    EXPECT_EQ(selected(), "9-12 xxx.");
    click(inRuler(14.5));
    EXPECT_EQ(bar(), 14);
    EXPECT_EQ(selected(), "9-12 xxx.");
    click(MapSpot{Part::selectionModule, 1, 1});
    click(MapSpot{Part::selectionKnobs});
    EXPECT_EQ(selected(), "9-12 x.xk");
    wheel(place({Part::selectionFirst}), -2);
    wheel(place({Part::selectionCount}), 3);
    EXPECT_EQ(selected(), "7-15 x.xk");
    const QPoint last = place({Part::selectionLast});
    drag({last, last + QPoint(0, 12)});
    EXPECT_EQ(selected(), "7-13 x.xk");
    key(Qt::Key_Escape);
    EXPECT_EQ(selected(), "none");
    EXPECT_EQ(undoSteps(), 0);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(SongMap, PaintEraseAndTheirEnds) {
    click(MapSpot{Part::paletteSlot, 0, 4, 1});
    EXPECT_EQ(window.desk().pointer, MapPointer::paint);
    drag({inLane(0, 2.5), inLane(0, 5.5)}); // no bar between is left out
    EXPECT_EQ(bars(0, 1, 6), "A1 B5 B5 B5 B5 A1");
    EXPECT_EQ(undoSteps(), 1);
    drag({inLane(0, 3.5), inLane(0, 3.5)}, Qt::RightButton);
    EXPECT_EQ(bars(0, 1, 6), "A1 B5 A1 B5 B5 A1");
    pointer(MapPointer::erase);
    drag({inLane(0, 5.5), inLane(0, 4.5)});
    EXPECT_EQ(bars(0, 1, 6), "A1 B5 A1 A1 A1 A1");
    click(inLane(0, 3.5), {}, Qt::MiddleButton);
    EXPECT_EQ(barName(window.desk().paint[0]), "A1");
    pointer(MapPointer::paint);
    click(inLane(0, 2.5), {}, Qt::MiddleButton);
    EXPECT_EQ(barName(window.desk().paint[0]), "B5");
    drag({inLane(0, 8.5), inLane(0, 12.5)}, Qt::LeftButton, false);
    EXPECT_EQ(bars(0, 8, 3), "B5 B5 B5");
    key(Qt::Key_Escape); // puts it back
    EXPECT_EQ(bars(0, 8, 3), "A1 A1 A1");
    QTest::mouseRelease(&window, Qt::LeftButton, {}, inLane(0, 12.5));
    EXPECT_EQ(undoSteps(), 3);
    for (int i = 0; i < 3; ++i) key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(bars(0, 1, 6), "A1 A1 A1 A1 A1 A1");
    pointer(MapPointer::select);
    drag({inRuler(4.5), inRuler(6.5)});
    click(MapSpot{Part::paletteSlot, kDrumModule, 7, 3}); // fills what is selected of its lane
    EXPECT_EQ(bars(2, 3, 5), "A1 D8 D8 D8 A1");
    EXPECT_EQ(bars(1, 3, 5), "A1 A1 A1 A1 A1");
    key(Qt::Key_Return); // each lane its own
    EXPECT_EQ(bars(0, 3, 5), "A1 B5 B5 B5 A1");
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(SongMap, KnobCurvesAreDrawn) {
    click(MapSpot{Part::knobChips, 1, 7, 0, 7});
    EXPECT_EQ(window.desk().view.knobs, (std::vector<int>{0, 7}));
    click(inKnob(1, 20, 64)); // SELECT draws nothing
    EXPECT_EQ(undoSteps(), 0);
    pointer(MapPointer::paint);
    const auto value = [](int tick) { return int{knobTrack[7][tick]}; };
    const int before = value(15);
    drag({inKnob(1, 16, 100), inKnob(1, 36, 20)});
    EXPECT_NEAR(value(16), 100, 2);
    EXPECT_NEAR(value(26), 60, 3);
    EXPECT_NEAR(value(36), 20, 2);
    EXPECT_EQ(value(15), before);
    EXPECT_EQ(undoSteps(), 1);
    EXPECT_TRUE(window.state().knobMoves[7]);
    pointer(MapPointer::erase);
    drag({inKnob(1, 20, 5), inKnob(1, 30, 5)});
    EXPECT_EQ(value(25), patternImage.knobValue[7]);
    EXPECT_NEAR(value(36), 20, 2);
    click(MapSpot{Part::knobChips, 2, 12, 0, 12}, Qt::ShiftModifier);
    EXPECT_EQ(window.desk().view.knobs, (std::vector<int>{12}));
}

TEST_F(SongMap, ScrollZoomAndOverview) {
    const MapView& view = window.desk().view;
    wheel(inLane(0, 3), -12);
    EXPECT_EQ(view.first, 48);
    EXPECT_FALSE(window.desk().follow);
    wheel(inLane(0, 52), 1, Qt::ShiftModifier);
    EXPECT_EQ(view.first, 47);
    const QPoint about = inLane(0, 57);
    wheel(about, -2, Qt::ControlModifier);
    EXPECT_EQ(view.ppb, 12);
    EXPECT_NEAR(barX(view, 57), about.x(), 12);
    for (int i = 0; i < 14; ++i) click(MapSpot{Part::barZoom, 0, 0});
    EXPECT_EQ(view.ppb, 1);
    wheel(inLane(0, view.first + 10), -99);
    EXPECT_EQ(view.first, 20); // the song's end at the right
    click(MapSpot{Part::barZoom, 0, 2});
    EXPECT_EQ(view.first, 0);
    barTrack[1][299] = {3, 0};
    settle();
    EXPECT_EQ(foldBar(view), 304); // twice 16 on
    const double y = mapBox(view, Part::overview).middleY();
    const auto inOverview = [&](double at) { return window.pointOf(overviewX(view, at), y); };
    for (int i = 0; i < 20; ++i) click(MapSpot{Part::barZoom, 0, 1});
    click(inOverview(200)); // centred there
    EXPECT_NEAR(view.first + barsInView(view) / 2, 200, 2);
    drag({inOverview(200), inOverview(100)});
    EXPECT_NEAR(view.first + barsInView(view) / 2, 100, 3);
    const double right = view.first + barsInView(view);
    drag({inOverview(right), inOverview(right + 30)}); // the grip
    EXPECT_LT(view.ppb, 96);
    click(window.pointOf(overviewX(view, 304) + 8, y)); // the break
    EXPECT_FALSE(isFolded(view));
    key(Qt::Key_End);
    EXPECT_EQ(bar(), 300); // nothing changes after it
    for (const int at : {0, 63, 303, 304, 500, 999})
        EXPECT_NEAR(overviewBarAt(view, overviewX(view, at)), at, 0.01);
}

TEST_F(SongMap, KeysMoveExtendAndCommand) {
    key(Qt::Key_Right);
    key(Qt::Key_Right, Qt::ControlModifier);
    key(Qt::Key_Left);
    EXPECT_EQ(bar(), 8);
    key(Qt::Key_Down);
    EXPECT_EQ(editingState->editSel, 1);
    key(Qt::Key_Right, Qt::ShiftModifier);
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "9-10 .x..");
    key(Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(window.desk().pointer, MapPointer::paint);
    click(MapSpot{Part::paletteSlot, 1, 2, 0});
    EXPECT_EQ(bars(1, 7, 4), "A1 A3 A3 A1");
    key(Qt::Key_C, Qt::ControlModifier);
    key(Qt::Key_Insert, Qt::ControlModifier);
    EXPECT_EQ(bars(1, 7, 6), "A1 A1 A1 A3 A3 A1");
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(bars(1, 7, 6), "A1 A3 A3 A3 A3 A1");
    key(Qt::Key_Delete);
    EXPECT_EQ(bars(1, 7, 6), "A1 A3 A3 A1 A1 A1");
    key(Qt::Key_Backspace);
    EXPECT_EQ(bars(1, 7, 6), "A1 A1 A1 A1 A1 A1");
    EXPECT_EQ(bar(), 8);
    EXPECT_EQ(undoSteps(), 5);
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); // nothing to redo
    for (int i = 0; i < 5; ++i) key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(bars(1, 7, 6), "A1 A1 A1 A1 A1 A1");
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(bars(1, 7, 4), "A1 A3 A3 A1");
    key(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(selected(), "1-11 xxxk");
    key(Qt::Key_Space); // every other key is the panel's
    EXPECT_TRUE(transportState->transportRunning);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(SongMap, RefusesWithASentence) {
    const auto before = captureMusic();
    copyBars({{true, false, false}, false}, {0, 2});
    drag({inRuler(4.5), inRuler(6.5)});
    click(MapSpot{Part::selectionModule, 0, 0});
    click(MapSpot{Part::selectionModule, 1, 1});
    click(MapSpot{Part::paste});
    EXPECT_EQ(told(), "Bars of 109 fit only 109.");
    click(MapSpot{Part::record});
    for (const Part part : {Part::paste, Part::insert, Part::remove, Part::init, Part::undo}) {
        window.setDesk(window.desk());
        click(MapSpot{part});
        EXPECT_EQ(told(), "Stop recording first.");
    }
    click(MapSpot{Part::record});
    click(MapSpot{Part::modeSwitch});
    ASSERT_FALSE(songPosition->songMode);
    const int stood = songPosition->songTick;
    for (const QPoint& at :
         {inLane(0, 3.5), inKnob(0, 30, 9), place({Part::paletteSlot, 0, 3, 3}), place({Part::play})}) {
        click(at);
        EXPECT_EQ(told(), "The song is edited in song mode.");
        EXPECT_TRUE(window.shows().status.refusal);
    }
    key(Qt::Key_Delete);
    click(inRuler(9.5));
    EXPECT_EQ(songPosition->songTick, stood);
    key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(window.desk().view.first, 8); // view only: it scrolls
    Check1_Click();
    EXPECT_EQ(captureMusic(), before);
    barTrack[0][995] = {5, 1};
    settle();
    drag({inRuler(20.5), inRuler(29.5)});
    click(MapSpot{Part::insert});
    EXPECT_EQ(told(), "6 bars moved past bar 1000.");
}

TEST_F(SongMap, RecordingLeavesItsMarksUntilTheNextArming) {
    click(MapSpot{Part::record});
    click(MapSpot{Part::play});
    program.play(3);
    settle();
    click(MapSpot{Part::paletteSlot, 0, 2, 1}); // from the next bar on
    stepKnob(4, 128);
    for (int i = 0; i < 40; ++i) {
        program.play(1);
        settle();
    }
    click(MapSpot{Part::record});
    click(MapSpot{Part::stop});
    EXPECT_EQ(bars(0, 0, 4), "A1 B3 B3 B3");
    const RecordMarks& marks = window.state().marks;
    EXPECT_EQ(marks.bars[0], (MarkedRanges{{1, 3}}));
    EXPECT_TRUE(marks.bars[1].empty());
    ASSERT_EQ(marks.ticks[4].size(), 1U);
    for (int tick = 0; tick < 60; ++tick)
        EXPECT_EQ(knobTrack[4][tick] == 127,
                  tick >= marks.ticks[4][0].first && tick <= marks.ticks[4][0].last)
            << tick;
    click(MapSpot{Part::record});
    EXPECT_EQ(window.state().marks, RecordMarks());
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(SongMap, FollowTurnsThePage) {
    window.setDesk([&] {
        MapDesk desk = window.desk();
        desk.view.ppb = 96; // ten bars
        return desk;
    }());
    click(inRuler(8.5));
    click(MapSpot{Part::play});
    program.play(12);
    settle();
    EXPECT_EQ(window.desk().view.first, 0);
    program.play(8);
    settle();
    EXPECT_EQ(window.desk().view.first, 9);
    wheel(inLane(0, 10), 2);
    program.play(40);
    settle();
    EXPECT_EQ(window.desk().view.first, 1); // by hand from here on
}

TEST_F(SongMap, ATickRepaintsLittle) {
    test::randomProject(7);
    click(MapSpot{Part::play});
    program.play(2);
    settle();
    QApplication::processEvents();
    window.repaint();
    window.takeRepainted();
    program.play(1);
    settle();
    QApplication::processEvents();
    int area = 0;
    for (const QRect& part : window.takeRepainted()) area += part.width() * part.height();
    EXPECT_GT(area, 0);
    EXPECT_LT(area, window.width() * window.height() / 10);
}

TEST_F(SongMap, RemembersItsPlaceAndWhatItShowed) {
    QSettings settings(QString::fromStdString(folder.file("windows.cfg")), QSettings::IniFormat);
    click(MapSpot{Part::knobChips, 2, 17, 0, 17});
    click(MapSpot{Part::barZoom, 0, 1});
    wheel(inLane(0, 10), -3);
    click(MapSpot{Part::dockToggle});
    window.resize(1200, 700);
    window.remember(settings);
    MapWindow next;
    next.recall(settings);
    EXPECT_EQ(next.size(), QSize(1200, 700));
    EXPECT_EQ(next.desk().view.knobs, (std::vector<int>{0, 17}));
    EXPECT_EQ(next.desk().view.ppb, 32);
    EXPECT_EQ(next.desk().view.first, 17);
    EXPECT_FALSE(next.desk().view.dock);
    EXPECT_FALSE(next.desk().follow);
    settings.setValue(QStringLiteral("map/knobs"), QStringLiteral("9 3 x 77 12"));
    settings.setValue(QStringLiteral("map/barWidth"), -5);
    MapWindow other;
    other.recall(settings); // from a file that somebody wrote by hand
    EXPECT_EQ(other.desk().view.knobs, (std::vector<int>{9, 12}));
    EXPECT_EQ(other.desk().view.ppb, 1);
}

TEST_F(SongMap, SizeGoesToBarsAndKnobLanes) {
    window.resize(1400, 900);
    settle();
    const MapView& view = window.desk().view;
    EXPECT_EQ(timeWidth(view), 1260);
    EXPECT_EQ(mapBox(view, Part::knobLane).height, 120 + 280 - 3);
    EXPECT_EQ(mapBox(view, Part::statusBar).y, 876);
    window.setZoom(300); // larger than the screen
    EXPECT_LE(window.width(), std::max(840, window.screen()->availableSize().width()));
    EXPECT_LT(window.zoom(), 300);
    window.resize(840, 520);
    EXPECT_EQ(window.zoom(), 75);
}

// --- for assistive tools

struct SpokenMap : MapTest {
    QAccessibleInterface* root = QAccessible::queryAccessibleInterface(&window);

    static std::string name(QAccessibleInterface* of) { return of->text(QAccessible::Name).toStdString(); }
    [[nodiscard]] QAccessibleInterface* group(const std::string& wanted) const {
        for (int i = 0; i < root->childCount(); ++i)
            if (name(root->child(i)) == wanted) return root->child(i);
        return nullptr;
    }
};

TEST_F(SpokenMap, EveryPlaceHasANameAndIsReachedByTheKeyboard) {
    fillBars(0, {56, 2}, {0, 1});
    settle();
    std::vector<std::string> names;
    for (int g = 0; g < root->childCount() - 1; ++g) {
        QAccessibleInterface* at = root->child(g);
        for (int i = 0; i < std::max(at->childCount(), 1); ++i)
            names.push_back(name(at->childCount() > 0 ? at->child(i) : at));
    }
    EXPECT_EQ(std::count(names.begin(), names.end(), ""), 0);
    EXPECT_EQ(names.size(), 7U + 3 + 5 + 3 + 1 + 3 + 3 + 1 + 1 + 20 + 1 + 96 + 3 + 9);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end()); // no two alike
    EXPECT_EQ(name(group("103A bars")->child(1)), "103A bars 57 to 58, B1");
    EXPECT_EQ(group("Cutoff 103A, bar 1 step 1, 0")->role(), QAccessible::Slider);
    QAccessibleInterface* frame = group("Bars 1 to 41 of 1000");
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->role(), QAccessible::ScrollBar);
    EXPECT_TRUE(group("INSERT")->state().disabled);
    for (int g = 0; g < root->childCount() - 1; ++g) {
        key(Qt::Key_Tab);
        QAccessibleInterface* at = root->child(g);
        EXPECT_EQ(root->focusChild(), at->childCount() > 0 ? at->child(0) : at) << name(at);
    }
}

TEST_F(SpokenMap, DoesWhatIsAsked) {
    const auto press = [&](QAccessibleInterface* cell) {
        cell->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        settle();
    };
    fillBars(0, {56, 2}, {0, 1});
    settle();
    press(group("103A bars")->child(1));
    EXPECT_EQ(selected(), "57-58 x...");
    press(group("103A palette")->child(9));
    EXPECT_EQ(bars(0, 55, 4), "A1 B2 B2 A1");
    press(group("103A bars")->child(0)); // PAINT: the whole run
    EXPECT_EQ(bars(0, 0, 2), "B2 B2");
    window.putCursor(cellOf(window.desk(), {Part::knobLane}, 0));
    const int value = knobTrack[0][0];
    key(Qt::Key_Up);
    EXPECT_EQ(knobTrack[0][0], value + 1);
    EXPECT_EQ(name(root->focusChild()), "Cutoff 103A, bar 1 step 1, " + std::to_string(value + 1));
    EXPECT_EQ(program.copyDifference(), "");
}

// --- sweep and random driver

TEST_F(SongMap, EveryBarSlotChipAndCapReachesItsOwn) {
    pointer(MapPointer::paint);
    for (int m = 0; m < kModules; ++m) {
        for (int slot = 0; slot < kBanks * kPatterns; ++slot) {
            click(MapSpot{Part::paletteSlot, m, slot % kPatterns, slot / kPatterns});
            click(inLane(m, slot + 0.5));
            ASSERT_EQ(barTrack[m][slot], (SongBar{static_cast<std::uint8_t>(slot % kPatterns),
                                                  static_cast<std::uint8_t>(slot / kPatterns)}));
            ASSERT_EQ(editingState->editSel, m);
        }
        ASSERT_EQ(window.state().lanes[m].size(), 33U);
        click(MapSpot{Part::laneHeader, m, 0, m});
        EXPECT_EQ(editingState->editSel, m);
    }
    click(MapSpot{Part::knobChips, 0, 0, 0, 0});
    for (int k = 0; k < kKnobs; ++k) {
        click(MapSpot{Part::knobChips, moduleOfKnob(k), k, 0, k});
        ASSERT_EQ(window.desk().view.knobs.back(), k);
    }
    const int rows = knobRows(window.desk().view);
    EXPECT_EQ(rows, 4); // of twenty: the others by the wheel
    wheel(place({Part::knobHeader, 0, 0, 1}), -99);
    EXPECT_EQ(window.desk().view.knobScroll, 16);
    click(inKnob(3, 32, 77));
    EXPECT_NEAR(knobTrack[19][32], 77, 4);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(SongMap, MapSheetPanelRecordAndEngineAgreeAfterRandomSessions) {
    std::mt19937 random(15);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    SheetWindow sheet;
    sheet.resize(1120, 520);
    sheet.show();
    const auto sheetClick = [&](SheetPart part, int m, int column, int row) {
        QTest::mouseClick(&sheet, Qt::LeftButton, {}, sheet.placeOf({part, m, column, row}).center());
    };
    const auto bar = [&] { return window.desk().view.first + below(38) + 0.5; };
    constexpr Part kCommands[] = {Part::copy, Part::paste, Part::insert, Part::remove,
                                  Part::init, Part::undo,  Part::redo};
    const std::function<void()> deeds[] = {
        [&] {
            drag({inLane(below(3), bar()), inLane(below(3), bar())},
                 below(4) == 0 ? Qt::RightButton : Qt::LeftButton);
        },
        [&] {
            drag({inLane(below(3), bar()), inLane(below(3), bar())});
        },
        [&] {
            drag({inLane(below(3), bar()), inLane(below(3), bar())}, Qt::LeftButton, false);
        },
        [&] { key(Qt::Key_Escape); },
        [&] {
            drag({inRuler(bar()), inRuler(bar())});
        },
        [&] { click(inRuler(bar())); },
        [&] {
            drag({inKnob(0, below(600), below(128)), inKnob(0, below(600), below(128))});
        },
        [&] { pointer(static_cast<MapPointer>(below(3))); },
        [&] {
            click(MapSpot{Part::paletteSlot, below(3), below(8), below(4)});
        },
        [&] { click(MapSpot{kCommands[below(7)]}); },
        [&] { click(MapSpot{kCommands[below(7)]}); },
        [&] {
            click(MapSpot{Part::selectionModule, 0, below(3)});
        },
        [&] { wheel(inLane(0, bar()), below(5) - 2, below(3) == 0 ? Qt::ControlModifier : Qt::NoModifier); },
        [&] { click(MapSpot{Part::record}); },
        [&] {
            key(below(2) == 0 ? Qt::Key_Right : Qt::Key_Left,
                below(2) == 0 ? Qt::ControlModifier : Qt::NoModifier);
        },
        [&] { key(static_cast<Qt::Key>(Qt::Key_1 + below(8))); },
        [&] { sheetClick(SheetPart::roll, below(2), below(16), below(13)); },
        [&] { sheetClick(SheetPart::slot, below(3), below(8), below(4)); },
        [&] { sheetClick(SheetPart::pad, 2, below(16), below(8)); },
        [&] { program.click(Control::ediSel, below(2)); },
        [&] { program.click(Control::bank103A, below(4)); },
        [&] { stepKnob(below(19), below(99) - 50); },
        [&] { playSongButton_Click(); },
        [&] { program.play(1 + below(40)); },
        [&] { program.play(1 + below(20)); },
        [&] { stopButton_Hit(); },
        [&] {
            if (below(4) == 0) Check1_Click();
        },
    };
    for (int session = 0; session < 12; ++session) {
        for (int i = 0; i < 60; ++i) deeds[below(std::size(deeds))]();
        QTest::mouseRelease(&window, Qt::LeftButton, {}, QPoint(5, 5));
        program.play(2);
        settle();
        sheet.refresh();
        const MapState& shown = window.state();
        ASSERT_EQ(shown, readMap()) << session;
        ASSERT_EQ(sheet.state(), readSheet()) << session;
        ASSERT_EQ(program.copyDifference(), "") << session;
        for (int m = 0; m < kModules; ++m) {
            int at = 0;
            for (const MapRun& run : shown.lanes[m]) {
                ASSERT_EQ(run.bars.first, at);
                for (; at < run.bars.end(); ++at) ASSERT_EQ(barTrack[m][at], run.plays);
            }
            ASSERT_EQ(at, kSongBars);
            ASSERT_EQ(shownFrame(Control::DigitPatt, 2 * m),
                      shown.current[m].bank * kPatterns + shown.current[m].patt)
                << session;
            ASSERT_EQ(sheet.state().modules[m].bank, shown.current[m].bank) << session;
            ASSERT_EQ(sheet.state().modules[m].pattern, shown.current[m].patt) << session;
            if (songPosition->songMode && songSounds()) {
                ASSERT_EQ(shown.current[m], songBarAt(m, songPosition->playedTick)) << session;
            }
        }
        ASSERT_TRUE(barsSoundAsWritten()) << session;
    }
}

} // namespace
} // namespace marlune
