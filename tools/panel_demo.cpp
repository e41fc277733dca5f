// The panel to look at: panel_demo pattern|song|asleep [SCALE FILE.png]
//                   panel_demo time ZOOM | about FILE.png | help PAGE FILE.png
// Without a file the window opens; with one, the panel is painted at the scale, or, with scale 0, the window.
#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdio>

#include "desktop/about_window.h"
#include "desktop/help_window.h"
#include "desktop/main_window.h"
#include "desktop/mock_state.h"
#include "desktop/panel_widget.h"
#include "desktop/qt_shell.h"
#include "desktop/theme.h"

using namespace marlune;

namespace {

// A song that stands still, unarmed, with the pointer and the keyboard at work.
PanelState asleepMoment() {
    PanelState state = songMoment();
    for (const Control c : {Control::RecButton, Control::playSongButton})
        state.frames[static_cast<std::size_t>(c)][0] = 1;
    state.frames[static_cast<std::size_t>(Control::nextButton)][0] = 2;
    state.frames[static_cast<std::size_t>(Control::startStopButton)][0] = 0;
    state.texts[static_cast<std::size_t>(Control::microDisplay)][0] = std::string("[12/16]");
    for (int knob = 0; knob < 19; ++knob)
        state.enabled[static_cast<std::size_t>(Control::knobSprite)][knob] = false;
    return state;
}

bool savePanel(const PanelState& state, const Touch& touch, double scale, const QString& file) {
    QImage image(static_cast<int>(kPanelWidth * scale), static_cast<int>(kPanelHeight * scale),
                 QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    paintPanel(painter, state, touch, scale);
    return painter.end() && image.save(file);
}

// Milliseconds from the change of all twenty knobs to their being painted, frames known already.
void timeKnobs(MainWindow& window, int zoom) {
    window.setZoom(zoom);
    PanelWidget& panel = window.panel();
    QElapsedTimer clock;
    clock.start();
    panel.grab();
    std::printf("first picture: %.1f ms\n", static_cast<double>(clock.nsecsElapsed()) / 1e6);
    window.show();
    std::vector<double> times;
    for (int round = 0; round < 4 * 54; ++round) {
        QApplication::processEvents();
        clock.restart();
        for (int knob = 0; knob < 20; ++knob) panel.showFrame(Control::knobSprite, knob, (round + knob) % 54);
        const double asked = static_cast<double>(clock.nsecsElapsed()) / 1e6;
        QApplication::processEvents();
        if (round >= 2 * 54) times.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
        if (round == 4 * 54 - 1) std::printf("asking for the last took %.3f ms\n", asked);
    }
    std::sort(times.begin(), times.end());
    std::printf("20 knobs at %d %%: median %.2f ms, worst of %zu %.2f ms; cache %.1f MB\n", zoom,
                times[times.size() / 2], times.size(), times.back(),
                static_cast<double>(panel.sprites().bytes()) / 1e6);
    clock.restart();
    panel.repaint();
    std::printf("whole panel again: %.2f ms\n", static_cast<double>(clock.nsecsElapsed()) / 1e6);
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    applyTheme(app);
    const QStringList words = QApplication::arguments();
    const bool song = words.value(1) == "song";
    const bool asleep = words.value(1) == "asleep";
    const PanelState state = asleep ? asleepMoment() : song ? songMoment() : patternMoment();
    const Touch touch = asleep ? Touch{placedControl(Control::step103A, 4), placedControl(Control::sel109, 1),
                                       placedControl(Control::DigitPatt, 3)}
                               : Touch{};
    const double scale = words.value(2).toDouble();
    if (words.size() > 3 && scale > 0) return savePanel(state, touch, scale, words[3]) ? 0 : 1;

    resetMenus();
    QtShell shell;
    setAppShell(&shell);
    shell.window().panel().showState(state);
    if (words.value(1) == "about" && words.size() > 2)
        return AboutWindow(nullptr, false).grab().save(words[2]) ? 0 : 1;
    if (words.value(1) == "help" && words.size() > 3)
        return HelpWindow(words[2]).grab().save(words[3]) ? 0 : 1;
    if (words.value(1) == "time") {
        timeKnobs(shell.window(), words.value(2, "200").toInt());
        return 0;
    }
    shell.showTitle("Marlune 200Q [ untitled.mlp ]");
    shell.showStatus(song ? "SONG COPY: ( 109 Patterns and knobs ) from BAR 41 thru 44 ."
                          : "COPY: Module 103A ( current pattern and knobs ).");
    shell.window().show();
    if (words.size() > 3) return shell.window().grab().save(words[3]) ? 0 : 1;
    return QApplication::exec();
}
