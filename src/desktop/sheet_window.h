// The Pattern Sheet as a window: forwards pointer and keys, shows the scene. User-interface thread only.
#pragma once

#include <QTimer>

#include "desktop/score_window.h"
#include "score/sheet_keys.h"
#include "windows/sheet_scene.h"

namespace marlune {

class SheetWindow final : public ScoreWindow {
    Q_OBJECT

  public:
    SheetWindow();

    void setForm(SheetForm form);
    [[nodiscard]] SheetForm form() const { return show_.form; }
    [[nodiscard]] const SheetState& state() const { return state_; } // as last shown
    [[nodiscard]] const SheetShow& shows() const { return show_; }
    [[nodiscard]] const SheetCursor& cursor() const { return cursor_; }
    void putCursor(const SheetSpot& spot);
    void click(const SheetSpot& spot);                        // as a click of the pointer
    [[nodiscard]] QRect placeOf(const SheetSpot& spot) const; // in the widget

    [[nodiscard]] int spokenGroups() const override;
    [[nodiscard]] SpokenGroup spokenGroup(int group) const override;
    [[nodiscard]] SpokenCell spokenCell(int group, int cell) const override;
    void pressSpoken(int group, int cell) override;
    void focusSpoken(int group, int cell) override;

    void remember(QSettings& settings) const override;
    void recall(QSettings& settings) override;

  signals:
    void refused(const QString& sentence);

  protected:
    Scene scene() override;
    [[nodiscard]] Box content() const override { return sheetSize(show_.form); }
    [[nodiscard]] Box focusBox() const override;
    [[nodiscard]] Box fingerBox() const override;
    bool event(QEvent* event) override;

    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    [[nodiscard]] SheetView view() const { return sheetView(state_, show_.form); }
    [[nodiscard]] SheetSpot spokenSpot(int group, int cell) const;
    void tellCursor();           // where it has moved, what its cell is called now
    void follow(SheetWish wish); // what a gesture leaves to the window; shows the outcome
    void hoverAt(QPointF point);
    void touch(const QTouchEvent& touch);
    bool sheetKey(const QKeyEvent& event);

    SheetState state_;
    SheetShow show_;
    SheetHand hand_;
    bool oneFinger_ = false; // since the first one came down
    SheetSpot finger_;       // under a single finger; none
    SheetCursor cursor_;
    QString refusal_;
    SheetSpot toldSpot_;
    QString toldName_;
    QTimer refusalEnd_;
    Qt::MouseButton heldButton_ = Qt::NoButton;
    int wheelAngle_ = 0;
};

} // namespace marlune
