// The front panel as a widget: shows what the panel logic asks for, reports what the user does.
//
// Only what changed is repainted. Reports go to panelPointer, panelWheel, panelPress, Form_KeyDown,
// Form_KeyUp and panelFocusLost. User-interface thread only.
#pragma once

#include <QWidget>
#include <vector>

#include "desktop/held_keys.h"
#include "desktop/sprite_cache.h"
#include "panel/scaling.h"
#include "picture/panel_state.h"

namespace marlune {

class PanelWidget final : public QWidget, public PanelView, public PanelForm {
    Q_OBJECT

  public:
    explicit PanelWidget(QWidget* parent = nullptr);

    void showFrame(Control control, int index, int frame) override;
    void showText(Control control, int index, const std::string& text) override;
    void showLamp(int step, bool lit) override;
    void showEnabled(Control control, int index, bool enabled) override;
    void showState(const PanelState& state); // all at once
    // The small pictures that follow from the patterns, and the knobs' values.
    void showDerived(const std::array<std::array<StepMark, 16>, 2>& marks,
                     const std::array<std::uint8_t, 16>& ghost, const std::array<short, 20>& values);

    [[nodiscard]] TwipsPerPixel twipsPerPixel() const override { return {}; } // of a logical pixel
    [[nodiscard]] Placement form() const override;
    void placeForm(const Placement& at) override; // its size; the window places it
    [[nodiscard]] Placement control(Control control, int index) const override;
    void placeControl(Control control, int index, const Placement& at) override;

    void setZoom(int percent);
    [[nodiscard]] int zoom() const { return zoom_; }
    [[nodiscard]] const PanelState& state() const { return state_; }
    [[nodiscard]] const SpriteCache& sprites() const { return sprites_; }

    // The control that Up, Down and F2 act on; null while none was reached by Tab.
    [[nodiscard]] const PlacedControl* focusControl() const { return touch_.focus; }
    void setFocusControl(const PlacedControl* control);
    // In the order of Tab.
    static const std::vector<const PlacedControl*>& tabStops();

  signals:
    void focusControlChanged();
    void focusValueChanged(); // what the focused control shows

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    [[nodiscard]] QPointF panelPoint(QPointF widgetPoint) const;
    [[nodiscard]] const PlacedControl* reachable(QPointF panelPoint) const; // enabled as well
    void place(double scale); // where the pieces stand at this scale, device pixels to a panel pixel
    void press(QMouseEvent* event, bool second);
    void abandonPress();
    void setHover(const PlacedControl* control);
    void takeLooks(); // of the pieces there are
    void refresh();   // repaints the pieces whose look changed
    void tellFocusValue();
    void updateRing();
    void updateBubble();
    void showTip(QPoint at);
    bool keyOnFocus(const QKeyEvent& event);

    PanelState state_;
    PointerState touch_;
    std::vector<Look> shown_;   // looks of panelPieces() as last asked to paint
    std::vector<QRect> places_; // and their places in the widget
    SpriteCache sprites_;
    QSize size_{kPanelWidth, kPanelHeight}; // panel pixels
    int zoom_ = 100;
    Bubble bubble_;                              // as last painted
    QString focusValue_;                         // as last told
    const PlacedControl* lastPressed_ = nullptr; // what a second press must meet again
    Qt::MouseButton heldButton_ = Qt::NoButton;
    bool heldPair_ = false; // pressed as the second of a fast pair
    double lastY_ = 0;      // twips; of the held button's last event
    HeldKeys keys_;
    const PlacedControl* wheelControl_ = nullptr;
    int wheelAngle_ = 0;
};

} // namespace marlune
