// The Song Map as a window: forwards pointer and keys, shows the scene. User-interface thread only.
#pragma once

#include <QTimer>

#include "desktop/score_window.h"
#include "score/map_keys.h"
#include "windows/map_scene.h"

namespace marlune {

class MapWindow final : public ScoreWindow {
    Q_OBJECT

  public:
    MapWindow();

    [[nodiscard]] const MapState& state() const { return state_; } // as last shown
    [[nodiscard]] const MapDesk& desk() const { return desk_; }
    [[nodiscard]] const MapShow& shows() const { return show_; }
    [[nodiscard]] const MapCursor& cursor() const { return cursor_; }
    void setDesk(const MapDesk& desk); // for pictures, measurements and tests
    void putCursor(const MapSpot& spot);
    [[nodiscard]] QRect placeOf(const MapSpot& spot) const; // in the widget
    [[nodiscard]] QPoint pointOf(double x, double y) const; // of the map, in the widget

    void setZoom(int percent) override;

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
    [[nodiscard]] Box content() const override;
    [[nodiscard]] double scale() const override;
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
    void takeState(); // and what of the view follows from it
    [[nodiscard]] MapSpot spokenSpot(int group, int cell) const;
    [[nodiscard]] MapPress pressAt(const QPointF& point, Qt::KeyboardModifiers with) const;
    void press(const QMouseEvent& event, bool second);
    void follow(MapWish wish); // what a gesture leaves to the window; shows the outcome
    void tellCursor();
    void hoverAt(QPointF point);
    void touch(const QTouchEvent& touch);

    MapState state_;
    MapDesk desk_;
    MapShow show_;
    MapHand hand_{desk_};
    MapCursor cursor_;
    double zoomWanted_ = 1;
    bool named_ = false; // the chips' letters are measured
    QString refusal_;
    MapSpot toldSpot_;
    QString toldName_;
    QTimer refusalEnd_;
    Qt::MouseButton heldButton_ = Qt::NoButton;
    int wheelAngle_ = 0;
    bool oneFinger_ = false; // since the first one came down
    MapSpot finger_;         // under a single finger; none
    double fingersX_ = 0;    // of two fingers, as they were
};

} // namespace marlune
