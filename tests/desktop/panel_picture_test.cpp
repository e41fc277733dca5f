// The painted panel: every control at its place, every frame told apart, repainting in pieces as good as
// whole.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QScreen>
#include <random>

#include "desktop/desktop_support.h"
#include "desktop/panel_widget.h"
#include "picture/scene.h"

namespace marlune {
namespace {

// Pieces once painted are kept, as in the widget.
QImage paint(const PanelState& state, const PointerState& touch = {}) {
    static SpriteCache sprites;
    QImage image(kPanelWidth, kPanelHeight, QImage::Format_RGB32);
    QPainter painter(&image);
    for (const Piece& piece : panelPieces()) {
        sprites.draw(painter, piece, lookOf(piece, state, touch));
    }
    if (touch.focus != nullptr) paintFocusRing(painter, touch.focus->rect, 1);
    return image;
}

// Pixels inside the rectangle, grown a little, that differ so that an eye sees it.
int difference(const QImage& a, const QImage& b, const PanelRect& r, int grow = 0) {
    int count = 0;
    for (int y = std::max(0, r.y - grow); y < std::min(kPanelHeight, r.y + r.height + grow); ++y)
        for (int x = std::max(0, r.x - grow); x < std::min(kPanelWidth, r.x + r.width + grow); ++x) {
            const QColor p = a.pixelColor(x, y), q = b.pixelColor(x, y);
            if (std::abs(p.red() - q.red()) + std::abs(p.green() - q.green()) +
                    std::abs(p.blue() - q.blue()) >
                40)
                ++count;
        }
    return count;
}

TEST(PanelLayout, TheTableSaysWhatTheDrawingSays) {
    QFile file(QStringLiteral(MARLUNE_PANEL_JSON));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonArray drawn = QJsonDocument::fromJson(file.readAll()).object()["controls"].toArray();
    ASSERT_EQ(drawn.size(), static_cast<qsizetype>(placedControls().size()));
    int i = 0;
    for (const PlacedControl& c : placedControls()) {
        const QJsonObject d = drawn[i++].toObject();
        EXPECT_EQ(d["name"].toString().toStdString(), controlInfo(c.control).name);
        EXPECT_EQ(d["index"].toInt(), c.index);
        EXPECT_EQ(QRect(d["x"].toInt(), d["y"].toInt(), d["width"].toInt(), d["height"].toInt()),
                  QRect(c.rect.x, c.rect.y, c.rect.width, c.rect.height))
            << controlInfo(c.control).name << c.index;
        EXPECT_EQ(d["interactive"].toBool(), c.interactive);
    }
}

TEST(PanelPicture, CapsAndPadsCarryWhatTheirStepsPlay) {
    const PanelRect& cap = placedControl(Control::step103A, 5)->rect;
    const PanelRect& pad = placedControl(Control::step109LED, 5)->rect;
    PanelState state = patternMoment();
    QImage before = paint(state);
    for (const StepMark& mark :
         {StepMark{0, true}, StepMark{12, true}, StepMark{12, false}, StepMark{5, true},
          StepMark{5, true, true}, StepMark{5, true, false, true}, StepMark{5, true, false, true, true}}) {
        state.marks[0][5] = mark;
        const QImage after = paint(state);
        EXPECT_GT(difference(before, after, cap), 1) << int{mark.note} << mark.sounds;
        EXPECT_EQ(difference(before, after, placedControl(Control::step103B, 5)->rect), 0);
        before = after;
    }
    for (const int rows : {1, 129, 255}) {
        state.ghost[5] = static_cast<std::uint8_t>(rows);
        const QImage after = paint(state);
        EXPECT_GT(difference(before, after, pad), 10) << rows;
        before = after;
    }
}

TEST(PanelPicture, TheBubbleTellsTheKnobUnderThePointerAndNeverCoversIt) {
    PanelState state = patternMoment();
    state.setText(Control::tempoBPM, 0, "132");
    state.values[7] = 99;
    for (const Control control : {Control::knobSprite, Control::knobTempo}) {
        for (int i = 0; i < controlInfo(control).count; ++i) {
            const PlacedControl* knob = placedControl(control, i);
            const Bubble bubble = bubbleOf(state, {knob, nullptr, nullptr});
            const QRect box(bubble.rect.x, bubble.rect.y, bubble.rect.width, bubble.rect.height);
            EXPECT_FALSE(
                box.intersects(QRect(knob->rect.x, knob->rect.y, knob->rect.width, knob->rect.height)));
            EXPECT_TRUE(QRect(0, 0, kPanelWidth, kPanelHeight).contains(box));
        }
    }
    const PlacedControl* seventh = placedControl(Control::knobSprite, 7);
    EXPECT_EQ(bubbleOf(state, {nullptr, seventh, nullptr}).text, "Knob 7\n99"); // while it is turned
    EXPECT_EQ(bubbleOf(state, {placedControl(Control::knobTempo, 0), nullptr, nullptr}).text, "Tempo\n132");
    EXPECT_EQ(bubbleOf(state, {seventh, placedControl(Control::Check1, 0), nullptr}).text, "");
}

TEST(PanelPicture, EveryFrameOfEverySpriteLooksUnlikeItsNeighbour) {
    for (int c = 0; c < kControls; ++c) {
        const auto control = static_cast<Control>(c);
        const ControlInfo& info = controlInfo(control);
        for (int i = 0; i < info.count && info.kind == ControlKind::sprite; ++i) {
            if (control == Control::knobSprite && i != 0 && i != 7 && i != 19) continue; // one of each strip
            PanelState state = patternMoment();
            state.setFrame(control, i, 0);
            QImage before = paint(state);
            for (int f = 1; f < info.frames; ++f) {
                state.setFrame(control, i, f);
                const QImage after = paint(state);
                EXPECT_GT(difference(before, after, placedControl(control, i)->rect), 3)
                    << info.name << "(" << i << ") frame " << f;
                before = after;
            }
        }
    }
}

TEST(PanelPicture, WhatFollowsFromOtherControlsIsSeenThere) {
    const std::tuple<const char*, void (*)(PanelState&), Control, int> cases[] = {
        {"lamp", [](PanelState& s) { s.lamps[4] = true; }, Control::step109LED, 4},
        {"bank of now", [](PanelState& s) { s.setFrame(Control::DigitPatt, 0, 26); }, Control::bank103A, 3},
        {"bank of next", [](PanelState& s) { s.setFrame(Control::DigitPatt, 3, 1); }, Control::bank103B, 0},
        {"cue", [](PanelState& s) { s.setFrame(Control::DigitPatt, 4, 13); }, Control::DigitPatt, 5},
        {"loop", [](PanelState& s) { s.setText(Control::LoopPt, 0, "5"); }, Control::step103A, 8},
        {"loop of pads", [](PanelState& s) { s.setText(Control::LoopPt, 2, "5"); }, Control::step109LED, 13},
        {"note", [](PanelState& s) { s.setText(Control::Offset109, 6, "127"); }, Control::Offset109, 6},
        {"bar", [](PanelState& s) { s.setText(Control::timeDisplay, 0, "1000"); }, Control::timeDisplay, 0},
        {"title", [](PanelState& s) { s.setText(Control::UserTitle, 2, "WWWWWWWW"); }, Control::UserTitle, 2},
        {"song mode", [](PanelState& s) { s.setFrame(Control::Check1, 0, 1); }, Control::keys, 0},
        {"armed", [](PanelState& s) { s.setFrame(Control::RecButton, 0, 2); }, Control::knobSprite, 4},
        {"off", [](PanelState& s) { s.setEnabled(Control::knobSprite, 5, false); }, Control::knobSprite, 5},
        {"under edit", [](PanelState& s) { s.setFrame(Control::SelEditPicture, 2, 0); }, Control::ediSel, 2},
    };
    const QImage before = paint(patternMoment());
    for (const auto& [what, change, seenAt, index] : cases) {
        PanelState state = patternMoment();
        change(state);
        EXPECT_GT(difference(before, paint(state), placedControl(seenAt, index)->rect), 5) << what;
    }
}

TEST(PanelPicture, PointerAndFocusAreSeenOnEveryControlThatAnswers) {
    const PanelState state = patternMoment();
    const QImage before = paint(state);
    for (const PlacedControl* stop : PanelWidget::tabStops())
        EXPECT_GT(difference(before, paint(state, {.focus = stop}), stop->rect, 5), 50);
    for (const Control control :
         {Control::knobSprite, Control::step103A, Control::bank109, Control::step109LED,
          Control::sel103BButton, Control::accent, Control::startStopButton})
        EXPECT_NE(before, paint(state, {.pressed = placedControl(control, 0)})) << controlInfo(control).name;
}

// The widget repaints pieces; whatever happened before, the window must show the picture of the state.
TEST(PanelPicture, RepaintingPiecesEndsInTheWholePicture) {
    PanelWidget widget;
    widget.showState(patternMoment());
    widget.show();
    std::mt19937 random(7);
    for (int round = 0; round < 100; ++round) {
        const auto control = static_cast<Control>(random() % kControls);
        const ControlInfo& info = controlInfo(control);
        const int index = static_cast<int>(random() % info.count);
        if (info.kind == ControlKind::sprite)
            widget.showFrame(control, index, static_cast<int>(random() % info.frames));
        else if (info.kind == ControlKind::lamp)
            widget.showLamp(index, random() % 2 == 0);
        else if (info.kind == ControlKind::text)
            widget.showText(control, index, std::to_string(random() % 16 + 1));
        QCoreApplication::processEvents();
    }
    const QImage window =
        widget.screen()->grabWindow(widget.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(window, paint(widget.state()));
}

// What the cache puts together from quarters and caps is the knob as it is painted in one go.
TEST(Knobs, ThePictureFromLayersIsTheWholePictureInEveryFrame) {
    for (const double scale : {0.5, 1.0, 1.25, 3.0}) {
        SpriteCache sprites;
        sprites.setScale(scale);
        for (const Piece& piece : panelPieces()) {
            if (piece.art != Art::knob || piece.index % 5 != 0) continue;
            const DeviceRect area = deviceRect(piece, scale);
            const auto picture = [&area](const auto& draw) {
                QImage image(area.width, area.height, QImage::Format_RGB32);
                image.fill(0x202830);
                QPainter painter(&image);
                painter.translate(-area.x, -area.y);
                draw(painter);
                return image;
            };
            Look look = lookOf(piece, patternMoment(), {});
            for (look.frame = 0; look.frame < 54; ++look.frame) {
                const QImage whole = picture([&](QPainter& p) { paintPiece(p, piece, look, scale); });
                const QImage layered = picture([&](QPainter& p) { sprites.draw(p, piece, look); });
                EXPECT_EQ(difference(whole, layered, {0, 0, area.width, area.height}), 0)
                    << "knob " << piece.index << " frame " << look.frame << " scale " << scale;
            }
        }
    }
}

} // namespace
} // namespace marlune
