// The Pattern Sheet through real events: what reaches the record and the engine, and what it shows then.
#include <QPointingDevice>
#include <QSettings>
#include <QSignalSpy>
#include <memory>

#include "sheet_fixture.h"

namespace marlune {
namespace {

using Part = SheetPart;
using Sheet = SheetTest;

TEST_F(Sheet, AClickOnTheRollPlacesRestsAndBringsBack) {
    program.calls();
    click(at(Part::roll, 0, 6, 3)); // row 3 is A
    EXPECT_EQ(program.calls(), "Set103Note32(0,0,0,6,9) Set103NoteOn32(0,0,0,6,-1)");
    EXPECT_EQ(step(0, 6), "A");
    click(at(Part::roll, 0, 6, 3));
    EXPECT_EQ(program.calls(), "Set103NoteOn32(0,0,0,6,0)");
    EXPECT_EQ(step(0, 6), "A-");
    click(at(Part::roll, 0, 6, 3));
    EXPECT_EQ(step(0, 6), "A");
    click(at(Part::roll, 1, 2, 0), Qt::ControlModifier); // no note is set, module 103B taken up
    EXPECT_EQ(step(1, 2), "C!");
    EXPECT_EQ(editingState->editSel, 1);
    EXPECT_TRUE(editingState->projectDirty);
    EXPECT_TRUE(window.state().modules[0].thumbs[0][0].changed);
    EXPECT_FALSE(window.state().modules[0].thumbs[0][1].changed);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(Sheet, ADragDrawsAndIsOneStepOfUndo) {
    const int before = undoSteps();
    drag({at(Part::roll, 0, 2, 5), at(Part::roll, 0, 5, 2), at(Part::roll, 0, 6, 2)}); // G up to A#, quickly
    EXPECT_EQ(steps(0, 1, 7), "C G G# A A# A# C");
    EXPECT_EQ(undoSteps(), before + 1);
    drag({at(Part::roll, 0, 5, 7), at(Part::roll, 0, 3, 7)}, Qt::RightButton);
    EXPECT_EQ(steps(0, 2, 6), "G G#- A- A#- A#");
    drag({at(Part::roll, 0, 6, 2), at(Part::roll, 0, 7, 2)}); // from the lit note on: it stays
    EXPECT_EQ(steps(0, 6, 7), "A# A#");
    menuClicked(Menu::mnuEditUndo);
    menuClicked(Menu::mnuEditUndo);
    menuClicked(Menu::mnuEditUndo);
    EXPECT_EQ(steps(0, 1, 7), "C C C C C C C");
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(Sheet, EscapeRestoresWhatADragHasChanged) {
    const int before = undoSteps();
    drag({at(Part::pad, 2, 2, 1), at(Part::pad, 2, 6, 1)}, Qt::LeftButton, false);
    EXPECT_TRUE(window.state().modules[2].hit(4, 1));
    key(Qt::Key_Escape);
    for (int s = 0; s < kSteps; ++s) EXPECT_FALSE(window.state().modules[2].hit(s, 1)) << s;
    EXPECT_EQ(undoSteps(), before);
    EXPECT_FALSE(menuState(Menu::mnuEditRedo).enabled);
    moveTo(pointOf(at(Part::pad, 2, 9, 1)), Qt::LeftButton);
    EXPECT_FALSE(currentDrum().drumOn[9][1] == kDrumHit); // the drag is over
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(Sheet, LanesRepeatWhatTheFirstCellDid) {
    click(at(Part::octaveDown, 0, 4));
    drag({at(Part::octaveUp, 0, 3), at(Part::octaveUp, 0, 5)});
    EXPECT_EQ(steps(0, 2, 6), "C C^ C^ C^ C");
    drag({at(Part::octaveDown, 0, 5), at(Part::octaveDown, 0, 2)}); // back to the middle
    EXPECT_EQ(steps(0, 2, 6), "C C C C C");
    drag({at(Part::accent, 0, 1), at(Part::accent, 0, 3)});
    drag({at(Part::accent, 0, 2), at(Part::accent, 0, 4)});
    EXPECT_EQ(steps(0, 0, 4), "C C! C C C");
    wheel(at(Part::roll, 0, 8, 4), 1, Qt::ShiftModifier);
    EXPECT_EQ(step(0, 8), "C^");
    wheel(at(Part::roll, 0, 8, 4), 1); // the plain wheel changes no notes
    EXPECT_EQ(step(0, 8), "C^");
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(Sheet, TheLoopIsDraggedByItsGripAndItsField) {
    drag({at(Part::loopGrip, 1), at(Part::stepCap, 1, 9), at(Part::stepCap, 1, 11)});
    EXPECT_EQ(currentBass(1).loopEnd, 11);
    EXPECT_EQ(window.state().modules[1].length, 12);
    EXPECT_EQ(shownText(Control::LoopPt, 1), "12");
    wheel(at(Part::loop, 2), -3);
    EXPECT_EQ(currentDrum().loopEnd, 12);
    EXPECT_EQ(editingState->editSel, 2);
    const QPoint field = pointOf(at(Part::loop, 0));
    QTest::mousePress(&window, Qt::LeftButton, {}, field);
    moveTo(field + QPoint(0, 30), Qt::LeftButton);
    EXPECT_EQ(window.state().modules[0].loopShown, shownNumber(Control::LoopPt, 0)); // told, not yet stored
    EXPECT_EQ(currentBass(0).loopEnd, 15);
    QTest::mouseRelease(&window, Qt::LeftButton, {}, field + QPoint(0, 30));
    EXPECT_LT(currentBass(0).loopEnd, 15);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(Sheet, SlotsTakeEffectStoppedAndCueWhileRunning) {
    click(at(Part::slot, 0, 4, 1));
    EXPECT_EQ(window.state().modules[0].bank * 8 + window.state().modules[0].pattern, 12);
    startStopButton_Click();
    program.play(3);
    program.calls();
    click(at(Part::slot, 0, 4, 1)); // the current one: nothing to take back
    click(at(Part::slot, 2, 2, 3));
    click(at(Part::slot, 1, 6, 0));
    EXPECT_EQ(program.calls(),
              "SetNextPatt32(0,4) SetNextGroup32(2,3) SetNextPatt32(2,2) SetNextPatt32(1,6)");
    EXPECT_EQ(window.shows().status.left,
              "103B pattern A7, cued, fresh"); // the pointer stands on it
    moveTo({3, 3}, Qt::NoButton);
    EXPECT_EQ(window.shows().status.left,
              "103B changes to A7 and 109 to D3 at the end of their patterns.  Esc takes the cues back.");
    click(at(Part::slot, 2, 0, 0)); // its current slot takes the cue back
    EXPECT_FALSE(window.state().modules[2].cued());
    key(Qt::Key_Escape);
    EXPECT_FALSE(window.state().modules[1].cued());
    EXPECT_EQ(program.copyDifference(), "");
}

TEST_F(Sheet, SongModeOnlyLooks) {
    QSignalSpy refusals(&window, &SheetWindow::refused);
    click(at(Part::modeSwitch, 0)); // on the half that is not lit
    Check1_Click();
    if (!songPosition->songMode) Check1_Click();
    settle();
    program.calls();
    const ProjectRecord before = project;
    for (const SheetSpot& spot : {at(Part::roll, 0, 3, 3), at(Part::key, 0, 0, 2), at(Part::octaveUp, 1, 3),
                                  at(Part::accent, 0, 5), at(Part::pad, 2, 5, 2), at(Part::loop, 1)})
        click(spot);
    EXPECT_EQ(window.shows().status.left, "Patterns are edited in pattern mode.");
    EXPECT_TRUE(window.shows().status.refusal);
    click(at(Part::slot, 0, 3, 0));
    EXPECT_EQ(window.shows().status.left, "Arm recording to choose patterns in song mode.");
    EXPECT_EQ(refusals.count(), 7);
    EXPECT_EQ(program.calls(), "");
    EXPECT_EQ(std::memcmp(&before, &project, sizeof project), 0);
    click(at(Part::stepCap, 1, 7));
    click(at(Part::drumName, 2, 0, 4));
    EXPECT_EQ(project.bass[1].selStep, 7); // looking round is free
    EXPECT_EQ(project.drum.selDrum, 4);
    recButton_Click();
    click(at(Part::slot, 0, 3, 0)); // recording wakes the slots
    EXPECT_EQ(barPatt(0, songPosition->songTick), 3);
}

TEST_F(Sheet, HeldRestsLookBackToTheLoopEnd) {
    test::setBassSteps(0, "C- C- E  E- E- G- C  C- D- D- D- D- D- D- D  C");
    settle();
    const auto held = [&] {
        std::string text;
        for (const SheetStep& s : window.state().modules[0].steps) text += s.held ? 'h' : '.';
        return text;
    };
    EXPECT_EQ(held(), "hh.hh..h........");
    currentBass(0).loopEnd = 14; // D ends the loop now
    settle();
    EXPECT_EQ(held(), "...hh..h........");
}

TEST_F(Sheet, ATickRepaintsColumnsOnly) {
    startStopButton_Click();
    program.play(2);
    settle();
    QApplication::processEvents();
    window.takeRepainted();
    program.play(1);
    settle();
    QApplication::processEvents();
    const QRegion painted = window.takeRepainted();
    int area = 0;
    for (const QRect& r : painted) area += r.width() * r.height();
    EXPECT_GT(area, 0);
    EXPECT_LT(area, 1120 * 520 / 6);
    for (int m = 0; m < 2; ++m) {
        EXPECT_FALSE(painted.intersects(window.placeOf(at(Part::key, m, 0, 6))));
        EXPECT_FALSE(painted.intersects(window.placeOf(at(Part::roll, m, 12, 6))));
        EXPECT_FALSE(painted.intersects(window.placeOf(at(Part::slot, m, 6, 2))));
    }
}

TEST_F(Sheet, WhatIsRepaintedInPiecesIsAsGoodAsWhole) {
    for (int round = 0; round < 6; ++round) {
        if (round % 2 == 0) startStopButton_Click();
        program.play(3);
        click(at(Part::roll, round % 2, 3 * round % 16, round));
        click(at(Part::pad, 2, 2 * round, round));
        QApplication::processEvents();
    }
    const QImage pieces = window.grab().toImage();
    QImage whole(window.size(), QImage::Format_RGB32);
    QPainter painter(&whole);
    paintScene(painter, sheetScene(window.state(), window.shows()), 1);
    painter.end();
    int different = 0;
    for (int y = 0; y < whole.height(); ++y)
        for (int x = 0; x < whole.width(); ++x) {
            const QColor a = pieces.pixelColor(x, y), b = whole.pixelColor(x, y);
            if (std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
                    std::abs(a.blue() - b.blue()) >
                12)
                ++different;
        }
    EXPECT_EQ(different, 0);
}

TEST_F(Sheet, AFingerActsWhereItIsLiftedAndTwoZoom) {
    std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const QPoint from = pointOf(at(Part::pad, 2, 4, 2));
    const QPoint to = pointOf(at(Part::pad, 2, 6, 2));
    QTest::touchEvent(&window, screen.get()).press(0, from, &window);
    const QImage held = window.grab().toImage();
    QTest::touchEvent(&window, screen.get()).move(0, to, &window);
    EXPECT_FALSE(padHit(4, 2) || padHit(6, 2));
    QTest::touchEvent(&window, screen.get()).release(0, to, &window);
    EXPECT_FALSE(padHit(4, 2));
    EXPECT_TRUE(padHit(6, 2));
    EXPECT_NE(
        held.copy(QRect(from.x() - 10, from.y() - 70, 20, 40)),
        window.grab().toImage().copy(QRect(from.x() - 10, from.y() - 70, 20, 40))); // shown large above it
    window.setZoom(75);
    const QPoint middle = window.rect().center();
    QTest::touchEvent(&window, screen.get())
        .press(0, middle - QPoint(100, 0), &window)
        .press(1, middle + QPoint(100, 0), &window);
    QTest::touchEvent(&window, screen.get())
        .move(0, middle - QPoint(75, 0), &window)
        .move(1, middle + QPoint(75, 0), &window);
    EXPECT_EQ(window.zoom(), 75); // as small as it goes
    QTest::touchEvent(&window, screen.get()).release(0, middle, &window).release(1, middle, &window);
    EXPECT_TRUE(padHit(6, 2));
}

TEST_F(Sheet, PlaceSizeAndFormAreRemembered) {
    QSettings file(QString::fromStdString(folder.file("windows.cfg")), QSettings::IniFormat);
    window.setForm(SheetForm::compact);
    window.setZoom(75);
    window.remember(file);
    SheetWindow again;
    again.recall(file);
    EXPECT_EQ(again.form(), SheetForm::compact);
    EXPECT_EQ(again.size(), window.size());
    EXPECT_EQ(again.zoom(), 75);
    again.setZoom(300); // no larger than the screen
    EXPECT_LE(again.width(), again.screen()->availableGeometry().width());
}

} // namespace
} // namespace marlune
