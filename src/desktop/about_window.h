// Name, version and the crescent over three waves: the splash at start-up, About in the Help menu.
#pragma once

#include <QDialog>

namespace marlune {

class AboutWindow final : public QDialog {
    Q_OBJECT

  public:
    AboutWindow(QWidget* parent, bool splash); // a splash has no frame and is closed by its owner

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    bool splash_;
};

} // namespace marlune
