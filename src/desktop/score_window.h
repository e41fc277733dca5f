// A window beside the panel: shows a scene of tiles at any size, repaints what changed, remembers its place.
//
// Common ground of the Pattern Sheet and its like. The content keeps its shape and stands in the middle of
// the bed. User-interface thread only.
#pragma once

#include <QWidget>
#include <array>

#include "desktop/held_keys.h"
#include "windows/scene_canvas.h"

class QSettings;
class QTouchEvent;

namespace marlune {

// What assistive tools are told: groups, each of so many cells. A group of one cell is that cell.
struct SpokenGroup {
    QString name;
    int cells = 0;
    bool readOnly = false; // the status bar: the last group
};
enum class SpokenRole { button, slider, scrollBar };
struct SpokenCell {
    QString name;
    QRect rect; // in the widget
    bool focused = false, disabled = false, selected = false;
    SpokenRole role = SpokenRole::button;
};

class ScoreWindow : public QWidget {
    Q_OBJECT

  public:
    static constexpr std::array<int, 8> kZooms{75, 100, 125, 150, 175, 200, 250, 300}; // per cent

    explicit ScoreWindow(const char* name);

    // Repaints where what is to be shown differs from what is shown. To be called whenever the program comes
    // to rest: no routine tells the window that it changed something.
    void refresh();

    virtual void setZoom(
        int percent); // takes the window to the size that shows the content so; limited to the screen
    void stepZoom(int direction);
    [[nodiscard]] int zoom() const; // per cent, as shown
    void toggleFullScreen();

    // Place, size and what the window adds. The place counts only where a screen still shows it.
    virtual void remember(QSettings& settings) const;
    virtual void recall(QSettings& settings);

    [[nodiscard]] const SceneCanvas& canvas() const { return canvas_; }
    // What repainting since the last call touched, device pixels: for measurements and tests.
    QRegion takeRepainted();

    [[nodiscard]] virtual int spokenGroups() const = 0;
    [[nodiscard]] virtual SpokenGroup spokenGroup(int group) const = 0;
    [[nodiscard]] virtual SpokenCell spokenCell(int group, int cell) const = 0;
    virtual void pressSpoken(int group, int cell) = 0;
    virtual void focusSpoken(int group, int cell) = 0;

  signals:
    void spokenFocusMoved();
    void spokenFocusChanged(); // what the focused cell is called
    void announced();          // the status bar has something to say

  protected:
    virtual Scene scene() = 0;
    [[nodiscard]] virtual Box content() const = 0;            // its size at scale 1
    [[nodiscard]] virtual Box focusBox() const { return {}; } // the keyboard's cursor; width 0: none

    [[nodiscard]] virtual Box fingerBox() const { return {}; } // the place under a finger; width 0: none
    // Two fingers: the zoom follows their distance.
    void pinch(const QTouchEvent& touch);
    [[nodiscard]] virtual double scale() const; // logical pixels to a content pixel
    [[nodiscard]] QPointF contentAt(QPointF widgetPoint) const;
    [[nodiscard]] QRect widgetRect(const Box& box) const;
    void recallGeometry(QSettings& settings);
    void forgetShown() { stale_ = true; } // the next refresh paints everything
    void contentChanged(int percent);     // another shape: takes its size at this zoom

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    HeldKeys keys_; // those of the panel's table

  private:
    [[nodiscard]] QPoint originOnDevice() const;
    [[nodiscard]] QSize sizeOnDevice() const;
    [[nodiscard]] double deviceScale() const { return scale() * devicePixelRatioF(); }

    const char* name_;
    SceneCanvas canvas_;
    Box finger_;            // shown large, as last painted
    double pinchStart_ = 0; // distance of two fingers when they came down; 0: none
    int pinchZoom_ = 100;   // and the zoom then
    Box ring_;              // of the keyboard, as last painted
    QRegion repainted_;
    bool stale_ = true; // nothing has been shown at this size
};

} // namespace marlune
