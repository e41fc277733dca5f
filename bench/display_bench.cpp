// Display work of a tick: all twenty knobs change at every tick, until they are painted; then the same with
// the Pattern Sheet open beside the panel, its modules playing.
//
// Then the Song Map over 1000 bars with all knob lanes: scrolling, zooming, ticks.
//
// display_bench [map] [ZOOM...]: per cent, 200 by default; map: the Song Map alone. Beside it, in the same
// run: the same area copied from pixmaps and copied as plain memory.
#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <vector>

#include "commands/panel_events.h"
#include "desktop/main_window.h"
#include "desktop/map_window.h"
#include "desktop/panel_widget.h"
#include "desktop/qt_shell.h"
#include "desktop/sheet_window.h"
#include "desktop/theme.h"
#include "project/run_state.h"
#include "project/song_track.h"

// The panel's reports lead nowhere here.
namespace marlune {
void panelPointer(Control /*control*/, int /*index*/, const PointerEvent& /*event*/) {}
void panelWheel(Control /*control*/, int /*index*/, int /*steps*/) {}
void panelPress(Control /*control*/, int /*index*/) {}
void Form_KeyDown(int /*code*/, int /*shift*/) {}
void Form_KeyUp(int /*code*/, int /*shift*/) {}
void panelFocusLost() {}
void menuClicked(Menu /*menu*/) {}
void recentFileChosen(const std::string& /*fileName*/) {}
} // namespace marlune

namespace {

using namespace marlune;

constexpr int kTickUs = 60'000'000 / 240 / 4; // a sixteenth at 240 beats a minute
constexpr int kTicks = 320;
constexpr int kKnobs = 20;
constexpr int kFrames = 54;

// By the wall clock, and by the processor time of this thread, which other programs do not lengthen.
class Watch {
  public:
    void start() {
        wall_.start();
        cpu_ = cpuNow();
    }
    [[nodiscard]] double wallMs() const { return static_cast<double>(wall_.nsecsElapsed()) / 1e6; }
    [[nodiscard]] double cpuMs() const { return cpuNow() - cpu_; }

  private:
    static double cpuNow() {
        timespec now{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
    }
    QElapsedTimer wall_;
    double cpu_ = 0;
};

class Times {
  public:
    void add(const Watch& since) {
        wall_.push_back(since.wallMs());
        cpu_.push_back(since.cpuMs());
    }
    void print(const char* what) {
        std::sort(wall_.begin(), wall_.end());
        std::sort(cpu_.begin(), cpu_.end());
        std::printf(
            "  %-32s p50 %6.2f  p99 %6.2f  max %6.2f ms   processor p50 %6.2f  p99 %6.2f  max %6.2f ms\n",
            what, at(wall_, 0.5), at(wall_, 0.99), wall_.back(), at(cpu_, 0.5), at(cpu_, 0.99), cpu_.back());
    }

  private:
    static double at(const std::vector<double>& ms, double part) {
        return ms[static_cast<std::size_t>(part * static_cast<double>(ms.size() - 1))];
    }
    std::vector<double> wall_, cpu_;
};

// Something to see in every step of the patterns that play.
void fillPatterns() {
    for (int m = 0; m < kBassModules; ++m) {
        for (int s = 0; s < kSteps; ++s) {
            BassStep& step = currentBass(m).steps[s];
            step.note = (5 * s + 3 * m) % 13;
            step.noteOn = s % 4 != 3;
            step.accent = s % 3 == 0;
            step.up = s % 5 == 1;
        }
        currentBass(m).loopEnd = kSteps - 1;
    }
    for (int s = 0; s < kSteps; ++s)
        for (int row = 0; row < kDrumRows; ++row)
            currentDrum().drumOn[s][row] = (s + row) % 3 == 0 ? kDrumHit : 0;
    currentDrum().loopEnd = kSteps - 1;
}

void timeTicks(QtShell& shell, Times& times) {
    PanelWidget& panel = shell.panel();
    Watch clock;
    for (int tick = 0; tick < kTicks; ++tick) {
        QThread::usleep(kTickUs);
        QApplication::processEvents();
        clock.start();
        for (int knob = 0; knob < kKnobs; ++knob)
            panel.showFrame(Control::knobSprite, knob, (tick * 5 + knob * 7) % kFrames);
        for (int m = 0; m < kModules; ++m)
            songPosition.write().moduleStep[m] = static_cast<std::int16_t>(tick % kSteps);
        if (songPosition->songMode)
            for (int knob = 0; knob < kKnobs; ++knob) project.knobValue[knob] = knobTrack[knob][tick];
        songPosition.write().holdSongTick = false;
        songPosition.write().playedTick = tick;
        shell.settle();
        QApplication::processEvents();
        times.add(clock);
    }
}

// A song that changes in every bar, with all knobs moving.
void fillSong() {
    for (int m = 0; m < kModules; ++m)
        for (int bar = 0; bar < kSongBars; ++bar)
            barTrack[m][bar] = {static_cast<std::uint8_t>((bar + m) % kPatterns),
                                static_cast<std::uint8_t>(bar / 16 % kBanks)};
    for (int k = 0; k < marlune::kKnobs; ++k)
        for (int tick = 0; tick < kSongTicks; ++tick)
            knobTrack[k][tick] = static_cast<std::uint8_t>(64 + 60 * std::sin(tick / (9.0 + k)));
}

template <typename Change>
void timeFrames(QtShell& shell, Times& times, int frames, Change change) {
    Watch clock;
    for (int frame = 0; frame < frames; ++frame) {
        QApplication::processEvents();
        clock.start();
        MapDesk desk = shell.map().desk();
        change(desk, frame);
        shell.map().setDesk(desk);
        QApplication::processEvents(); // paints
        times.add(clock);
    }
}

// The map over 1000 bars with all lanes of knobs.
void timeMap(QtShell& shell, int zoom) {
    fillSong();
    songPosition.write().songMode = true;
    MapWindow& map = shell.map();
    QElapsedTimer opening;
    opening.start();
    map.show();
    map.setZoom(zoom);
    map.resize(QSize(1120, 620) * zoom / 100);
    map.repaint();
    const double opened = static_cast<double>(opening.nsecsElapsed()) / 1e6;
    MapDesk desk = map.desk();
    desk.view.knobs.clear();
    for (int k = 0; k < marlune::kKnobs; ++k) desk.view.knobs.push_back(k);
    desk.view.dock = false;
    desk.follow = false;
    map.setDesk(desk);
    map.resize(map.width(), static_cast<int>((620 + 20 * 27) * map.zoom() / 100.0)); // room for all lanes
    Times scrolling, coarse, zooming, warming, ticks;
    timeFrames(shell, scrolling, kTicks, [](MapDesk& d, int frame) { scrollTo(d.view, 3 * frame); });
    timeFrames(shell, coarse, kTicks, [](MapDesk& d, int frame) {
        d.view.ppb = 1.5;
        scrollTo(d.view, frame);
    });
    timeFrames(shell, zooming, kTicks, [](MapDesk& d, int frame) {
        d.view.ppb = kBarWidths[static_cast<std::size_t>(frame) % kBarWidths.size()];
        scrollTo(d.view, 3 * frame);
    });
    desk.view.ppb = kFirstBarWidth;
    map.setDesk(desk);
    shell.sheet().show();
    shell.sheet().resize(QSize(1120, 520) * zoom / 100);
    timeTicks(shell, warming);
    timeTicks(shell, ticks);
    shell.sheet().hide();
    std::printf("  the map opened in %.1f ms, %d x %d at %d %%, %d lanes, its pictures %.1f MB\n", opened,
                map.width(), map.height(), map.zoom(), knobRows(map.desk().view),
                static_cast<double>(map.canvas().bytes()) / 1e6);
    scrolling.print("the map, a frame of scrolling");
    coarse.print("the map, scrolling at 1.5 pixels");
    zooming.print("the map, a frame of zooming");
    warming.print("tick with all windows, seen first");
    ticks.print("tick with all three windows");
    map.hide();
    songPosition.write().songMode = false;
}

void timeCopies(int side, Times& pixmaps, Times& memory) {
    QPixmap knob(side, side);
    knob.fill(Qt::transparent);
    QImage ground(side * kKnobs, side, QImage::Format_ARGB32_Premultiplied);
    std::vector<char> from(static_cast<std::size_t>(side) * side * 4 * kKnobs, 1);
    std::vector<char> to(from.size());
    Watch clock;
    for (int round = 0; round < kTicks; ++round) {
        clock.start();
        QPainter painter(&ground);
        for (int i = 0; i < kKnobs; ++i) painter.drawPixmap(i * side, 0, knob);
        painter.end();
        pixmaps.add(clock);
        clock.start();
        std::memcpy(to.data(), from.data(), from.size());
        memory.add(clock);
        from[static_cast<std::size_t>(round)] = to[to.size() - 1 - static_cast<std::size_t>(round)];
    }
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    applyTheme(app);
    resetMenus();
    QtShell shell;
    setAppShell(&shell);
    fillPatterns();
    transportState.write().transportRunning = true;
    shell.window().show();
    std::vector<int> zooms;
    bool mapOnly = false;
    for (const QString& word : QApplication::arguments().mid(1)) {
        if (word == QStringLiteral("map"))
            mapOnly = true;
        else
            zooms.push_back(word.toInt());
    }
    if (zooms.empty()) zooms.push_back(200);
    for (const int zoom : zooms) {
        shell.window().setZoom(zoom);
        shell.window().repaint();
        if (mapOnly) {
            timeMap(shell, zoom);
            continue;
        }
        Times warming, ticks, sheetWarming, sheetTicks, pixmaps, memory;
        timeTicks(shell, warming);
        timeTicks(shell, ticks);
        SheetWindow& sheet = shell.sheet();
        QElapsedTimer opening;
        opening.start();
        sheet.show();
        sheet.resize(QSize(1120, 520) * zoom / 100);
        sheet.repaint();
        const double opened = static_cast<double>(opening.nsecsElapsed()) / 1e6;
        timeTicks(shell, sheetWarming);
        timeTicks(shell, sheetTicks);
        sheet.hide();
        timeMap(shell, zoom);
        timeCopies(54 * zoom / 100, pixmaps, memory);
        std::printf("%d %% on %s, cache %.1f MB\n", zoom, qPrintable(QApplication::platformName()),
                    static_cast<double>(shell.window().panel().sprites().bytes()) / 1e6);
        warming.print("tick, pictures seen first");
        ticks.print("tick");
        std::printf("  the sheet opened in %.1f ms, its pictures %.1f MB\n", opened,
                    static_cast<double>(sheet.canvas().bytes()) / 1e6);
        sheetWarming.print("tick with the sheet, seen first");
        sheetTicks.print("tick with the sheet");
        pixmaps.print("the same area by drawPixmap");
        memory.print("the same area by memcpy");
    }
    return 0;
}
