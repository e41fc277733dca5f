// A small viewer for the manual page.
#pragma once

#include <QWidget>

namespace marlune {

class HelpWindow final : public QWidget {
    Q_OBJECT

  public:
    explicit HelpWindow(const QString& file); // HTML, or plain text by its ending

  protected:
    void keyPressEvent(QKeyEvent* event) override; // Escape closes
};

} // namespace marlune
