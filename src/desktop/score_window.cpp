#include "desktop/score_window.h"

#include <QAction>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QSettings>
#include <QTouchEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "commands/panel_events.h"

namespace marlune {

namespace {

constexpr int kTitleBar = 40; // kept free for the frame that the window manager adds
constexpr int kRingReach = 7;

double limited(double scale) {
    return std::clamp(scale, ScoreWindow::kZooms.front() / 100.0, ScoreWindow::kZooms.back() / 100.0);
}

} // namespace

ScoreWindow::ScoreWindow(const char* name) : QWidget(nullptr, Qt::Window), name_(name) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_AcceptTouchEvents);
    const auto shortcut = [this](const QList<QKeySequence>& keys, auto act) {
        auto* action = new QAction(this);
        action->setShortcuts(keys);
        connect(action, &QAction::triggered, this, act);
        addAction(action);
    };
    shortcut({QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))},
             [this] { stepZoom(1); });
    shortcut({QKeySequence(QStringLiteral("Ctrl+-"))}, [this] { stepZoom(-1); });
    shortcut({QKeySequence(QStringLiteral("Ctrl+0"))}, [this] { setZoom(100); });
    shortcut({QKeySequence(Qt::Key_F11)}, [this] { toggleFullScreen(); });
}

// --- size

double ScoreWindow::scale() const {
    const Box size = content();
    return limited(std::min(width() / size.width, height() / size.height));
}

int ScoreWindow::zoom() const {
    return static_cast<int>(std::lround(scale() * 100));
}

void ScoreWindow::setZoom(int percent) {
    const QSize room = screen()->availableGeometry().size() - QSize(0, kTitleBar);
    const Box size = content();
    const double most = std::min(room.width() / size.width, room.height() / size.height);
    const double wanted = std::min(percent / 100.0, limited(most));
    if (isFullScreen()) showNormal();
    resize(static_cast<int>(std::lround(size.width * wanted)),
           static_cast<int>(std::lround(size.height * wanted)));
}

void ScoreWindow::stepZoom(int direction) {
    const int now = zoom();
    int next = now;
    if (direction > 0) {
        const auto* up = std::upper_bound(kZooms.begin(), kZooms.end(), now);
        next = up != kZooms.end() ? *up : now;
    } else {
        const auto* down = std::lower_bound(kZooms.begin(), kZooms.end(), now);
        next = down != kZooms.begin() ? *(down - 1) : now;
    }
    setZoom(next);
}

void ScoreWindow::toggleFullScreen() {
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void ScoreWindow::contentChanged(int percent) {
    const Box size = content();
    setMinimumSize(static_cast<int>(size.width * kZooms.front() / 100),
                   static_cast<int>(size.height * kZooms.front() / 100));
    setZoom(percent);
    stale_ = true;
    refresh();
}

void ScoreWindow::remember(QSettings& settings) const {
    settings.beginGroup(QString::fromLatin1(name_));
    settings.setValue(QStringLiteral("geometry"), saveGeometry());
    settings.setValue(QStringLiteral("open"), isVisible());
    settings.endGroup();
}

void ScoreWindow::recall(QSettings& settings) {
    const Box size = content();
    setMinimumSize(static_cast<int>(size.width * kZooms.front() / 100),
                   static_cast<int>(size.height * kZooms.front() / 100));
    setZoom(100);
    recallGeometry(settings);
}

void ScoreWindow::recallGeometry(QSettings& settings) {
    settings.beginGroup(QString::fromLatin1(name_));
    restoreGeometry(
        settings.value(QStringLiteral("geometry")).toByteArray()); // puts it onto a screen there is
    settings.endGroup();
}

void ScoreWindow::pinch(const QTouchEvent& touch) {
    if (touch.pointCount() < 2) {
        pinchStart_ = 0;
        return;
    }
    const QPointF apart = touch.points().at(0).position() - touch.points().at(1).position();
    const double distance = std::hypot(apart.x(), apart.y());
    if (pinchStart_ <= 0) {
        pinchStart_ = std::max(distance, 1.0);
        pinchZoom_ = zoom();
        return;
    }
    const double wanted = pinchZoom_ * distance / pinchStart_;
    const auto* nearest = std::min_element(kZooms.begin(), kZooms.end(), [&](int a, int b) {
        return std::abs(a - wanted) < std::abs(b - wanted);
    });
    if (*nearest != zoom()) setZoom(*nearest);
}

// --- places

QPoint ScoreWindow::originOnDevice() const {
    const Box size = content();
    const double k = deviceScale();
    const double ratio = devicePixelRatioF();
    return {std::max(0, static_cast<int>((width() * ratio - size.width * k) / 2)),
            std::max(0, static_cast<int>((height() * ratio - size.height * k) / 2))};
}

QSize ScoreWindow::sizeOnDevice() const {
    const Box size = content();
    const double k = deviceScale();
    return {static_cast<int>(std::lround(size.width * k)), static_cast<int>(std::lround(size.height * k))};
}

QPointF ScoreWindow::contentAt(QPointF point) const {
    return (point - QPointF(originOnDevice()) / devicePixelRatioF()) / scale();
}

QRect ScoreWindow::widgetRect(const Box& box) const {
    const double k = scale();
    return QRectF(box.x * k, box.y * k, box.width * k, box.height * k)
        .translated(QPointF(originOnDevice()) / devicePixelRatioF())
        .toAlignedRect();
}

// --- painting

void ScoreWindow::refresh() {
    if (!isVisible()) return;
    Scene now = scene();
    const double ratio = devicePixelRatioF();
    const QPoint origin = originOnDevice();
    canvas_.setSize(sizeOnDevice(), deviceScale());
    const QRegion changed = canvas_.show(std::move(now));
    if (stale_) {
        update();
    } else {
        for (const QRect& part : changed) {
            const QRect r = part.translated(origin);
            update(
                QRectF(r.x() / ratio, r.y() / ratio, r.width() / ratio, r.height() / ratio).toAlignedRect());
        }
    }
    const Box ring = hasFocus() ? focusBox() : Box{};
    if (ring != ring_) {
        for (const Box& box : {ring_, ring})
            update(widgetRect({box.x - kRingReach, box.y - kRingReach, box.width + 2 * kRingReach,
                               box.height + 2 * kRingReach}));
        ring_ = ring;
    }
    const Box finger = fingerBox();
    if (finger != finger_) {
        for (const Box& box : {finger_, finger}) {
            const Box loupe = loupeOf(box, content());
            if (box.width > 0)
                update(widgetRect({loupe.x - 3, loupe.y - 3, loupe.width + 6, loupe.height + 6}));
        }
        finger_ = finger;
    }
    stale_ = false;
}

void ScoreWindow::paintEvent(QPaintEvent* event) {
    const double ratio = devicePixelRatioF();
    const QPoint origin = originOnDevice();
    canvas_.setSize(sizeOnDevice(), deviceScale()); // also where the screen has another density now
    QPainter painter(this);
    painter.scale(1 / ratio, 1 / ratio); // device pixels from here on
    for (const QRect& part : event->region()) {
        const QRect area =
            QRectF(part.x() * ratio, part.y() * ratio, part.width() * ratio, part.height() * ratio)
                .toAlignedRect();
        repainted_ += area;
        const QRect inside(origin, sizeOnDevice());
        if (!inside.contains(area)) painter.fillRect(area, QColor::fromRgb(palette::kBed.stops[1].colour));
        painter.translate(origin);
        canvas_.paint(painter, (area & inside).translated(-origin));
        painter.translate(-origin);
    }
    painter.translate(origin);
    if (ring_.width > 0) paintFocus(painter, ring_, deviceScale());
    if (finger_.width > 0) paintLoupe(painter, canvas_.scene(), finger_, content(), deviceScale());
}

QRegion ScoreWindow::takeRepainted() {
    return std::exchange(repainted_, QRegion());
}

void ScoreWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    stale_ = true;
    refresh();
}

void ScoreWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    stale_ = true;
    refresh();
}

// --- the panel's keys

void ScoreWindow::keyReleaseEvent(QKeyEvent* event) {
    keys_.release(*event);
}

void ScoreWindow::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    keys_.flush();
    panelFocusLost();
    refresh();
}

} // namespace marlune
