// The panel to look at: panel_demo pattern|song [SCALE FILE.png]
// Without a file the window opens; with one, the panel is painted at the scale, or, with scale 0, the window.
#include <QApplication>
#include <QImage>
#include <QPainter>

#include "desktop/main_window.h"
#include "desktop/mock_state.h"
#include "desktop/panel_widget.h"
#include "desktop/qt_shell.h"
#include "desktop/theme.h"

using namespace marlune;

namespace {

bool savePanel(const PanelState& state, double scale, const QString& file) {
    QImage image(static_cast<int>(kPanelWidth * scale), static_cast<int>(kPanelHeight * scale),
                 QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    paintPanel(painter, state, Touch{}, scale);
    return painter.end() && image.save(file);
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    applyTheme(app);
    const QStringList words = QApplication::arguments();
    const bool song = words.value(1) == "song";
    const PanelState state = song ? songMoment() : patternMoment();
    const double scale = words.value(2).toDouble();
    if (words.size() > 3 && scale > 0) return savePanel(state, scale, words[3]) ? 0 : 1;

    resetMenus();
    QtShell shell;
    setAppShell(&shell);
    shell.window().panel().showState(state);
    shell.showTitle("Marlune 200Q [ untitled.mlp ]");
    shell.showStatus(song ? "SONG COPY: ( 109 Patterns and knobs ) from BAR 41 thru 44 ."
                          : "COPY: Module 103A ( current pattern and knobs ).");
    shell.window().show();
    if (words.size() > 3) return shell.window().grab().save(words[3]) ? 0 : 1;
    return QApplication::exec();
}
